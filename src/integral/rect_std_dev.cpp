// Standard deviation under a rectangle that slides with the pixel, from an integral image of the pixels and one of their
// squares. With n pixels in the rectangle, and S and Q the sums over it, each from four elements of its plane:
//
//   sqrt(max(0, Q / n - (S / n)^2))
//
// The corners of the window of a pixel, and the sum ((fourth - second) - third) + first:
//
//            upright                  tilted
//   first    (x, y)                   (x - y, x + y)
//   second   (x + width, y)           (x - y - height, x + y + height)
//   third    (x, y + height)          (x - y + width, x + y + width)
//   fourth   (x + width, y + height)  (x - y + width - height, x + y + width + height)
//
// as (column, row), relative to the pixel.
#include "checks.h"
#include "map.h"

#include <cstdint>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- windows

struct Corner {
    std::int64_t column, row;
};

struct Upright {
    // The elements that a row of the planes must hold.
    static int columns(ZeliRect r, int width) { return wrappingSum(width, r.x, r.width); }
    static int count(ZeliRect r) { return wrappingProduct(r.width, r.height); }
    static Corner corner(ZeliRect r, bool alongWidth, bool alongHeight)
    {
        return {std::int64_t(r.x) + (alongWidth ? r.width : 0), std::int64_t(r.y) + (alongHeight ? r.height : 0)};
    }
    // The order in which the two inner corners are taken away.
    static constexpr bool kWidthFirst = true;
};

struct Tilted {
    static int columns(ZeliRect r, int width) { return wrappingSum(r.x, r.y, r.width, r.height, width, -1); }
    static int count(ZeliRect r) { return wrappingProduct(2, r.width, r.height); }
    static Corner corner(ZeliRect r, bool alongWidth, bool alongHeight)
    {
        const std::int64_t w = alongWidth ? r.width : 0, h = alongHeight ? r.height : 0;
        return {std::int64_t(r.x) - r.y + w - h, std::int64_t(r.x) + r.y + w + h};
    }
    static constexpr bool kWidthFirst = false;
};

template <class V>
ZELCV_INLINE inline V windowSum(V first, V second, V third, V fourth)
{
    return fourth - second - third + first;
}
// Wraps at 32 bits, then becomes single.
ZELCV_INLINE inline Vec<Zel32f> windowSum(Vec<Zel32s> first, Vec<Zel32s> second, Vec<Zel32s> third, Vec<Zel32s> fourth)
{
    return toFloat(Vec<Zel32s>(windowSum(Vec<Zel32u>(first), Vec<Zel32u>(second), Vec<Zel32u>(third), Vec<Zel32u>(fourth))));
}

// ---- variance: the sums give the precision

class Count {
public:
    explicit Count(int n) : single_(splat(Zel32f(n))), wide_(splatDoubles(n)) {}
    ZELCV_INLINE friend Vec<Zel32f> operator/(Vec<Zel32f> sum, const Count& n) { return sum / n.single_; }
    ZELCV_INLINE friend Doubles operator/(Doubles sum, const Count& n) { return sum / n.wide_; }

private:
    Vec<Zel32f> single_;
    Doubles wide_;
};

// Not below 0, and 0 in the place of NaN.
template <class Sum>
ZELCV_INLINE inline Doubles variance(Sum sum, Doubles squares, const Count& n)
{
    const Doubles mean = toDoubles(sum / n);
    return maximum(squares / n - mean * mean, Doubles{});
}
ZELCV_INLINE inline Vec<Zel32f> variance(Vec<Zel32f> sum, Vec<Zel32f> squares, const Count& n)
{
    const Vec<Zel32f> mean = sum / n;
    return maximum(squares / n - mean * mean, Vec<Zel32f>{});
}

// ---- roots

struct SingleRoot {
    ZELCV_INLINE Vec<Zel32f> operator()(Doubles variance) const { return squareRoot(toFloat(variance)); }
};

// Times 2^-scaleFactor, the exponent modulo 32.
Zel64f scale(int scaleFactor)
{
    const Zel32u bits = static_cast<Zel32u>(scaleFactor);
    return scaleFactor < 0 ? Zel64f(1u << (-bits & 31)) : 1 / Zel64f(1u << (bits & 31));
}

template <class Shape>
struct ScaledRoot {
    static constexpr bool kRootInDouble = std::is_same_v<Shape, Upright>;
    Doubles factor;

    explicit ScaledRoot(int scaleFactor) : factor(splatDoubles(scale(scaleFactor))) {}
    ZELCV_INLINE Vec<Zel32s> operator()(Vec<Zel32f> variance) const
    {
        const Doubles root = kRootInDouble ? squareRoot(toDoubles(variance)) : toDoubles(squareRoot(variance));
        return truncate(root * factor + splatDoubles(0.5));
    }
};

// ---- driver

template <class T>
using AsIs = As<T, T>;

// Singles, widened.
struct AsWideSingles {
    const Zel32f* from;

    template <int count>
    auto block(std::ptrdiff_t i) const
    {
        return forParts([](Vec<Zel32f> v) { return toDoubles(v); }, As<Zel32f, Zel32f>{from}.block<count>(i));
    }
};

template <class Shape, class SumReader, class SquareReader, class T, class S, class D, class Root>
ZelStatus deviations(Plane<const T> src, Plane<const S> sqr, Plane<D> dst, ZeliSize roi, ZeliRect rect, const Root& root,
                     Gate gate = Gate::serial())
{
    if (auto status = checkPointers(src.data, sqr.data, dst.data)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(Shape::columns(rect, roi.width), src, sqr)) return status;
    if (auto status = checkStepSizes(roi.width, dst)) return status;
    if (auto status = checkStepAlignment(src, sqr, dst)) return status;
    if (rect.x < 0 || rect.y < 0) return zelStatusBadSize;
    if (auto status = checkSize({rect.width, rect.height})) return status;

    const Count n(Shape::count(rect));
    const auto deviation = [=](auto a1, auto a2, auto a3, auto a4, auto b1, auto b2, auto b3, auto b4) ZELCV_INLINE {
        return root(variance(windowSum(a1, a2, a3, a4), windowSum(b1, b2, b3, b4), n));
    };
    const auto result = [=](const auto&... corner) ZELCV_INLINE { return forParts(deviation, corner...); };
    constexpr bool widthFirst = Shape::kWidthFirst;
    const Corner corners[4] = {Shape::corner(rect, false, false), Shape::corner(rect, widthFirst, !widthFirst),
                               Shape::corner(rect, !widthFirst, widthFirst), Shape::corner(rect, true, true)};
    forBands(roi, gate, [&](Band band) {
        for (int y = band.first; y < band.last; ++y) {
            const auto at = [&](auto plane, int i) { return plane.row(int(y + corners[i].row)) + corners[i].column; };
            mapRow(dst.row(y), roi.width, result, SumReader{at(src, 0)}, SumReader{at(src, 1)}, SumReader{at(src, 2)},
                   SumReader{at(src, 3)}, SquareReader{at(sqr, 0)}, SquareReader{at(sqr, 1)}, SquareReader{at(sqr, 2)},
                   SquareReader{at(sqr, 3)});
        }
    });
    return zelStatusOk;
}

} // namespace

// ---- exports: the members by form and types

#define SINGLE(Shape, T, SumReader, name, gate)                                                                        \
    ZelStatus name(const T* src, int srcStep, const Zel64f* sqr, int sqrStep, Zel32f* dst, int dstStep,                \
                   ZeliSize roiSize, ZeliRect rect)                                                                    \
    {                                                                                                                  \
        return deviations<Shape, SumReader, AsDoubles>(Plane<const T>{src, srcStep}, Plane<const Zel64f>{sqr, sqrStep}, \
                                                       Plane<Zel32f>{dst, dstStep}, roiSize, rect, SingleRoot{},        \
                                                       gate);                                                          \
    }
#define SCALED(Shape, name)                                                                                            \
    ZelStatus name(const Zel32s* src, int srcStep, const Zel32s* sqr, int sqrStep, Zel32s* dst, int dstStep,           \
                   ZeliSize roiSize, ZeliRect rect, int scaleFactor)                                                   \
    {                                                                                                                  \
        return deviations<Shape, AsIs<Zel32s>, AsIs<Zel32s>>(                                                  \
            Plane<const Zel32s>{src, srcStep}, Plane<const Zel32s>{sqr, sqrStep}, Plane<Zel32s>{dst, dstStep}, roiSize, \
            rect, ScaledRoot<Shape>(scaleFactor));                                                                     \
    }

SINGLE(Upright, Zel32f, AsIs<Zel32f>, zeliRectStdDev_32f_C1R, Gate::bandCountCapped())
SINGLE(Upright, Zel32s, AsIs<Zel32s>, zeliRectStdDev_32s32f_C1R, Gate::serial())
SINGLE(Tilted, Zel32f, AsWideSingles, zeliTiltedRectStdDev_32f_C1R, Gate::serial())
SINGLE(Tilted, Zel32s, AsIs<Zel32s>, zeliTiltedRectStdDev_32s32f_C1R, Gate::serial())
SCALED(Upright, zeliRectStdDev_32s_C1RSfs)
SCALED(Tilted, zeliTiltedRectStdDev_32s_C1RSfs)
