/* zelcv, morphology: dilation and erosion under masks, what is built of them, gray masks, reconstruction.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_MORPH_H
#define ZELCV_MORPH_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Gray dilation and erosion ==================================================================================
 *
 * Dilation and erosion by a mask of numbers: each is added to the pixel under it, and the largest (smallest) sum is the
 * result. With the mask m of W x H elements and the anchor (ax, ay),
 *
 *   dst(x, y) = max (min) over i, j of src(x + i - ax, y + j - ay) + m[j][i]
 *
 * where the nearest pixel stands for one outside the region. The mask is not mirrored, every element takes part, also a zero,
 * and erosion adds as dilation does: for the classical erosion give it the negated numbers. 8u sums are 32-bit integers,
 * which wrap, and the result is limited to 0..255. 32f results lie between -3.4028235e38 and 3.4028235e38 unless the sum on
 * the way out is infinite; sums that are not numbers take no part.
 *
 * The state is made once: by InitAlloc, and released by Free; or by Init in `size` bytes of the caller's, aligned to 8 bytes.
 * It keeps a copy of the mask. Calls may share it.
 *
 *   src, dst        first pixel of each plane; they must not overlap
 *   ...Step         bytes from row to row
 *   roiSize         region in pixels; that of a call must not exceed the one that the state was made for
 *   mask            W * H numbers, row by row without gaps
 *   maskSize        W and H
 *   anchor          the element over the output pixel
 *   border          zeliBorderReplicate
 * Runs on the calling thread.
 */

/* Bytes of a state: 4 * W * H + 32. Null mask, size -8; a width or height of roiSize or maskSize below 1 -6. */
ZELCV_API ZelStatus zeliMorphGrayGetSize_8u_C1R(ZeliSize roiSize, const Zel32s* mask, ZeliSize maskSize, Zel32s* size);
ZELCV_API ZelStatus zeliMorphGrayGetSize_32f_C1R(ZeliSize roiSize, const Zel32f* mask, ZeliSize maskSize, Zel32s* size);

/* Null mask, state -8; a width or height of roiSize or maskSize below 1 -6; an anchor outside the mask -34. */
ZELCV_API ZelStatus zeliMorphGrayInit_8u_C1R(ZeliMorphGrayState* state, ZeliSize roiSize, const Zel32s* mask,
        ZeliSize maskSize, ZeliPoint anchor);
ZELCV_API ZelStatus zeliMorphGrayInit_32f_C1R(ZeliMorphGrayState* state, ZeliSize roiSize, const Zel32f* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* The same; at last, no memory -9. */
ZELCV_API ZelStatus zeliMorphGrayInitAlloc_8u_C1R(ZeliMorphGrayState** state, ZeliSize roiSize, const Zel32s* mask,
        ZeliSize maskSize, ZeliPoint anchor);
ZELCV_API ZelStatus zeliMorphGrayInitAlloc_32f_C1R(ZeliMorphGrayState** state, ZeliSize roiSize, const Zel32f* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Releases what InitAlloc made. Null -8. */
ZELCV_API ZelStatus zeliMorphGrayFree_8u_C1R(ZeliMorphGrayState* state);
ZELCV_API ZelStatus zeliMorphGrayFree_32f_C1R(ZeliMorphGrayState* state);

/* Null src, dst, state -8; width or height below 1 -6; a step below a row -14; a 32f step not a multiple of 4 -108; another
 * border -5; a region larger than the state's -6. */
ZELCV_API ZelStatus zeliGrayDilateBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, const ZeliMorphGrayState* state);
ZELCV_API ZelStatus zeliGrayDilateBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, const ZeliMorphGrayState* state);
ZELCV_API ZelStatus zeliGrayErodeBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, const ZeliMorphGrayState* state);
ZELCV_API ZelStatus zeliGrayErodeBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, const ZeliMorphGrayState* state);

/* ==== Reconstruction =============================================================================================
 *
 * Lets a marker grow under a mask image until nothing changes:
 *
 *   Dilate   marker = min(dilation of marker, mask), again and again
 *   Erode    marker = max(erosion of marker, mask), again and again
 *
 * with the neighbours that the norm tells. Fills holes, clears objects at the border, finds domes and basins. A marker that
 * lies beyond the mask somewhere is cut back to it first.
 *
 * Of floats, a zero in the result is +0; a marker element that is not a number counts as nothing, a mask element that is not
 * a number sets no limit.
 *
 *   src             the mask image
 *   srcDst          the marker, which becomes the result; it must not overlap src
 *   ...Step         bytes from row to row
 *   roiSize         region in pixels
 *   buffer          as many bytes as GetBufferSize says; one buffer serves one call at a time
 *   norm            zeliNormInf: eight neighbours; zeliNormL1: four
 * Errors, in this order: null src, srcDst, buffer -8; width or height below 1 -6; a step below a row -14; a step not a
 * multiple of its element -108; another norm -5. From 11 rows and columns on it runs on two threads.
 */

/* Bytes of scratch. Null size -8; width or height below 1 -6. */
ZELCV_API ZelStatus zeliMorphReconstructGetBufferSize_8u_C1(ZeliSize roiSize, Zel32s* size);
ZELCV_API ZelStatus zeliMorphReconstructGetBufferSize_16u_C1(ZeliSize roiSize, Zel32s* size);
ZELCV_API ZelStatus zeliMorphReconstructGetBufferSize_32f_C1(ZeliSize roiSize, Zel32s* size);
ZELCV_API ZelStatus zeliMorphReconstructGetBufferSize_64f_C1(ZeliSize roiSize, Zel32s* size);

ZELCV_API ZelStatus zeliMorphReconstructDilate_8u_C1IR(const Zel8u* src, int srcStep, Zel8u* srcDst, int srcDstStep,
        ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);
ZELCV_API ZelStatus zeliMorphReconstructDilate_16u_C1IR(const Zel16u* src, int srcStep, Zel16u* srcDst,
        int srcDstStep, ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);
ZELCV_API ZelStatus zeliMorphReconstructDilate_32f_C1IR(const Zel32f* src, int srcStep, Zel32f* srcDst,
        int srcDstStep, ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);
ZELCV_API ZelStatus zeliMorphReconstructDilate_64f_C1IR(const Zel64f* src, int srcStep, Zel64f* srcDst,
        int srcDstStep, ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);

ZELCV_API ZelStatus zeliMorphReconstructErode_8u_C1IR(const Zel8u* src, int srcStep, Zel8u* srcDst, int srcDstStep,
        ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);
ZELCV_API ZelStatus zeliMorphReconstructErode_16u_C1IR(const Zel16u* src, int srcStep, Zel16u* srcDst,
        int srcDstStep, ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);
ZELCV_API ZelStatus zeliMorphReconstructErode_32f_C1IR(const Zel32f* src, int srcStep, Zel32f* srcDst,
        int srcDstStep, ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);
ZELCV_API ZelStatus zeliMorphReconstructErode_64f_C1IR(const Zel64f* src, int srcStep, Zel64f* srcDst,
        int srcDstStep, ZeliSize roiSize, Zel8u* buffer, ZeliNormType norm);

#ifdef __cplusplus
}
#endif

#endif
