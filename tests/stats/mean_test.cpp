// Mean and deviation against their definition.
#include "support/statistics.h"

#include <cstdint>

using namespace zeltest;

namespace {

#define MEMBERS(token)                                                                                                 \
    std::make_tuple(zeliMean_##token##_C1MR, zeliMean_##token##_C3CMR, zeliMean_StdDev_##token##_C1R,                  \
                    zeliMean_StdDev_##token##_C3CR, zeliMean_StdDev_##token##_C1MR, zeliMean_StdDev_##token##_C3CMR)
template <class T>
constexpr auto kMembers = [] {
    if constexpr (std::is_same_v<T, Zel8u>) return MEMBERS(8u);
    else if constexpr (std::is_same_v<T, Zel8s>) return MEMBERS(8s);
    else if constexpr (std::is_same_v<T, Zel16u>) return MEMBERS(16u);
    else return MEMBERS(32f);
}();

struct Result {
    double mean = 0, deviation = 0;
};

template <class T>
Result define(const Image<T>& src, const Image<Zel8u>* mask, ZeliSize size, int channels, int coi, int bands)
{
    const auto selected = [&](int x, int y) { return !mask || mask->at(x, y) != 0; };
    const auto value = [&](int x, int y) -> double { return selected(x, y) ? src.at(x * channels + coi - 1, y) : 0; };
    struct Sums {
        double sum = 0, squares = 0;
        std::int64_t n = 0, exactSum = 0, exactSquares = 0;
    };
    const Sums sums = overBands(size.height, bands, [&](int first, int last) {
        Sums band;
        for (int y = first; y < last; ++y) {
            for (int x = 0; x < size.width; ++x) {
                band.n += selected(x, y);
                if constexpr (std::is_integral_v<T>) {
                    band.exactSum += std::int64_t(value(x, y));
                    band.exactSquares += std::int64_t(value(x, y) * value(x, y));
                }
            }
            band.sum += eightLanes(size.width, [&](int x) { return value(x, y); });
            band.squares += eightLanes(size.width, [&](int x) { return value(x, y) * value(x, y); });
        }
        return band;
    }, [](const Sums& a, const Sums& b) {
        return Sums{a.sum + b.sum, a.squares + b.squares, a.n + b.n, a.exactSum + b.exactSum,
                    a.exactSquares + b.exactSquares};
    });
    if (sums.n == 0) return {};
    const double n = double(sums.n), sum = std::is_integral_v<T> ? double(sums.exactSum) : sums.sum;
    const double squares = std::is_integral_v<T> ? double(sums.exactSquares) : sums.squares;
    Result result{sum / n, std::sqrt(std::abs(squares / n - sum / n * (sum / n)))};
    if (std::is_same_v<T, Zel32f> && 0.05 * result.mean * result.mean > result.deviation * result.deviation) {
        double spread = 0;
        for (int y = 0; y < size.height; ++y)
            spread += eightLanes(size.width, [&](int x) {
                const double difference = selected(x, y) ? value(x, y) - result.mean : 0;
                return difference * difference;
            });
        result.deviation = std::sqrt(spread / n);
    }
    return result;
}

template <class T>
class Mean : public testing::Test {};
using Types = testing::Types<Zel8u, Zel8s, Zel16u, Zel32f>;
TYPED_TEST_SUITE(Mean, Types);

template <class T>
void compareAll(const Image<T>& src, const Image<T>& src3, const Image<Zel8u>& mask, ZeliSize size, int coi)
{
    const auto compareMeans = [](const char* what, const Result& wanted, auto member, const auto&... given) {
        double mean = -1;
        EXPECT_EQ(zelStatusOk, call(member, given..., &mean)) << what;
        expectSame(wanted.mean, mean, what);
    };
    const auto compare = [](const char* what, const Result& wanted, auto member, const auto&... given) {
        Result got{-1, -1};
        EXPECT_EQ(zelStatusOk, call(member, given..., &got.mean, &got.deviation)) << what;
        expectSame(wanted.mean, got.mean, what);
        expectSame(wanted.deviation, got.deviation, what);
    };
    const auto& [mean, mean3, plain, plain3, masked, masked3] = kMembers<T>;
    const int from16 = bandsPerThread(size, 16), from17 = bandsPerThread(size, 17);
    const Result wanted = define(src, &mask, size, 1, 1, from17), wanted3 = define(src3, &mask, size, 3, coi, from17);
    compareMeans("mean C1MR", wanted, mean, src, mask, size);
    compareMeans("mean C3CMR", wanted3, mean3, src3, mask, size, coi);
    compare("C1MR", wanted, masked, src, mask, size);
    compare("C3CMR", wanted3, masked3, src3, mask, size, coi);
    compare("C1R", define<T>(src, nullptr, size, 1, 1, from16), plain, src, size);
    compare("C3CR", define<T>(src3, nullptr, size, 3, coi, 1), plain3, src3, size, coi);
}

TYPED_TEST(Mean, EqualsDefinition)
{
    using T = TypeParam;
    Random random(1);
    int coi = 1;
    for (Texture texture : {Texture::Noise, Texture::Smooth, Texture::Extremes})
        for (ZeliSize size : withSeams({{1, 1}, {3, 2}, {8, 3}, {31, 4}, {2049, 2}, {4133, 3}}))
            for (int percent : {0, kOnePixel, 50, 100}) {
                SCOPED_TRACE("size " + std::to_string(size.width) + ", percent " + std::to_string(percent));
                Image<T> src(random, size, texture), src3(random, 3 * size.width, size.height, texture);
                compareAll(src, src3, makeMask(random, size, percent), size, coi);
                coi = coi % 3 + 1;
            }
    for (ZeliSize size : {ZeliSize{512, 511}, {512, 512}, {1033, 1017}}) {
        Image<T> src(random, size), src3(random, 3 * size.width, size.height);
        const Image<Zel8u> mask = makeMask(random, size, 50);
        underAllThreadings([&] { compareAll(src, src3, mask, size, 2); });
    }
}

TEST(Mean8s, FoldsMoreBandsThanFitTheStack)
{
    Random random(2);
    ThreadSetting setting(40);
    const ZeliSize tall{3, 1 << 21};
    Image<Zel8s> src(random, tall);
    Result got;
    EXPECT_EQ(zelStatusOk, call(zeliMean_StdDev_8s_C1R, src, tall, &got.mean, &got.deviation));
    const Result wanted = define<Zel8s>(src, nullptr, tall, 1, 1, 1);
    EXPECT_EQ(wanted.mean, got.mean);
    EXPECT_EQ(wanted.deviation, got.deviation);
}

TEST(Mean8u, CountsEveryPixelOfLargeImages)
{
    const ZeliSize size{4096, 2060}; // above 2^31 / 255 pixels
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

// Where the deviation is a little below and above the bound to which a second pass computes it.
TEST(Mean32f, EqualsDefinitionAroundTheBoundOfTheSecondPass)
{
    Random random(4);
    for (float relative : {0.222f, 0.225f, 0.235f}) {
        const ZeliSize size{40, 30};
        Image<Zel32f> src(random, size), src3(random, 120, 30);
        for (Image<Zel32f>* image : {&src, &src3})
            image->fill([&](int, int) { return 100 + 100 * relative * (random.between(0, 1) * 2 - 1); });
        compareAll(src, src3, makeMask(random, size, 100), size, 3);
    }
}

// All about a 16u source is checked before the mask.
TYPED_TEST(Mean, ChecksInOrder)
{
    const auto& [mean, mean3, plain, plain3, masked, masked3] = kMembers<TypeParam>;
    Random random(3);
    const ZeliSize size{12, 3};
    Image<TypeParam> src(random, size), src3(random, 36, 3);
    Image<Zel8u> mask(random, size);
    double value = -1;
    const auto expectChecks = [](auto checks, bool hasMask, int coi = 0) {
        constexpr bool sourceFirst = std::is_same_v<TypeParam, Zel16u>;
        checks.sizes().shortSteps({0});
        if (sourceFirst) checks.oddSteps({0});
        if (hasMask) checks.shortSteps({2});
        if (!sourceFirst) checks.oddSteps({0});
        if (coi) checks.values(coi, zelStatusBadChannelIndex, {0, 4});
        checks.expect();
    };
    expectChecks(Checks(mean, src, mask, size, &value).nulls(), true);
    expectChecks(Checks(mean3, src3, mask, size, 1, &value).nulls(), true, -2);
    expectChecks(Checks(plain, src, size, &value, &value).nulls({0}), false);
    expectChecks(Checks(plain3, src3, size, 1, &value, &value).nulls({0}), false, -3);
    expectChecks(Checks(masked, src, mask, size, &value, &value).nulls({0, 2}), true);
    expectChecks(Checks(masked3, src3, mask, size, 1, &value, &value).nulls({0, 2}), true, -3);
}

} // namespace
