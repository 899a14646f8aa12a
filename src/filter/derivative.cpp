// Sobel and Scharr filters with border: a row stage and a column stage of 3 or 5 fixed taps each, on the engine of
// border_filter.h. 8u16s and 8u8s go through 16-bit integers, which hold every sum; 32f is single precision in both stages.
#include "fixed_filter.h"

#include <algorithm>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- families

using Rising3 = Taps<-1, 0, 1>;
using Rising5 = Taps<-1, -2, 0, 2, 1>;
using Falling3 = Taps<1, 0, -1>;
using Falling5 = Taps<1, 2, 0, -2, -1>;
using Second3 = Taps<1, -2, 1>;
using Scharr3 = Taps<3, 10, 3>;

// The fixed bytes in the 8u16s buffer sizes differ for no reason but that callers know them.
template <int fixedBytes8u16s>
struct Derivative {
    template <class Type>
    static Wrapped fixedBytes(ZeliSize, ZeliMaskSize)
    {
        return std::is_same_v<Type, To16s> ? fixedBytes8u16s : std::is_same_v<Type, To32f> ? 400 : 336;
    }
};

struct SobelHoriz : Derivative<432> {
    using Mask3x3 = Separable<Smooth3, Rising3>;
    using Mask5x5 = Separable<Smooth5, Rising5>;
};
struct SobelVert : Derivative<368> {
    using Mask3x3 = Separable<Falling3, Smooth3>;
    using Mask5x5 = Separable<Falling5, Smooth5>;
};
struct SobelNegVert : Derivative<400> {
    using Mask3x3 = Separable<Falling3, Negated<Smooth3>>;
    using Mask5x5 = Separable<Falling5, Negated<Smooth5>>;
};
struct SobelHorizSecond : Derivative<400> {
    using Mask3x3 = Separable<Smooth3, Second3>;
    using Mask5x5 = Separable<Smooth5, Second5>;
};
struct SobelVertSecond : Derivative<400> {
    using Mask3x3 = Separable<Second3, Smooth3>;
    using Mask5x5 = Separable<Second5, Smooth5>;
};
struct SobelCross : Derivative<400> {
    using Mask3x3 = Separable<Falling3, Rising3>;
    using Mask5x5 = Separable<Falling5, Rising5>;
};
struct ScharrHoriz : Derivative<336> {
    using Mask3x3 = Separable<Scharr3, Rising3>;
};
struct ScharrVert : Derivative<400> {
    using Mask3x3 = Separable<Rising3, Scharr3>;
};

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
        return filterChecked<Family, To16s>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType,          \
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
        return filterChecked<Family, To32f>({src, srcStep}, {dst, dstStep}, roiSize, maskSize, borderType,            \
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
        return filterChecked<Family, To16s>({src, srcStep}, {dst, dstStep}, roiSize, zeliMask3x3, borderType,       \
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
        return filterChecked<Family, To32f>({src, srcStep}, {dst, dstStep}, roiSize, zeliMask3x3, borderType,         \
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
