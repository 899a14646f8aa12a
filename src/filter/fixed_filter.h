// What the filters with border and fixed stages have in common: masks, types, buffer sizes, checks and drivers. A family
// names its masks, Mask3x3 and where it has one Mask5x5, and the fixed bytes in its buffer sizes.
#pragma once

#include "quotients.h"
#include "taps.h"
#include "wrapping.h"

namespace zelcv {

// ---- masks: what the row stage makes, and a column stage that makes sums of it

template <class Row, class Column>
struct Separable : Column {
    using Rows = RowStages<Row>;
};

template <class Family>
constexpr bool kHas5x5 = requires { typename Family::Mask5x5; };

template <class Family>
ZelStatus checkMaskSize(ZeliMaskSize maskSize)
{
    return maskSize == zeliMask3x3 || (kHas5x5<Family> && maskSize == zeliMask5x5) ? zelStatusOk : zelStatusBadMaskSize;
}

// ---- types: elements, buffer sizes, stages, and how sums under a mask become output elements

// Rows of Mid, of the numbers that a mask's stages make.
template <class Mask, class Type>
struct SummingStages {
    using Src = typename Type::Src;
    using Mid = typename Type::Mid;
    using Rows = typename Mask::Rows;
    static constexpr int kPlanes = Rows::kPlanes;

    static void fillConstant(Mid* row, int apart, Src value) { Rows::fillConstant(row, apart, value); }
    static constexpr auto runRow = Rows::template run<Src, Mid>;
    static void runColumn(const Type& type, const Mid* const* rows, typename Type::Dst* dst, int n, int apart)
    {
        columnStage<Mask>(rows, dst, n, apart, [type](const FilterBlock<Mid>& sums) ZELCV_INLINE {
            return type.template finish<Mask>(sums);
        });
    }
};

struct From8u {
    using Src = Zel8u; using Mid = Zel16s;
    template <class Mask, class Type> using Stages = SummingStages<Mask, Type>;
    static constexpr auto rowSize = zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R;
};
struct From32f {
    using Src = Zel32f; using Mid = Zel32f;
    template <class Mask, class Type> using Stages = SummingStages<Mask, Type>;
    static constexpr auto rowSize = zeliFilterRowBorderPipelineGetBufferSize_32f_C1R;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_32f_C1R;
};

struct To16s : From8u {
    using Dst = Zel16s;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_16s_C1R;

    template <class Mask>
    FilterBlock<Mid> finish(const FilterBlock<Mid>& sums) const
    {
        return sums;
    }
};
template <class Quotients>
struct To8s : From8u, Quotients {
    using Dst = Zel8s;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_16s8s_C1R;

    explicit To8s(int divisor) : Quotients(divisor) {}
    template <class Mask>
    Vec<Zel8s> finish(const FilterBlock<Mid>& sums) const
    {
        return (*this)(sums);
    }
};
struct To32f : From32f {
    using Dst = Zel32f;

    template <class Mask>
    FilterBlock<Mid> finish(const FilterBlock<Mid>& sums) const
    {
        return sums;
    }
};

// ---- buffer sizes

// For each thread: a ring of the original design for each plane, the scratch of both pipelines, and fixed bytes.
template <class Family, class Type>
Zel32s bufferBytes(ZeliSize roi, ZeliMaskSize maskSize)
{
    const bool is3x3 = maskSize == zeliMask3x3;
    Zel32s rowBytes = 0, columnBytes = 0;
    Type::rowSize(roi, is3x3 ? 3 : 5, &rowBytes);
    Type::columnSize(roi, is3x3 ? 3 : 5, &columnBytes);
    const Wrapped plane =
        Wrapped(sizeof(typename Type::Mid)) * ringRowLength(roi.width) * (is3x3 ? 21 : 25) + (is3x3 ? 72 : 120);
    const Wrapped fixed = Family::template fixedBytes<Type>(roi, maskSize);
    return ((plane * Family::Mask3x3::Rows::kPlanes + fixed + rowBytes + columnBytes) * ownGetThreadCount()).value();
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

// ---- drivers

template <class Mask, class Type>
void filterRows(const BorderedSource<typename Type::Src>& source, Plane<typename Type::Dst> dst, const Type& type,
                Zel8u* buffer, Zel32s bufferSize)
{
    using Stages = typename Type::template Stages<Mask, Type>;
    using Mid = typename Stages::Mid;
    using Dst = typename Type::Dst;
    forBands(source.size, Gate::borderFilter(), [&](Band band) {
        const Carver share(buffer + std::ptrdiff_t(bufferSize / band.count) * band.index);
        filterBand<Mid, Stages::kPlanes, kFilterBlock<typename Type::Mid>>(
            std::integral_constant<int, Mask::kCount>(), source, dst, band, share,
            [&](Mid* row, int apart) { Stages::fillConstant(row, apart, source.value); }, Stages::runRow,
            [type](const Mid* const* rows, Dst* out, int n, int apart) { Stages::runColumn(type, rows, out, n, apart); });
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
            filterRows<typename Family::Mask5x5>(source, dst, type, buffer, bufferSize);
            return zelStatusOk;
        }
    filterRows<typename Family::Mask3x3>(source, dst, type, buffer, bufferSize);
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

// For all types but those that divide.
template <class Family, class Type>
ZelStatus filterChecked(Plane<const typename Type::Src> src, Plane<typename Type::Dst> dst, ZeliSize roi,
                        ZeliMaskSize maskSize, ZeliBorderType border, typename Type::Src value, Zel8u* buffer)
{
    if (auto status = checkPlanes(src, dst, roi, border, buffer)) return status;
    return filter<Family>(src, dst, roi, maskSize, border, value, Type{}, buffer);
}

template <class Family>
ZelStatus filter8u8s(Plane<const Zel8u> src, Plane<Zel8s> dst, ZeliSize roi, ZeliMaskSize maskSize, ZeliBorderType border,
                     Zel8u value, int divisor, Zel8u* buffer)
{
    if (auto status = checkPlanes(src, dst, roi, border, buffer)) return status;
    if (divisor == 0) return zelStatusBadArgument;
    if (QuotientsByProduct::isExact(divisor))
        return filter<Family>(src, dst, roi, maskSize, border, value, To8s<QuotientsByProduct>(divisor), buffer);
    return filter<Family>(src, dst, roi, maskSize, border, value, To8s<QuotientsByFloat>(divisor), buffer);
}

} // namespace zelcv
