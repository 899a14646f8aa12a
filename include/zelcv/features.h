/* zelcv, features: Canny edges, gradients of colour images, angles.
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
 * Elements share their divisions by fours. A component that is infinite or not a number makes its four meaningless, and the
 * last bit of a result may depend on the three others: see docs/numerics.md.
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
