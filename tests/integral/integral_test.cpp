// Integral images against their definition.
#include "support/calls.h"

using namespace zeltest;

namespace {

// The outputs of all members, from plain loops in the widest type; T is how an element is stored.
template <class T>
using Table = std::vector<std::vector<T>>;

template <class T>
using Wide = std::conditional_t<std::is_same_v<T, Zel32s>, Zel32u, double>; // 32s wraps

template <class T>
Table<T> uprightSums(const Image<Zel8u>& src, bool squares, T start)
{
    Table<T> sums(std::size_t(src.height() + 1), std::vector<T>(std::size_t(src.width() + 1), start));
    for (int y = 0; y < src.height(); ++y) {
        long long row = 0;
        for (int x = 0; x < src.width(); ++x) {
            const int s = src.at(x, y);
            row += squares ? s * s : s;
            if constexpr (std::is_same_v<T, Zel32s>)
                sums[y + 1][x + 1] = T(Zel32u(sums[y][x + 1]) + Zel32u(row));
            else
                sums[y + 1][x + 1] = sums[y][x + 1] + T(row);
        }
    }
    return sums;
}

// `columnWidth` is what stood in column `width` of each row before; `behind` counts the pixel behind the row there.
template <class T>
Table<T> tiltedSums(const Image<Zel8u>& src, bool squares, T start, bool behind, const std::vector<T>& columnWidth)
{
    const int width = src.width();
    Table<T> sums(std::size_t(src.height() + 2), std::vector<T>(std::size_t(width + 2), start));
    for (int y = 0; y < src.height(); ++y) {
        const auto &p = sums[y], &q = sums[y + 1];
        auto& c = sums[y + 2];
        const auto s = [&](int x) { return Wide<T>(squares ? src.at(x, y) * src.at(x, y) : src.at(x, y)); };
        c[0] = q[1];
        c[width + 1] = q[width];
        for (int x = 1; x <= width; ++x) {
            const Wide<T> right = x == width && !behind ? Wide<T>(0) : s(x);
            if constexpr (std::is_same_v<T, Zel32f>)
                c[x] = float(Wide<T>(q[x - 1]) - p[x] + q[x + 1] + s(x - 1) + right);
            else
                c[x] = T(s(x - 1) + right + Wide<T>(q[x - 1]) + Wide<T>(q[x + 1]) - Wide<T>(p[x]));
        }
        if (std::is_same_v<T, Zel32f>) c[width] = columnWidth[y + 2] + c[width];
    }
    return sums;
}

const auto kSizes = withSeams({{1, 1}, {2, 1}, {1, 5}, {3, 4}, {8, 3}, {9, 2}, {33, 7}, {130, 67}, {1921, 9}});

template <class T>
void expectTable(Image<T>& plane, const Table<T>& wanted, const std::string& what)
{
    plane.expect([&](int x, int y) { return wanted[y][x]; }, what);
}

// S is the type of the sums of squares, where the member has them.
template <class T, class... S>
struct Signature {
    using Type = ZelStatus (*)(const Zel8u*, int, T*, int, ZeliSize, T);
};
template <class T, class S>
struct Signature<T, S> {
    using Type = ZelStatus (*)(const Zel8u*, int, T*, int, S*, int, ZeliSize, T, S);
};

template <class T, class... S>
struct Member {
    typename Signature<T, S...>::Type function;
    const char* name;
    bool tilted;
    bool behind = false;

    // Calls use(src, dst, sqr...) with images of the right sizes.
    template <class Use>
    void withImages(Random& random, ZeliSize size, Texture texture, const Use& use) const
    {
        const ZeliSize sums = {size.width + 1 + tilted, size.height + 1 + tilted};
        Image<Zel8u> src(random, size, texture, {0, 0, behind, 0});
        Image<T> dst(random, sums);
        [&](auto&&... sqr) { use(src, dst, sqr...); }(Image<S>(random, sums)...);
    }
    template <class U>
    void expectSums(const Image<Zel8u>& src, Image<U>& plane, bool squares, U start) const
    {
        std::vector<U> columnWidth;
        for (int y = 0; y < plane.height(); ++y) columnWidth.push_back(plane.before(src.width(), y));
        const auto wanted = tilted ? tiltedSums<U>(src, squares, start, behind, columnWidth)
                                   : uprightSums<U>(src, squares, start);
        plane.expect([&](int x, int y) { return wanted[y][x]; }, name + std::string(squares ? ", squares" : ""));
    }
    void compare(Random& random, ZeliSize size, Texture texture, T start, double squareStart, bool white = false) const
    {
        withImages(random, size, texture, [&](auto& src, auto& dst, auto&... sqr) {
            if (white) src.fill([](int, int) { return 255; });
            ASSERT_EQ(zelStatusOk, call(function, src, dst, sqr..., size, start, S(squareStart)...)) << name;
            expectSums(src, dst, false, start);
            (expectSums(src, sqr, true, S(squareStart)), ...);
        });
    }
};

// Calls check(member) for all members.
template <class Check>
void forAllMembers(const Check& check)
{
    check(Member<Zel32s>{zeliIntegral_8u32s_C1R, "sums 32s", false});
    check(Member<Zel32f>{zeliIntegral_8u32f_C1R, "sums 32f", false});
    check(Member<Zel32s>{zeliTiltedIntegral_8u32s_C1R, "tilted sums 32s", true});
    check(Member<Zel32f>{zeliTiltedIntegral_8u32f_C1R, "tilted sums 32f", true});
    check(Member<Zel32s, Zel32s>{zeliSqrIntegral_8u32s_C1R, "32s, 32s", false});
    check(Member<Zel32s, Zel64f>{zeliSqrIntegral_8u32s64f_C1R, "32s, 64f", false});
    check(Member<Zel32f, Zel64f>{zeliSqrIntegral_8u32f64f_C1R, "32f, 64f", false});
    check(Member<Zel32s, Zel32s>{zeliTiltedSqrIntegral_8u32s_C1R, "tilted 32s, 32s", true, true});
    check(Member<Zel32s, Zel64f>{zeliTiltedSqrIntegral_8u32s64f_C1R, "tilted 32s, 64f", true});
    check(Member<Zel32f, Zel64f>{zeliTiltedSqrIntegral_8u32f64f_C1R, "tilted 32f, 64f", true});
}

TEST(Integral, EqualsDefinition)
{
    forAllMembers([](auto member) {
        Random random(1);
        for (ZeliSize size : kSizes)
            for (Texture texture : {Texture::Noise, Texture::Extremes}) {
                member.compare(random, size, texture, 0, 0);
                member.compare(random, size, texture, 7, -3);
            }
    });
}

// Starts near the end of 32 bits, and where singles and doubles round; rows whose sums single precision does not hold.
TEST(Integral, WrapsAndRounds)
{
    forAllMembers([]<class T, class... S>(Member<T, S...> member) {
        Random random(2);
        const double squareStart = (std::is_same_v<S, Zel32s> || ...) ? -2147480000.0 : 1e15 + 0.125;
        const T start = std::is_same_v<T, Zel32s> ? T(2147480000) : T(33554431.7);
        for (ZeliSize size : kSizes) member.compare(random, size, Texture::Noise, start, squareStart);
        for (ZeliSize size : {ZeliSize{400, 300}, {230003, 2}})
            for (bool white : {false, true}) member.compare(random, size, Texture::Extremes, T(0.3), 0.3, white);
    });
}

TEST(Integral, TiltedSingleSumsAddToColumnWidth)
{
    const Zel8u pixel = 5;
    Zel32f sums[9] = {9, 9, 9, 9, 9, 9, 9, 1.25f, 9};
    ASSERT_EQ(zelStatusOk, zeliTiltedIntegral_8u32f_C1R(&pixel, 1, sums, 12, {1, 1}, 0));
    EXPECT_EQ(6.25f, sums[7]);
    EXPECT_EQ(0.0f, sums[4]);
}

TEST(Integral, ChecksInOrder)
{
    forAllMembers([](auto member) {
        Random random(3);
        const ZeliSize size = {6, 2};
        member.withImages(random, size, Texture::Noise, [&](auto& src, auto& dst, auto&... sqr) {
            // The starts, of which there are as many as planes, may be anything.
            Checks(member.function, src, dst, sqr..., size, dst.width(), sqr.width()...).usual().expect();
        });
    });
}

} // namespace
