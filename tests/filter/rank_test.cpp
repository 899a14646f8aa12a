// Minimum and maximum filters against their definition.
#include "support/calls.h"

#include <algorithm>

using namespace zeltest;

namespace {

template <class T>
struct Member {
    const char* name;
    bool largest;
    int channels;
    ZelStatus (*filter)(const T*, int, T*, int, ZeliSize, ZeliSize, ZeliPoint, Zel8u*);
    ZelStatus (*bufferSize)(int, ZeliSize, int*);
};

#define MEMBER(Extreme, layout, channels)                                                                        \
    {                                                                                                            \
        #Extreme "_" #layout, #Extreme[1] == 'a', channels, zeliFilter##Extreme##BorderReplicate_##layout,       \
            zeliFilter##Extreme##GetBufferSize_##layout                                                          \
    }
#define MEMBERS(token)                                                                                           \
    MEMBER(Max, token##_C1R, 1), MEMBER(Max, token##_C3R, 3), MEMBER(Max, token##_C4R, 4),                       \
        MEMBER(Min, token##_C1R, 1), MEMBER(Min, token##_C3R, 3), MEMBER(Min, token##_C4R, 4)

template <class T>
std::vector<Member<T>> members()
{
    if constexpr (std::is_same_v<T, Zel8u>) return {MEMBERS(8u)};
    else return {MEMBERS(32f)};
}

struct Rectangle {
    ZeliSize size;
    ZeliPoint anchor;
};

template <class T>
T define(const Image<T>& src, const Member<T>& member, const Rectangle& mask, int element, int y)
{
    const int channels = member.channels, x = element / channels, c = element % channels, width = src.width() / channels;
    T extreme = src.at(element, y);
    for (int j = 0; j < mask.size.height; ++j)
        for (int i = 0; i < mask.size.width; ++i) {
            const int column = std::clamp(x + i - mask.anchor.x, 0, width - 1);
            const T value = src.at(column * channels + c, std::clamp(y + j - mask.anchor.y, 0, src.height() - 1));
            const bool better = member.largest ? extreme > value : extreme < value;
            if (i + j == 0 || !better) extreme = value; // of zeros with both signs the last one
        }
    return extreme;
}

template <class T>
void compare(Random& random, const Member<T>& member, ZeliSize size, const Rectangle& mask)
{
    Image<T> src(random, size.width * member.channels, size.height, random.between(0, 1) ? Texture::Noise : Texture::Smooth);
    if (random.between(0, 2) == 0) // ties, in 32f of zeros with both signs
        src.fill([&](int, int) { return (random.between(0, 1) ? T(-1) : T(1)) * T(0); });
    Image<T> dst(random, size.width * member.channels, size.height);
    int bytes = 0;
    ASSERT_EQ(zelStatusOk, member.bufferSize(size.width, mask.size, &bytes));
    Buffer buffer(random, bytes);
    ASSERT_EQ(zelStatusOk, call(member.filter, src, dst, size, mask.size, mask.anchor, buffer.data()));
    EXPECT_TRUE(src.untouched());
    dst.expect([&](int x, int y) { return define(src, member, mask, x, y); },
               std::string(member.name) + ", mask " + std::to_string(mask.size.width) + " by " +
                   std::to_string(mask.size.height) + " at " + std::to_string(mask.anchor.x) + ", " +
                   std::to_string(mask.anchor.y));
}

Rectangle randomRectangle(Random& random, ZeliSize size)
{
    return {size, {random.between(0, size.width - 1), random.between(0, size.height - 1)}};
}

template <class T>
class Rank : public testing::Test {};
using Types = testing::Types<Zel8u, Zel32f>;
TYPED_TEST_SUITE(Rank, Types);

TYPED_TEST(Rank, EqualsDefinitionOnAllWidths)
{
    Random random(1);
    for (ZeliSize size : withSeams({{1, 1}, {2, 9}, {5, 5}, {13, 1}, {300, 2}, {1, 40}, {23, 37}}))
        for (const auto& member : members<TypeParam>())
            for (int side : {1, 3, 6}) {
                compare(random, member, size, {{side, side}, {side / 2, side / 2}});
                compare(random, member, size, randomRectangle(random, {random.between(1, 20), random.between(1, 12)}));
            }
}

// Each length of a window with each anchor, in both directions.
TYPED_TEST(Rank, EqualsDefinitionOnAllWindows)
{
    Random random(2);
    for (const auto& member : members<TypeParam>())
        for (int side = 1; side <= 20; ++side)
            for (int anchor = 0; anchor < side; ++anchor) {
                compare(random, member, {41, 2}, randomRectangle(random, {side, 1}));
                compare(random, member, {41, 1}, {{side, 1}, {anchor, 0}});
                compare(random, member, {5, random.between(1, 45)}, {{1, side}, {0, anchor}});
            }
}

// No further than the region is a rectangle looked at.
TYPED_TEST(Rank, EqualsDefinitionUnderRectanglesBeyondTheRegion)
{
    Random random(3);
    for (const auto& member : members<TypeParam>())
        for (ZeliSize size : {ZeliSize{1, 1}, {9, 7}, {40, 3}, {3, 33}, {50, 12}})
            for (int round = 0; round < 6; ++round)
                compare(random, member, size,
                        randomRectangle(random, {random.between(1, 3 * size.width), random.between(1, 3 * size.height)}));
}

TYPED_TEST(Rank, TakesRectanglesOfAnySize)
{
    constexpr int huge = std::numeric_limits<int>::max();
    const ZeliSize size{37, 11};
    for (const auto& member : members<TypeParam>())
        for (ZeliPoint anchor : {ZeliPoint{0, 0}, {huge - 1, huge - 1}, {huge / 2, huge / 2}, {huge - 1, 0}, {20, 5}}) {
            Random random(4);
            Image<TypeParam> src(random, size.width * member.channels, size.height), dst(random, src.width(), size.height);
            int bytes = 0; // for what the rectangle has in common with the region
            member.bufferSize(size.width, {1, 2 * size.height - 1}, &bytes);
            Buffer buffer(random, bytes);
            EXPECT_EQ(zelStatusOk, call(member.filter, src, dst, size, ZeliSize{huge, huge}, anchor, buffer.data()));
            const auto seen = [](int at, int length) { // the same rectangle, cut to the region
                const int before = std::min(at, length), behind = std::min(huge - 1 - at, length);
                return std::pair(before + 1 + behind, before);
            };
            const auto [width, x] = seen(anchor.x, size.width);
            const auto [height, y] = seen(anchor.y, size.height);
            dst.expect([&](int i, int j) { return define(src, member, {{width, height}, {x, y}}, i, j); }, member.name);
        }
}

TYPED_TEST(Rank, BufferSizes)
{
    const int unit = sizeof(TypeParam);
    for (const auto& member : members<TypeParam>()) {
        int bytes = 0;
        EXPECT_EQ(zelStatusOk, member.bufferSize(100, {9, 5}, &bytes));
        EXPECT_EQ(10 * (100 * member.channels * unit + 32) + 160 + 32, bytes) << member.name;
        EXPECT_EQ(zelStatusOk, member.bufferSize(1 << 20, {1, 1 << 20}, &bytes));
        EXPECT_EQ((96 << 20) + 32, bytes) << member.name << " wraps";
        Checks checks(member.bufferSize, 100, ZeliSize{3, 3}, &bytes);
        checks.nulls().values(0, zelStatusBadSize, {0, -1});
        checks.fault("mask width", zelStatusBadMaskSize, [](auto& a) { std::get<1>(a).width = 0; });
        checks.fault("mask height", zelStatusBadMaskSize, [](auto& a) { std::get<1>(a).height = -1; }).expect();
    }
}

TYPED_TEST(Rank, ChecksInOrder)
{
    for (const auto& member : members<TypeParam>()) {
        Random random(5);
        ZeliSize size{6, 4}, mask{3, 2};
        ZeliPoint anchor{2, 1};
        Image<TypeParam> src(random, 6 * member.channels, 4), dst(random, 6 * member.channels, 4);
        int bytes = 0;
        member.bufferSize(6, mask, &bytes);
        Buffer buffer(random, bytes);
        Checks checks(member.filter, src, dst, size, mask, anchor, buffer.data());
        checks.nulls();
        const auto fault = [&](const char* what, ZelStatus status, auto apply) { checks.fault(what, status, apply); };
        fault("width", zelStatusBadSize, [](auto& a) { std::get<4>(a).width = 0; });
        fault("height", zelStatusBadSize, [](auto& a) { std::get<4>(a).height = -1; });
        fault("mask width", zelStatusBadMaskSize, [](auto& a) { std::get<5>(a).width = 0; });
        fault("mask height", zelStatusBadMaskSize, [](auto& a) { std::get<5>(a).height = -1; });
        fault("anchor behind x", zelStatusBadAnchor, [](auto& a) { std::get<6>(a).x = 3; });
        fault("anchor before x", zelStatusBadAnchor, [](auto& a) { std::get<6>(a).x = -1; });
        fault("anchor behind y", zelStatusBadAnchor, [](auto& a) { std::get<6>(a).y = 2; });
        fault("anchor before y", zelStatusBadAnchor, [](auto& a) { std::get<6>(a).y = -1; });
        checks.shortSteps({0}).oddSteps({0}).shortSteps({2}).oddSteps({2}).expect(); // plane by plane
    }
}

} // namespace
