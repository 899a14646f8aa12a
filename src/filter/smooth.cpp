// Box averages and Laplacians with border, on the engine of border_filter.h.
//
// A box average adds the pixels under the mask and multiplies the sum: 32f by the rounded ninth or twenty-fifth; 8u by a
// fraction of 2^16 and cuts, with a rounding term under 3 by 3 and none under 5 by 5.
//
// A Laplacian of 3 by 3 has the weights 2 0 2, 0 -8 0, 2 0 2. One of 5 by 5 is the sum of the second derivatives, each
// smoothed across: 1 0 -2 0 1 down the columns of rows under 1 4 6 4 1, and the other way round. Both take two planes of
// intermediate rows.
#include "fixed_filter.h"

using namespace zelcv;

namespace {

// ---- box averages

using Ones3 = Taps<1, 1, 1>;
using Ones5 = Taps<1, 1, 1, 1, 1>;

struct Box3x3 : Separable<Ones3, Ones3> {
    static constexpr Zel32f kFactor = 0.11111111f;
    // (sum * 7280 + 36400) >> 16
    static Vec<Zel16u> average(Vec<Zel16u> sum) { return multiplyHigh(sum + Zel16u(36400 / 7280), splat(Zel16u(7280))); }
};
struct Box5x5 : Separable<Ones5, Ones5> {
    static constexpr Zel32f kFactor = 0.04f;
    // (sum * 2621) >> 16
    static Vec<Zel16u> average(Vec<Zel16u> sum) { return multiplyHigh(sum, splat(Zel16u(2621))); }
};

struct BoxTo8u : From8u {
    using Dst = Zel8u;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_16s8u_C1R;

    template <class Mask>
    Vec<Zel8u> finish(const FilterBlock<Mid>& sums) const
    {
        const auto averages =
            forParts([](Vec<Zel16s> sum) { return Vec<Zel16s>(Mask::average(Vec<Zel16u>(sum))); }, sums);
        return narrowInOrder<Zel8u>(averages.part[0], averages.part[1]);
    }
};
struct BoxTo32f : From32f {
    using Dst = Zel32f;

    template <class Mask>
    FilterBlock<Mid> finish(const FilterBlock<Mid>& sums) const
    {
        return forParts([](Vec<Zel32f> sum) { return sum * splat(Mask::kFactor); }, sums);
    }
};

struct Lowpass {
    using Mask3x3 = Box3x3;
    using Mask5x5 = Box5x5;

    template <class Type>
    static Wrapped fixedBytes(ZeliSize, ZeliMaskSize)
    {
        return std::is_same_v<Type, BoxTo8u> ? 400 : 336;
    }
};

// ---- Laplacians: at(i) is row i of the first plane, at(i, 1) of the second

struct Laplacian3x3 {
    static constexpr int kCount = 3;
    using Rows = RowStages<Taps<1, 0, 1>, Taps<0, 8, 0>>;

    template <class T, class At>
    static T sum(const At& at)
    {
        return (at(0) + at(2)) * splat(LaneOf<T>(2)) - at(1, 1);
    }
};

struct Laplacian5x5 {
    static constexpr int kCount = 5;
    using Rows = RowStages<Smooth5, Second5>;

    // The order of the second plane's additions is its own: the centre comes first.
    template <class T, class At>
    static T sum(const At& at)
    {
        const T smoothed = at(2, 1) * splat(LaneOf<T>(6)) + at(0, 1) + (at(1, 1) + at(3, 1)) * splat(LaneOf<T>(4)) + at(4, 1);
        return Second5::sum<T>(at) + smoothed;
    }
};

struct Laplacian {
    using Mask3x3 = Laplacian3x3;
    using Mask5x5 = Laplacian5x5;

    // For 8u8s under 5 by 5 there is room for a 16-bit image, which is not used: callers know the size.
    template <class Type>
    static Wrapped fixedBytes(ZeliSize roi, ZeliMaskSize maskSize)
    {
        const bool withImage = std::is_same_v<typename Type::Dst, Zel8s> && maskSize == zeliMask5x5;
        return withImage ? ringRowLength(roi.width) * roi.height * 2 + 32 + 608 : Wrapped(608);
    }
};

} // namespace

ZelStatus zeliFilterLowpassGetBufferSize_8u_C1R(ZeliSize roiSize, ZeliMaskSize maskSize, int* bufferSize)
{
    return getBufferSize<Lowpass, BoxTo8u>(roiSize, maskSize, bufferSize);
}

ZelStatus zeliFilterLowpassGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize, int* bufferSize)
{
    return getBufferSize<Lowpass, BoxTo32f>(roiSize, maskSize, bufferSize);
}

ZelStatus zeliFilterLowpassBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep, ZeliSize roiSize,
                                         ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer)
{
    return filterChecked<Lowpass, BoxTo8u>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue, buffer);
}

ZelStatus zeliFilterLowpassBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
                                          ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer)
{
    return filterChecked<Lowpass, BoxTo32f>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue, buffer);
}

ZelStatus zeliFilterLaplacianGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize, int* bufferSize)
{
    return getBufferSize<Laplacian, To16s>(roiSize, maskSize, bufferSize);
}

ZelStatus zeliFilterLaplacianGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize, int* bufferSize)
{
    return getBufferSize<Laplacian, To8s<QuotientsByFloat>>(roiSize, maskSize, bufferSize);
}

ZelStatus zeliFilterLaplacianGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize, int* bufferSize)
{
    return getBufferSize<Laplacian, To32f>(roiSize, maskSize, bufferSize);
}

ZelStatus zeliFilterLaplacianBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep, ZeliSize roiSize,
                                              ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue,
                                              Zel8u* buffer)
{
    return filterChecked<Laplacian, To16s>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue, buffer);
}

ZelStatus zeliFilterLaplacianBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep, ZeliSize roiSize,
                                             ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,
                                             Zel8u* buffer)
{
    return filter8u8s<Laplacian>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue, divisor, buffer);
}

ZelStatus zeliFilterLaplacianBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
                                            ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue,
                                            Zel8u* buffer)
{
    return filterChecked<Laplacian, To32f>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue, buffer);
}
