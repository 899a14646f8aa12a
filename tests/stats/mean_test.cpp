// Mean and deviation against their definition.
#include "support/images.h"

#include <cmath>
#include <cstdint>

using namespace zeltest;

namespace {

template <class T>
struct Members {
    ZelStatus (*mean)(const T*, int, const Zel8u*, int, ZeliSize, Zel64f*);
    ZelStatus (*mean3)(const T*, int, const Zel8u*, int, ZeliSize, int, Zel64f*);
    ZelStatus (*plain)(const T*, int, ZeliSize, Zel64f*, Zel64f*);
    ZelStatus (*plain3)(const T*, int, ZeliSize, int, Zel64f*, Zel64f*);
    ZelStatus (*masked)(const T*, int, const Zel8u*, int, ZeliSize, Zel64f*, Zel64f*);
    ZelStatus (*masked3)(const T*, int, const Zel8u*, int, ZeliSize, int, Zel64f*, Zel64f*);
};

template <class T>
const Members<T> kMembers{};
#define MEMBERS(T, token)                                                                                              \
    template <>                                                                                                        \
    const Members<T> kMembers<T>{zeliMean_##token##_C1MR,        zeliMean_##token##_C3CMR,                             \
                                 zeliMean_StdDev_##token##_C1R,  zeliMean_StdDev_##token##_C3CR,                       \
                                 zeliMean_StdDev_##token##_C1MR, zeliMean_StdDev_##token##_C3CMR};
MEMBERS(Zel8u, 8u)
MEMBERS(Zel8s, 8s)
MEMBERS(Zel16u, 16u)
MEMBERS(Zel32f, 32f)

struct Result {
    double mean = 0, deviation = 0;
};

// The sum of a row of 32f: eight lanes.
template <class Term>
double rowSum(int width, const Term& term)
{
    double lane[8] = {};
    for (int x = 0; x < width; ++x) lane[x % 8] += term(x);
    return ((lane[0] + lane[4]) + (lane[2] + lane[6])) + ((lane[1] + lane[5]) + (lane[3] + lane[7]));
}

// With as many bands as threads from 2^shift pixels for each thread on.
template <class T>
Result define(const Image<T>& src, const Image<Zel8u>* mask, ZeliSize size, int channels, int coi, int shift)
{
    Zel32s threads = 1;
    zelGetNumThreads(&threads);
    const bool parallel = shift != 0 && size.width * size.height >= threads << shift && !omp_in_parallel();
    const int bands = parallel ? threads : 1;
    const auto value = [&](int x, int y) -> double { return src.at(x * channels + coi - 1, y); };
    const auto selected = [&](int x, int y) { return !mask || mask->at(x, y) != 0; };
    double sum = 0, squares = 0, n = 0;
    std::int64_t exactSum = 0, exactSquares = 0;
    for (int band = 0; band < bands; ++band) {
        double bandSum = 0, bandSquares = 0;
        const int rows = size.height / bands;
        for (int y = band * rows; y < (band == bands - 1 ? size.height : (band + 1) * rows); ++y) {
            for (int x = 0; x < size.width; ++x) {
                if (!selected(x, y)) continue;
                ++n;
                if constexpr (std::is_integral_v<T>) {
                    exactSum += std::int64_t(value(x, y));
                    exactSquares += std::int64_t(value(x, y) * value(x, y));
                }
            }
            bandSum += rowSum(size.width, [&](int x) { return selected(x, y) ? value(x, y) : 0; });
            bandSquares += rowSum(size.width, [&](int x) { return selected(x, y) ? value(x, y) * value(x, y) : 0; });
        }
        sum += bandSum;
        squares += bandSquares;
    }
    if (n == 0) return {};
    if (std::is_integral_v<T>) sum = double(exactSum), squares = double(exactSquares);
    Result result{sum / n, std::sqrt(std::abs(squares / n - sum / n * (sum / n)))};
    if (std::is_same_v<T, Zel32f> && 0.05 * result.mean * result.mean > result.deviation * result.deviation) {
        double spread = 0;
        for (int y = 0; y < size.height; ++y)
            spread += rowSum(size.width, [&](int x) {
                const double difference = selected(x, y) ? value(x, y) - result.mean : 0;
                return difference * difference;
            });
        result.deviation = std::sqrt(spread / n);
    }
    return result;
}

void expectSame(double wanted, double got, const char* what)
{
    if (std::isnan(wanted))
        EXPECT_TRUE(std::isnan(got)) << what;
    else
        EXPECT_EQ(wanted, got) << what;
}

enum class Selection { None, One, Some, All };

Image<Zel8u> makeMask(Random& random, ZeliSize size, Selection selection)
{
    Image<Zel8u> mask(random, size.width, size.height);
    const int theX = random.between(0, size.width - 1), theY = random.between(0, size.height - 1);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            if (selection == Selection::None || selection == Selection::One) mask.set(x, y, 0);
            if (selection == Selection::Some) mask.set(x, y, Zel8u(random.between(0, 1) * random.between(0, 255)));
            if (selection == Selection::All) mask.set(x, y, 255);
        }
    if (selection == Selection::One) mask.set(theX, theY, 0x80);
    return mask;
}

template <class T>
class Mean : public testing::Test {};
using Types = testing::Types<Zel8u, Zel8s, Zel16u, Zel32f>;
TYPED_TEST_SUITE(Mean, Types);

template <class T>
void compareAll(const Image<T>& constSrc, const Image<T>& constSrc3, const Image<Zel8u>& constMask, ZeliSize size, int coi)
{
    auto& src = const_cast<Image<T>&>(constSrc);
    auto& src3 = const_cast<Image<T>&>(constSrc3);
    auto& mask = const_cast<Image<Zel8u>&>(constMask);
    const Members<T>& members = kMembers<T>;
    const auto compare = [&](const char* what, const Result& wanted, bool onlyMean, const auto& call) {
        Result got{-1, -1};
        EXPECT_EQ(zelStatusOk, call(&got.mean, &got.deviation)) << what;
        expectSame(wanted.mean, got.mean, what);
        if (!onlyMean) expectSame(wanted.deviation, got.deviation, what);
    };
    const Result masked = define(src, &mask, size, 1, 1, 17), masked3 = define(src3, &mask, size, 3, coi, 17);
    compare("mean C1MR", masked, true, [&](double* mean, double*) {
        return members.mean(src.data(), src.step(), mask.data(), mask.step(), size, mean);
    });
    compare("mean C3CMR", masked3, true, [&](double* mean, double*) {
        return members.mean3(src3.data(), src3.step(), mask.data(), mask.step(), size, coi, mean);
    });
    compare("C1MR", masked, false, [&](double* mean, double* deviation) {
        return members.masked(src.data(), src.step(), mask.data(), mask.step(), size, mean, deviation);
    });
    compare("C3CMR", masked3, false, [&](double* mean, double* deviation) {
        return members.masked3(src3.data(), src3.step(), mask.data(), mask.step(), size, coi, mean, deviation);
    });
    compare("C1R", define<T>(src, nullptr, size, 1, 1, 16), false, [&](double* mean, double* deviation) {
        return members.plain(src.data(), src.step(), size, mean, deviation);
    });
    compare("C3CR", define<T>(src3, nullptr, size, 3, coi, 0), false, [&](double* mean, double* deviation) {
        return members.plain3(src3.data(), src3.step(), size, coi, mean, deviation);
    });
}

TYPED_TEST(Mean, EqualsDefinition)
{
    using T = TypeParam;
    Random random(1);
    int coi = 1;
    for (Texture texture : {Texture::Noise, Texture::Smooth, Texture::Extremes})
        for (ZeliSize size : {ZeliSize{1, 1}, {3, 2}, {8, 3}, {31, 4}, {2049, 2}, {4133, 3}})
            for (Selection selection : {Selection::None, Selection::One, Selection::Some, Selection::All}) {
                SCOPED_TRACE("size " + std::to_string(size.width) + ", selection " + std::to_string(int(selection)));
                Image<T> src(random, size.width, size.height, texture), src3(random, 3 * size.width, size.height, texture);
                compareAll(src, src3, makeMask(random, size, selection), size, coi);
                coi = coi % 3 + 1;
            }
    for (ZeliSize size : {ZeliSize{512, 511}, {512, 512}, {1033, 1017}}) {
        Image<T> src(random, size.width, size.height), src3(random, 3 * size.width, size.height);
        const Image<Zel8u> mask = makeMask(random, size, Selection::Some);
        underAllThreadings([&] { compareAll(src, src3, mask, size, 2); });
    }
    ThreadSetting setting(40);
    const ZeliSize tall{3, 1 << 21};
    if (sizeof(T) == 1) {
        Image<T> src(random, tall.width, tall.height);
        double mean = -1, deviation = -1;
        EXPECT_EQ(zelStatusOk, kMembers<T>.plain(src.data(), src.step(), tall, &mean, &deviation));
        const Result wanted = define<T>(src, nullptr, tall, 1, 1, 17);
        EXPECT_EQ(wanted.mean, mean);
        EXPECT_EQ(wanted.deviation, deviation);
    }
}

TEST(Mean8u, CountsEveryPixelOfLargeImages)
{
    const ZeliSize size{4096, 2050}; // above 2^31 / 255 pixels
    std::vector<Zel8u> white(std::size_t(size.width) * size.height, 255);
    double mean = 0, deviation = -1;
    for (int threads : {1, 2}) {
        ThreadSetting setting(threads);
        zeliMean_8u_C1MR(white.data(), size.width, white.data(), size.width, size, &mean);
        EXPECT_EQ(255, mean);
        zeliMean_StdDev_8u_C1R(white.data(), size.width, size, &mean, &deviation);
        EXPECT_EQ(255, mean);
        EXPECT_EQ(0, deviation);
    }
}

TEST(Mean16u, WrapsTheSumOfAWideRow)
{
    std::vector<Zel16u> row(32800, 65535);
    std::vector<Zel8u> mask(row.size(), 7);
    const ZeliSize size{int(row.size()), 1};
    const double wrapped = (65535.0 * 32800 - 4294967296.0) / 32800;
    double mean = 0, deviation = 0;
    zeliMean_16u_C1MR(row.data(), 2 * size.width, mask.data(), size.width, size, &mean);
    EXPECT_EQ(wrapped, mean);
    zeliMean_StdDev_16u_C1R(row.data(), 2 * size.width, size, &mean, &deviation);
    EXPECT_EQ(wrapped, mean);
    zeliMean_StdDev_16u_C1R(row.data(), 2 * size.width, {32767, 1}, &mean, &deviation);
    EXPECT_EQ(65535, mean);
    EXPECT_EQ(0, deviation);
}

TEST(Mean32f, TakesNoNoticeOfMaskedOffNan)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    const float row[] = {1, nan, 3, infinity, 1e6f};
    const Zel8u mask[] = {1, 0, 255, 0, 0};
    double mean = -1, deviation = -1;
    EXPECT_EQ(zelStatusOk, zeliMean_StdDev_32f_C1MR(row, 20, mask, 5, {5, 1}, &mean, &deviation));
    EXPECT_EQ(2, mean);
    EXPECT_EQ(1, deviation);
    EXPECT_EQ(zelStatusOk, zeliMean_StdDev_32f_C1R(row, 20, {5, 1}, nullptr, &deviation));
    EXPECT_TRUE(std::isnan(deviation));
    EXPECT_EQ(zelStatusOk, zeliMean_StdDev_32f_C1R(row, 20, {1, 1}, &mean, nullptr));
    EXPECT_EQ(1, mean);
    EXPECT_EQ(zelStatusOk, zeliMean_StdDev_32f_C1R(row, 20, {5, 1}, nullptr, nullptr));
}

// The one-pass formula has nothing left of a deviation this small.
TEST(Mean32f, IsExactFarFromZero)
{
    std::vector<float> values(1000);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = 1.0e6f + (i % 2 ? 0.0625f : -0.0625f);
    double mean = 0, deviation = 0;
    zeliMean_StdDev_32f_C1R(values.data(), 4000, {1000, 1}, &mean, &deviation);
    EXPECT_EQ(1.0e6, mean);
    EXPECT_EQ(0.0625, deviation);
}

template <class T>
struct Arguments {
    const T* src;
    const Zel8u* mask;
    double* mean;
    int srcStep, maskStep, coi;
    ZeliSize size;
};

TYPED_TEST(Mean, ChecksInOrder)
{
    using T = TypeParam;
    using A = Arguments<T>;
    Random random(3);
    const int width = 12, row = 3 * width * int(sizeof(T));
    Image<T> src(random, 3 * width, 3);
    Image<Zel8u> mask(random, width, 3);
    double mean = -1;
    const Fault<A> odd{"srcStep odd", zelStatusStepNotAligned, [=](A& f) { f.srcStep = row + 1; }};
    const Fault<A> shortMask{"maskStep", zelStatusBadStep, [=](A& f) { f.maskStep = width - 1; }};
    std::vector<Fault<A>> faults = {
        {"null src", zelStatusNullPointer, [](A& f) { f.src = nullptr; }},
        {"null mask", zelStatusNullPointer, [](A& f) { f.mask = nullptr; }},
        {"null mean", zelStatusNullPointer, [](A& f) { f.mean = nullptr; }},
        {"width 0", zelStatusBadSize, [](A& f) { f.size.width = 0; }},
        {"height 0", zelStatusBadSize, [](A& f) { f.size.height = 0; }},
        {"srcStep", zelStatusBadStep, [=](A& f) { f.srcStep = row - 1; }},
    };
    if (std::is_same_v<T, Zel16u>)
        faults.insert(faults.end(), {odd, shortMask});
    else if (sizeof(T) == 4)
        faults.insert(faults.end(), {shortMask, odd});
    else
        faults.push_back(shortMask);
    faults.push_back({"coi 0", zelStatusBadChannelIndex, [](A& f) { f.coi = 0; }});
    faults.push_back({"coi 4", zelStatusBadChannelIndex, [](A& f) { f.coi = 4; }});
    const A good{src.data(), mask.data(), &mean, src.step(), mask.step(), 1, {width, 3}};
    expectCheckOrder(good, faults, [](const A& f) {
        return kMembers<T>.mean3(f.src, f.srcStep, f.mask, f.maskStep, f.size, f.coi, f.mean);
    });
    std::erase_if(faults, [](const auto& fault) { return fault.what == std::string("null mean"); });
    expectCheckOrder(good, faults, [](const A& f) {
        return kMembers<T>.masked3(f.src, f.srcStep, f.mask, f.maskStep, f.size, f.coi, f.mean, f.mean);
    });
    std::erase_if(faults, [](const auto& fault) { return std::string(fault.what).starts_with("null mask") ||
                                                         std::string(fault.what).starts_with("maskStep"); });
    expectCheckOrder(good, faults, [](const A& f) {
        return kMembers<T>.plain3(f.src, f.srcStep, f.size, f.coi, f.mean, f.mean);
    });
    EXPECT_EQ(-1, mean);
    EXPECT_EQ(zelStatusBadStep, kMembers<T>.plain(src.data(), width * int(sizeof(T)) - 1, {width, 3}, &mean, nullptr));
    EXPECT_EQ(zelStatusNullPointer, kMembers<T>.mean(src.data(), row, mask.data(), width, {width, 3}, nullptr));
}

} // namespace
