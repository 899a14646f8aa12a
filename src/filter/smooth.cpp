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

// Sums of bytes at even and at odd pixels apart, in two planes of 16-bit numbers: two neighbours share what both add, and
// bytes need not be widened. In each plane a pixel takes one byte, so that a pixel's place is where its row and the pair that
// it belongs to stand; a block has as many pixels as a vector has bytes. Blocks begin at even pixels.
template <class Mask, class Type>
struct PairingStages {
    using Mid = Zel8u;
    static constexpr int kPlanes = 2, kTaps = Mask::kCount, kReach = kTaps / 2, kBlock = kVectorBytes;

    static void fillConstant(Zel8u* row, int apart, Zel8u value)
    {
        for (int i = 0; i < 2 * apart; i += kBlock) store(row + i, Vec<Zel8u>(splat(Zel16u(kTaps * value))));
    }

    // A stretch that begins or ends at an odd pixel has one more at its end, which is read and written too: another stretch
    // follows there, or the row's end, where whole blocks fit.
    [[gnu::noinline]] static void runRow(const Zel8u* src, Zel8u* mid, int n, int apart)
    {
        const int odd = int(reinterpret_cast<std::uintptr_t>(mid) & 1);
        src += odd, mid += odd;
        forRowBlocks<kBlock, kReach>(n + (n & 1), [=](std::ptrdiff_t i) ZELCV_INLINE {
            const auto pairs = [=](int at) ZELCV_INLINE { return Vec<Zel16u>(load(src + i + at)); };
            // For pixels 2k and 2k + 1 the bytes from 2k - reach to 2k + 1 + reach; the first and the last one are not shared.
            Vec<Zel16u> shared, first, last;
            if constexpr (kTaps == 3) {
                shared = addBytePairs(Vec<Zel8u>(pairs(1)));
                first = pairs(0) & 0xff;
                last = pairs(2) >> 8;
            } else {
                const Vec<Zel16u> left = pairs(0), right = pairs(4);
                shared = addBytePairs(Vec<Zel8u>(pairs(2))) + (left >> 8) + (right & 0xff);
                first = left & 0xff;
                last = right >> 8;
            }
            store(mid + i, Vec<Zel8u>(shared + first));
            store(mid + i + apart, Vec<Zel8u>(shared + last));
        });
    }

    [[gnu::noinline]] static void runColumn(const Type&, const Zel8u* const* rows, Zel8u* dst, int n, int apart)
    {
        std::array<const Zel8u*, kTaps> row;
        std::copy_n(rows, kTaps, row.begin());
        const auto blockAt = [&]<bool aligned>(std::ptrdiff_t i, std::bool_constant<aligned>) ZELCV_INLINE {
            const auto average = [&](std::ptrdiff_t at) ZELCV_INLINE {
                return Mask::average(Vec<Zel16u>(Mask::template sum<Vec<Zel16s>>([&](int tap) ZELCV_INLINE {
                    const Zel8u* const from = row[std::size_t(tap)] + at;
                    return Vec<Zel16s>(aligned ? loadAligned(from) : load(from));
                })));
            };
            return Vec<Zel8u>(average(i) | average(i + apart) << 8);
        };
        const std::ptrdiff_t last = n - kBlock;
        const auto make = [&](std::ptrdiff_t i) ZELCV_INLINE { store(dst + i, blockAt(i, std::true_type())); };
        if (forBlocks<kBlock>(last, make) >= n) return;
        const int odd = int(last & 1);
        const Vec<Zel8u> block = blockAt(last + odd, std::false_type());
        std::memcpy(dst + last + odd, &block, std::size_t(kBlock - odd));
    }
};

struct BoxTo8u : From8u {
    using Dst = Zel8u;
    static constexpr auto columnSize = zeliFilterColumnPipelineGetBufferSize_16s8u_C1R;
    template <class Mask, class Type> using Stages = PairingStages<Mask, Type>;
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
    return filterChecked<Lowpass, BoxTo8u>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue,
                                           buffer);
}

ZelStatus zeliFilterLowpassBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
                                          ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer)
{
    return filterChecked<Lowpass, BoxTo32f>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue,
                                            buffer);
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
    return filterChecked<Laplacian, To16s>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue,
                                           buffer);
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
    return filterChecked<Laplacian, To32f>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType, borderValue,
                                           buffer);
}
