/* zelcv, features: Canny edges, corner measures, gradients of colour images, angles.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_FEATURES_H
#define ZELCV_FEATURES_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Canny edges ================================================================================================
 *
 * Edge map from two derivative planes, such as the Sobel filters give. The strength of a pixel is |dx| + |dy| (0 unless it
 * exceeds lowThreshold). A pixel survives when it is the strongest of its two neighbours across the edge, in one of four
 * directions; survivors above highThreshold are edges, and so is each survivor that is linked to an edge through 8-neighbour
 * steps from survivor to survivor. Along a row or column the first pixel of a plateau of two survives, on a diagonal none.
 *
 *   srcDx, srcDy    derivative planes, growing to the right and downward, as zeliFilterSobelNegVertBorder and
 *                   zeliFilterSobelHorizBorder give them
 *   dst             edge map: 255 on an edge, 0 elsewhere
 *   ...Step         bytes from row to row
 *   roiSize         region in pixels; outside it the strength is 0
 *   lowThreshold, highThreshold   0 <= low <= high; the 16s form cuts lowThreshold to an integer
 *   buffer          as many bytes as zeliCannyGetSize says; one buffer serves one call at a time
 * Errors, in this order: null srcDx, srcDy, dst, buffer -8; width or height below 1 -6; a step below a row -14; a source step
 * not a multiple of its element -108; lowThreshold below 0 or highThreshold below lowThreshold -5. Runs on the calling
 * thread.
 */

/* Bytes of scratch for both zeliCanny functions. Null bufferSize -8; width or height below 1 -6. */
ZELCV_API ZelStatus zeliCannyGetSize(ZeliSize roiSize, int* bufferSize);

/* Edges from 16s derivatives. */
ZELCV_API ZelStatus zeliCanny_16s8u_C1R(const Zel16s* srcDx, int srcDxStep, const Zel16s* srcDy, int srcDyStep,
        Zel8u* dst, int dstStep, ZeliSize roiSize, Zel32f lowThreshold, Zel32f highThreshold, Zel8u* buffer);

/* Edges from 32f derivatives. */
ZELCV_API ZelStatus zeliCanny_32f8u_C1R(const Zel32f* srcDx, int srcDxStep, const Zel32f* srcDy, int srcDyStep,
        Zel8u* dst, int dstStep, ZeliSize roiSize, Zel32f lowThreshold, Zel32f highThreshold, Zel8u* buffer);

/* ==== Corner measures ============================================================================================
 *
 * The structure tensor of each pixel, [a c; c b]: the averages of dx * dx, dy * dy and dx * dy over avgWindow by avgWindow
 * pixels, in single precision. dx and dy come from the Sobel or Scharr filters (zeliFilter...VertBorder and
 * zeliFilter...HorizBorder), the averages from zeliFilterLowpassBorder_32f_C1R, both with zeliBorderReplicate. Where both
 * eigenvalues are large there is a corner, where one is an edge.
 *
 * The scale s is 1 / 4080 for apertureSize 3 and 1 / 65280 for 5, times 0.6125 with Scharr filters; it is the same for 8u and
 * 32f sources.
 *   MinEigenVal     the smaller eigenvalue times s: ((a + b) - sqrt(4 * c * c + (a - b) * (a - b))) * (0.5 * s), the root
 *                   and the difference in double precision
 *   EigenValsVecs   six numbers a pixel, of a, b and c times s, in single precision: the larger eigenvalue l1, the smaller
 *                   one l2, x and y of the first eigenvector, x and y of the second. With t = 0.01 * max(a, b): where t
 *                   exceeds min(a, b) or a * b - c * c, all six are 0; otherwise where t exceeds |c|, the vectors are 1, 0
 *                   and 0, 1; otherwise vector i is (c, li - a), divided by its length, which counts as 1.1920929e-7 at the
 *                   least. With Sobel filters, whose dx grows to the left, c counts negative here
 *
 *   src, srcStep    source plane, bytes from row to row
 *   dst, dstStep    destination plane. For EigenValsVecs rows of 6 * roiSize.width numbers; the caller sees to it that
 *                   dstStep has room for them, since only 4 * roiSize.width bytes are checked
 *   roiSize         region in pixels
 *   kernelKind      0 Sobel, 1 Scharr
 *   apertureSize    size of the derivative filters: 3, with Sobel also 5
 *   avgWindow       size of the averages: 3 or 5
 *   buffer          as many bytes as the GetBufferSize function of the same family and type says
 * Errors, in this order: null src, dst or buffer -8; width or height below 1 -6; a step below one element a pixel -14; a step
 * not a multiple of 4 -108 (8u: dstStep only); kernelKind -5; apertureSize, then avgWindow -6.
 * GetBufferSize: null bufferSize -8; width or height below 1, apertureSize or avgWindow other than 3 and 5 -6.
 *
 * The filters run on several threads where the region is large. A buffer must be sized and used under the same thread
 * setting; one buffer serves one call at a time.
 */

/* Bytes of scratch for zeliMinEigenVal_8u32f_C1R. */
ZELCV_API ZelStatus zeliMinEigenValGetBufferSize_8u32f_C1R(ZeliSize roiSize, int apertureSize, int avgWindow,
        int* bufferSize);

/* Bytes of scratch for zeliMinEigenVal_32f_C1R. */
ZELCV_API ZelStatus zeliMinEigenValGetBufferSize_32f_C1R(ZeliSize roiSize, int apertureSize, int avgWindow,
        int* bufferSize);

/* Smaller eigenvalue, 8u to 32f. */
ZELCV_API ZelStatus zeliMinEigenVal_8u32f_C1R(const Zel8u* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
        int kernelKind, int apertureSize, int avgWindow, Zel8u* buffer);

/* Smaller eigenvalue, 32f. */
ZELCV_API ZelStatus zeliMinEigenVal_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
        int kernelKind, int apertureSize, int avgWindow, Zel8u* buffer);

/* Bytes of scratch for zeliEigenValsVecs_8u32f_C1R. */
ZELCV_API ZelStatus zeliEigenValsVecsGetBufferSize_8u32f_C1R(ZeliSize roiSize, int apertureSize, int avgWindow,
        int* bufferSize);

/* Bytes of scratch for zeliEigenValsVecs_32f_C1R. */
ZELCV_API ZelStatus zeliEigenValsVecsGetBufferSize_32f_C1R(ZeliSize roiSize, int apertureSize, int avgWindow,
        int* bufferSize);

/* Both eigenvalues and eigenvectors, 8u to 32f. */
ZELCV_API ZelStatus zeliEigenValsVecs_8u32f_C1R(const Zel8u* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
        int kernelKind, int apertureSize, int avgWindow, Zel8u* buffer);

/* Both eigenvalues and eigenvectors, 32f. */
ZELCV_API ZelStatus zeliEigenValsVecs_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
        int kernelKind, int apertureSize, int avgWindow, Zel8u* buffer);

/* ==== Gradients of colour images =================================================================================
 *
 * Folds the three channels a, b, c of each pixel, such as the gradients of red, green and blue, into one value.
 *
 *          zeliNormInf           zeliNormL1                            zeliNormL2
 *   8u     max(a, b, c)          ((a + b + c) * 1365 + 2048) >> 12     sqrt((a*a + b*b + c*c) / 3), rounded
 *   16u    max(a, b, c)          ((a + b + c) * 5461 + 8192) >> 14     sqrt((a*a + b*b + c*c) / 3), rounded
 *   32f    max(|a|, |b|, |c|)    |a| + |b| + |c|                       sqrt(a*a + b*b + c*c)
 *
 * Integers give means, floats plain sums, in single precision and from left to right. The 16u mean under L1 falls short by up
 * to 4: three times 65535 give 65531. Of a NaN under 32f Inf see docs/numerics.md.
 *
 *   src, dst        first pixel of each plane: three interleaved channels, and one; they must not overlap
 *   ...Step         bytes from row to row
 *   roiSize         region in pixels
 *   norm            zeliNormInf, zeliNormL1 or zeliNormL2
 * Errors, in this order: null src, dst -8; width or height below 1 -6; a step below a row -14; a step not a multiple of its
 * element -108; another norm -5. Needs no scratch. Called from inside a parallel region it may run on a team of its own, as
 * large as the caller's; otherwise on the calling thread.
 */

ZELCV_API ZelStatus zeliGradientColorToGray_8u_C3C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliNormType norm);

ZELCV_API ZelStatus zeliGradientColorToGray_16u_C3C1R(const Zel16u* src, int srcStep, Zel16u* dst, int dstStep,
        ZeliSize roiSize, ZeliNormType norm);

ZELCV_API ZelStatus zeliGradientColorToGray_32f_C3C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliNormType norm);

/* ==== Angles =====================================================================================================
 *
 * dst[i] = the direction of (x[i], y[i]) in degrees: 0 to the right, 90 along y, up to 360, within a sixth of a degree. By a
 * polynomial and not by a library's arctangent: on the axes the result is off by 0.1405, so that 0 comes out as -0.1405 and
 * 45 as 45.14; (0, 0) gives the same as (1, 0). The sign bit of a negative zero counts.
 *
 * A component that is infinite or not a number makes the four elements meaningless that share a division by definition,
 * counted from the first element: see docs/numerics.md.
 *
 *   y, x, dst       vectors; dst may be one of the others
 *   len             elements in each
 * Errors, in this order: null y, x, dst -8; len below 1 -6. Runs on the calling thread.
 */
ZELCV_API ZelStatus zelibFastArctan_32f(const Zel32f* y, const Zel32f* x, Zel32f* dst, int len);

#ifdef __cplusplus
}
#endif

#endif
