// The norms against their definition.
#include "support/images.h"

#include <bit>
#include <cmath>
#include <cstdint>

using namespace zeltest;

namespace {

enum Norm { Inf, L1, L2 };
enum Family { Of, Diff, Rel };
const std::string kNormNames[] = {"Inf", "L1", "L2"}, kFamilyNames[] = {"Norm", "NormDiff", "NormRel"};

template <class T>
struct Members {
    struct {
        ZelStatus (*one)(const T*, int, const Zel8u*, int, ZeliSize, Zel64f*);
        ZelStatus (*ofThree)(const T*, int, const Zel8u*, int, ZeliSize, int, Zel64f*);
    } norm[3];
    struct {
        ZelStatus (*one)(const T*, int, const T*, int, const Zel8u*, int, ZeliSize, Zel64f*);
        ZelStatus (*ofThree)(const T*, int, const T*, int, const Zel8u*, int, ZeliSize, int, Zel64f*);
    } diff[3], rel[3];
};

template <class T>
const Members<T> kMembers{};
#define LAYOUTS(family, norm, token) {zeli##family##_##norm##_##token##_C1MR, zeli##family##_##norm##_##token##_C3CMR}
#define NORMS(family, token) {LAYOUTS(family, Inf, token), LAYOUTS(family, L1, token), LAYOUTS(family, L2, token)}
#define MEMBERS(T, token)                                                                                              \
    template <>                                                                                                        \
    const Members<T> kMembers<T>{NORMS(Norm, token), NORMS(NormDiff, token), NORMS(NormRel, token)};
MEMBERS(Zel8u, 8u)
MEMBERS(Zel8s, 8s)
MEMBERS(Zel16u, 16u)
MEMBERS(Zel32f, 32f)

// A call of any member.
template <class T>
struct Call {
    Family family;
    Norm norm;
    int channels, coi;
    const T *src1, *src2;
    const Zel8u* mask;
    int src1Step, src2Step, maskStep;
    ZeliSize size;

    ZelStatus operator()(double* value) const
    {
        const Members<T>& all = kMembers<T>;
        if (family == Of)
            return channels == 1 ? all.norm[norm].one(src1, src1Step, mask, maskStep, size, value)
                                 : all.norm[norm].ofThree(src1, src1Step, mask, maskStep, size, coi, value);
        const auto& member = family == Diff ? all.diff[norm] : all.rel[norm];
        return channels == 1 ? member.one(src1, src1Step, src2, src2Step, mask, maskStep, size, value)
                             : member.ofThree(src1, src1Step, src2, src2Step, mask, maskStep, size, coi, value);
    }
    std::string name() const
    {
        return kFamilyNames[family] + "_" + kNormNames[norm] + (channels == 1 ? "_C1MR" : "_C3CMR");
    }
};

double eightLanes(const std::vector<double>& row)
{
    double lane[8] = {};
    for (std::size_t x = 0; x < row.size(); ++x) lane[x % 8] += row[x];
    return ((lane[0] + lane[4]) + (lane[2] + lane[6])) + ((lane[1] + lane[5]) + (lane[3] + lane[7]));
}

float fourLanes(const std::vector<float>& row)
{
    float lane[4] = {};
    const std::size_t inLanes = row.size() & ~std::size_t(3);
    for (std::size_t x = 0; x < inLanes; ++x) lane[x % 4] += row[x];
    float sum = (lane[0] + lane[2]) + (lane[1] + lane[3]);
    for (std::size_t x = inLanes; x < row.size(); ++x) sum += row[x];
    return sum;
}

// The norm of rows first to last, before the root. x(column, row, selected) is a masked element.
template <class T, class X>
double normOfRows(Norm norm, int width, int first, int last, const X& x)
{
    double sum = 0;
    float largest = 0;
    std::vector<double> sizes;
    std::vector<float> squares;
    for (int y = first; y < last; ++y) {
        sizes.clear();
        squares.clear();
        std::uint32_t rowTotal = 0;
        for (int column = 0; column < width; ++column) {
            const auto value = x(column, y);
            const float size = std::fabs(float(value)), square = float(value) * float(value);
            largest = largest > size ? largest : size;
            sizes.push_back(size);
            squares.push_back(square);
            if constexpr (std::is_integral_v<T>)
                rowTotal += std::uint32_t(std::abs(value));
            else if (norm == L2)
                sum += double(square);
        }
        if constexpr (std::is_integral_v<T>)
            sum += norm == L2 ? double(fourLanes(squares)) : double(std::int32_t(rowTotal));
        else if (norm == L1)
            sum += eightLanes(sizes);
    }
    return norm == Inf ? largest : sum;
}

// With several threads, bands: in 32f it matters which members have them, and from how many pixels on.
int bandsOf32f(Family family, Norm norm, int channels, ZeliSize size)
{
    Zel32s threads = 1;
    zelGetNumThreads(&threads);
    if (omp_in_parallel() || family == Diff || (family == Rel && norm != Inf)) return 1;
    const bool early = family == Rel || (norm == Inf && channels == 3) ||
                       (norm == L2 && channels == 3 && zelGetNumCoresOnDie() > 1);
    return size.width * size.height >= threads << (early ? 15 : 17) ? threads : 1;
}

template <class T>
double define(const Call<T>& call, const Image<T>& src1, const Image<T>& src2, const Image<Zel8u>& mask)
{
    const auto masked = [&](int x, int y, auto value) {
        if constexpr (std::is_integral_v<T>)
            return mask.at(x, y) != 0 ? value : 0;
        else
            return value * (mask.at(x, y) != 0 ? 1.0f : 0.0f);
    };
    const auto channel = [&](const Image<T>& image, int x, int y) {
        using Wide = std::conditional_t<std::is_integral_v<T>, int, float>;
        return Wide(image.at(x * call.channels + call.coi - 1, y));
    };
    const int bands = std::is_integral_v<T> ? 1 : bandsOf32f(call.family, call.norm, call.channels, call.size);
    const auto reduce = [&](const auto& x) {
        double result = 0;
        for (int band = 0, rows = call.size.height / bands; band < bands; ++band) {
            const double next = normOfRows<T>(call.norm, call.size.width, band * rows,
                                              band == bands - 1 ? call.size.height : (band + 1) * rows, x);
            result = band == 0 ? next : call.norm != Inf ? result + next : result > next ? result : next;
        }
        return result;
    };
    const double first = reduce([&](int x, int y) {
        return masked(x, y, call.family == Of ? channel(src1, x, y) : channel(src1, x, y) - channel(src2, x, y));
    });
    double result = first;
    if (call.family == Rel) {
        const double second = reduce([&](int x, int y) { return masked(x, y, channel(src2, x, y)); });
        const double infinity = std::numeric_limits<double>::infinity();
        if (second == 0) return first == 0 ? std::nan("") : first > 0 ? infinity : -infinity;
        result = first / second;
    }
    return call.norm == L2 ? std::sqrt(result) : result;
}

template <class T>
void compareAll(Image<T> (&one)[2], Image<T> (&three)[2], Image<Zel8u>& mask, ZeliSize size)
{
    int coi = 1;
    for (Family family : {Of, Diff, Rel})
        for (Norm norm : {Inf, L1, L2})
            for (int channels : {1, 3}) {
                coi = coi % 3 + 1;
                auto& src = channels == 1 ? one : three;
                const Call<T> call{family, norm, channels, channels == 1 ? 1 : coi, src[0].data(), src[1].data(), mask.data(),
                                   src[0].step(), src[1].step(), mask.step(), size};
                double got = -1;
                const ZelStatus status = call(&got);
                EXPECT_TRUE(status == zelStatusOk || (family == Rel && status == zelStatusZeroDivisor)) << call.name();
                const double wanted = define(call, src[0], src[1], mask);
                if (std::isnan(wanted))
                    EXPECT_TRUE(std::isnan(got)) << call.name() << ", there is " << got;
                else
                    EXPECT_EQ(wanted, got) << call.name();
            }
}

template <class T>
class Norms : public testing::Test {};
using Types = testing::Types<Zel8u, Zel8s, Zel16u, Zel32f>;
TYPED_TEST_SUITE(Norms, Types);

TYPED_TEST(Norms, EqualDefinition)
{
    using T = TypeParam;
    Random random(1);
    for (Texture texture : {Texture::Noise, Texture::Smooth, Texture::Extremes})
        for (ZeliSize size : {ZeliSize{1, 1}, {3, 2}, {6, 3}, {31, 9}, {2051, 5}, {4116, 2}})
            for (int density : {0, 1, 50, 100}) { // in percent; 1: a single pixel
                SCOPED_TRACE(testing::Message() << size.width << " columns, density " << density);
                const auto image = [&](int channels) { return Image<T>(random, channels * size.width, size.height, texture); };
                Image<T> one[] = {image(1), image(1)}, three[] = {image(3), image(3)};
                Image<Zel8u> mask(random, size.width, size.height);
                for (int y = 0; y < size.height; ++y)
                    for (int x = 0; x < size.width; ++x)
                        mask.set(x, y, density == 1                          ? Zel8u(x == size.width - 1 && y == 0)
                                       : random.between(0, 99) < density ? Zel8u(random.between(1, 255))
                                                                         : Zel8u(0));
                compareAll(one, three, mask, size);
            }
    for (ZeliSize size : {ZeliSize{512, 512}, {1033, 389}}) {
        const auto image = [&](int channels) { return Image<T>(random, channels * size.width, size.height); };
        Image<T> one[] = {image(1), image(1)}, three[] = {image(3), image(3)};
        Image<Zel8u> mask(random, size.width, size.height, Texture::Extremes);
        if constexpr (std::is_same_v<T, Zel32f>) // NaN in the upper half: what comes behind counts
            for (auto* images : {&one, &three})
                for (auto& each : *images) each.set(size.width / 2, size.height / 3, std::numeric_limits<T>::quiet_NaN());
        underAllThreadings([&] { compareAll(one, three, mask, size); });
    }
}

TEST(Norms8s, CountTheLowestAs128)
{
    const Zel8s lowest = -128, highest = 127;
    const Zel8u mask = 2;
    double value = 0;
    zeliNorm_Inf_8s_C1MR(&lowest, 1, &mask, 1, {1, 1}, &value);
    EXPECT_EQ(128, value);
    zeliNormDiff_Inf_8s_C1MR(&lowest, 1, &highest, 1, &mask, 1, {1, 1}, &value);
    EXPECT_EQ(255, value);
    zeliNormDiff_L2_8s_C1MR(&lowest, 1, &highest, 1, &mask, 1, {1, 1}, &value);
    EXPECT_EQ(255, value);
}

TEST(Norms16u, WrapTheSumOfAWideRow)
{
    std::vector<Zel16u> high(2 * 70000, 65535), low(2 * 70000, 0);
    const std::vector<Zel8u> mask(2 * 70000, 1);
    double value = 0;
    // A row is above 2^31 in one image and above 2^32 in the other.
    for (int width : {40000, 70000}) {
        const ZeliSize size{width, 2};
        zeliNormDiff_L1_16u_C1MR(low.data(), 140000, high.data(), 140000, mask.data(), 70000, size, &value);
        EXPECT_EQ(2 * (65535.0 * width - 4294967296.0), value);
    }
}

// Numerator over a denominator of zero; a NaN under the mask comes through.
TEST(NormRel, TellsWhatIsOverZero)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    const float one[] = {3, nan}, zero[] = {0, 0}, nans[] = {nan, 0};
    const Zel8u bytes[] = {3, 9}, none[] = {0, 0}, first[] = {1, 0}, both[] = {1, 1};
    double value = 0;
    const auto bits = [&] { return std::bit_cast<std::uint64_t>(value); };
    EXPECT_EQ(zelStatusZeroDivisor, zeliNormRel_L1_8u_C1MR(bytes, 2, none, 2, both, 2, {2, 1}, &value));
    EXPECT_EQ(infinity, value);
    EXPECT_EQ(zelStatusZeroDivisor, zeliNormRel_L1_8u_C1MR(none, 2, none, 2, both, 2, {2, 1}, &value));
    EXPECT_EQ(0xfff8000000000000u, bits());
    EXPECT_EQ(zelStatusZeroDivisor, zeliNormRel_L2_8u_C1MR(bytes, 2, bytes, 2, none, 2, {2, 1}, &value));
    EXPECT_EQ(0xfff8000000000000u, bits());
    EXPECT_EQ(zelStatusZeroDivisor, zeliNormRel_L1_32f_C1MR(one, 8, zero, 8, first, 2, {2, 1}, &value));
    EXPECT_EQ(-infinity, value) << "the numerator is NaN";
    EXPECT_EQ(zelStatusZeroDivisor, zeliNormRel_L2_32f_C1MR(one, 8, zero, 8, first, 2, {1, 1}, &value));
    EXPECT_EQ(infinity, value);
    EXPECT_EQ(zelStatusOk, zeliNormRel_Inf_32f_C1MR(zero, 8, nans, 8, both, 2, {1, 1}, &value));
    EXPECT_TRUE(std::isnan(value));
    EXPECT_EQ(zelStatusOk, zeliNormRel_Inf_32f_C1MR(one, 8, nans, 8, none, 2, {1, 1}, &value));
    EXPECT_TRUE(std::isnan(value)) << "a masked-off NaN in the denominator";
}

TYPED_TEST(Norms, CheckInOrder)
{
    using T = TypeParam;
    using A = Call<T>;
    Random random(3);
    const int width = 12;
    Image<T> src1(random, 3 * width, 3), src2(random, 3 * width, 3);
    Image<Zel8u> mask(random, width, 3);
    double value = -1;
    for (Family family : {Of, Diff, Rel})
        for (Norm norm : {Inf, L1, L2})
            for (int channels : {1, 3}) {
                const int row = channels * width * int(sizeof(T));
                std::vector<Fault<A>> faults = {
                    {"null src1", zelStatusNullPointer, [](A& f) { f.src1 = nullptr; }},
                    {"null mask", zelStatusNullPointer, [](A& f) { f.mask = nullptr; }},
                    {"width 0", zelStatusBadSize, [](A& f) { f.size.width = 0; }},
                    {"height 0", zelStatusBadSize, [](A& f) { f.size.height = 0; }},
                    {"src1Step", zelStatusBadStep, [=](A& f) { f.src1Step = row - 1; }},
                };
                const Fault<A> odd1{"src1Step odd", zelStatusStepNotAligned, [=](A& f) { f.src1Step = row + 1; }};
                const Fault<A> shortMask{"maskStep", zelStatusBadStep, [=](A& f) { f.maskStep = width - 1; }};
                if (family == Of && sizeof(T) > 1) faults.push_back(odd1);
                if (family != Of) {
                    faults.insert(faults.begin(), {"null src2", zelStatusNullPointer, [](A& f) { f.src2 = nullptr; }});
                    faults.push_back({"src2Step", zelStatusBadStep, [=](A& f) { f.src2Step = row - 1; }});
                }
                faults.push_back(shortMask);
                if (family != Of && sizeof(T) > 1) {
                    faults.push_back(odd1);
                    faults.push_back({"src2Step odd", zelStatusStepNotAligned, [=](A& f) { f.src2Step = row + 1; }});
                }
                if (channels == 3) {
                    faults.push_back({"coi 0", zelStatusBadChannelIndex, [](A& f) { f.coi = 0; }});
                    faults.push_back({"coi 4", zelStatusBadChannelIndex, [](A& f) { f.coi = 4; }});
                }
                const A good{family, norm, channels, 1, src1.data(), src2.data(), mask.data(), src1.step(), src2.step(),
                             mask.step(), {width, 3}};
                SCOPED_TRACE(good.name());
                expectCheckOrder(good, faults, [&](const A& f) { return f(&value); });
                EXPECT_EQ(zelStatusNullPointer, good(nullptr));
            }
    EXPECT_EQ(-1, value);
}

} // namespace
