/* zelcv, integral images, and what is read from them: standard deviations in rectangles, Haar classifiers.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_INTEGRAL_H
#define ZELCV_INTEGRAL_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Integral images ============================================================================================
 *
 * Sums of an 8u image, and of its squares, over everything above and to the left of a point (upright) or over the triangle
 * above it whose sides run at 45 degrees (tilted), so that the sum of any box takes four reads.
 *
 *   upright   dst has (width + 1) by (height + 1) elements; row 0 and column 0 are val
 *   tilted    dst has (width + 2) by (height + 2) elements; rows 0 and 1 are val
 *
 *   src, srcStep        8u source
 *   dst, dstStep, val   sums, and the value that they start from
 *   sqr, sqrStep, valSqr   sums of squares, likewise
 *   roiSize             size of the source, in pixels
 * 32s sums wrap. 32f sums: upright, the row's integer sum is converted and added in single to the element above; tilted, each
 * element is computed in double and rounded, and column `width` is added to what already stands there: clear it first.
 * zeliTiltedSqrIntegral_8u32s_C1R reads one pixel behind each source row.
 * Errors, in this order: null pointer -8; width or height below 1 -6; a step below a row of its plane -14; a step not a
 * multiple of its element -108. No scratch; on the calling thread.
 */

/* Upright sums in 32s. */
ZELCV_API ZelStatus zeliIntegral_8u32s_C1R(const Zel8u* src, int srcStep, Zel32s* dst, int dstStep, ZeliSize roiSize,
        Zel32s val);

/* Upright sums in 32f. */
ZELCV_API ZelStatus zeliIntegral_8u32f_C1R(const Zel8u* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
        Zel32f val);

/* Tilted sums in 32s. */
ZELCV_API ZelStatus zeliTiltedIntegral_8u32s_C1R(const Zel8u* src, int srcStep, Zel32s* dst, int dstStep,
        ZeliSize roiSize, Zel32s val);

/* Tilted sums in 32f. */
ZELCV_API ZelStatus zeliTiltedIntegral_8u32f_C1R(const Zel8u* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, Zel32f val);

/* Upright sums in 32s and sums of squares in 32s. */
ZELCV_API ZelStatus zeliSqrIntegral_8u32s_C1R(const Zel8u* src, int srcStep, Zel32s* dst, int dstStep, Zel32s* sqr,
        int sqrStep, ZeliSize roiSize, Zel32s val, Zel32s valSqr);

/* Upright sums in 32s and sums of squares in 64f. */
ZELCV_API ZelStatus zeliSqrIntegral_8u32s64f_C1R(const Zel8u* src, int srcStep, Zel32s* dst, int dstStep, Zel64f* sqr,
        int sqrStep, ZeliSize roiSize, Zel32s val, Zel64f valSqr);

/* Upright sums in 32f and sums of squares in 64f. */
ZELCV_API ZelStatus zeliSqrIntegral_8u32f64f_C1R(const Zel8u* src, int srcStep, Zel32f* dst, int dstStep, Zel64f* sqr,
        int sqrStep, ZeliSize roiSize, Zel32f val, Zel64f valSqr);

/* Tilted sums in 32s and sums of squares in 32s. */
ZELCV_API ZelStatus zeliTiltedSqrIntegral_8u32s_C1R(const Zel8u* src, int srcStep, Zel32s* dst, int dstStep,
        Zel32s* sqr, int sqrStep, ZeliSize roiSize, Zel32s val, Zel32s valSqr);

/* Tilted sums in 32s and sums of squares in 64f. */
ZELCV_API ZelStatus zeliTiltedSqrIntegral_8u32s64f_C1R(const Zel8u* src, int srcStep, Zel32s* dst, int dstStep,
        Zel64f* sqr, int sqrStep, ZeliSize roiSize, Zel32s val, Zel64f valSqr);

/* Tilted sums in 32f and sums of squares in 64f. */
ZELCV_API ZelStatus zeliTiltedSqrIntegral_8u32f64f_C1R(const Zel8u* src, int srcStep, Zel32f* dst, int dstStep,
        Zel64f* sqr, int sqrStep, ZeliSize roiSize, Zel32f val, Zel64f valSqr);

/* ==== Standard deviation in a sliding rectangle ==================================================================
 *
 * For each pixel the standard deviation of the image under a rectangle that slides with it, from an integral image and one of
 * the squares: sqrt(max(0, Q / n - (S / n)^2)).
 *
 *   src, sqr    integral images (tilted ones for Tilted), each with its step; tilted windows may reach columns left of src
 *   dst         one value for each pixel of roiSize
 *   rect        the rectangle, relative to the pixel
 *   scaleFactor Sfs forms: the result is multiplied by 2^-scaleFactor and rounded half up
 * Errors, in this order: null pointer -8; width or height below 1 -6; a step below its row (roiSize.width + rect.x +
 * rect.width elements of src and sqr; tilted: rect.x + rect.y + rect.width + rect.height + roiSize.width - 1) -14; a step
 * not a multiple of its element -108; rect.x or rect.y negative, rect.width or rect.height below 1 -6. No scratch.
 */

/* Upright rectangle; sums 32f, squares 64f, result 32f. */
ZELCV_API ZelStatus zeliRectStdDev_32f_C1R(const Zel32f* src, int srcStep, const Zel64f* sqr, int sqrStep,
        Zel32f* dst, int dstStep, ZeliSize roiSize, ZeliRect rect);

/* Upright rectangle; sums 32s, squares 64f, result 32f. */
ZELCV_API ZelStatus zeliRectStdDev_32s32f_C1R(const Zel32s* src, int srcStep, const Zel64f* sqr, int sqrStep,
        Zel32f* dst, int dstStep, ZeliSize roiSize, ZeliRect rect);

/* Upright rectangle; sums 32s, squares 32s, result 32s. */
ZELCV_API ZelStatus zeliRectStdDev_32s_C1RSfs(const Zel32s* src, int srcStep, const Zel32s* sqr, int sqrStep,
        Zel32s* dst, int dstStep, ZeliSize roiSize, ZeliRect rect, int scaleFactor);

/* Tilted rectangle; sums 32f, squares 64f, result 32f. */
ZELCV_API ZelStatus zeliTiltedRectStdDev_32f_C1R(const Zel32f* src, int srcStep, const Zel64f* sqr, int sqrStep,
        Zel32f* dst, int dstStep, ZeliSize roiSize, ZeliRect rect);

/* Tilted rectangle; sums 32s, squares 64f, result 32f. */
ZELCV_API ZelStatus zeliTiltedRectStdDev_32s32f_C1R(const Zel32s* src, int srcStep, const Zel64f* sqr, int sqrStep,
        Zel32f* dst, int dstStep, ZeliSize roiSize, ZeliRect rect);

/* Tilted rectangle; sums 32s, squares 32s, result 32s. */
ZELCV_API ZelStatus zeliTiltedRectStdDev_32s_C1RSfs(const Zel32s* src, int srcStep, const Zel32s* sqr, int sqrStep,
        Zel32s* dst, int dstStep, ZeliSize roiSize, ZeliRect rect, int scaleFactor);

/* ==== Haar classifiers ===========================================================================================
 *
 * One stage of a cascade detector over integral images. A classifier is a weighted sum t of box sums; it adds value1 to the
 * stage's sum when threshold * norm > t, value2 otherwise; a pixel survives when the stage's sum is not below the stage's
 * threshold. The caller runs the stages one after the other on one shared mask.
 *
 * InitAlloc: rects and weights stand one behind the other for all classifiers, rectCounts[i] of them for classifier i;
 * thresholds, values1 and values2 have one entry a classifier. With no classifiers the first rect is read all the same.
 * Errors, in this order: null pointer -8; classifierCount below 0, a rectCounts entry below 1 -6; a rect with negative x or
 * y, or width or height below 1 (tilted: height above x + 1 too) -5; no memory -9. zeliHaarClassifierInitAlloc_32f looks at
 * the rects before it asks for memory and leaves *state alone when one is bad; the others look at them after that and store
 * null. All other errors leave *state alone.
 * Free: null -8.
 */

/* Makes a stage of upright classifiers with 32f numbers. */
ZELCV_API ZelStatus zeliHaarClassifierInitAlloc_32f(ZeliHaarClassifier_32f** state, const ZeliRect* rects,
        const Zel32f* weights, const Zel32f* thresholds, const Zel32f* values1, const Zel32f* values2,
        const Zel32s* rectCounts, int classifierCount);

/* Makes a stage of tilted classifiers with 32f numbers. */
ZELCV_API ZelStatus zeliTiltedHaarClassifierInitAlloc_32f(ZeliHaarClassifier_32f** state, const ZeliRect* rects,
        const Zel32f* weights, const Zel32f* thresholds, const Zel32f* values1, const Zel32f* values2,
        const Zel32s* rectCounts, int classifierCount);

/* Releases a stage. */
ZELCV_API ZelStatus zeliHaarClassifierFree_32f(ZeliHaarClassifier_32f* state);

/* The extent that the stage reads, in elements of the integral image. Null -8. */
ZELCV_API ZelStatus zeliGetHaarClassifierSize_32f(const ZeliHaarClassifier_32f* state, ZeliSize* size);

/* Turns the classifiers whose mask byte is not zero (one byte each, in the caller's order) into tilted ones, in
 * place, once for each state; flag chooses the corner that stays. Null -8; already tilted -5. */
ZELCV_API ZelStatus zeliTiltHaarFeatures_32f(const Zel8u* mask, int flag, ZeliHaarClassifier_32f* state);

/* Makes a stage of upright classifiers with 32s numbers. */
ZELCV_API ZelStatus zeliHaarClassifierInitAlloc_32s(ZeliHaarClassifier_32s** state, const ZeliRect* rects,
        const Zel32s* weights, const Zel32s* thresholds, const Zel32s* values1, const Zel32s* values2,
        const Zel32s* rectCounts, int classifierCount);

/* Makes a stage of tilted classifiers with 32s numbers. */
ZELCV_API ZelStatus zeliTiltedHaarClassifierInitAlloc_32s(ZeliHaarClassifier_32s** state, const ZeliRect* rects,
        const Zel32s* weights, const Zel32s* thresholds, const Zel32s* values1, const Zel32s* values2,
        const Zel32s* rectCounts, int classifierCount);

/* Releases a stage. */
ZELCV_API ZelStatus zeliHaarClassifierFree_32s(ZeliHaarClassifier_32s* state);

/* The extent that the stage reads, in elements of the integral image. Null -8. */
ZELCV_API ZelStatus zeliGetHaarClassifierSize_32s(const ZeliHaarClassifier_32s* state, ZeliSize* size);

/* Turns the classifiers whose mask byte is not zero (one byte each, in the caller's order) into tilted ones, in
 * place, once for each state; flag chooses the corner that stays. Null -8; already tilted -5. */
ZELCV_API ZelStatus zeliTiltHaarFeatures_32s(const Zel8u* mask, int flag, ZeliHaarClassifier_32s* state);

/* Apply: runs a stage on each pixel of roiSize whose mask byte is not zero, clears the byte where the pixel fails, and counts
 * the survivors in *positive.
 *   src, srcStep     integral image, of which each pixel reads its classifiers' boxes
 *   tilt, tiltStep   Mixed: tilted integral image, read by the tilted classifiers, from one row below and one column right
 *   norm, normStep   the local normalisation, one number a pixel; mask: one byte a pixel, read and written
 *   threshold        of the stage; state: the stage
 *   scaleFactor      zeliApplyMixedHaarClassifier_32s_C1RSfs: 0 or negative, t is shifted left by -scaleFactor, in 64 bits,
 *                    of which 64 and more leave 0; the other function ignores it
 * In a row nothing is read left of what the first marked pixel reads, nor right of what the last one does. Without memory for
 * its scratch a call of the upright functions does nothing and returns 0; the mixed ones need none.
 * Errors, in this order: null pointer -8; height or width below 1 -6; a step below 4 * width (mask: width) -14; an image step
 * not a multiple of 4 -108; a positive scaleFactor in the mixed function -5. On the calling thread. */
/* Upright classifiers on 32f sums. */
ZELCV_API ZelStatus zeliApplyHaarClassifier_32f_C1R(const Zel32f* src, int srcStep, const Zel32f* norm, int normStep,
        Zel8u* mask, int maskStep, ZeliSize roiSize, Zel32s* positive, Zel32f threshold,
        const ZeliHaarClassifier_32f* state);

/* Upright classifiers on 32s sums. */
ZELCV_API ZelStatus zeliApplyHaarClassifier_32s32f_C1R(const Zel32s* src, int srcStep, const Zel32f* norm,
        int normStep, Zel8u* mask, int maskStep, ZeliSize roiSize, Zel32s* positive, Zel32f threshold,
        const ZeliHaarClassifier_32f* state);

/* Upright classifiers on 32s sums. */
ZELCV_API ZelStatus zeliApplyHaarClassifier_32s_C1RSfs(const Zel32s* src, int srcStep, const Zel32s* norm,
        int normStep, Zel8u* mask, int maskStep, ZeliSize roiSize, Zel32s* positive, Zel32s threshold,
        const ZeliHaarClassifier_32s* state, int scaleFactor);

/* Upright and tilted classifiers on 32f sums. */
ZELCV_API ZelStatus zeliApplyMixedHaarClassifier_32f_C1R(const Zel32f* src, int srcStep, const Zel32f* tilt,
        int tiltStep, const Zel32f* norm, int normStep, Zel8u* mask, int maskStep, ZeliSize roiSize, Zel32s* positive,
        Zel32f threshold, const ZeliHaarClassifier_32f* state);

/* Upright and tilted classifiers on 32s sums. */
ZELCV_API ZelStatus zeliApplyMixedHaarClassifier_32s32f_C1R(const Zel32s* src, int srcStep, const Zel32s* tilt,
        int tiltStep, const Zel32f* norm, int normStep, Zel8u* mask, int maskStep, ZeliSize roiSize, Zel32s* positive,
        Zel32f threshold, const ZeliHaarClassifier_32f* state);

/* Upright and tilted classifiers on 32s sums. */
ZELCV_API ZelStatus zeliApplyMixedHaarClassifier_32s_C1RSfs(const Zel32s* src, int srcStep, const Zel32s* tilt,
        int tiltStep, const Zel32s* norm, int normStep, Zel8u* mask, int maskStep, ZeliSize roiSize, Zel32s* positive,
        Zel32s threshold, const ZeliHaarClassifier_32s* state, int scaleFactor);

#ifdef __cplusplus
}
#endif

#endif
