// Deviations under a sliding rectangle against their definition.
#include "support/calls.h"

#include <algorithm>
#include <cmath>

using namespace zeltest;

namespace {

struct Corners {
    int x[4], y[4]; // relative to the pixel, in the order of the sum: fourth - second - third + first
    int count;

    // What windows of pixels on all sides read; a step must hold `columns` more than a row.
    Margin margin(int columns) const
    {
        const auto [left, right] = std::minmax_element(x, x + 4);
        const auto [top, bottom] = std::minmax_element(y, y + 4);
        return {std::max(0, -*left), std::max(0, -*top), std::max(columns, *right), *bottom};
    }
};

Corners cornersOf(bool tilted, ZeliRect r)
{
    const int x = r.x, y = r.y, w = r.width, h = r.height;
    if (tilted)
        return {{x - y, x - y - h, x - y + w, x - y + w - h}, {x + y, x + y + h, x + y + w, x + y + w + h}, 2 * w * h};
    return {{x, x + w, x, x + w}, {y, y, y + h, y + h}, w * h};
}

// The sum of a window in the precision of Sum.
template <class Sum, class T>
Sum windowSum(const Image<T>& plane, const Corners& c, int x, int y)
{
    const auto at = [&](int i) { return Sum(plane.at(x + c.x[i], y + c.y[i])); };
    Sum sum = at(3) - at(1);
    sum = sum - at(2);
    return sum + at(0);
}

// Sums of 32s planes are 32 bits that wrap, then single; n in single too.
template <class T>
float singleSum(const Image<T>& plane, const Corners& c, int x, int y)
{
    if constexpr (std::is_same_v<T, Zel32s>) return float(Zel32s(windowSum<Zel32u>(plane, c, x, y)));
    else return windowSum<float>(plane, c, x, y);
}

template <class T>
float wanted(bool tilted, const Image<T>& src, const Image<Zel64f>& sqr, const Corners& c, int x, int y)
{
    const double mean = tilted && std::is_same_v<T, Zel32f> ? windowSum<double>(src, c, x, y) / double(c.count)
                                                            : double(singleSum(src, c, x, y) / float(c.count));
    const double variance = windowSum<double>(sqr, c, x, y) / c.count - mean * mean;
    return std::sqrt(float(std::max(0.0, variance)));
}

Zel32s wanted(bool tilted, const Image<Zel32s>& src, const Image<Zel32s>& sqr, const Corners& c, int x, int y,
              int scaleFactor)
{
    const float mean = singleSum(src, c, x, y) / float(c.count);
    const float variance = std::max(0.0f, singleSum(sqr, c, x, y) / float(c.count) - mean * mean);
    const double root = tilted ? double(std::sqrt(variance)) : std::sqrt(double(variance));
    const double rounded = root * std::ldexp(1.0, -(scaleFactor % 32)) + 0.5;
    return rounded < 2147483648.0 ? Zel32s(rounded) : std::numeric_limits<Zel32s>::min();
}

template <class T, class S, class D, class... Scale>
using Member = ZelStatus (*)(const T*, int, const S*, int, D*, int, ZeliSize, ZeliRect, Scale...);

// Calls use(member, tilted, scale factor if it has one).
template <class Use>
void forAllMembers(const Use& use, const std::vector<int>& scaleFactors = {0})
{
    use(zeliRectStdDev_32f_C1R, false);
    use(zeliRectStdDev_32s32f_C1R, false);
    use(zeliTiltedRectStdDev_32f_C1R, true);
    use(zeliTiltedRectStdDev_32s32f_C1R, true);
    for (const int scaleFactor : scaleFactors) {
        use(zeliRectStdDev_32s_C1RSfs, false, scaleFactor);
        use(zeliTiltedRectStdDev_32s_C1RSfs, true, scaleFactor);
    }
}

// The planes reach as far as the windows do. The squares are larger than the sums ask for, in most places, so that
// most variances are positive and some are not; few sums of 32s are large.
template <class T, class S, class D, class... Scale>
void compare(Random& random, Member<T, S, D, Scale...> member, bool tilted, ZeliSize size, ZeliRect rect, Texture texture,
             Scale... scale)
{
    const Corners corners = cornersOf(tilted, rect);
    const Margin margin = corners.margin(rect.x + rect.width + (tilted ? rect.height : 0));
    Image<T> src(random, size, texture, margin);
    Image<S> sqr(random, size, texture, margin);
    Image<D> dst(random, size);
    if constexpr (std::is_same_v<T, Zel32s>)
        src.fill([&](int x, int y) { return (x + y) % 8 != 0 ? src.at(x, y) >> 19 : src.at(x, y); });
    sqr.fill([&](int x, int y) {
        const S value = sqr.at(x, y);
        if constexpr (std::is_same_v<S, Zel32s>) return value / 16 + Zel32s(Zel32u(x) * Zel32u(y) * 100000u) / 4;
        else return std::isfinite(value) ? value * 100 + x * 1e3 * y : value;
    });
    ASSERT_EQ(zelStatusOk, call(member, src, sqr, dst, size, rect, scale...));
    dst.expect([&](int x, int y) { return wanted(tilted, src, sqr, corners, x, y, scale...); },
               "deviation" + (std::string(tilted ? ", tilted" : "") + ... + (", scaled by " + std::to_string(scale))));
}

TEST(RectStdDev, EqualsDefinition)
{
    Random random(1);
    for (Texture texture : {Texture::Noise, Texture::Extremes})
        for (ZeliSize size : withSeams({{1, 1}, {2, 3}, {5, 2}, {8, 1}, {19, 7}, {64, 33}}))
            for (ZeliRect rect : {ZeliRect{0, 0, 1, 1}, {1, 2, 3, 5}, {3, 0, 4, 4}, {0, 5, 9, 2}})
                forAllMembers([&](auto member, bool tilted, auto... scale) {
                    compare(random, member, tilted, size, rect, texture, scale...);
                }, {0, 1, 3, 32, 37, -1, -20, -33, std::numeric_limits<int>::min()});
}

// Around two bands of 1024 pixels, and with more rows than a whole number of bands.
TEST(RectStdDev, BandsCoverEveryRow)
{
    Random random(2);
    underAllThreadings([&] {
        for (ZeliSize size : {ZeliSize{89, 23}, {64, 32}, {61, 131}, {9001, 3}})
            compare(random, zeliRectStdDev_32f_C1R, false, size, {1, 2, 3, 5}, Texture::Noise);
    });
}

// The deviation of a picture itself, through its integral images; 0 where all pixels are equal.
TEST(RectStdDev, MeasuresPictures)
{
    const ZeliSize size = {40, 30}, sumsSize = {41, 31}, windows = {33, 23};
    for (Zel8u contrast : {0, 20}) {
        Random random(contrast);
        Image<Zel8u> src(random, size);
        src.fill([&](int x, int) { return 101 + (x % 2 ? contrast : 0); });
        Image<Zel32f> sums(random, sumsSize), dst(random, windows);
        Image<Zel64f> squares(random, sumsSize);
        ASSERT_EQ(zelStatusOk, call(zeliSqrIntegral_8u32f64f_C1R, src, sums, squares, size, 0, 0));
        ASSERT_EQ(zelStatusOk, call(zeliRectStdDev_32f_C1R, sums, squares, dst, windows, ZeliRect{0, 0, 8, 8}));
        dst.expect([&](int, int) { return float(contrast) / 2; }, "deviation of a picture");
    }
}

template <class T, class S, class D, class... Scale>
void expectChecks(Member<T, S, D, Scale...> member, bool tilted, Scale... scale)
{
    Random random(3);
    const ZeliSize size = {7, 3};
    const int columns = tilted ? 16 : 12; // that a row must hold
    Image<T> src(random, {columns, 20});
    Image<S> sqr(random, {columns, 20});
    Image<D> dst(random, size);
    Checks checks(member, src, sqr, dst, size, ZeliRect{2, 1, 3, 4}, scale...);
    checks.usual();
    const auto refuses = [&](Zel32s ZeliRect::*field, int value, Zel32s ZeliRect::*other) {
        checks.fault("rectangle", zelStatusBadSize, [=](auto& a) {
            ZeliRect& r = std::get<ZeliRect>(a);
            r.*other += r.*field - value; // so that it needs as many columns
            r.*field = value;
        });
    };
    refuses(&ZeliRect::x, -1, &ZeliRect::width);
    refuses(&ZeliRect::y, -1, &ZeliRect::height);
    refuses(&ZeliRect::width, 0, &ZeliRect::x);
    refuses(&ZeliRect::height, 0, &ZeliRect::y);
    checks.expect();
}

TEST(RectStdDev, ChecksInOrder)
{
    forAllMembers([](auto member, bool tilted, auto... scale) { expectChecks(member, tilted, scale...); });
}

} // namespace
