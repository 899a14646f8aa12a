// Minimum and maximum with position against their definition.
#include "support/images.h"

#include <cmath>

using namespace zeltest;

namespace {

template <class T>
struct Members {
    ZelStatus (*c1)(const T*, int, ZeliSize, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*);
    ZelStatus (*c1Masked)(const T*, int, const Zel8u*, int, ZeliSize, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*);
    ZelStatus (*c3)(const T*, int, ZeliSize, int, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*);
    ZelStatus (*c3Masked)(const T*, int, const Zel8u*, int, ZeliSize, int, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*);
};

template <class T>
const Members<T> kMembers{};
#define MEMBERS(T, token)                                                                                             \
    template <>                                                                                                       \
    const Members<T> kMembers<T>{zeliMinMaxIndx_##token##_C1R, zeliMinMaxIndx_##token##_C1MR,                         \
                                 zeliMinMaxIndx_##token##_C3CR, zeliMinMaxIndx_##token##_C3CMR};
MEMBERS(Zel8u, 8u)
MEMBERS(Zel8s, 8s)
MEMBERS(Zel16u, 16u)
MEMBERS(Zel32f, 32f)

struct Result {
    Zel32f min = -7, max = -7;
    ZeliPoint minAt = {-7, -7}, maxAt = {-7, -7};
};

void expectEqual(const Result& wanted, const Result& got, const char* what)
{
    EXPECT_EQ(wanted.min, got.min) << what;
    EXPECT_EQ(wanted.max, got.max) << what;
    EXPECT_TRUE(wanted.minAt.x == got.minAt.x && wanted.minAt.y == got.minAt.y)
        << what << ": minimum at " << got.minAt.x << ", " << got.minAt.y << " and not " << wanted.minAt.x << ", "
        << wanted.minAt.y;
    EXPECT_TRUE(wanted.maxAt.x == got.maxAt.x && wanted.maxAt.y == got.maxAt.y)
        << what << ": maximum at " << got.maxAt.x << ", " << got.maxAt.y << " and not " << wanted.maxAt.x << ", "
        << wanted.maxAt.y;
}

// The extremes of rows [first, last), in scan order; 0 at column 0 of the first row when no pixel is masked.
template <class T>
Result ofRows(const Image<T>& src, const Image<Zel8u>* mask, int channels, int coi, int first, int last)
{
    bool found = false;
    Result r{0, 0, {0, first}, {0, first}};
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
Result wanted(const Image<T>& src, const Image<Zel8u>* mask, int channels, int coi, int team)
{
    const int height = src.height(), rows = height / team;
    if (!mask) return ofRows(src, mask, channels, coi, 0, height);
    Result all = ofRows(src, mask, channels, coi, 0, team == 1 ? height : rows);
    for (int band = 1; band < team; ++band) {
        const Result next = ofRows(src, mask, channels, coi, band * rows, band == team - 1 ? height : (band + 1) * rows);
        if (next.min < all.min) all.min = next.min, all.minAt = next.minAt;
        if (next.max > all.max) all.max = next.max, all.maxAt = next.maxAt;
    }
    // A band without rows stands for a row that may have pixels of 0.
    const auto column = [&](int y, float value) {
        for (int x = 0; x < mask->width(); ++x)
            if (mask->at(x, y) != 0 && float(src.at(x * channels + coi - 1, y)) == value) return x;
        return 0;
    };
    all.minAt.x = column(all.minAt.y, all.min);
    all.maxAt.x = column(all.maxAt.y, all.max);
    return all;
}

template <class T>
void compare(ZeliSize size, Image<T>& one, Image<T>& three, Image<Zel8u>& mask, int team = 1)
{
    const Members<T>& members = kMembers<T>;
    Result r;
    EXPECT_EQ(zelStatusOk, members.c1(one.data(), one.step(), size, &r.min, &r.max, &r.minAt, &r.maxAt));
    expectEqual(wanted<T>(one, nullptr, 1, 1, team), r, "C1R");
    EXPECT_EQ(zelStatusOk, members.c1Masked(one.data(), one.step(), mask.data(), mask.step(), size, &r.min, &r.max, &r.minAt,
                                            &r.maxAt));
    expectEqual(wanted<T>(one, &mask, 1, 1, team), r, "C1MR");
    for (int coi = 1; coi <= 3; ++coi) {
        EXPECT_EQ(zelStatusOk, members.c3(three.data(), three.step(), size, coi, &r.min, &r.max, &r.minAt, &r.maxAt));
        expectEqual(wanted<T>(three, nullptr, 3, coi, team), r, "C3CR");
        EXPECT_EQ(zelStatusOk, members.c3Masked(three.data(), three.step(), mask.data(), mask.step(), size, coi, &r.min,
                                                &r.max, &r.minAt, &r.maxAt));
        expectEqual(wanted<T>(three, &mask, 3, coi, team), r, "C3CMR");
    }
}

template <class T>
class MinMax : public testing::Test {};
using Types = testing::Types<Zel8u, Zel8s, Zel16u, Zel32f>;
TYPED_TEST_SUITE(MinMax, Types);

TYPED_TEST(MinMax, EqualsDefinition)
{
    using T = TypeParam;
    Random random(1);
    for (ZeliSize size : {ZeliSize{1, 1}, {1, 7}, {3, 2}, {7, 7}, {15, 4}, {16, 4}, {17, 3}, {33, 5}, {67, 9}, {700, 5}})
        for (int style = 0; style < 4; ++style) {
            Image<T> one(random, size.width, size.height), three(random, 3 * size.width, size.height);
            if (style == 1) { // few values, many ties
                for (int y = 0; y < size.height; ++y)
                    for (int x = 0; x < 3 * size.width; ++x) {
                        three.set(x, y, T(random.between(50, 52)));
                        if (x < size.width) one.set(x, y, T(random.between(50, 52)));
                    }
            }
            Image<Zel8u> mask(random, size.width, size.height, style % 2 ? Texture::Extremes : Texture::Noise);
            if (style >= 2) // nothing; one pixel
                for (int y = 0; y < size.height; ++y)
                    for (int x = 0; x < size.width; ++x) mask.set(x, y, 0);
            if (style == 3) mask.set(random.between(0, size.width - 1), random.between(0, size.height - 1), 4);
            compare<T>(size, one, three, mask);
        }
}

TYPED_TEST(MinMax, ThreadsFoldTheirBands)
{
    using T = TypeParam;
    for (ZeliSize size : {ZeliSize{128, 128}, {129, 127}, {127, 129}, {8192, 2}})
        for (bool positive : {false, true}) {
            Random random(2);
            Image<T> one(random, size.width, size.height), three(random, 3 * size.width, size.height);
            Image<Zel8u> mask(random, size.width, size.height, Texture::Extremes);
            if (positive) // and a hole in the mask that covers bands
                for (int y = 0; y < size.height; ++y)
                    for (int x = 0; x < 3 * size.width; ++x) {
                        three.set(x, y, T(20 + random.between(0, 90)));
                        if (x >= size.width) continue;
                        one.set(x, y, T(20 + random.between(0, 90)));
                        if (y >= 20 && y < 100) mask.set(x, y, 0);
                    }
            underAllThreadings([&] {
                const bool parallel = size.width * size.height >= 0x4000 && omp_get_level() == 0;
                compare<T>(size, one, three, mask, parallel ? ownGetNumThreads() : 1);
            });
        }
}

TYPED_TEST(MinMax, StartsAtTheLimitsOfTheType)
{
    using T = TypeParam;
    for (T value : {std::numeric_limits<T>::max(), std::numeric_limits<T>::lowest()}) {
        Random random(3);
        Image<T> src(random, 20, 3);
        for (int y = 0; y < 3; ++y)
            for (int x = 0; x < 20; ++x) src.set(x, y, value);
        Result r;
        kMembers<T>.c1(src.data(), src.step(), {20, 3}, &r.min, &r.max, &r.minAt, &r.maxAt);
        expectEqual({float(value), float(value), {0, 0}, {0, 0}}, r, "all the same");
    }
}

TEST(MinMax32f, SkipsNanAndKeepsTheSignOfZero)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    const Zel8u all[11] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    const float src[11] = {nan, 0.0f, -0.0f, nan, 5, 0, 0, 0, 0, 5, nan};
    Result r;
    for (bool masked : {false, true}) {
        if (masked) zeliMinMaxIndx_32f_C1MR(src, 44, all, 11, {11, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
        else zeliMinMaxIndx_32f_C1R(src, 44, {11, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
        expectEqual({0, 5, {1, 0}, {4, 0}}, r, "NaN around");
        EXPECT_FALSE(std::signbit(r.min));
    }
    // Infinities do not pass the start values of a plain scan; a masked scan has none.
    const float infinite[2] = {infinity, infinity};
    zeliMinMaxIndx_32f_C1R(infinite, 8, {2, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
    expectEqual({std::numeric_limits<float>::max(), infinity, {0, 0}, {0, 0}}, r, "infinite");
    const Zel8u second[2] = {0, 9};
    zeliMinMaxIndx_32f_C1MR(infinite, 8, second, 2, {2, 1}, &r.min, &r.max, &r.minAt, &r.maxAt);
    expectEqual({infinity, infinity, {1, 0}, {1, 0}}, r, "infinite under a mask");
}

template <class T>
struct Arguments {
    const T* src;
    const Zel8u* mask;
    int srcStep, maskStep;
    ZeliSize size;
    int coi;
};

TYPED_TEST(MinMax, ChecksInOrder)
{
    using T = TypeParam;
    using A = Arguments<T>;
    const int row = 3 * 6 * int(sizeof(T));
    Random random(4);
    Image<T> src(random, 18, 2);
    Image<Zel8u> mask(random, 6, 2);
    Result r;
    std::vector<Fault<A>> faults = {
        {"null src", zelStatusNullPointer, [](A& a) { a.src = nullptr; }},
        {"null mask", zelStatusNullPointer, [](A& a) { a.mask = nullptr; }},
        {"width 0", zelStatusBadSize, [](A& a) { a.size.width = 0; }},
        {"height 0", zelStatusBadSize, [](A& a) { a.size.height = 0; }},
        {"srcStep", zelStatusBadStep, [=](A& a) { a.srcStep = row - 1; }},
        {"maskStep", zelStatusBadStep, [](A& a) { a.maskStep = 5; }},
        {"srcStep odd", zelStatusStepNotAligned, [=](A& a) { a.srcStep = row + 1; }},
        {"coi 0", zelStatusBadChannelIndex, [](A& a) { a.coi = 0; }},
        {"coi 4", zelStatusBadChannelIndex, [](A& a) { a.coi = 4; }},
    };
    if (sizeof(T) == 1) faults.erase(faults.begin() + 6);
    expectCheckOrder(A{src.data(), mask.data(), src.step(), mask.step(), {6, 2}, 2}, faults, [&](const A& a) {
        return kMembers<T>.c3Masked(a.src, a.srcStep, a.mask, a.maskStep, a.size, a.coi, &r.min, &r.max, &r.minAt, &r.maxAt);
    });
    EXPECT_EQ(-7, r.min);
    const Members<T>& members = kMembers<T>;
    EXPECT_EQ(zelStatusBadChannelIndex, members.c3(src.data(), src.step(), {6, 2}, 4, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(zelStatusBadStep,
              members.c1Masked(src.data(), row / 3 - 1, mask.data(), 6, {6, 2}, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(zelStatusOk, members.c1(src.data(), row / 3 + int(sizeof(T)), {6, 2}, nullptr, nullptr, nullptr, &r.maxAt));
    EXPECT_GE(r.maxAt.x, 0);
}

} // namespace
