// Deviations under a sliding rectangle against their definition.
#include "support/images.h"

#include <algorithm>
#include <cmath>

using namespace zeltest;

namespace {

struct Corners {
    int x[4], y[4]; // relative to the pixel, in the order of the sum: fourth - second - third + first
    int count;
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
float wantedSingle(bool tilted, const Image<T>& src, const Image<Zel64f>& sqr, const Corners& c, int x, int y)
{
    const double mean = tilted && std::is_same_v<T, Zel32f> ? windowSum<double>(src, c, x, y) / double(c.count)
                                                            : double(singleSum(src, c, x, y) / float(c.count));
    const double variance = windowSum<double>(sqr, c, x, y) / c.count - mean * mean;
    return std::sqrt(float(std::max(0.0, variance)));
}

Zel32s wantedScaled(bool tilted, const Image<Zel32s>& src, const Image<Zel32s>& sqr, const Corners& c, int x, int y, double f)
{
    const float mean = singleSum(src, c, x, y) / float(c.count);
    const float variance = std::max(0.0f, singleSum(sqr, c, x, y) / float(c.count) - mean * mean);
    const double root = tilted ? double(std::sqrt(variance)) : std::sqrt(double(variance));
    const double rounded = root * f + 0.5;
    return rounded < 2147483648.0 ? Zel32s(rounded) : std::numeric_limits<Zel32s>::min();
}

template <class T>
using Single = ZelStatus (*)(const T*, int, const Zel64f*, int, Zel32f*, int, ZeliSize, ZeliRect);
using Scaled = ZelStatus (*)(const Zel32s*, int, const Zel32s*, int, Zel32s*, int, ZeliSize, ZeliRect, int);

// Planes of noise inside a margin that windows may reach into. The squares are larger than the sums ask for, in most places,
// so that most variances are positive and some are not.
template <class T, class S>
struct Planes {
    Planes(Random& random, ZeliSize size, ZeliRect r, Texture texture = Texture::Noise)
        : margin(r.x + r.y + r.width + r.height), src(random, size.width, size.height, texture, margin),
          sqr(random, size.width, size.height, texture, margin)
    {
        for (int y = -margin; y < size.height + margin; ++y)
            for (int x = -margin; x < size.width + margin; ++x) {
                sqr.set(x, y, S(scaledUp(sqr.at(x, y), x, y)));
                if constexpr (std::is_same_v<T, Zel32s>)
                    if ((x + y) % 8 != 0) src.set(x, y, src.at(x, y) >> 19); // few large sums
            }
    }
    static S scaledUp(S value, int x, int y)
    {
        if constexpr (std::is_same_v<S, Zel32s>) return S(value / 16 + Zel32s(Zel32u(x) * Zel32u(y) * 100000u) / 4);
        else return std::isfinite(value) ? value * 100 + x * 1e3 * y : value;
    }
    int margin;
    Image<T> src;
    Image<S> sqr;
};

const ZeliSize kSizes[] = {{1, 1}, {2, 3}, {5, 2}, {8, 1}, {19, 7}, {64, 33}};
const ZeliRect kRects[] = {{0, 0, 1, 1}, {1, 2, 3, 5}, {3, 0, 4, 4}, {0, 5, 9, 2}};

template <class T>
void compareSingle(Single<T> function, bool tilted, ZeliSize size, ZeliRect rect, const char* what)
{
    Random random(unsigned(size.width + rect.width));
    Planes<T, Zel64f> planes(random, size, rect);
    Image<Zel32f> dst(random, size.width, size.height);
    ASSERT_EQ(zelStatusOk, function(planes.src.data(), planes.src.step(), planes.sqr.data(), planes.sqr.step(), dst.data(),
                                    dst.step(), size, rect));
    const Corners corners = cornersOf(tilted, rect);
    dst.expect([&](int x, int y) { return wantedSingle(tilted, planes.src, planes.sqr, corners, x, y); }, what);
}

TEST(RectStdDev, SinglesEqualDefinition)
{
    for (ZeliSize size : kSizes)
        for (ZeliRect rect : kRects) {
            compareSingle<Zel32f>(zeliRectStdDev_32f_C1R, false, size, rect, "32f");
            compareSingle<Zel32s>(zeliRectStdDev_32s32f_C1R, false, size, rect, "32s32f");
            compareSingle<Zel32f>(zeliTiltedRectStdDev_32f_C1R, true, size, rect, "tilted 32f");
            compareSingle<Zel32s>(zeliTiltedRectStdDev_32s32f_C1R, true, size, rect, "tilted 32s32f");
        }
}

// Around two bands of 1024 pixels, and with more rows than a whole number of bands.
TEST(RectStdDev, BandsCoverEveryRow)
{
    underAllThreadings([] {
        for (ZeliSize size : {ZeliSize{89, 23}, {64, 32}, {61, 131}, {9001, 3}})
            compareSingle<Zel32f>(zeliRectStdDev_32f_C1R, false, size, {1, 2, 3, 5}, "bands");
    });
}

TEST(RectStdDev, ScaledEqualDefinition)
{
    for (bool tilted : {false, true})
        for (ZeliSize size : kSizes)
            for (ZeliRect rect : kRects)
                for (int scaleFactor : {0, 1, 3, 32, 37, -1, -20, -33, std::numeric_limits<int>::min()}) {
                    Random random(unsigned(size.width + scaleFactor + 50));
                    Planes<Zel32s, Zel32s> planes(random, size, rect);
                    Image<Zel32s> dst(random, size.width, size.height);
                    const Scaled function = tilted ? zeliTiltedRectStdDev_32s_C1RSfs : zeliRectStdDev_32s_C1RSfs;
                    ASSERT_EQ(zelStatusOk, function(planes.src.data(), planes.src.step(), planes.sqr.data(),
                                                    planes.sqr.step(), dst.data(), dst.step(), size, rect, scaleFactor));
                    const double f = std::ldexp(1.0, -(scaleFactor % 32));
                    dst.expect([&](int x, int y) {
                        return wantedScaled(tilted, planes.src, planes.sqr, cornersOf(tilted, rect), x, y, f);
                    }, std::to_string(scaleFactor).insert(0, "scaled by "));
                }
}

// The deviation of a picture itself, through its integral images; 0 where all pixels are equal.
TEST(RectStdDev, MeasuresPictures)
{
    const ZeliSize size = {40, 30};
    const ZeliRect rect = {0, 0, 8, 8};
    const ZeliSize windows = {size.width - rect.width + 1, size.height - rect.height + 1};
    for (Zel8u contrast : {0, 20}) {
        Random random(contrast);
        Image<Zel8u> src(random, size.width, size.height);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) src.set(x, y, Zel8u(101 + (x % 2 ? contrast : 0)));
        Image<Zel32f> sums(random, size.width + 1, size.height + 1), dst(random, windows.width, windows.height);
        Image<Zel64f> squares(random, size.width + 1, size.height + 1);
        ASSERT_EQ(zelStatusOk, zeliSqrIntegral_8u32f64f_C1R(src.data(), src.step(), sums.data(), sums.step(), squares.data(),
                                                            squares.step(), size, 0, 0));
        ASSERT_EQ(zelStatusOk, zeliRectStdDev_32f_C1R(sums.data(), sums.step(), squares.data(), squares.step(), dst.data(),
                                                      dst.step(), windows, rect));
        dst.expect([&](int, int) { return float(contrast) / 2; }, "deviation of a picture");
    }
}

template <class T, class S, class D>
struct Arguments {
    const T* src;
    const S* sqr;
    D* dst;
    int srcStep, sqrStep, dstStep;
    ZeliSize size;
    ZeliRect rect;
};

template <class T, class S, class D, class... Scale>
void expectChecks(ZelStatus (*function)(const T*, int, const S*, int, D*, int, ZeliSize, ZeliRect, Scale...), bool tilted,
                  Scale... scale)
{
    using A = Arguments<T, S, D>;
    Random random(5);
    const ZeliSize size = {7, 3};
    const ZeliRect rect = {2, 1, 3, 4};
    Planes<T, S> planes(random, size, rect);
    Image<D> dst(random, size.width, size.height);
    const int columns = tilted ? 16 : 12, s = int(sizeof(S));
    const auto bad = zelStatusBadSize;
    const std::vector<Fault<A>> faults = {
        {"null src", zelStatusNullPointer, [](A& a) { a.src = nullptr; }},
        {"null sqr", zelStatusNullPointer, [](A& a) { a.sqr = nullptr; }},
        {"null dst", zelStatusNullPointer, [](A& a) { a.dst = nullptr; }},
        {"width 0", bad, [](A& a) { a.size.width = 0; }},
        {"height 0", bad, [](A& a) { a.size.height = 0; }},
        {"srcStep", zelStatusBadStep, [](A& a) { a.srcStep = 4; }},
        {"dstStep", zelStatusBadStep, [=](A& a) { a.dstStep = 24; }},
        {"sqrStep", zelStatusBadStep, [=](A& a) { a.sqrStep = s; }},
        {"srcStep odd", zelStatusStepNotAligned, [=](A& a) { a.srcStep = 4 * columns + 6; }},
        {"sqrStep odd", zelStatusStepNotAligned, [=](A& a) { a.sqrStep = s * columns + s / 2; }},
        {"dstStep odd", zelStatusStepNotAligned, [=](A& a) { a.dstStep = 30; }},
        {"x -1", bad, [](A& a) { a.rect.x = -1; }},
        {"y -1", bad, [](A& a) { a.rect.y = -1; }},
        {"rectangle without width", bad, [](A& a) { a.rect.width = 0; }},
        {"rectangle without height", bad, [](A& a) { a.rect.height = 0; }},
    };
    const A good{planes.src.data(), planes.sqr.data(), dst.data(), planes.src.step(), planes.sqr.step(), dst.step(), size,
                 rect};
    const auto call = [&](const A& a) {
        return function(a.src, a.srcStep, a.sqr, a.sqrStep, a.dst, a.dstStep, a.size, a.rect, scale...);
    };
    expectCheckOrder(good, faults, call);
    EXPECT_TRUE(dst.untouched());
    for (int missing : {0, 1}) {
        const ZelStatus wanted = missing ? zelStatusBadStep : zelStatusOk;
        A exact = good;
        exact.size.height = 1;
        exact.srcStep = 4 * (columns - missing);
        EXPECT_EQ(wanted, call(exact));
        exact = good;
        exact.size.height = 1;
        exact.sqrStep = s * (columns - missing);
        EXPECT_EQ(wanted, call(exact));
    }
}

TEST(RectStdDev, ChecksInOrder)
{
    expectChecks(zeliRectStdDev_32f_C1R, false);
    expectChecks(zeliRectStdDev_32s32f_C1R, false);
    expectChecks(zeliRectStdDev_32s_C1RSfs, false, 0);
    expectChecks(zeliTiltedRectStdDev_32f_C1R, true);
    expectChecks(zeliTiltedRectStdDev_32s32f_C1R, true);
    expectChecks(zeliTiltedRectStdDev_32s_C1RSfs, true, 0);
}

} // namespace
