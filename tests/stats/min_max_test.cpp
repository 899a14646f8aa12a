// Minimum and maximum with position against their definition.
#include "support/statistics.h"

using namespace zeltest;

namespace {

#define MEMBERS(token)                                                                                                \
    std::make_tuple(zeliMinMaxIndx_##token##_C1R, zeliMinMaxIndx_##token##_C1MR, zeliMinMaxIndx_##token##_C3CR,       \
                    zeliMinMaxIndx_##token##_C3CMR)
template <class T>
constexpr auto kMembers = [] {
    if constexpr (std::is_same_v<T, Zel8u>) return MEMBERS(8u);
    else if constexpr (std::is_same_v<T, Zel8s>) return MEMBERS(8s);
    else if constexpr (std::is_same_v<T, Zel16u>) return MEMBERS(16u);
    else return MEMBERS(32f);
}();

struct Result {
    Zel32f min = -7, max = -7;
    ZeliPoint minAt = {-7, -7}, maxAt = {-7, -7};

    std::vector<double> numbers() const // with the signs of zeros
    {
        return {min, max, std::copysign(1.0, min), std::copysign(1.0, max),
                double(minAt.x), double(minAt.y), double(maxAt.x), double(maxAt.y)};
    }
};

void expectEqual(const Result& wanted, const Result& got, const char* what)
{
    EXPECT_EQ(wanted.numbers(), got.numbers()) << what << ": minimum, maximum, signs, x and y of both";
}

// The extremes of rows [first, last), in scan order; at column 0 of the first row 0 when no pixel is masked, and the start
// values of a plain scan when no pixel passes them.
template <class T>
Result ofRows(const Image<T>& src, const Image<Zel8u>* mask, int channels, int coi, int first, int last)
{
    bool found = !mask;
    Result r{0, 0, {0, first}, {0, first}};
    if (!mask) r.min = float(std::numeric_limits<T>::max()), r.max = float(std::numeric_limits<T>::lowest());
    for (int y = first; y < last; ++y)
        for (int x = 0; x * channels < src.width(); ++x) {
            const float value = float(src.at(x * channels + coi - 1, y));
            if ((mask && mask->at(x, y) == 0) || std::isnan(value)) continue;
            if (!found || value < r.min) r.min = value, r.minAt = {x, y};
            if (!found || value > r.max) r.max = value, r.maxAt = {x, y};
            found = true;
        }
    return r;
}

// Masked calls on several threads take the bands' extremes together, those of empty bands too.
template <class T>
Result define(const Image<T>& src, const Image<Zel8u>* mask, int channels, int coi, int bands)
{
    Result all = overBands(src.height(), mask ? bands : 1, [&](int first, int last) {
        return ofRows(src, mask, channels, coi, first, last);
    }, [](Result result, const Result& next) {
        if (next.min < result.min) result.min = next.min, result.minAt = next.minAt;
        if (next.max > result.max) result.max = next.max, result.maxAt = next.maxAt;
        return result;
    });
    // The row may have the value of a band without pixels, or of the start, elsewhere.
    const auto locate = [&](ZeliPoint& at, float& value) {
        const auto pixel = [&](int x) { return float(src.at(x * channels + coi - 1, at.y)); };
        int x = 0;
        while (x * channels < src.width() && ((mask && mask->at(x, at.y) == 0) || pixel(x) != value)) ++x;
        at.x = x * channels < src.width() ? x : 0;
        if (x == at.x) value = pixel(x);
    };
    locate(all.minAt, all.min);
    locate(all.maxAt, all.max);
    return all;
}

template <class T>
void compareAll(ZeliSize size, const Image<T>& one, const Image<T>& three, const Image<Zel8u>& mask, int bands = 1)
{
    const auto compare = [](const char* what, const Result& wanted, auto member, const auto&... given) {
        Result r;
        EXPECT_EQ(zelStatusOk, call(member, given..., &r.min, &r.max, &r.minAt, &r.maxAt)) << what;
        expectEqual(wanted, r, what);
    };
    const auto& [c1, c1Masked, c3, c3Masked] = kMembers<T>;
    compare("C1R", define<T>(one, nullptr, 1, 1, bands), c1, one, size);
    compare("C1MR", define<T>(one, &mask, 1, 1, bands), c1Masked, one, mask, size);
    for (int coi = 1; coi <= 3; ++coi) {
        compare("C3CR", define<T>(three, nullptr, 3, coi, bands), c3, three, size, coi);
        compare("C3CMR", define<T>(three, &mask, 3, coi, bands), c3Masked, three, mask, size, coi);
    }
}

template <class T>
class MinMax : public testing::Test {};
using Types = testing::Types<Zel8u, Zel8s, Zel16u, Zel32f>;
TYPED_TEST_SUITE(MinMax, Types);

TYPED_TEST(MinMax, EqualsDefinition)
{
    using T = TypeParam;
    using Limits = std::numeric_limits<T>;
    Random random(1);
    for (ZeliSize size : withSeams({{1, 1}, {1, 7}, {3, 2}, {7, 7}, {67, 9}, {700, 5}}))
        for (int percent : {0, kOnePixel, 66, 100}) {
            const Image<Zel8u> mask = makeMask(random, size, percent);
            const auto compareOn = [&](Texture texture) {
                compareAll<T>(size, {random, size, texture}, {random, 3 * size.width, size.height, texture}, mask);
            };
            compareOn(Texture::Noise);
            compareOn(Texture::Extremes);
            Image<T> one(random, size), three(random, 3 * size.width, size.height);
            for (const auto& ends : {std::pair{T(50), T(52)}, {Limits::max(), Limits::max()},
                                     {Limits::lowest(), Limits::lowest()}}) { // many ties
                for (Image<T>* image : {&one, &three})
                    image->fill([&](int, int) { return random.between(0, 2) ? ends.first : ends.second; });
                compareAll<T>(size, one, three, mask);
            }
        }
}

TYPED_TEST(MinMax, ThreadsFoldTheirBands)
{
    using T = TypeParam;
    for (ZeliSize size : {ZeliSize{128, 128}, {129, 127}, {127, 129}, {8192, 2}})
        for (bool positive : {false, true}) {
            Random random(2);
            Image<T> one(random, size), three(random, 3 * size.width, size.height);
            Image<Zel8u> mask = makeMask(random, size, 66);
            if (positive) { // and a hole in the mask that covers bands
                for (Image<T>* image : {&one, &three}) image->fill([&](int, int) { return 20 + random.between(0, 90); });
                mask.fill([&](int x, int y) { return y >= 20 && y < 100 ? 0 : mask.at(x, y); });
            }
            underAllThreadings([&] {
                const bool parallel = size.width * size.height >= 0x4000 && omp_get_level() == 0;
                compareAll<T>(size, one, three, mask, parallel ? ownGetNumThreads() : 1);
            });
        }
}

TEST(MinMax32f, SkipsNanAndKeepsTheSignOfZero)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    const Zel8u all[11] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    const float src[11] = {nan, 5, 5, nan, 5, 0.0f, 5, -0.0f, 5, 5, nan}; // the second zero in a lower lane
    Result r;
    for (bool masked : {false, true}) {
        if (masked) zeliMinMaxIndx_32f_C1MR(src, 44, all, 11, {11, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
        else zeliMinMaxIndx_32f_C1R(src, 44, {11, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
        expectEqual({0, 5, {5, 0}, {1, 0}}, r, "NaN around");
        EXPECT_FALSE(std::signbit(r.min));
    }
    // Infinities do not pass the start values of a plain scan; a masked scan has none.
    const float infinite[2] = {infinity, infinity};
    zeliMinMaxIndx_32f_C1R(infinite, 8, {2, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
    expectEqual({std::numeric_limits<float>::max(), infinity, {0, 0}, {0, 0}}, r, "infinite");
    const Zel8u second[2] = {0, 9};
    zeliMinMaxIndx_32f_C1MR(infinite, 8, second, 2, {2, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
    expectEqual({infinity, infinity, {1, 0}, {1, 0}}, r, "infinite under a mask");
    zeliMinMaxIndx_32f_C1MR(src + 2, 8, second, 2, {2, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
    expectEqual({0, 0, {0, 0}, {0, 0}}, r, "nothing but NaN under a mask");
}

TYPED_TEST(MinMax, ChecksInOrder)
{
    const auto& [c1, c1Masked, c3, c3Masked] = kMembers<TypeParam>;
    Random random(4);
    const ZeliSize size{6, 2};
    Image<TypeParam> one(random, size), three(random, 18, 2);
    Image<Zel8u> mask(random, size);
    Result r;
    const auto expectChecks = [&](const std::vector<int>& planes, int coi, auto member, auto&... given) {
        Checks checks(member, given..., &r.min, &r.max, &r.minAt, &r.maxAt);
        checks.nulls(planes).sizes().shortSteps().oddSteps();
        if (coi) checks.values(coi, zelStatusBadChannelIndex, {0, 4});
        checks.expect();
        EXPECT_EQ(zelStatusOk, call(member, given..., nullptr, nullptr, nullptr, nullptr)) << "nothing is asked for";
    };
    int coi = 2;
    expectChecks({0}, 0, c1, one, size);
    expectChecks({0, 2}, 0, c1Masked, one, mask, size);
    expectChecks({0}, 3, c3, three, size, coi);
    expectChecks({0, 2}, 5, c3Masked, three, mask, size, coi);
}

} // namespace
