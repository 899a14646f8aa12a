/* zelcv, morphology: dilation and erosion under masks, what is built of them, gray masks, reconstruction.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_MORPH_H
#define ZELCV_MORPH_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== States of masks ============================================================================================
 *
 * A mask is a rectangle of bytes, of which those that are not 0 are set. Dilation takes the largest and erosion the smallest
 * pixel under the set bytes when the anchor lies on the pixel: of src(x + i - anchor.x, y + j - anchor.y) over all set bytes
 * mask[j * maskSize.width + i], channel by channel. The mask is not turned; outside of the region is its nearest pixel; a
 * mask without set bytes copies. A state holds a mask that has been looked at once, and the memory that filtering with it
 * takes. It sees which kind of mask it is:
 *
 *   rectangle  the set bytes are a solid rectangle. A pixel costs the same for large ones as for small ones
 *   row runs   every row with set bytes has one run of them over the anchor column, the anchor row has set rows on both sides
 *              or is one, and runs of one length stand the same way to the anchor column: discs, crosses, diamonds. A pixel
 *              costs a little for each row, and for each different length
 *   empty      copies
 *   general    all others; a pixel costs a step for each set byte
 *
 *   roiWidth   the widest region that the state is to serve, in pixels
 *   mask       maskSize.width * maskSize.height bytes, row after row without gaps
 *   maskSize   in pixels, both at least 1
 *   anchor     the place of the mask that lies on the pixel, within the mask
 *   state      Init: where to build it, at a multiple of 8 bytes; InitAlloc: where to store the pointer
 * GetSize tells the bytes that Init needs for the anchor in the middle, (maskSize.width >> 1, maskSize.height >> 1). With
 * another anchor a mask may be of another kind and take more: use InitAlloc then, or give room in plenty. Init cannot know
 * how much room it has. Sizes wrap at 32 bits; a state that is larger cannot be built (-9).
 * One state serves all six forms of dilation and erosion, whichever form built it. Larger pixels than those it was built for
 * find the work area too small from some width on: their result is the same, and takes long.
 * A state is one block, that can be built in memory of any kind but not be moved. It serves one call at a time.
 * Errors, in this order: mask null -8; roiWidth, maskSize.width or maskSize.height below 1 -6; anchor outside the mask -34;
 * no memory for looking at the mask -9; size or state null -8; no memory for the state -9. After an error *state is as it
 * was.
 */

/* Bytes of a state for 8u, one channel, with the anchor in the middle. */
ZELCV_API ZelStatus zeliMorphologyGetSize_8u_C1R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 8u, three channels, with the anchor in the middle. */
ZELCV_API ZelStatus zeliMorphologyGetSize_8u_C3R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 8u, four channels, with the anchor in the middle. */
ZELCV_API ZelStatus zeliMorphologyGetSize_8u_C4R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 32f, one channel, with the anchor in the middle. */
ZELCV_API ZelStatus zeliMorphologyGetSize_32f_C1R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 32f, three channels, with the anchor in the middle. */
ZELCV_API ZelStatus zeliMorphologyGetSize_32f_C3R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 32f, four channels, with the anchor in the middle. */
ZELCV_API ZelStatus zeliMorphologyGetSize_32f_C4R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Builds a state for 8u, one channel in the caller's memory. */
ZELCV_API ZelStatus zeliMorphologyInit_8u_C1R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor,
        ZeliMorphState* state);

/* Builds a state for 8u, three channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphologyInit_8u_C3R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor,
        ZeliMorphState* state);

/* Builds a state for 8u, four channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphologyInit_8u_C4R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor,
        ZeliMorphState* state);

/* Builds a state for 32f, one channel in the caller's memory. */
ZELCV_API ZelStatus zeliMorphologyInit_32f_C1R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor,
        ZeliMorphState* state);

/* Builds a state for 32f, three channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphologyInit_32f_C3R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor,
        ZeliMorphState* state);

/* Builds a state for 32f, four channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphologyInit_32f_C4R(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor,
        ZeliMorphState* state);

/* Allocates and builds a state for 8u, one channel. */
ZELCV_API ZelStatus zeliMorphologyInitAlloc_8u_C1R(int roiWidth, const Zel8u* mask, ZeliSize maskSize,
        ZeliPoint anchor, ZeliMorphState** state);

/* Allocates and builds a state for 8u, three channels. */
ZELCV_API ZelStatus zeliMorphologyInitAlloc_8u_C3R(int roiWidth, const Zel8u* mask, ZeliSize maskSize,
        ZeliPoint anchor, ZeliMorphState** state);

/* Allocates and builds a state for 8u, four channels. */
ZELCV_API ZelStatus zeliMorphologyInitAlloc_8u_C4R(int roiWidth, const Zel8u* mask, ZeliSize maskSize,
        ZeliPoint anchor, ZeliMorphState** state);

/* Allocates and builds a state for 32f, one channel. */
ZELCV_API ZelStatus zeliMorphologyInitAlloc_32f_C1R(int roiWidth, const Zel8u* mask, ZeliSize maskSize,
        ZeliPoint anchor, ZeliMorphState** state);

/* Allocates and builds a state for 32f, three channels. */
ZELCV_API ZelStatus zeliMorphologyInitAlloc_32f_C3R(int roiWidth, const Zel8u* mask, ZeliSize maskSize,
        ZeliPoint anchor, ZeliMorphState** state);

/* Allocates and builds a state for 32f, four channels. */
ZELCV_API ZelStatus zeliMorphologyInitAlloc_32f_C4R(int roiWidth, const Zel8u* mask, ZeliSize maskSize,
        ZeliPoint anchor, ZeliMorphState** state);

/* Releases a state of zeliMorphologyInitAlloc, and no other. Null: -8. */
ZELCV_API ZelStatus zeliMorphologyFree(ZeliMorphState* state);

/* ==== Dilation and erosion =======================================================================================
 *
 *   src, srcStep   source
 *   dst, dstStep   result, elsewhere than the source
 *   roiSize        in pixels, not wider than the state's roiWidth
 *   border         zeliBorderReplicate
 *   state          the mask, see above; its memory is used during the call
 * Integers are exact. 32f: of zeros with both signs the last one under the mask counts, row by row. Under general masks the
 * running extreme starts at the smallest (erosion: largest) finite number and is replaced by each pixel in turn, row by row of
 * the mask, unless it is strictly larger (smaller): so infinities of the wrong sign become that number. Under other masks a
 * result is one of the pixels, but open where a NaN is under the mask.
 * Errors, in this order: src, dst or state null -8; width or height below 1 -6; a step below a row -14; 32f: a step not a
 * multiple of 4 -108; another border -5; a region wider than the state's roiWidth -6. No scratch, no memory is allocated; on
 * the calling thread.
 */

/* The largest pixel under the mask, 8u, one channel. */
ZELCV_API ZelStatus zeliDilateBorderReplicate_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The largest pixel under the mask, 8u, three channels. */
ZELCV_API ZelStatus zeliDilateBorderReplicate_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The largest pixel under the mask, 8u, four channels. */
ZELCV_API ZelStatus zeliDilateBorderReplicate_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The largest pixel under the mask, 32f, one channel. */
ZELCV_API ZelStatus zeliDilateBorderReplicate_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The largest pixel under the mask, 32f, three channels. */
ZELCV_API ZelStatus zeliDilateBorderReplicate_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The largest pixel under the mask, 32f, four channels. */
ZELCV_API ZelStatus zeliDilateBorderReplicate_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The smallest pixel under the mask, 8u, one channel. */
ZELCV_API ZelStatus zeliErodeBorderReplicate_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The smallest pixel under the mask, 8u, three channels. */
ZELCV_API ZelStatus zeliErodeBorderReplicate_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The smallest pixel under the mask, 8u, four channels. */
ZELCV_API ZelStatus zeliErodeBorderReplicate_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The smallest pixel under the mask, 32f, one channel. */
ZELCV_API ZelStatus zeliErodeBorderReplicate_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The smallest pixel under the mask, 32f, three channels. */
ZELCV_API ZelStatus zeliErodeBorderReplicate_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* The smallest pixel under the mask, 32f, four channels. */
ZELCV_API ZelStatus zeliErodeBorderReplicate_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphState* state);

/* ==== Opening, closing and their like ============================================================================
 *
 * Two steps of dilation and erosion. The second step of opening and closing takes the mask turned by 180 degrees, with the
 * anchor at (maskSize.width - anchor.x - 1, maskSize.height - anchor.y - 1), so that what survives stays in its place.
 *
 *   opening    erosion, then dilation by the turned mask: what the mask does not fit into is gone
 *   closing    dilation, then erosion by the turned mask: what the mask does not fit in between is filled
 *   top hat    source - opening
 *   black hat  closing - source
 *   gradient   dilation - erosion, both by the mask as it is
 *
 * Differences of 8u stop at 0; of 32f they are rounded once, and negative ones become +0.
 *
 * A state holds the mask, the turned mask and an image in between, for regions of one size.
 *   roiSize, mask, maskSize, anchor   as above; roiSize.height counts too
 *   state        Init: where to build it, at a multiple of 8 bytes; InitAlloc: where to store the pointer
 * GetSize tells the bytes that Init needs, for every anchor. A state of Init takes row runs for general masks, which takes
 * longer; one of InitAlloc does not.
 * Errors, in this order: GetSize and Init: roiSize.height below 1 -6; size or state null -8; then mask null -8;
 * roiSize.width, maskSize.width or maskSize.height below 1 -6; anchor outside the mask -34; no memory -9. InitAlloc looks at
 * the state first and then at roiSize.height. Sizes wrap at 32 bits; a state that is larger cannot be built (-9). After an
 * error of InitAlloc *state is as it was.
 */

/* Bytes of a state for 8u, one channel. */
ZELCV_API ZelStatus zeliMorphAdvGetSize_8u_C1R(ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 8u, three channels. */
ZELCV_API ZelStatus zeliMorphAdvGetSize_8u_C3R(ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 8u, four channels. */
ZELCV_API ZelStatus zeliMorphAdvGetSize_8u_C4R(ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 32f, one channel. */
ZELCV_API ZelStatus zeliMorphAdvGetSize_32f_C1R(ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 32f, three channels. */
ZELCV_API ZelStatus zeliMorphAdvGetSize_32f_C3R(ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Bytes of a state for 32f, four channels. */
ZELCV_API ZelStatus zeliMorphAdvGetSize_32f_C4R(ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, int* size);

/* Builds a state for 8u, one channel in the caller's memory. */
ZELCV_API ZelStatus zeliMorphAdvInit_8u_C1R(ZeliMorphAdvState* state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Builds a state for 8u, three channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphAdvInit_8u_C3R(ZeliMorphAdvState* state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Builds a state for 8u, four channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphAdvInit_8u_C4R(ZeliMorphAdvState* state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Builds a state for 32f, one channel in the caller's memory. */
ZELCV_API ZelStatus zeliMorphAdvInit_32f_C1R(ZeliMorphAdvState* state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Builds a state for 32f, three channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphAdvInit_32f_C3R(ZeliMorphAdvState* state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Builds a state for 32f, four channels in the caller's memory. */
ZELCV_API ZelStatus zeliMorphAdvInit_32f_C4R(ZeliMorphAdvState* state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Allocates and builds a state for 8u, one channel. */
ZELCV_API ZelStatus zeliMorphAdvInitAlloc_8u_C1R(ZeliMorphAdvState** state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Allocates and builds a state for 8u, three channels. */
ZELCV_API ZelStatus zeliMorphAdvInitAlloc_8u_C3R(ZeliMorphAdvState** state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Allocates and builds a state for 8u, four channels. */
ZELCV_API ZelStatus zeliMorphAdvInitAlloc_8u_C4R(ZeliMorphAdvState** state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Allocates and builds a state for 32f, one channel. */
ZELCV_API ZelStatus zeliMorphAdvInitAlloc_32f_C1R(ZeliMorphAdvState** state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Allocates and builds a state for 32f, three channels. */
ZELCV_API ZelStatus zeliMorphAdvInitAlloc_32f_C3R(ZeliMorphAdvState** state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Allocates and builds a state for 32f, four channels. */
ZELCV_API ZelStatus zeliMorphAdvInitAlloc_32f_C4R(ZeliMorphAdvState** state, ZeliSize roiSize, const Zel8u* mask,
        ZeliSize maskSize, ZeliPoint anchor);

/* Releases a state of zeliMorphAdvInitAlloc, and no other. Null: -8. */
ZELCV_API ZelStatus zeliMorphAdvFree(ZeliMorphAdvState* state);

/* The five operations.
 *
 *   src, srcStep   source
 *   dst, dstStep   result, elsewhere than the source
 *   roiSize        in pixels: not wider than the state's, and (width * bytes a pixel, rounded up to 32) * height not below
 *                  that of the state's region
 *   border         zeliBorderReplicate
 *   state          of the same type and channels; its memory is used during the call
 * Errors, in this order: src, dst or state null -8; width or height below 1 -6; a step below a row -14; 32f: a step not a
 * multiple of 4 -108; another border -5; a region too wide or too small for the state -6. A region larger than the state's
 * passes: the image in between is allocated for the call where the state has no room for it, and -9 where that cannot be
 * had. On the calling thread.
 */

/* Opening, 8u, one channel. */
ZELCV_API ZelStatus zeliMorphOpenBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Opening, 8u, three channels. */
ZELCV_API ZelStatus zeliMorphOpenBorder_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Opening, 8u, four channels. */
ZELCV_API ZelStatus zeliMorphOpenBorder_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Opening, 32f, one channel. */
ZELCV_API ZelStatus zeliMorphOpenBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Opening, 32f, three channels. */
ZELCV_API ZelStatus zeliMorphOpenBorder_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Opening, 32f, four channels. */
ZELCV_API ZelStatus zeliMorphOpenBorder_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Closing, 8u, one channel. */
ZELCV_API ZelStatus zeliMorphCloseBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Closing, 8u, three channels. */
ZELCV_API ZelStatus zeliMorphCloseBorder_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Closing, 8u, four channels. */
ZELCV_API ZelStatus zeliMorphCloseBorder_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Closing, 32f, one channel. */
ZELCV_API ZelStatus zeliMorphCloseBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Closing, 32f, three channels. */
ZELCV_API ZelStatus zeliMorphCloseBorder_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Closing, 32f, four channels. */
ZELCV_API ZelStatus zeliMorphCloseBorder_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Top hat, 8u, one channel. */
ZELCV_API ZelStatus zeliMorphTophatBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Top hat, 8u, three channels. */
ZELCV_API ZelStatus zeliMorphTophatBorder_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Top hat, 8u, four channels. */
ZELCV_API ZelStatus zeliMorphTophatBorder_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Top hat, 32f, one channel. */
ZELCV_API ZelStatus zeliMorphTophatBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Top hat, 32f, three channels. */
ZELCV_API ZelStatus zeliMorphTophatBorder_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Top hat, 32f, four channels. */
ZELCV_API ZelStatus zeliMorphTophatBorder_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Black hat, 8u, one channel. */
ZELCV_API ZelStatus zeliMorphBlackhatBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Black hat, 8u, three channels. */
ZELCV_API ZelStatus zeliMorphBlackhatBorder_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Black hat, 8u, four channels. */
ZELCV_API ZelStatus zeliMorphBlackhatBorder_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Black hat, 32f, one channel. */
ZELCV_API ZelStatus zeliMorphBlackhatBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Black hat, 32f, three channels. */
ZELCV_API ZelStatus zeliMorphBlackhatBorder_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Black hat, 32f, four channels. */
ZELCV_API ZelStatus zeliMorphBlackhatBorder_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Gradient, 8u, one channel. */
ZELCV_API ZelStatus zeliMorphGradientBorder_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Gradient, 8u, three channels. */
ZELCV_API ZelStatus zeliMorphGradientBorder_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Gradient, 8u, four channels. */
ZELCV_API ZelStatus zeliMorphGradientBorder_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Gradient, 32f, one channel. */
ZELCV_API ZelStatus zeliMorphGradientBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Gradient, 32f, three channels. */
ZELCV_API ZelStatus zeliMorphGradientBorder_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

/* Gradient, 32f, four channels. */
ZELCV_API ZelStatus zeliMorphGradientBorder_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType border, ZeliMorphAdvState* state);

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
