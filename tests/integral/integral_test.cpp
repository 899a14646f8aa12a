// Integral images against their definition.
#include "support/images.h"

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

const ZeliSize kSizes[] = {{1, 1}, {2, 1}, {1, 5}, {3, 4}, {8, 3}, {9, 2}, {17, 5}, {33, 7}, {130, 67}, {1921, 9}};

template <class T>
struct Output {
    Output(Random& random, ZeliSize size, int extra) : image(random, size.width + extra, size.height + extra) {}
    void expect(const Table<T>& wanted, const std::string& what)
    {
        image.expect([&](int x, int y) { return wanted[y][x]; }, what);
    }
    std::vector<T> column(int x) const
    {
        std::vector<T> values;
        for (int y = 0; y < image.height(); ++y) values.push_back(image.before(x, y));
        return values;
    }
    Image<T> image;
};

// A member without squares, or one with.
template <class T, class S = void>
struct Member {
    std::conditional_t<std::is_void_v<S>, ZelStatus (*)(const Zel8u*, int, T*, int, ZeliSize, T),
                       ZelStatus (*)(const Zel8u*, int, T*, int, std::conditional_t<std::is_void_v<S>, T, S>*, int, ZeliSize,
                                     T, std::conditional_t<std::is_void_v<S>, T, S>)>
        function;
    const char* name;
    bool tilted;
    bool behind = false;
    using Squares = S;

    Table<T> sums(const Image<Zel8u>& src, T start, const std::vector<T>& column) const
    {
        return tilted ? tiltedSums<T>(src, false, start, behind, column) : uprightSums<T>(src, false, start);
    }
    void compare(Random& random, ZeliSize size, Texture texture, T start, double squareStart) const
    {
        Image<Zel8u> src(random, size.width, size.height, texture, 1);
        const int extra = tilted ? 2 : 1;
        Output<T> dst(random, size, extra);
        if constexpr (std::is_void_v<S>) {
            ASSERT_EQ(zelStatusOk, function(src.data(), src.step(), dst.image.data(), dst.image.step(), size, start)) << name;
        } else {
            Output<S> sqr(random, size, extra);
            ASSERT_EQ(zelStatusOk, function(src.data(), src.step(), dst.image.data(), dst.image.step(), sqr.image.data(),
                                            sqr.image.step(), size, start, S(squareStart))) << name;
            const S from = S(squareStart);
            sqr.expect(tilted ? tiltedSums<S>(src, true, from, behind, {}) : uprightSums<S>(src, true, from),
                       std::string("squares of ").append(name));
        }
        dst.expect(sums(src, start, dst.column(size.width)), name);
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

// Starts near the end of 32 bits, and where singles and doubles round.
TEST(Integral, WrapsAndRounds)
{
    forAllMembers([]<class T, class S>(Member<T, S> member) {
        Random random(2);
        const double squareStart = std::is_same_v<S, Zel32s> ? -2147480000.0 : 1e15 + 0.125;
        const T start = std::is_same_v<T, Zel32s> ? T(2147480000) : T(33554431.7);
        for (ZeliSize size : kSizes) member.compare(random, size, Texture::Noise, start, squareStart);
        for (ZeliSize size : {ZeliSize{400, 300}, {100003, 2}}) member.compare(random, size, Texture::Extremes, T(0.3), 0.3);
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

template <class T, class S>
struct Arguments {
    const Zel8u* src;
    T* dst;
    S* sqr;
    int srcStep, dstStep, sqrStep;
    ZeliSize size;
};

TEST(Integral, ChecksInOrder)
{
    forAllMembers([]<class T, class S>(Member<T, S> member) {
        constexpr bool squares = !std::is_void_v<S>;
        using Square = std::conditional_t<squares, S, T>;
        using A = Arguments<T, Square>;
        Random random(3);
        const ZeliSize size = {6, 2};
        const int extra = member.tilted ? 2 : 1, columns = 6 + extra, s = int(sizeof(Square));
        Image<Zel8u> src(random, 7, 2);
        Output<T> dst(random, size, extra);
        Output<Square> sqr(random, size, extra);
        std::vector<Fault<A>> faults = {
            {"null src", zelStatusNullPointer, [](A& a) { a.src = nullptr; }},
            {"null dst", zelStatusNullPointer, [](A& a) { a.dst = nullptr; }},
            {"null sqr", zelStatusNullPointer, [](A& a) { a.sqr = nullptr; }},
            {"width 0", zelStatusBadSize, [](A& a) { a.size.width = 0; }},
            {"height 0", zelStatusBadSize, [](A& a) { a.size.height = 0; }},
            {"srcStep", zelStatusBadStep, [](A& a) { a.srcStep = 5; }},
            {"dstStep", zelStatusBadStep, [=](A& a) { a.dstStep = 4 * columns - 4; }},
            {"sqrStep", zelStatusBadStep, [=](A& a) { a.sqrStep = s * columns - s; }},
            {"dstStep odd", zelStatusStepNotAligned, [=](A& a) { a.dstStep = 4 * columns + 2; }},
            {"sqrStep odd", zelStatusStepNotAligned, [=](A& a) { a.sqrStep = s * columns + s / 2; }},
        };
        if (!squares)
            std::erase_if(faults, [](const auto& fault) { return std::strstr(fault.what.c_str(), "sqr") != nullptr; });
        expectCheckOrder(A{src.data(), dst.image.data(), sqr.image.data(), src.step(), dst.image.step(), sqr.image.step(),
                           size}, faults, [&](const A& a) {
                             if constexpr (squares)
                                 return member.function(a.src, a.srcStep, a.dst, a.dstStep, a.sqr, a.sqrStep, a.size, 0, 0);
                             else
                                 return member.function(a.src, a.srcStep, a.dst, a.dstStep, a.size, 0);
                         });
        EXPECT_TRUE(dst.image.untouched() && sqr.image.untouched());
    });
}

} // namespace
