// Sobel and Scharr filters with border: a row stage and a column stage of 3 or 5 fixed taps each, on the engine of
// border_filter.h. 8u16s and 8u8s go through 16-bit integers, which hold every sum; 32f is single precision in both stages.
#include "border_filter.h"
#include "map.h"
#include "quotients.h"
#include "wrapping.h"

#include <algorithm>
#include <array>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- stages

// A weighted sum of neighbours with fixed taps, symmetric or antisymmetric. The order of the additions, which decides the
// last bit of 32f: each pair of equally distant neighbours is added or subtracted, then weighted; the pairs follow each
// other from the outside in; the centre comes last.
template <int... taps>
struct Taps {
    static constexpr int kCount = sizeof...(taps);
    static constexpr int kSum = (taps + ...);

    // T is a vector; at(i) is the neighbours under tap i.
    template <class T, class At>
    static T sum(const At& at)
    {
        return addPairs<T, 0>(at);
    }

private:
    static constexpr std::array<int, kCount> kTaps = {taps...};

    template <class T, int i>
    static T weighted(T value)
    {
        constexpr int weight = kTaps[i] < 0 ? -kTaps[i] : kTaps[i];
        return weight == 1 ? value : value * splat(LaneOf<T>(weight));
    }

    // Pair i and all that follows it, behind `pairs`, the sum so far.
    template <class T, int i, class At, class... Sum>
    static T addPairs(const At& at, Sum... pairs)
    {
        constexpr int mirror = kCount - 1 - i, left = kTaps[i], right = kTaps[mirror];
        static_assert(left == right || left == -right);
        if constexpr (i == mirror) {
            if constexpr (left == 0) return (pairs + ...);
            else if constexpr (left < 0) return (pairs + ...) - weighted<T, i>(at(i));
            else return (pairs + ...) + weighted<T, i>(at(i));
        } else if constexpr (left == 0) {
            return addPairs<T, i + 1>(at, pairs...);
        } else {
            const T pair = left == right ? at(i) + at(mirror) : left > 0 ? at(i) - at(mirror) : at(mirror) - at(i);
            return addPairs<T, i + 1>(at, (pairs + ... + weighted<T, i>(pair)));
        }
    }
};

// 0 minus the sum: a sum of zero stays +0.
template <class Positive>
struct Negated {
    static constexpr int kCount = Positive::kCount;
    template <class T, class At>
    static T sum(const At& at)
    {
        return T{} - Positive::template sum<T>(at);
    }
};

// The sums of a block; at(i) is the block under tap i.
template <class Stage, class Mid, class At>
ZELCV_INLINE inline FilterBlock<Mid> sumBlocks(const At& at)
{
    FilterBlock<Mid> tap[Stage::kCount], sums;
    for (int i = 0; i < Stage::kCount; ++i) tap[i] = at(i);
    for (int p = 0; p < 2; ++p)
        sums.part[p] = Stage::template sum<Vec<Mid>>([&](int i) ZELCV_INLINE { return tap[i].part[p]; });
    return sums;
}

template <class Stage, class Src, class Mid>
[[gnu::noinline]] void rowStage(const Src* src, Mid* mid, int n)
{
    forRowBlocks<Stage::kCount / 2>(src, mid, n, [](const Src* from) ZELCV_INLINE {
        return sumBlocks<Stage, Mid>([=](int i) ZELCV_INLINE {
            return As<Mid, Src>{from + i}.template block<kFilterBlock<Mid>>(0);
        });
    });
}

// `finish` makes a block of the output of a block of sums.
template <class Stage, class Mid, class Dst, class Finish>
void columnStage(const Mid* const* rows, Dst* dst, int n, Finish finish)
{
    std::array<const Mid*, Stage::kCount> row;
    std::copy_n(rows, Stage::kCount, row.begin());
    forColumnBlocks<Mid>(dst, n, [&](const auto& at) ZELCV_INLINE {
        return finish(sumBlocks<Stage, Mid>([&](int i) ZELCV_INLINE { return at(row[i]); }));
    });
}

// ---- families

using Smooth3 = Taps<1, 2, 1>;
using Smooth5 = Taps<1, 4, 6, 4, 1>;
using Rising3 = Taps<-1, 0, 1>;
using Rising5 = Taps<-1, -2, 0, 2, 1>;
using Falling3 = Taps<1, 0, -1>;
using Falling5 = Taps<1, 2, 0, -2, -1>;
using Second3 = Taps<1, -2, 1>;
using Second5 = Taps<1, 0, -2, 0, 1>;
using Scharr3 = Taps<3, 10, 3>;

// The stages of a family, and the fixed bytes in its 8u16s buffer size, which differ for no reason but that callers know
// them.
struct SobelHoriz {
    using Row3 = Smooth3; using Column3 = Rising3;
    using Row5 = Smooth5; using Column5 = Rising5;
    static constexpr int kFixedBytes8u16s = 432;
};
struct SobelVert {
    using Row3 = Falling3; using Column3 = Smooth3;
    using Row5 = Falling5; using Column5 = Smooth5;
    static constexpr int kFixedBytes8u16s = 368;
};
struct SobelNegVert {
    using Row3 = Falling3; using Column3 = Negated<Smooth3>;
    using Row5 = Falling5; using Column5 = Negated<Smooth5>;
    static constexpr int kFixedBytes8u16s = 400;
};
struct SobelHorizSecond {
    using Row3 = Smooth3; using Column3 = Second3;
    using Row5 = Smooth5; using Column5 = Second5;
    static constexpr int kFixedBytes8u16s = 400;
};
struct SobelVertSecond {
    using Row3 = Second3; using Column3 = Smooth3;
    using Row5 = Second5; using Column5 = Smooth5;
    static constexpr int kFixedBytes8u16s = 400;
};
struct SobelCross {
    using Row3 = Falling3; using Column3 = Rising3;
    using Row5 = Falling5; using Column5 = Rising5;
    static constexpr int kFixedBytes8u16s = 400;
};
struct ScharrHoriz {
    using Row3 = Scharr3; using Column3 = Rising3;
    static constexpr int kFixedBytes8u16s = 336;
};
struct ScharrVert {
    using Row3 = Rising3; using Column3 = Scharr3;
    static constexpr int kFixedBytes8u16s = 400;
};

template <class Family>
constexpr bool kHas5x5 = requires { typename Family::Row5; };

// ---- types

// What the three types differ in: elements, buffer sizes, and how a sum becomes an output element.
struct To16s {
    using Src = Zel8u; using Mid = Zel16s; using Dst = Zel16s;
    static constexpr auto rowSize = zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_16s_C1R;
    template <class Family> static constexpr int kFixedBytes = Family::kFixedBytes8u16s;

    FilterBlock<Mid> operator()(const FilterBlock<Mid>& sums) const { return sums; }
};
template <class Quotients>
struct To8s : Quotients {
    using Src = Zel8u; using Mid = Zel16s; using Dst = Zel8s;
    static constexpr auto rowSize = zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_16s8s_C1R;
    template <class Family> static constexpr int kFixedBytes = 336;
};
struct To32f {
    using Src = Zel32f; using Mid = Zel32f; using Dst = Zel32f;
    static constexpr auto rowSize = zeliFilterRowBorderPipelineGetBufferSize_32f_C1R;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_32f_C1R;
    template <class Family> static constexpr int kFixedBytes = 400;

    FilterBlock<Mid> operator()(const FilterBlock<Mid>& sums) const { return sums; }
};

// ---- drivers

template <class Family>
ZelStatus checkMaskSize(ZeliMaskSize maskSize)
{
    return maskSize == zeliMask3x3 || (kHas5x5<Family> && maskSize == zeliMask5x5) ? zelStatusOk : zelStatusBadMaskSize;
}

// For each thread: the ring of rows of the original design, the scratch of both pipelines, and a fixed rest.
template <class Family, class Type>
Zel32s bufferBytes(ZeliSize roi, ZeliMaskSize maskSize)
{
    const bool is3x3 = maskSize == zeliMask3x3;
    Zel32s rowBytes = 0, columnBytes = 0;
    Type::rowSize(roi, is3x3 ? 3 : 5, &rowBytes);
    Type::columnSize(roi, is3x3 ? 3 : 5, &columnBytes);
    const Wrapped ring = Wrapped(sizeof(typename Type::Mid)) * ringRowLength(roi.width) * (is3x3 ? 21 : 25);
    const Wrapped each = ring + (is3x3 ? 72 : 120) + Type::template kFixedBytes<Family> + rowBytes + columnBytes;
    return (each * ownGetThreadCount()).value();
}

template <class Family, class Type>
ZelStatus getBufferSize(ZeliSize roi, ZeliMaskSize maskSize, int* bufferSize)
{
    if (auto status = checkPointers(bufferSize)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkMaskSize<Family>(maskSize)) return status;
    *bufferSize = bufferBytes<Family, Type>(roi, maskSize);
    return zelStatusOk;
}

// The value of the row stage on a row of the border value: limited for integers, a product in single precision for 32f.
template <class RowTaps, class Mid, class Src>
Mid constantRowValue(Src value)
{
    if constexpr (std::is_floating_point_v<Mid>)
        return value * Mid(RowTaps::kSum);
    else
        return Mid(std::clamp(int(value) * RowTaps::kSum, -32768, 32767));
}

template <class RowTaps, class ColumnTaps, class Type>
void filterRows(const BorderedSource<typename Type::Src>& source, Plane<typename Type::Dst> dst, const Type& type,
                Zel8u* buffer, Zel32s bufferSize)
{
    using Src = typename Type::Src;
    using Mid = typename Type::Mid;
    using Dst = typename Type::Dst;
    const auto constantRow = constantRowValue<RowTaps, Mid>(source.value);
    forBands(source.size, Gate::borderFilter(), [&](Band band) {
        const Carver share(buffer + std::ptrdiff_t(bufferSize / band.count) * band.index);
        filterBand<RowTaps::kCount>(
            source, dst, band, constantRow, share, rowStage<RowTaps, Src, Mid>,
            [type](const Mid* const* rows, Dst* out, int n) { columnStage<ColumnTaps>(rows, out, n, type); });
    });
}

template <class Family, class Type>
ZelStatus filter(Plane<const typename Type::Src> src, Plane<typename Type::Dst> dst, ZeliSize roi, ZeliMaskSize maskSize,
                 ZeliBorderType border, typename Type::Src value, const Type& type, Zel8u* buffer)
{
    if (auto status = checkMaskSize<Family>(maskSize)) return status;
    const BorderedSource<typename Type::Src> source{src, roi, expandBorder(border), value};
    const Zel32s bufferSize = bufferBytes<Family, Type>(roi, maskSize);
    if constexpr (kHas5x5<Family>)
        if (maskSize == zeliMask5x5) {
            filterRows<typename Family::Row5, typename Family::Column5>(source, dst, type, buffer, bufferSize);
            return zelStatusOk;
        }
    filterRows<typename Family::Row3, typename Family::Column3>(source, dst, type, buffer, bufferSize);
    return zelStatusOk;
}

// The checks that come before what is particular to a type or a mask.
template <class Src, class Dst>
ZelStatus checkPlanes(Plane<const Src> src, Plane<Dst> dst, ZeliSize roi, ZeliBorderType border, const Zel8u* buffer)
{
    if (auto status = checkPointers(src.data, dst.data, buffer)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(roi.width, src, dst)) return status;
    return checkBorder(border);
}

template <class Family>
ZelStatus filter8u16s(Plane<const Zel8u> src, Plane<Zel16s> dst, ZeliSize roi, ZeliMaskSize maskSize, ZeliBorderType border,
                      Zel8u value, Zel8u* buffer)
{
    if (auto status = checkPlanes(src, dst, roi, border, buffer)) return status;
    return filter<Family>(src, dst, roi, maskSize, border, value, To16s{}, buffer);
}

template <class Family>
ZelStatus filter8u8s(Plane<const Zel8u> src, Plane<Zel8s> dst, ZeliSize roi, ZeliMaskSize maskSize, ZeliBorderType border,
                     Zel8u value, int divisor, Zel8u* buffer)
{
    if (auto status = checkPlanes(src, dst, roi, border, buffer)) return status;
    if (divisor == 0) return zelStatusBadArgument;
    const auto run = [&](auto quotients) {
        return filter<Family>(src, dst, roi, maskSize, border, value, To8s<decltype(quotients)>{quotients}, buffer);
    };
    return QuotientsByProduct::isExact(divisor) ? run(QuotientsByProduct(divisor)) : run(QuotientsByFloat(divisor));
}

template <class Family>
ZelStatus filter32f(Plane<const Zel32f> src, Plane<Zel32f> dst, ZeliSize roi, ZeliMaskSize maskSize, ZeliBorderType border,
                    Zel32f value, Zel8u* buffer)
{
    if (auto status = checkPlanes(src, dst, roi, border, buffer)) return status;
    return filter<Family>(src, dst, roi, maskSize, border, value, To32f{}, buffer);
}

// ---- generated kernels

// Taps of (x + 1)^(kernelSize - 1 - order) * (x - 1)^order: one pass for each factor, over a range that grows downward.
template <class T>
ZelStatus genSobelKernel(T* dst, int kernelSize, int order, int sign)
{
    if (auto status = checkPointers(dst)) return status;
    if (kernelSize < 1 || kernelSize % 2 == 0 || order < 0 || order >= kernelSize) return zelStatusBadSize;
    const int last = kernelSize - 1;
    std::fill_n(dst, last, T(0));
    dst[last] = T(1);
    for (int pass = 0; pass < last; ++pass) {
        const bool smoothing = pass < last - order;
        for (int j = last - 1 - pass; j < last; ++j) dst[j] = T(smoothing ? dst[j] + dst[j + 1] : dst[j] - dst[j + 1]);
    }
    if (sign < 0)
        for (int j = 0; j <= last; ++j) dst[j] = T(-dst[j]);
    return zelStatusOk;
}

} // namespace

// ---- exports: the members by family and type

#define SOBEL_SIZE(Family, Type, name)                                                                     \
    ZelStatus name(ZeliSize roiSize, ZeliMaskSize maskSize, int* bufferSize)                               \
    {                                                                                                      \
        return getBufferSize<Family, Type>(roiSize, maskSize, bufferSize);                                 \
    }
#define SOBEL_8U16S(Family, sizeName, name)                                                                \
    SOBEL_SIZE(Family, To16s, sizeName)                                                                    \
    ZelStatus name(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep, ZeliSize roiSize,              \
                   ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer)     \
    {                                                                                                      \
        return filter8u16s<Family>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType,          \
                                   borderValue, buffer);                                                   \
    }
#define SOBEL_8U8S(Family, sizeName, name)                                                                 \
    SOBEL_SIZE(Family, To8s<QuotientsByFloat>, sizeName)                                                      \
    ZelStatus name(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep, ZeliSize roiSize,               \
                   ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,       \
                   Zel8u* buffer)                                                                          \
    {                                                                                                      \
        return filter8u8s<Family>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType,           \
                                  borderValue, divisor, buffer);                                           \
    }
#define SOBEL_32F(Family, sizeName, name)                                                                  \
    SOBEL_SIZE(Family, To32f, sizeName)                                                                    \
    ZelStatus name(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,             \
                   ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer)    \
    {                                                                                                      \
        return filter32f<Family>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType,            \
                                 borderValue, buffer);                                                     \
    }
#define SCHARR_SIZE(Family, Type, name)                                                                    \
    ZelStatus name(ZeliSize roiSize, int* bufferSize)                                                      \
    {                                                                                                      \
        return getBufferSize<Family, Type>(roiSize, zeliMask3x3, bufferSize);                              \
    }
#define SCHARR_8U16S(Family, sizeName, name)                                                               \
    SCHARR_SIZE(Family, To16s, sizeName)                                                                   \
    ZelStatus name(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep, ZeliSize roiSize,              \
                   ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer)                            \
    {                                                                                                      \
        return filter8u16s<Family>({src, srcStep}, {dst, dstStep}, roiSize, zeliMask3x3, borderType,       \
                                   borderValue, buffer);                                                   \
    }
#define SCHARR_8U8S(Family, sizeName, name)                                                                \
    SCHARR_SIZE(Family, To8s<QuotientsByFloat>, sizeName)                                                      \
    ZelStatus name(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep, ZeliSize roiSize,               \
                   ZeliBorderType borderType, Zel8u borderValue, int divisor, Zel8u* buffer)               \
    {                                                                                                      \
        return filter8u8s<Family>({src, srcStep}, {dst, dstStep}, roiSize, zeliMask3x3, borderType,        \
                                  borderValue, divisor, buffer);                                           \
    }
#define SCHARR_32F(Family, sizeName, name)                                                                 \
    SCHARR_SIZE(Family, To32f, sizeName)                                                                   \
    ZelStatus name(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,             \
                   ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer)                           \
    {                                                                                                      \
        return filter32f<Family>({src, srcStep}, {dst, dstStep}, roiSize, zeliMask3x3, borderType,         \
                                 borderValue, buffer);                                                     \
    }

SOBEL_8U16S(SobelHoriz, zeliFilterSobelHorizGetBufferSize_8u16s_C1R, zeliFilterSobelHorizBorder_8u16s_C1R)
SOBEL_8U8S(SobelHoriz, zeliFilterSobelHorizGetBufferSize_8u8s_C1R, zeliFilterSobelHorizBorder_8u8s_C1R)
SOBEL_32F(SobelHoriz, zeliFilterSobelHorizGetBufferSize_32f_C1R, zeliFilterSobelHorizBorder_32f_C1R)
SOBEL_8U16S(SobelVert, zeliFilterSobelVertGetBufferSize_8u16s_C1R, zeliFilterSobelVertBorder_8u16s_C1R)
SOBEL_8U8S(SobelVert, zeliFilterSobelVertGetBufferSize_8u8s_C1R, zeliFilterSobelVertBorder_8u8s_C1R)
SOBEL_32F(SobelVert, zeliFilterSobelVertGetBufferSize_32f_C1R, zeliFilterSobelVertBorder_32f_C1R)
SOBEL_8U16S(SobelNegVert, zeliFilterSobelNegVertGetBufferSize_8u16s_C1R, zeliFilterSobelNegVertBorder_8u16s_C1R)
SOBEL_8U8S(SobelNegVert, zeliFilterSobelNegVertGetBufferSize_8u8s_C1R, zeliFilterSobelNegVertBorder_8u8s_C1R)
SOBEL_32F(SobelNegVert, zeliFilterSobelNegVertGetBufferSize_32f_C1R, zeliFilterSobelNegVertBorder_32f_C1R)
SOBEL_8U16S(SobelHorizSecond, zeliFilterSobelHorizSecondGetBufferSize_8u16s_C1R, zeliFilterSobelHorizSecondBorder_8u16s_C1R)
SOBEL_8U8S(SobelHorizSecond, zeliFilterSobelHorizSecondGetBufferSize_8u8s_C1R, zeliFilterSobelHorizSecondBorder_8u8s_C1R)
SOBEL_32F(SobelHorizSecond, zeliFilterSobelHorizSecondGetBufferSize_32f_C1R, zeliFilterSobelHorizSecondBorder_32f_C1R)
SOBEL_8U16S(SobelVertSecond, zeliFilterSobelVertSecondGetBufferSize_8u16s_C1R, zeliFilterSobelVertSecondBorder_8u16s_C1R)
SOBEL_8U8S(SobelVertSecond, zeliFilterSobelVertSecondGetBufferSize_8u8s_C1R, zeliFilterSobelVertSecondBorder_8u8s_C1R)
SOBEL_32F(SobelVertSecond, zeliFilterSobelVertSecondGetBufferSize_32f_C1R, zeliFilterSobelVertSecondBorder_32f_C1R)
SOBEL_8U16S(SobelCross, zeliFilterSobelCrossGetBufferSize_8u16s_C1R, zeliFilterSobelCrossBorder_8u16s_C1R)
SOBEL_8U8S(SobelCross, zeliFilterSobelCrossGetBufferSize_8u8s_C1R, zeliFilterSobelCrossBorder_8u8s_C1R)
SOBEL_32F(SobelCross, zeliFilterSobelCrossGetBufferSize_32f_C1R, zeliFilterSobelCrossBorder_32f_C1R)
SCHARR_8U16S(ScharrHoriz, zeliFilterScharrHorizGetBufferSize_8u16s_C1R, zeliFilterScharrHorizBorder_8u16s_C1R)
SCHARR_8U8S(ScharrHoriz, zeliFilterScharrHorizGetBufferSize_8u8s_C1R, zeliFilterScharrHorizBorder_8u8s_C1R)
SCHARR_32F(ScharrHoriz, zeliFilterScharrHorizGetBufferSize_32f_C1R, zeliFilterScharrHorizBorder_32f_C1R)
SCHARR_8U16S(ScharrVert, zeliFilterScharrVertGetBufferSize_8u16s_C1R, zeliFilterScharrVertBorder_8u16s_C1R)
SCHARR_8U8S(ScharrVert, zeliFilterScharrVertGetBufferSize_8u8s_C1R, zeliFilterScharrVertBorder_8u8s_C1R)
SCHARR_32F(ScharrVert, zeliFilterScharrVertGetBufferSize_32f_C1R, zeliFilterScharrVertBorder_32f_C1R)

ZelStatus zeliGenSobelKernel_16s(Zel16s* dst, int kernelSize, int order, int sign)
{
    return genSobelKernel(dst, kernelSize, order, sign);
}

ZelStatus zeliGenSobelKernel_32f(Zel32f* dst, int kernelSize, int order, int sign)
{
    return genSobelKernel(dst, kernelSize, order, sign);
}
