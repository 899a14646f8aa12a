/* zelcv, statistics: means and standard deviations, norms, minimum and maximum with their places.
 * The conventions of all functions stand in zelcv.h. */
#ifndef ZELCV_STATS_H
#define ZELCV_STATS_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Mean and standard deviation ================================================================================
 *
 * Mean S / n and population standard deviation sqrt(|Q / n - mean^2|) of the n selected pixels; both 0 when n is 0. Integer
 * sums are exact (16u: while a row's sum fits 31 bits). 32f sums in double; when 0.05 * mean^2 exceeds the variance, the
 * deviation is computed a second time from the differences to the mean.
 *
 *   src, srcStep    source plane, bytes from row to row
 *   mask, maskStep  M forms: one byte a pixel, a pixel counts where it is not zero
 *   roiSize         region in pixels
 *   coi             C3C forms: the channel of three that is read, 1..3
 *   mean, stdDev    results; Mean_StdDev stores those that are not null
 * Errors, in this order: null src, mask (and mean, in zeliMean) -8; width or height below 1 -6; a step below a row -14;
 * srcStep not a multiple of the element -108 (16u: before maskStep is looked at); coi -52. No scratch; large regions run on
 * several threads, and 32f sums are then the sums of the bands' sums.
 */

/* Mean of the masked pixels of an 8u image. */
ZELCV_API ZelStatus zeliMean_8u_C1MR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize,
        Zel64f* mean);

/* Mean of the masked pixels of one channel of an 8u image. */
ZELCV_API ZelStatus zeliMean_8u_C3CMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean);

/* Mean of the masked pixels of an 8s image. */
ZELCV_API ZelStatus zeliMean_8s_C1MR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize,
        Zel64f* mean);

/* Mean of the masked pixels of one channel of an 8s image. */
ZELCV_API ZelStatus zeliMean_8s_C3CMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean);

/* Mean of the masked pixels of a 16u image. */
ZELCV_API ZelStatus zeliMean_16u_C1MR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* mean);

/* Mean of the masked pixels of one channel of a 16u image. */
ZELCV_API ZelStatus zeliMean_16u_C3CMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean);

/* Mean of the masked pixels of a 32f image. */
ZELCV_API ZelStatus zeliMean_32f_C1MR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* mean);

/* Mean of the masked pixels of one channel of a 32f image. */
ZELCV_API ZelStatus zeliMean_32f_C3CMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean);

/* Mean and deviation of an 8u image. */
ZELCV_API ZelStatus zeliMean_StdDev_8u_C1R(const Zel8u* src, int srcStep, ZeliSize roiSize, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of an 8u image. */
ZELCV_API ZelStatus zeliMean_StdDev_8u_C1MR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* mean, Zel64f* stdDev);

/* Mean and deviation of one channel of an 8u image. */
ZELCV_API ZelStatus zeliMean_StdDev_8u_C3CR(const Zel8u* src, int srcStep, ZeliSize roiSize, int coi, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of one channel of an 8u image. */
ZELCV_API ZelStatus zeliMean_StdDev_8u_C3CMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean, Zel64f* stdDev);

/* Mean and deviation of an 8s image. */
ZELCV_API ZelStatus zeliMean_StdDev_8s_C1R(const Zel8s* src, int srcStep, ZeliSize roiSize, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of an 8s image. */
ZELCV_API ZelStatus zeliMean_StdDev_8s_C1MR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* mean, Zel64f* stdDev);

/* Mean and deviation of one channel of an 8s image. */
ZELCV_API ZelStatus zeliMean_StdDev_8s_C3CR(const Zel8s* src, int srcStep, ZeliSize roiSize, int coi, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of one channel of an 8s image. */
ZELCV_API ZelStatus zeliMean_StdDev_8s_C3CMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean, Zel64f* stdDev);

/* Mean and deviation of a 16u image. */
ZELCV_API ZelStatus zeliMean_StdDev_16u_C1R(const Zel16u* src, int srcStep, ZeliSize roiSize, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of a 16u image. */
ZELCV_API ZelStatus zeliMean_StdDev_16u_C1MR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* mean, Zel64f* stdDev);

/* Mean and deviation of one channel of a 16u image. */
ZELCV_API ZelStatus zeliMean_StdDev_16u_C3CR(const Zel16u* src, int srcStep, ZeliSize roiSize, int coi, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of one channel of a 16u image. */
ZELCV_API ZelStatus zeliMean_StdDev_16u_C3CMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean, Zel64f* stdDev);

/* Mean and deviation of a 32f image. */
ZELCV_API ZelStatus zeliMean_StdDev_32f_C1R(const Zel32f* src, int srcStep, ZeliSize roiSize, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of a 32f image. */
ZELCV_API ZelStatus zeliMean_StdDev_32f_C1MR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* mean, Zel64f* stdDev);

/* Mean and deviation of one channel of a 32f image. */
ZELCV_API ZelStatus zeliMean_StdDev_32f_C3CR(const Zel32f* src, int srcStep, ZeliSize roiSize, int coi, Zel64f* mean,
        Zel64f* stdDev);

/* Mean and deviation of the masked pixels of one channel of a 32f image. */
ZELCV_API ZelStatus zeliMean_StdDev_32f_C3CMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* mean, Zel64f* stdDev);

/* ==== Norms ======================================================================================================
 *
 * Norm of the masked pixels: x = src for zeliNorm, x = src1 - src2 for zeliNormDiff; zeliNormRel is the norm of src1 - src2
 * over the norm of src2.
 *
 *   Inf   largest |x|
 *   L1    sum of |x|; integer types add 32-bit row totals, which wrap, into 64 bits; 32f adds in double
 *   L2    square root of the sum of x * x. Integer types square and add a row in four single-precision lanes, folded
 *         (lane 0 + lane 2) + (lane 1 + lane 3), then the rest of the row; rows add in double. 32f squares in single and adds
 *         in double, in the order of the pixels
 * NormRel_L2 is the root of the quotient of the two sums. Masked-off pixels of 32f are multiplied by 0, so that a NaN or an
 * infinity there makes the result NaN.
 *
 *   src, src1, src2, mask   planes; ...Step bytes from row to row; roiSize region in pixels
 *   coi                     C3C forms: the channel of three that is read, 1..3
 *   value                   the result
 * Errors, in this order: null pointer -8; width or height below 1 -6; a step below a row -14; a source step not a multiple of
 * the element -108 (zeliNorm: before maskStep is looked at); coi -52. zeliNormRel warns with zelStatusZeroDivisor (6) when
 * the norm of src2 is 0, and gives NaN where the difference has norm 0, -infinity where that is NaN, else +infinity. No
 * scratch; most run on several threads.
 */

/* Inf norm of an image, 8u, one channel. */
ZELCV_API ZelStatus zeliNorm_Inf_8u_C1MR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* Inf norm of an image, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNorm_Inf_8u_C3CMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of an image, 8s, one channel. */
ZELCV_API ZelStatus zeliNorm_Inf_8s_C1MR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* Inf norm of an image, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNorm_Inf_8s_C3CMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of an image, 16u, one channel. */
ZELCV_API ZelStatus zeliNorm_Inf_16u_C1MR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* Inf norm of an image, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNorm_Inf_16u_C3CMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of an image, 32f, one channel. */
ZELCV_API ZelStatus zeliNorm_Inf_32f_C1MR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* Inf norm of an image, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNorm_Inf_32f_C3CMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of an image, 8u, one channel. */
ZELCV_API ZelStatus zeliNorm_L1_8u_C1MR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L1 norm of an image, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L1_8u_C3CMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of an image, 8s, one channel. */
ZELCV_API ZelStatus zeliNorm_L1_8s_C1MR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L1 norm of an image, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L1_8s_C3CMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of an image, 16u, one channel. */
ZELCV_API ZelStatus zeliNorm_L1_16u_C1MR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L1 norm of an image, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L1_16u_C3CMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of an image, 32f, one channel. */
ZELCV_API ZelStatus zeliNorm_L1_32f_C1MR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L1 norm of an image, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L1_32f_C3CMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of an image, 8u, one channel. */
ZELCV_API ZelStatus zeliNorm_L2_8u_C1MR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L2 norm of an image, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L2_8u_C3CMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of an image, 8s, one channel. */
ZELCV_API ZelStatus zeliNorm_L2_8s_C1MR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L2 norm of an image, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L2_8s_C3CMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of an image, 16u, one channel. */
ZELCV_API ZelStatus zeliNorm_L2_16u_C1MR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L2 norm of an image, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L2_16u_C3CMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of an image, 32f, one channel. */
ZELCV_API ZelStatus zeliNorm_L2_32f_C1MR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel64f* value);

/* L2 norm of an image, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNorm_L2_32f_C3CMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference, 8u, one channel. */
ZELCV_API ZelStatus zeliNormDiff_Inf_8u_C1MR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_Inf_8u_C3CMR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference, 8s, one channel. */
ZELCV_API ZelStatus zeliNormDiff_Inf_8s_C1MR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_Inf_8s_C3CMR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference, 16u, one channel. */
ZELCV_API ZelStatus zeliNormDiff_Inf_16u_C1MR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_Inf_16u_C3CMR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference, 32f, one channel. */
ZELCV_API ZelStatus zeliNormDiff_Inf_32f_C1MR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_Inf_32f_C3CMR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference, 8u, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L1_8u_C1MR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L1_8u_C3CMR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference, 8s, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L1_8s_C1MR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L1_8s_C3CMR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference, 16u, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L1_16u_C1MR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L1_16u_C3CMR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference, 32f, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L1_32f_C1MR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L1_32f_C3CMR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference, 8u, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L2_8u_C1MR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L2_8u_C3CMR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference, 8s, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L2_8s_C1MR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L2_8s_C3CMR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference, 16u, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L2_16u_C1MR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L2_16u_C3CMR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference, 32f, one channel. */
ZELCV_API ZelStatus zeliNormDiff_L2_32f_C1MR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNormDiff_L2_32f_C3CMR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference over that of src2, 8u, one channel. */
ZELCV_API ZelStatus zeliNormRel_Inf_8u_C1MR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference over that of src2, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_Inf_8u_C3CMR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference over that of src2, 8s, one channel. */
ZELCV_API ZelStatus zeliNormRel_Inf_8s_C1MR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference over that of src2, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_Inf_8s_C3CMR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference over that of src2, 16u, one channel. */
ZELCV_API ZelStatus zeliNormRel_Inf_16u_C1MR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference over that of src2, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_Inf_16u_C3CMR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* Inf norm of a difference over that of src2, 32f, one channel. */
ZELCV_API ZelStatus zeliNormRel_Inf_32f_C1MR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* Inf norm of a difference over that of src2, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_Inf_32f_C3CMR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference over that of src2, 8u, one channel. */
ZELCV_API ZelStatus zeliNormRel_L1_8u_C1MR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference over that of src2, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L1_8u_C3CMR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference over that of src2, 8s, one channel. */
ZELCV_API ZelStatus zeliNormRel_L1_8s_C1MR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference over that of src2, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L1_8s_C3CMR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference over that of src2, 16u, one channel. */
ZELCV_API ZelStatus zeliNormRel_L1_16u_C1MR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference over that of src2, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L1_16u_C3CMR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L1 norm of a difference over that of src2, 32f, one channel. */
ZELCV_API ZelStatus zeliNormRel_L1_32f_C1MR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L1 norm of a difference over that of src2, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L1_32f_C3CMR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference over that of src2, 8u, one channel. */
ZELCV_API ZelStatus zeliNormRel_L2_8u_C1MR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference over that of src2, 8u, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L2_8u_C3CMR(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference over that of src2, 8s, one channel. */
ZELCV_API ZelStatus zeliNormRel_L2_8s_C1MR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference over that of src2, 8s, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L2_8s_C3CMR(const Zel8s* src1, int src1Step, const Zel8s* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference over that of src2, 16u, one channel. */
ZELCV_API ZelStatus zeliNormRel_L2_16u_C1MR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference over that of src2, 16u, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L2_16u_C3CMR(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* L2 norm of a difference over that of src2, 32f, one channel. */
ZELCV_API ZelStatus zeliNormRel_L2_32f_C1MR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value);

/* L2 norm of a difference over that of src2, 32f, one channel of three. */
ZELCV_API ZelStatus zeliNormRel_L2_32f_C3CMR(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step,
        const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value);

/* ==== Minimum and maximum with position ==========================================================================
 *
 * The smallest and the largest value of a region, or of its masked pixels, and where each first stands: the uppermost row,
 * and in it the leftmost pixel. Without a masked pixel everything is 0. With several threads and a mask, a band without a
 * masked pixel takes part with the value 0.
 *
 *   src, srcStep, mask, maskStep, roiSize, coi   as for the norms
 *   minVal, maxVal       values, in single precision
 *   minIndex, maxIndex   positions in pixels; all four are stored where not null
 * Errors, in this order: null src, mask -8; width or height below 1 -6; a step below a row -14; srcStep not a multiple of the
 * element -108; coi -52. No scratch. From 0x4000 pixels on several threads.
 */

/* Extrema of an 8u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8u_C1R(const Zel8u* src, int srcStep, ZeliSize roiSize, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of an 8u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8u_C1MR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of one channel of an 8u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8u_C3CR(const Zel8u* src, int srcStep, ZeliSize roiSize, int coi, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of one channel of an 8u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8u_C3CMR(const Zel8u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of an 8s image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8s_C1R(const Zel8s* src, int srcStep, ZeliSize roiSize, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of an 8s image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8s_C1MR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of one channel of an 8s image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8s_C3CR(const Zel8s* src, int srcStep, ZeliSize roiSize, int coi, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of one channel of an 8s image. */
ZELCV_API ZelStatus zeliMinMaxIndx_8s_C3CMR(const Zel8s* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of a 16u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_16u_C1R(const Zel16u* src, int srcStep, ZeliSize roiSize, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of a 16u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_16u_C1MR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of one channel of a 16u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_16u_C3CR(const Zel16u* src, int srcStep, ZeliSize roiSize, int coi, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of one channel of a 16u image. */
ZELCV_API ZelStatus zeliMinMaxIndx_16u_C3CMR(const Zel16u* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of a 32f image. */
ZELCV_API ZelStatus zeliMinMaxIndx_32f_C1R(const Zel32f* src, int srcStep, ZeliSize roiSize, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of a 32f image. */
ZELCV_API ZelStatus zeliMinMaxIndx_32f_C1MR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of one channel of a 32f image. */
ZELCV_API ZelStatus zeliMinMaxIndx_32f_C3CR(const Zel32f* src, int srcStep, ZeliSize roiSize, int coi, Zel32f* minVal,
        Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

/* Extrema of the masked pixels of one channel of a 32f image. */
ZELCV_API ZelStatus zeliMinMaxIndx_32f_C3CMR(const Zel32f* src, int srcStep, const Zel8u* mask, int maskStep,
        ZeliSize roiSize, int coi, Zel32f* minVal, Zel32f* maxVal, ZeliPoint* minIndex, ZeliPoint* maxIndex);

#ifdef __cplusplus
}
#endif

#endif
