// The three channels of a gradient image folded into one gray gradient by a norm. Integers give means, in fixed point, and
// floats plain sums without a division.
#include "checks.h"
#include "map.h"
#include "thirds.h"

#include <algorithm>
#include <type_traits>

using namespace zelcv;

namespace {

constexpr Gate kGate = Gate::bandCount();

template <class T>
using Channels = Group<Vec<T>, 3>;

// ---- norms of a vector of pixels

template <class T>
struct Inf {
    ZELCV_INLINE static Vec<T> of(const Channels<T>& pixel)
    {
        if constexpr (std::is_floating_point_v<T>)
            return maximum(maximum(absolute(pixel.part[0]), absolute(pixel.part[1])), absolute(pixel.part[2]));
        else
            return maximum(maximum(pixel.part[0], pixel.part[1]), pixel.part[2]);
    }
};

// The first and the second half of each 16 bytes as numbers twice as wide, in the order that narrowPairs undoes.
template <class To, class V>
ZELCV_INLINE inline Group<Vec<To>, 2> halves(V v)
{
    return {Vec<To>(interleaveLow(v, V{})), Vec<To>(interleaveHigh(v, V{}))};
}
// Pairs of a and b, in the same order.
template <class To, class V>
ZELCV_INLINE inline Group<Vec<To>, 2> pairs(V a, V b)
{
    return {Vec<To>(interleaveLow(a, b)), Vec<To>(interleaveHigh(a, b))};
}

// Numbers of up to 16 bits from 32 bits.
ZELCV_INLINE inline Vec<Zel16u> narrowWords(const Group<Vec<Zel32s>, 2>& v)
{
    return Vec<Zel16u>(narrowPairs<Zel16s>(v.part[0] - 0x8000, v.part[1] - 0x8000)) ^ 0x8000;
}

template <class T>
struct L1;

// (sum * 1365 + 2048) >> 12, which is (sum + 1) / 3 cut, and that a product with 65536 / 3 rounded up.
constexpr Zel16s kThird = 21846;
static_assert([] {
    for (int sum = 0; sum <= 3 * 255; ++sum)
        if ((sum * 1365 + 2048) >> 12 != (sum + 1) * kThird >> 16) return false;
    return true;
}());
template <>
struct L1<Zel8u> {
    ZELCV_INLINE static Vec<Zel8u> of(const Channels<Zel8u>& pixel)
    {
        const auto means = forParts(
            [](Vec<Zel16s> a, Vec<Zel16s> b, Vec<Zel16s> c) { return multiplyHigh(a + b + c + 1, splat(kThird)); },
            halves<Zel16s>(pixel.part[0]), halves<Zel16s>(pixel.part[1]), halves<Zel16s>(pixel.part[2]));
        return narrowPairs<Zel8u>(means.part[0], means.part[1]);
    }
};

// (sum * 5461 + 8192) >> 14. Products take numbers with a sign: each channel less 32768, and what that amounts to added.
template <>
struct L1<Zel16u> {
    ZELCV_INLINE static Vec<Zel16u> of(const Channels<Zel16u>& pixel)
    {
        constexpr Zel16s kFactor = 5461;
        constexpr Zel32u kRest = 3u * 32768 * kFactor + 8192;
        const auto channel = [&](int i) ZELCV_INLINE { return Vec<Zel16s>(pixel.part[i] ^ 0x8000); };
        const auto sums = forParts(
            [](Vec<Zel16s> ab, Vec<Zel16s> c) {
                return Vec<Zel32s>((multiplyAddPairs(ab, splat(kFactor)) + multiplyAddPairs(c, splat(kFactor)) + kRest) >> 14);
            },
            pairs<Zel16s>(channel(0), channel(1)), halves<Zel16s>(channel(2)));
        return narrowWords(sums);
    }
};

template <>
struct L1<Zel32f> {
    ZELCV_INLINE static Vec<Zel32f> of(const Channels<Zel32f>& pixel)
    {
        return absolute(pixel.part[0]) + absolute(pixel.part[1]) + absolute(pixel.part[2]);
    }
};

template <class T>
struct L2;

// The root of the mean of squares, rounded. A third of an integer is never closer to (k + 1/2)^2 than 1/12: far more than the
// rounding of its root amounts to, so that a multiplication does for the division, and single precision for double.
template <>
struct L2<Zel8u> {
    ZELCV_INLINE static Vec<Zel8u> of(const Channels<Zel8u>& pixel)
    {
        const auto roots = forParts(
            [](Vec<Zel8u> ab, Vec<Zel16u> c) {
                const auto root = [](Vec<Zel16s> both, Vec<Zel32u> square) {
                    const Vec<Zel32u> sum = multiplyAddPairs(both, both) + square;
                    return truncate(squareRoot(toFloat(Vec<Zel32s>(sum)) * (1 / 3.f)) + 0.5f);
                };
                const auto both = halves<Zel16s>(ab);
                const auto square = halves<Zel32u>(c * c);
                return narrowPairs<Zel16s>(root(both.part[0], square.part[0]), root(both.part[1], square.part[1]));
            },
            pairs<Zel8u>(pixel.part[0], pixel.part[1]), halves<Zel16u>(pixel.part[2]));
        return narrowPairs<Zel8u>(roots.part[0], roots.part[1]);
    }
};

// The same, where it takes double precision.
template <>
struct L2<Zel16u> {
    ZELCV_INLINE static Vec<Zel16u> of(const Channels<Zel16u>& pixel)
    {
        const auto roots = forParts(
            [](Vec<Zel32s> a4, Vec<Zel32s> b4, Vec<Zel32s> c4) {
                const Doubles a = toDoubles(a4), b = toDoubles(b4), c = toDoubles(c4);
                return truncate(squareRoot((a * a + b * b + c * c) * splatDoubles(1 / 3.)) + splatDoubles(0.5));
            },
            halves<Zel32s>(pixel.part[0]), halves<Zel32s>(pixel.part[1]), halves<Zel32s>(pixel.part[2]));
        return narrowWords(roots);
    }
};

template <>
struct L2<Zel32f> {
    ZELCV_INLINE static Vec<Zel32f> of(const Channels<Zel32f>& pixel)
    {
        const Vec<Zel32f> a = pixel.part[0], b = pixel.part[1], c = pixel.part[2];
        return squareRoot(a * a + b * b + c * c);
    }
};

// ---- driver

template <class Norm, class T>
void foldChannels(Plane<const T> src, Plane<T> dst, ZeliSize roi)
{
    const Plane<const Triple<T>> pixels{reinterpret_cast<const Triple<T>*>(src.data), src.step};
    forRows(roi, kGate, [=](int y, int n) {
        mapRow(dst.row(y), n, [](const Channels<T>& pixel) ZELCV_INLINE {
            return Group<Vec<T>, 1>{fromThirds(Norm::of(pixel))};
        }, Thirds<T>{pixels.row(y)});
    }, pixels, dst);
}

template <class T>
ZelStatus colorGradient(Plane<const T> src, Plane<T> dst, ZeliSize roi, ZeliNormType norm)
{
    if (auto status = checkPointers(src.data, dst.data)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(wrappingProduct(roi.width, 3), src)) return status;
    if (auto status = checkStepSizes(roi.width, dst)) return status;
    if (auto status = checkStepAlignment(src, dst)) return status;
    switch (norm) {
    case zeliNormInf: foldChannels<Inf<T>>(src, dst, roi); break;
    case zeliNormL1: foldChannels<L1<T>>(src, dst, roi); break;
    case zeliNormL2: foldChannels<L2<T>>(src, dst, roi); break;
    default: return zelStatusBadArgument;
    }
    return zelStatusOk;
}

} // namespace

ZelStatus zeliGradientColorToGray_8u_C3C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep, ZeliSize roiSize,
                                           ZeliNormType norm)
{
    return colorGradient<Zel8u>({src, srcStep}, {dst, dstStep}, roiSize, norm);
}

ZelStatus zeliGradientColorToGray_16u_C3C1R(const Zel16u* src, int srcStep, Zel16u* dst, int dstStep, ZeliSize roiSize,
                                            ZeliNormType norm)
{
    return colorGradient<Zel16u>({src, srcStep}, {dst, dstStep}, roiSize, norm);
}

ZelStatus zeliGradientColorToGray_32f_C3C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
                                            ZeliNormType norm)
{
    return colorGradient<Zel32f>({src, srcStep}, {dst, dstStep}, roiSize, norm);
}
