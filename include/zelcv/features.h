/* zelcv, features: Canny edges.
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

#ifdef __cplusplus
}
#endif

#endif
