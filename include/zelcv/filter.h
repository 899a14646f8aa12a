/* zelcv, filters: separable kernels in rows and columns, derivatives, and minimum and maximum of rectangles.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_FILTER_H
#define ZELCV_FILTER_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Row and column pipelines ===================================================================================
 *
 * The two halves of a separable filter. The row half filters along rows, makes up the pixels left and right of the
 * region, and writes row y to the memory that dstRows[y] points to. The column half reads a list of row pointers and
 * combines kernelSize rows that follow each other in the list into each row of dst. A caller who keeps a ring of rows
 * between the two never needs a whole image in between.
 *
 * Filters correlate: tap j of the row half meets pixel x - xAnchor + j, tap j of the column half entry y + j of srcRows.
 * C3R filters each of three interleaved channels by itself.
 *
 * Arithmetic, with recip = 1.0f / (float)divisor; clip limits to the range of the output type and trunc cuts toward zero:
 *   row 8u16s             trunc(clip((float)S * recip)), S the 32-bit integer sum of pixel * tap
 *   row 16s_C1R           trunc(clip(s * recip)), s the single-precision sum; other than 3 and 5 taps are scaled by recip
 *                         before the sum instead
 *   row 16s_C3R           3 and 5 taps as 16s_C1R, others as 8u16s
 *   row Low_16s           low 16 bits of (S * m) >> 14 with m = trunc(16384.0f / divisor); Low_16s_C1R with 5 taps: low 16
 *                         bits of trunc((float)S * recip). S and S * m wrap at 32 bits and nothing saturates
 *   row and column 32f    the single-precision sum, as it stands
 *   column 16s8s, 16s8u, 16s   trunc(clip(s * recip)), s the single-precision sum
 *   column Low_16s        low 16 bits of trunc((float)S * recip)
 * Single-precision sums start at 0 and run by rising tap, one rounding for each operation; integer sums wrap at 32 bits.
 *
 * Row half:
 *   src, srcStep    source plane, bytes from row to row
 *   dstRows         roiSize.height pointers to rows of roiSize.width (C3R: times 3) elements
 *   roiSize         region in pixels
 *   kernel          kernelSize taps
 *   xAnchor         the tap that lies on the output pixel, 0..kernelSize - 1
 *   borderType      zeliBorderConstant, Replicate, Wrap, Reflect or ReflectEdge; no flags
 *   borderValue     the pixel outside for zeliBorderConstant; C3R: pointer to three, needed for that kind only
 *   divisor         the sum is divided by it; not 0
 *   buffer          as many bytes as the GetBufferSize function of the same name says
 * Errors, in this order: null src, dstRows, kernel, buffer -8; height, width, kernelSize below 1 -6; xAnchor outside the
 * kernel -34; srcStep below a row -14, not a multiple of the element -108; borderType not one of the five -5, in C3R a null
 * borderValue with zeliBorderConstant -8; divisor 0 -5. A null entry of dstRows gives -8 when the work meets it: rows before
 * it (with several threads: rows of other bands too) are written.
 *
 * Column half:
 *   srcRows         roiSize.height + kernelSize - 1 pointers to rows; the same row may appear more than once
 *   dst, dstStep    destination plane, bytes from row to row
 *   kernel, kernelSize, divisor, buffer   as above
 * Errors, in this order: null srcRows, dst, kernel -8; height, width, kernelSize below 1 -6; dstStep below a row -14, not a
 * multiple of the element -108; null buffer -8; divisor 0 -5; a null entry of srcRows -8. Nothing is written then.
 *
 * Both halves divide large regions among threads (from 32768 pixels for each thread on). A buffer must be sized and used
 * under the same thread setting (zelSetNumThreads); one buffer serves one call at a time.
 */

/* Bytes of scratch for zeliFilterRowBorderPipeline_8u16s_C1R. Null bufferSize -8; width, height or kernelSize below
 * 1 -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterRowBorderPipeline_8u16s_C3R. Null bufferSize -8; width, height or kernelSize below
 * 1 -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_8u16s_C3R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterRowBorderPipeline_16s_C1R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_16s_C1R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterRowBorderPipeline_16s_C3R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_16s_C3R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterRowBorderPipeline_Low_16s_C1R. Null bufferSize -8; width, height or kernelSize
 * below 1 -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C1R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterRowBorderPipeline_Low_16s_C3R. Null bufferSize -8; width, height or kernelSize
 * below 1 -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C3R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterRowBorderPipeline_32f_C1R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_32f_C1R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterRowBorderPipeline_32f_C3R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterRowBorderPipelineGetBufferSize_32f_C3R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Filters 8u rows to 16s rows, one channel. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* const* dstRows,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        Zel8u borderValue, int divisor, Zel8u* buffer);

/* Filters 8u rows to 16s rows, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_8u16s_C3R(const Zel8u* src, int srcStep, Zel16s* const* dstRows,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        const Zel8u* borderValue, int divisor, Zel8u* buffer);

/* Filters 16s rows to 16s rows, one channel. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_16s_C1R(const Zel16s* src, int srcStep, Zel16s* const* dstRows,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        Zel16s borderValue, int divisor, Zel8u* buffer);

/* Filters 16s rows to 16s rows, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_16s_C3R(const Zel16s* src, int srcStep, Zel16s* const* dstRows,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        const Zel16s* borderValue, int divisor, Zel8u* buffer);

/* Filters 16s rows to 16s rows in wrapping fixed point, one channel. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_Low_16s_C1R(const Zel16s* src, int srcStep, Zel16s* const* dstRows,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        Zel16s borderValue, int divisor, Zel8u* buffer);

/* Filters 16s rows to 16s rows in wrapping fixed point, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_Low_16s_C3R(const Zel16s* src, int srcStep, Zel16s* const* dstRows,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        const Zel16s* borderValue, int divisor, Zel8u* buffer);

/* Filters 32f rows to 32f rows, one channel. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_32f_C1R(const Zel32f* src, int srcStep, Zel32f* const* dstRows,
        ZeliSize roiSize, const Zel32f* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        Zel32f borderValue, Zel8u* buffer);

/* Filters 32f rows to 32f rows, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterRowBorderPipeline_32f_C3R(const Zel32f* src, int srcStep, Zel32f* const* dstRows,
        ZeliSize roiSize, const Zel32f* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
        const Zel32f* borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterColumnPipeline_16s8s_C1R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8s_C1R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_16s8s_C3R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8s_C3R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_16s8u_C1R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8u_C1R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_16s8u_C3R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8u_C3R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_16s_C1R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_16s_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_16s_C3R. Null bufferSize -8; width, height or kernelSize below 1
 * -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_16s_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_Low_16s_C1R. Null bufferSize -8; width, height or kernelSize below
 * 1 -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_Low_16s_C1R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_Low_16s_C3R. Null bufferSize -8; width, height or kernelSize below
 * 1 -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_Low_16s_C3R(ZeliSize roiSize, int kernelSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_32f_C1R. It is always 32. Null bufferSize -8; width, height or
 * kernelSize below 1 -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_32f_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize);

/* Bytes of scratch for zeliFilterColumnPipeline_32f_C3R. It is always 32. Null bufferSize -8; width, height or
 * kernelSize below 1 -6. */
ZELCV_API ZelStatus zeliFilterColumnPipelineGetBufferSize_32f_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize);

/* Combines 16s rows to an 8s image, one channel. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_16s8s_C1R(const Zel16s* const* srcRows, Zel8s* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 16s rows to an 8s image, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_16s8s_C3R(const Zel16s* const* srcRows, Zel8s* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 16s rows to an 8u image, one channel. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_16s8u_C1R(const Zel16s* const* srcRows, Zel8u* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 16s rows to an 8u image, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_16s8u_C3R(const Zel16s* const* srcRows, Zel8u* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 16s rows to a 16s image, one channel. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_16s_C1R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 16s rows to a 16s image, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_16s_C3R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 16s rows to a 16s image, wrapping, one channel. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_Low_16s_C1R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 16s rows to a 16s image, wrapping, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_Low_16s_C3R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep,
        ZeliSize roiSize, const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer);

/* Combines 32f rows to a 32f image, always on the calling thread, one channel. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_32f_C1R(const Zel32f* const* srcRows, Zel32f* dst, int dstStep,
        ZeliSize roiSize, const Zel32f* kernel, int kernelSize, Zel8u* buffer);

/* Combines 32f rows to a 32f image, always on the calling thread, three interleaved channels. */
ZELCV_API ZelStatus zeliFilterColumnPipeline_32f_C3R(const Zel32f* const* srcRows, Zel32f* dst, int dstStep,
        ZeliSize roiSize, const Zel32f* kernel, int kernelSize, Zel8u* buffer);

/* ==== Derivative filters with border =============================================================================
 *
 * Sobel and Scharr filters of 3 by 3 or 5 by 5, each a row stage followed by a column stage (taps by rising coordinate;
 * filters correlate). Scharr filters are 3 by 3 and take no maskSize.
 *
 *                     3 by 3: row, column             5 by 5: row, column
 *   SobelHoriz         1  2  1    -1  0  1             1  4  6  4  1    -1 -2  0  2  1     positive: brighter below
 *   SobelVert          1  0 -1     1  2  1             1  2  0 -2 -1     1  4  6  4  1     positive: brighter on the left
 *   SobelNegVert       1  0 -1    -1 -2 -1             1  2  0 -2 -1    -1 -4 -6 -4 -1     positive: brighter on the right
 *   SobelHorizSecond   1  2  1     1 -2  1             1  4  6  4  1     1  0 -2  0  1
 *   SobelVertSecond    1 -2  1     1  2  1             1  0 -2  0  1     1  4  6  4  1
 *   SobelCross         1  0 -1    -1  0  1             1  2  0 -2 -1    -1 -2  0  2  1
 *   ScharrHoriz        3 10  3    -1  0  1                                                 positive: brighter below
 *   ScharrVert        -1  0  1     3 10  3                                                 positive: brighter on the right
 *
 * 8u16s is exact. 8u8s is trunc(clip((float)S * (1.0f / (float)divisor))) of that sum S, cut toward zero, -128..127. 32f is
 * single precision in both stages, in an order that is the same in every build.
 *
 *   src, srcStep    source plane, bytes from row to row
 *   dst, dstStep    destination plane, not the source
 *   roiSize         region in pixels
 *   maskSize        zeliMask3x3 or zeliMask5x5
 *   borderType      what stands outside the region: zeliBorderConstant, Replicate, Wrap, Reflect, ReflectEdge, or InMemory
 *                   (pixels around the region are real and are read); or one of the five plus the InMemory flags of the
 *                   sides whose pixels are real
 *   borderValue     the pixel outside, for zeliBorderConstant. Whole rows outside hold borderValue times the sum of the row
 *                   taps, which is 0 for a derivative along the row
 *   divisor         8u8s only; not 0
 *   buffer          as many bytes as the GetBufferSize function of the same family and type says
 * Errors, in this order: null src, dst or buffer -8; width or height below 1 -6; a step below a row -14; a step not a
 * multiple of its element -108; borderType not known, or other high bits without a flag -5; divisor 0 -5; maskSize -33.
 * GetBufferSize: null bufferSize -8; width or height below 1 -6; maskSize -33.
 *
 * Large regions run on several threads. A buffer must be sized and used under the same thread setting; one buffer serves
 * one call at a time.
 */

/* Bytes of scratch for zeliFilterSobelHorizBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelHorizGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelHorizBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelHorizGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelHorizBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterSobelHorizGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* First derivative down the columns, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterSobelHorizBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* First derivative down the columns, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterSobelHorizBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,
        Zel8u* buffer);

/* First derivative down the columns, 32f. */
ZELCV_API ZelStatus zeliFilterSobelHorizBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterSobelVertBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelVertGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelVertBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelVertGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelVertBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterSobelVertGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* First derivative along the rows, left minus right, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterSobelVertBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* First derivative along the rows, left minus right, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterSobelVertBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,
        Zel8u* buffer);

/* First derivative along the rows, left minus right, 32f. */
ZELCV_API ZelStatus zeliFilterSobelVertBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterSobelNegVertBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelNegVertGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelNegVertBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelNegVertGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelNegVertBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterSobelNegVertGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* First derivative along the rows, right minus left, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterSobelNegVertBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* First derivative along the rows, right minus left, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterSobelNegVertBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,
        Zel8u* buffer);

/* First derivative along the rows, right minus left, 32f. */
ZELCV_API ZelStatus zeliFilterSobelNegVertBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterSobelHorizSecondBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelHorizSecondGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelHorizSecondBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelHorizSecondGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelHorizSecondBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterSobelHorizSecondGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Second derivative down the columns, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterSobelHorizSecondBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst,
        int dstStep, ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue,
        Zel8u* buffer);

/* Second derivative down the columns, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterSobelHorizSecondBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,
        Zel8u* buffer);

/* Second derivative down the columns, 32f. */
ZELCV_API ZelStatus zeliFilterSobelHorizSecondBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterSobelVertSecondBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelVertSecondGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelVertSecondBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelVertSecondGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelVertSecondBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterSobelVertSecondGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Second derivative along the rows, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterSobelVertSecondBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* Second derivative along the rows, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterSobelVertSecondBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,
        Zel8u* buffer);

/* Second derivative along the rows, 32f. */
ZELCV_API ZelStatus zeliFilterSobelVertSecondBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterSobelCrossBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelCrossGetBufferSize_8u16s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelCrossBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterSobelCrossGetBufferSize_8u8s_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Bytes of scratch for zeliFilterSobelCrossBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterSobelCrossGetBufferSize_32f_C1R(ZeliSize roiSize, ZeliMaskSize maskSize,
        int* bufferSize);

/* Mixed second derivative, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterSobelCrossBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* Mixed second derivative, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterSobelCrossBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel8u borderValue, int divisor,
        Zel8u* buffer);

/* Mixed second derivative, 32f. */
ZELCV_API ZelStatus zeliFilterSobelCrossBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliMaskSize maskSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterScharrHorizBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterScharrHorizGetBufferSize_8u16s_C1R(ZeliSize roiSize, int* bufferSize);

/* Bytes of scratch for zeliFilterScharrHorizBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterScharrHorizGetBufferSize_8u8s_C1R(ZeliSize roiSize, int* bufferSize);

/* Bytes of scratch for zeliFilterScharrHorizBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterScharrHorizGetBufferSize_32f_C1R(ZeliSize roiSize, int* bufferSize);

/* First derivative down the columns, Scharr weights, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterScharrHorizBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* First derivative down the columns, Scharr weights, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterScharrHorizBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType borderType, Zel8u borderValue, int divisor, Zel8u* buffer);

/* First derivative down the columns, Scharr weights, 32f. */
ZELCV_API ZelStatus zeliFilterScharrHorizBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Bytes of scratch for zeliFilterScharrVertBorder_8u16s_C1R. */
ZELCV_API ZelStatus zeliFilterScharrVertGetBufferSize_8u16s_C1R(ZeliSize roiSize, int* bufferSize);

/* Bytes of scratch for zeliFilterScharrVertBorder_8u8s_C1R. */
ZELCV_API ZelStatus zeliFilterScharrVertGetBufferSize_8u8s_C1R(ZeliSize roiSize, int* bufferSize);

/* Bytes of scratch for zeliFilterScharrVertBorder_32f_C1R. */
ZELCV_API ZelStatus zeliFilterScharrVertGetBufferSize_32f_C1R(ZeliSize roiSize, int* bufferSize);

/* First derivative along the rows, right minus left, Scharr weights, 8u to 16s. */
ZELCV_API ZelStatus zeliFilterScharrVertBorder_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType borderType, Zel8u borderValue, Zel8u* buffer);

/* First derivative along the rows, right minus left, Scharr weights, 8u to 8s over a divisor. */
ZELCV_API ZelStatus zeliFilterScharrVertBorder_8u8s_C1R(const Zel8u* src, int srcStep, Zel8s* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType borderType, Zel8u borderValue, int divisor, Zel8u* buffer);

/* First derivative along the rows, right minus left, Scharr weights, 32f. */
ZELCV_API ZelStatus zeliFilterScharrVertBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep,
        ZeliSize roiSize, ZeliBorderType borderType, Zel32f borderValue, Zel8u* buffer);

/* Taps of a derivative filter of any odd size: tap i is the coefficient of the i-th power in
 * (x + 1)^(kernelSize - 1 - order) * (x - 1)^order, all negated when sign is negative.
 *   dst          kernelSize taps, written
 *   kernelSize   odd, 1 or more, no upper limit; 16s taps wrap at 16 bits
 *   order        order of the derivative, 0..kernelSize - 1
 * Errors: null dst -8; kernelSize below 1 or even, order out of range -6. */
/* Integer taps. */
ZELCV_API ZelStatus zeliGenSobelKernel_16s(Zel16s* dst, int kernelSize, int order, int sign);

/* Single-precision taps. */
ZELCV_API ZelStatus zeliGenSobelKernel_32f(Zel32f* dst, int kernelSize, int order, int sign);

/* ==== Minimum and maximum filters ================================================================================
 *
 * The largest or smallest value of a rectangle around each pixel, channel by channel:
 *   dst(x, y) = max or min over i, j of src(x + i - anchor.x, y + j - anchor.y), 0 <= i < maskSize.width, 0 <= j <
 *   maskSize.height
 * where the nearest pixel of the region stands for one outside. The time hardly grows with the rectangle: 2 or 3 rows and
 * columns more are nothing, sizes up to 7 rows and 5 columns are the fastest. A rectangle may be larger than the region.
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
