/* zelcv, smoothing: box averages, Laplacians, Gauss filters.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_SMOOTH_H
#define ZELCV_SMOOTH_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Smoothing filters with border ==============================================================================
 *
 * Lowpass, the average of the pixels under the mask, with S their sum:
 *                     3 by 3                            5 by 5
 *   8u                (S * 7280 + 36400) >> 16          (S * 2621) >> 16       rounded under 3 by 3, cut under 5 by 5
 *   32f               S * 0.11111111f                   S * 0.04f
 *
 * Laplacian, the sum of the second derivatives; positive: brighter around than in the middle:
 *   3 by 3            2  0  2                           5 by 5        2  4   4  4  2
 *                     0 -8  0                                         4  0  -8  0  4
 *                     2  0  2                                         4 -8 -24 -8  4
 *                                                                     4  0  -8  0  4
 *                                                                     2  4   4  4  2
 * 8u16s is exact. 8u8s is trunc(clip((float)S * (1.0f / (float)divisor))) of that sum S, cut toward zero, -128..127. 32f is
 * single precision, in an order that is the same in every build.
 *
 *   src, srcStep    source plane, bytes from row to row
 *   dst, dstStep    destination plane, not the source
 *   roiSize         region in pixels
 *   maskSize        zeliMask3x3 or zeliMask5x5
 *   borderType      what stands outside the region: zeliBorderConstant, Replicate, Wrap, Reflect, ReflectEdge, or InMemory
 *                   (pixels around the region are real and are read); or one of the five plus the InMemory flags of the
 *                   sides whose pixels are real
 *   borderValue     the pixel outside, for zeliBorderConstant
 *   divisor         8u8s only; not 0
 *   buffer          as many bytes as the GetBufferSize function of the same family and type says
 * Errors, in this order: null src, dst or buffer -8; width or height below 1 -6; a step below a row -14; a step not a
 * multiple of its element -108; borderType not known, or other high bits without a flag -5; divisor 0 -5; maskSize -33.
 * GetBufferSize: null bufferSize -8; width or height below 1 -6; maskSize -33.
 *
 * Large regions run on several threads. A buffer must be sized and used under the same thread setting; one buffer serves
 * one call at a time.
 */

/* Bytes of scratch for zeliFilterLowpassBorder_8u_C1R. */
ZELCV_API ZelStatus zeliFilterLowpassGetBufferSize_8u_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterLowpassBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterLowpassGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Average under the mask, 8u. */
ZELCV_API ZelStatus zeliFilterLowpassBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* Average under the mask, 32f. */
ZELCV_API ZelStatus zeliFilterLowpassBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterLaplacianBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterLaplacianGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterLaplacianBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterLaplacianGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterLaplacianBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterLaplacianGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Laplacian, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterLaplacianBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* Laplacian, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterLaplacianBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor, Zel8u* buffer);

/* Laplacian, 32f. */
ZELCV_API ZelStatus zeliFilterLaplacianBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Gauss filter of any odd size. The tap at distance i from the centre is exp(-(i * i) / (2 * sigma * sigma)), scaled so that
 * all kernelSize taps add up to 1; the same taps serve rows and columns. Each sum starts at 0 and runs by rising tap, one
 * rounding for each operation, as in the 32f pipelines.
 *   src, srcStep    source plane, bytes from row to row
 *   dst, dstStep    destination plane, not the source. Steps may be any number from roiSize.width on: rows of a step below
 *                   4 * roiSize.width overlap, and of dst the later row stands
 *   roiSize         region in pixels
 *   kernelSize      odd, 3 or more
 *   sigma           standard deviation in pixels. It is not tested: 0 makes every pixel NaN
 *   borderType      zeliBorderConstant, Replicate, Wrap, Reflect or ReflectEdge, plus zeliBorderInMemoryTop and
 *                   zeliBorderInMemoryBottom where kernelSize / 2 real rows stand above or below and are read
 *   borderValue     the pixel outside, for zeliBorderConstant
 *   buffer          as many bytes as the GetBufferSize function says
 * Errors, in this order: null src, dst or buffer -8; width or height below 1 -6; a step below roiSize.width, as a number of
 * bytes -14; kernelSize below 3 or even, or another borderType or flag -5. Runs on the calling thread. */
ZELCV_API ZelStatus zeliFilterGaussBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, int kernelSize, Zel32f sigma, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterGaussBorder_32f_C1R, under the same thread setting. Null bufferSize -8; width or height
 * below 1 -6; kernelSize below 3 or even -5. */
ZELCV_API ZelStatus zeliFilterGaussGetBufferSize_32f_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize);

#ifdef __cplusplus
}
#endif

#endif
