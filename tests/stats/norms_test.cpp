// The norms against their definition.
#include "support/statistics.h"

#include <bit>
#include <cstdint>

using namespace zeltest;

namespace {

enum Family { Norm, NormDiff, NormRel };
enum Measure { Inf, L1, L2 };

// What is computed; a member is one with its function.
struct Kind {
    Family family;
    Measure measure;
    int channels;

    std::string name() const
    {
        return (family == Norm ? "Norm_" : family == NormDiff ? "NormDiff_" : "NormRel_") +
               std::string(measure == Inf ? "Inf" : measure == L1 ? "L1" : "L2") + (channels == 1 ? "_C1MR" : "_C3CMR");
    }
};
template <Family family, Measure measure, int channels, auto function>
struct Member {
    static constexpr Kind kKind = {family, measure, channels};
    static constexpr auto kFunction = function;
};

// Calls use(member) for the members of a type.
template <class T, class Use>
void forAllMembers(const Use& use)
{
#define LAYOUTS(family, measure, token)                                                                                \
    use(Member<family, measure, 1, zeli##family##_##measure##_##token##_C1MR>());                                      \
    use(Member<family, measure, 3, zeli##family##_##measure##_##token##_C3CMR>());
#define MEASURES(family, token) LAYOUTS(family, Inf, token) LAYOUTS(family, L1, token) LAYOUTS(family, L2, token)
#define MEMBERS(token) MEASURES(Norm, token) MEASURES(NormDiff, token) MEASURES(NormRel, token)
    if constexpr (std::is_same_v<T, Zel8u>) { MEMBERS(8u) }
    if constexpr (std::is_same_v<T, Zel8s>) { MEMBERS(8s) }
    if constexpr (std::is_same_v<T, Zel16u>) { MEMBERS(16u) }
    if constexpr (std::is_same_v<T, Zel32f>) { MEMBERS(32f) }
}

// What all members are given: two images of one channel, two of three.
template <class T>
struct Images {
    Images(Random& random, ZeliSize size_, Texture texture = Texture::Noise)
        : size(size_), one{image(random, 1, texture), image(random, 1, texture)},
          three{image(random, 3, texture), image(random, 3, texture)}, mask(random, size)
    {
    }
    Image<T> image(Random& random, int channels, Texture texture) const
    {
        return Image<T>(random, channels * size.width, size.height, texture);
    }
    // use(arguments...) with those of a member, but for its result.
    template <class M, class Use>
    void with(M, int& coi, const Use& use)
    {
        constexpr bool single = M::kKind.family == Norm;
        if constexpr (M::kKind.channels == 1 && single) use(one[0], mask, size);
        else if constexpr (M::kKind.channels == 1) use(one[0], one[1], mask, size);
        else if constexpr (single) use(three[0], mask, size, coi);
        else use(three[0], three[1], mask, size, coi);
    }

    ZeliSize size;
    Image<T> one[2], three[2];
    Image<Zel8u> mask;
};

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
double normOfRows(Measure measure, int width, int first, int last, const X& x)
{
    double sum = 0;
    float largest = 0;
    for (int y = first; y < last; ++y) {
        std::vector<float> squares;
        std::uint32_t rowTotal = 0;
        for (int column = 0; column < width; ++column) {
            const auto value = x(column, y);
            const float size = std::fabs(float(value)), square = float(value) * float(value);
            largest = largest > size ? largest : size;
            squares.push_back(square);
            if constexpr (std::is_integral_v<T>)
                rowTotal += std::uint32_t(std::abs(value));
            else if (measure == L2)
                sum += double(square);
        }
        if constexpr (std::is_integral_v<T>)
            sum += measure == L2 ? double(fourLanes(squares)) : double(std::int32_t(rowTotal));
        else if (measure == L1)
            sum += eightLanes(width, [&](int column) { return std::fabs(x(column, y)); });
    }
    return measure == Inf ? largest : sum;
}

// With several threads, bands: in 32f it matters which members have them, and from how many pixels on.
int bandsOf32f(Kind kind, ZeliSize size)
{
    if (kind.family == NormDiff || (kind.family == NormRel && kind.measure != Inf)) return 1;
    const bool early = kind.family == NormRel || (kind.measure == Inf && kind.channels == 3) ||
                       (kind.measure == L2 && kind.channels == 3 && zelGetNumCoresOnDie() > 1);
    return bandsPerThread(size, early ? 15 : 17);
}

template <class T>
double define(Kind kind, const Images<T>& images, int coi)
{
    using Wide = std::conditional_t<std::is_integral_v<T>, int, float>;
    const auto& src = kind.channels == 1 ? images.one : images.three;
    const auto pixel = [&](int i, int x, int y) { return Wide(src[i].at(x * kind.channels + coi - 1, y)); };
    const auto masked = [&](int x, int y, Wide value) {
        const bool selected = images.mask.at(x, y) != 0;
        if constexpr (std::is_integral_v<T>) return selected ? value : 0;
        else return value * (selected ? 1.0f : 0.0f);
    };
    const int bands = std::is_integral_v<T> ? 1 : bandsOf32f(kind, images.size);
    const auto reduce = [&](const auto& x) {
        return overBands(images.size.height, bands, [&](int first, int last) {
            return normOfRows<T>(kind.measure, images.size.width, first, last, x);
        }, [=](double all, double next) { return kind.measure != Inf ? all + next : all > next ? all : next; });
    };
    double result = reduce([&](int x, int y) {
        return masked(x, y, kind.family == Norm ? pixel(0, x, y) : pixel(0, x, y) - pixel(1, x, y));
    });
    if (kind.family == NormRel) {
        const double second = reduce([&](int x, int y) { return masked(x, y, pixel(1, x, y)); });
        const double infinity = std::numeric_limits<double>::infinity();
        if (second == 0) return result == 0 ? std::nan("") : result > 0 ? infinity : -infinity;
        result /= second;
    }
    return kind.measure == L2 ? std::sqrt(result) : result;
}

template <class T>
void compareAll(Images<T>& images, int turn = 0)
{
    int coi = turn; // another channel for each member, and for a member on each turn
    forAllMembers<T>([&](auto member) {
        using M = decltype(member);
        coi = coi % 3 + 1;
        images.with(member, coi, [&](auto&... given) {
            double got = -1;
            const std::string name = M::kKind.name();
            const ZelStatus status = call(M::kFunction, given..., &got);
            EXPECT_TRUE(status == zelStatusOk || (M::kKind.family == NormRel && status == zelStatusZeroDivisor)) << name;
            expectSame(define(M::kKind, images, M::kKind.channels == 1 ? 1 : coi), got, name);
        });
    });
}

template <class T>
class Norms : public testing::Test {};
using Types = testing::Types<Zel8u, Zel8s, Zel16u, Zel32f>;
TYPED_TEST_SUITE(Norms, Types);

TYPED_TEST(Norms, EqualDefinition)
{
    using T = TypeParam;
    Random random(1);
    int turn = 0;
    for (Texture texture : {Texture::Noise, Texture::Smooth, Texture::Extremes})
        for (ZeliSize size : withSeams({{1, 1}, {3, 2}, {6, 3}, {31, 9}, {2051, 5}, {4116, 2}}))
            for (int percent : {0, kOnePixel, 50, 100}) {
                SCOPED_TRACE(testing::Message() << size.width << " columns, " << percent << " percent");
                Images<T> images(random, size, texture);
                images.mask = makeMask(random, size, percent);
                compareAll(images, ++turn);
            }
}

// In 32f on numbers whose sums depend on their order, and with a NaN at the end of a row: what comes behind it counts, and in
// the last row there is nothing.
TYPED_TEST(Norms, EqualDefinitionOnManyThreads)
{
    using T = TypeParam;
    Random random(2);
    for (ZeliSize size : {ZeliSize{512, 512}, {1033, 389}})
        for (int nanRow : {-1, size.height / 3, size.height - 1}) {
            Images<T> images(random, size);
            images.mask = makeMask(random, size, 66);
            if constexpr (std::is_same_v<T, Zel32f>)
                for (auto* image : {&images.one[0], &images.one[1], &images.three[0], &images.three[1]}) {
                    image->fill([&](int x, int y) { return std::ldexp(image->at(x, y), random.between(-20, 20)); });
                    if (nanRow >= 0) image->set(image->width() - 1, nanRow, std::numeric_limits<T>::quiet_NaN());
                }
            else if (nanRow >= 0) continue;
            underAllThreadings([&] { compareAll(images); });
        }
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

// Of a norm of one image all about the image is checked before the mask.
TYPED_TEST(Norms, CheckInOrder)
{
    Random random(3);
    Images<TypeParam> images(random, {12, 3});
    double value = -1;
    int coi = 1;
    forAllMembers<TypeParam>([&](auto member) {
        using M = decltype(member);
        SCOPED_TRACE(M::kKind.name());
        images.with(member, coi, [&](auto&... given) {
            Checks checks(M::kFunction, given..., &value);
            if (M::kKind.family == Norm) checks.nulls().sizes().shortSteps({0}).oddSteps({0}).shortSteps({2});
            else checks.usual();
            if (M::kKind.channels == 3) checks.values(-2, zelStatusBadChannelIndex, {0, 4});
            checks.expect();
        });
    });
}

} // namespace
