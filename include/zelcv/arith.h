/* zelcv, arithmetic: the absolute difference of images, and accumulators of sequences.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_ARITH_H
#define ZELCV_ARITH_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Absolute difference ========================================================================================
 *
 * dst = |src1 - src2|, or |src - value|, element by element. 8- and 16-bit results are exact and always fit. 32f is the
 * rounded difference with its sign bit cleared: a NaN gives a NaN, the difference of equal infinities too, and zero is +0.
 *
 * src1, src2, src, dst   first pixel of each plane; dst may be a source (same pointer, same step)
 * ...Step                bytes from one row to the next
 * roiSize                region in pixels
 * value                  the constant; for 8u and 16u limited to the range of the type without notice
 *
 * Errors, in this order: zelStatusNullPointer (-8) for a null plane; zelStatusBadSize (-6) for a width or height below 1;
 * zelStatusBadStep (-14) for a step below the bytes of a row; zelStatusStepNotAligned (-108) for a step that is not a
 * multiple of the element size. Needs no scratch. From 0x40000 elements on it runs on several threads.
 */

/* Absolute difference of two 8u images. */
ZELCV_API ZelStatus zeliAbsDiff_8u_C1R(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step, Zel8u* dst,
        int dstStep, ZeliSize roiSize);

/* Absolute difference of two 16u images. */
ZELCV_API ZelStatus zeliAbsDiff_16u_C1R(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        Zel16u* dst, int dstStep, ZeliSize roiSize);

/* Absolute difference of two 32f images. */
ZELCV_API ZelStatus zeliAbsDiff_32f_C1R(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        Zel32f* dst, int dstStep, ZeliSize roiSize);

/* Absolute difference of two 8u images of three interleaved channels: a row is 3 * roiSize.width elements. */
ZELCV_API ZelStatus zeliAbsDiff_8u_C3R(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step, Zel8u* dst,
        int dstStep, ZeliSize roiSize);

/* Absolute difference of a 8u image and a constant, which is limited to 0..255. */
ZELCV_API ZelStatus zeliAbsDiffC_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep, ZeliSize roiSize,
        int value);

/* Absolute difference of a 16u image and a constant, which is limited to 0..65535. */
ZELCV_API ZelStatus zeliAbsDiffC_16u_C1R(const Zel16u* src, int srcStep, Zel16u* dst, int dstStep, ZeliSize roiSize,
        int value);

/* Absolute difference of a 32f image and a constant, which is used as it stands. */
ZELCV_API ZelStatus zeliAbsDiffC_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
        Zel32f value);

/* ==== Accumulators ===============================================================================================
 *
 * Add a function of a frame into a 32f image that is kept from call to call, so that the moments of a sequence grow frame by
 * frame. With the accumulator a, the source s (s1, s2), and m = 1 where the mask byte is not zero, else 0, all in single
 * precision with one rounding for each operation (squares and products of 8-bit sources are exact before they are added):
 *
 *                  whole region                masked
 *   Add            a + s                       m * s + a
 *   AddSquare      a + s * s                   (s * s) * m + a
 *   AddProduct     a + s1 * s2                 (s1 * s2) * m + a
 *   AddWeighted    a + (s - a) * alpha         (s - a) * (m ? alpha : 0) + a
 *
 * A masked-off pixel is rewritten with a + 0 * x: a NaN or infinity of a 32f source shows there too, and -0 becomes +0.
 *
 *   src, src1, src2   frames; mask: one byte a pixel; srcDst: the accumulator, read and written, not overlapping a frame
 *   ...Step           bytes from row to row; roiSize: region in pixels
 *   alpha             weight of the new frame; any value is used as it stands
 * Errors, in this order: null pointer -8; width or height below 1 -6; a step below a row -14; a step of 16u or 32f planes
 * that is not a multiple of the element -108. With 16u sources the source steps are checked whole, -14 and -108, before the
 * others. No scratch. From 0x40000 pixels on several threads, but for zeliAddWeighted_32f_C1R.
 */

/* Adds a 8u frame. */
ZELCV_API ZelStatus zeliAdd_8u32f_C1IR(const Zel8u* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize);

/* Adds a 8u frame, where the mask is set. */
ZELCV_API ZelStatus zeliAdd_8u32f_C1IMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds a 8s frame. */
ZELCV_API ZelStatus zeliAdd_8s32f_C1IR(const Zel8s* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize);

/* Adds a 8s frame, where the mask is set. */
ZELCV_API ZelStatus zeliAdd_8s32f_C1IMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds a 16u frame. */
ZELCV_API ZelStatus zeliAdd_16u32f_C1IR(const Zel16u* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize);

/* Adds a 16u frame, where the mask is set. */
ZELCV_API ZelStatus zeliAdd_16u32f_C1IMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds a 32f frame, where the mask is set. */
ZELCV_API ZelStatus zeliAdd_32f_C1IMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep, Zel32f* srcDst,
        int srcDstStep, ZeliSize roiSize);

/* Adds the square of a 8u frame. */
ZELCV_API ZelStatus zeliAddSquare_8u32f_C1IR(const Zel8u* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize);

/* Adds the square of a 8u frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddSquare_8u32f_C1IMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the square of a 8s frame. */
ZELCV_API ZelStatus zeliAddSquare_8s32f_C1IR(const Zel8s* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize);

/* Adds the square of a 8s frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddSquare_8s32f_C1IMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the square of a 16u frame. */
ZELCV_API ZelStatus zeliAddSquare_16u32f_C1IR(const Zel16u* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize);

/* Adds the square of a 16u frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddSquare_16u32f_C1IMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the square of a 32f frame. */
ZELCV_API ZelStatus zeliAddSquare_32f_C1IR(const Zel32f* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize);

/* Adds the square of a 32f frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddSquare_32f_C1IMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 8u frames. */
ZELCV_API ZelStatus zeliAddProduct_8u32f_C1IR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 8u frames, where the mask is set. */
ZELCV_API ZelStatus zeliAddProduct_8u32f_C1IMR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 8s frames. */
ZELCV_API ZelStatus zeliAddProduct_8s32f_C1IR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 8s frames, where the mask is set. */
ZELCV_API ZelStatus zeliAddProduct_8s32f_C1IMR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 16u frames. */
ZELCV_API ZelStatus zeliAddProduct_16u32f_C1IR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 16u frames, where the mask is set. */
ZELCV_API ZelStatus zeliAddProduct_16u32f_C1IMR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 32f frames. */
ZELCV_API ZelStatus zeliAddProduct_32f_C1IR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Adds the product of two 32f frames, where the mask is set. */
ZELCV_API ZelStatus zeliAddProduct_32f_C1IMR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize);

/* Moves the accumulator toward a 8u frame. */
ZELCV_API ZelStatus zeliAddWeighted_8u32f_C1IR(const Zel8u* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize, Zel32f alpha);

/* Moves the accumulator toward a 8u frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddWeighted_8u32f_C1IMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize, Zel32f alpha);

/* Moves the accumulator toward a 8s frame. */
ZELCV_API ZelStatus zeliAddWeighted_8s32f_C1IR(const Zel8s* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize, Zel32f alpha);

/* Moves the accumulator toward a 8s frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddWeighted_8s32f_C1IMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize, Zel32f alpha);

/* Moves the accumulator toward a 16u frame. */
ZELCV_API ZelStatus zeliAddWeighted_16u32f_C1IR(const Zel16u* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize, Zel32f alpha);

/* Moves the accumulator toward a 16u frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddWeighted_16u32f_C1IMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize, Zel32f alpha);

/* Moves the accumulator toward a 32f frame. */
ZELCV_API ZelStatus zeliAddWeighted_32f_C1IR(const Zel32f* src, int srcStep, Zel32f* srcDst, int srcDstStep,
        ZeliSize roiSize, Zel32f alpha);

/* Moves the accumulator toward a 32f frame, where the mask is set. */
ZELCV_API ZelStatus zeliAddWeighted_32f_C1IMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        Zel32f* srcDst, int srcDstStep, ZeliSize roiSize, Zel32f alpha);

/* dst = src2 + (src1 - src2) * alpha, on the calling thread. */
ZELCV_API ZelStatus zeliAddWeighted_32f_C1R(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        Zel32f* dst, int dstStep, ZeliSize roiSize, Zel32f alpha);

#ifdef __cplusplus
}
#endif

#endif
