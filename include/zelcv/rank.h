/* zelcv, rank filters: minimum and maximum of rectangles.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_RANK_H
#define ZELCV_RANK_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Minimum and maximum filters ================================================================================
 *
 * The largest or smallest value of a rectangle around each pixel, channel by channel:
 *   dst(x, y) = max or min over i, j of src(x + i - anchor.x, y + j - anchor.y), 0 <= i < maskSize.width, 0 <= j <
 *   maskSize.height
 * where the nearest pixel of the region stands for one outside. The time hardly grows with the rectangle, which may be larger
 * than the region.
 * In 32f the outcome is open where a NaN lies in the rectangle; of both zeros the last one in it is taken, row by row.
 *
 *   src, srcStep   source plane, bytes from row to row
 *   dst, dstStep   destination plane, other memory than src
 *   roiSize        region in pixels
 *   maskSize       width and height of the rectangle in pixels, 1 or more
 *   anchor         the pixel of the rectangle that lies on the output pixel, within it
 *   buffer         as many bytes as the GetBufferSize function of the same layout says
 * Errors, in this order: null src, dst, buffer -8; width or height of roiSize below 1 -6, of maskSize -33; anchor.x or anchor.y
 * outside the rectangle -34; 8u: a step below a row -14; 32f: srcStep below a row -14, not a multiple of 4 -108, then the same
 * of dstStep.
 *
 * All of them run on the calling thread. One buffer serves one call at a time.
 */

/* Bytes of scratch for zeliFilterMaxBorderReplicate_8u_C1R: with H rows in the rectangle 2 * H * (row bytes + 32) + 32 * H
 * + 32, which wraps at 32 bits. Null bufferSize -8; roiWidth below 1 -6; width or height of maskSize below 1 -33. What holds
 * for this function holds for all GetBufferSize functions of minimum and maximum filters. */
ZELCV_API ZelStatus zeliFilterMaxGetBufferSize_8u_C1R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMaxBorderReplicate_8u_C3R. */
ZELCV_API ZelStatus zeliFilterMaxGetBufferSize_8u_C3R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMaxBorderReplicate_8u_C4R. */
ZELCV_API ZelStatus zeliFilterMaxGetBufferSize_8u_C4R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMaxBorderReplicate_32f_C1R. */
ZELCV_API ZelStatus zeliFilterMaxGetBufferSize_32f_C1R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMaxBorderReplicate_32f_C3R. */
ZELCV_API ZelStatus zeliFilterMaxGetBufferSize_32f_C3R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMaxBorderReplicate_32f_C4R. */
ZELCV_API ZelStatus zeliFilterMaxGetBufferSize_32f_C4R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Largest value of a rectangle, 8u, one channel. */
ZELCV_API ZelStatus zeliFilterMaxBorderReplicate_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Largest value of a rectangle, 8u, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterMaxBorderReplicate_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Largest value of a rectangle, 8u, four interleaved channels. */
ZELCV_API ZelStatus zeliFilterMaxBorderReplicate_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Largest value of a rectangle, 32f, one channel. */
ZELCV_API ZelStatus zeliFilterMaxBorderReplicate_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Largest value of a rectangle, 32f, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterMaxBorderReplicate_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Largest value of a rectangle, 32f, four interleaved channels. */
ZELCV_API ZelStatus zeliFilterMaxBorderReplicate_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Bytes of scratch for zeliFilterMinBorderReplicate_8u_C1R. */
ZELCV_API ZelStatus zeliFilterMinGetBufferSize_8u_C1R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMinBorderReplicate_8u_C3R. */
ZELCV_API ZelStatus zeliFilterMinGetBufferSize_8u_C3R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMinBorderReplicate_8u_C4R. */
ZELCV_API ZelStatus zeliFilterMinGetBufferSize_8u_C4R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMinBorderReplicate_32f_C1R. */
ZELCV_API ZelStatus zeliFilterMinGetBufferSize_32f_C1R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMinBorderReplicate_32f_C3R. */
ZELCV_API ZelStatus zeliFilterMinGetBufferSize_32f_C3R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Bytes of scratch for zeliFilterMinBorderReplicate_32f_C4R. */
ZELCV_API ZelStatus zeliFilterMinGetBufferSize_32f_C4R(int roiWidth, ZeliSize maskSize, int* bufferSize);

/* Smallest value of a rectangle, 8u, one channel. */
ZELCV_API ZelStatus zeliFilterMinBorderReplicate_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Smallest value of a rectangle, 8u, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterMinBorderReplicate_8u_C3R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Smallest value of a rectangle, 8u, four interleaved channels. */
ZELCV_API ZelStatus zeliFilterMinBorderReplicate_8u_C4R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Smallest value of a rectangle, 32f, one channel. */
ZELCV_API ZelStatus zeliFilterMinBorderReplicate_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Smallest value of a rectangle, 32f, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterMinBorderReplicate_32f_C3R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

/* Smallest value of a rectangle, 32f, four interleaved channels. */
ZELCV_API ZelStatus zeliFilterMinBorderReplicate_32f_C4R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer);

#ifdef __cplusplus
}
#endif

#endif
