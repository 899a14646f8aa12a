/* zelcv: computer-vision primitives on images in the caller's memory.
 *
 * An image is a pointer to the first pixel of a region and a step: the number of bytes from the start of one row to the
 * start of the next. The region's size is given in pixels. Functions own nothing, keep nothing and print nothing: what a
 * function needs as scratch memory the caller provides, sized by the function's GetBufferSize or GetSize twin.
 *
 * A name says what it works on: zeliFilterSobelHorizBorder_8u16s_C1R takes 8u pixels and gives 16s ones; C1, C3, C4 is the
 * number of interleaved channels; R stands for a region of interest, I for in place, M for masked.
 *
 * Every function returns a ZelStatus: 0 for success, a negative number for an error, with nothing written, a positive number
 * for a warning, with the result delivered. Arguments are checked in one order, and the first fault is returned: pointers,
 * width, height, steps against the bytes of a row, steps against the element size, then what is particular to the function.
 *
 * Results are the same bits on every size, alignment and number of threads, in every build of the library. All functions may
 * be called from several threads at once, as long as destinations, buffers and states are distinct.
 */
#ifndef ZELCV_H
#define ZELCV_H

#include "zelcore.h"

#if defined(_WIN32)
#  if defined(ZELCV_BUILD)
#    define ZELCV_API __declspec(dllexport)
#  else
#    define ZELCV_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__)
#  define ZELCV_API __attribute__((visibility("default")))
#else
#  define ZELCV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Records and enumerations =================================================================================== */

/* Size of a region, in pixels. */
typedef struct {
    Zel32s width;
    Zel32s height;
} ZeliSize;

/* A pixel position. */
typedef struct {
    Zel32s x;
    Zel32s y;
} ZeliPoint;

/* A position between pixels. */
typedef struct {
    Zel32f x;
    Zel32f y;
} ZeliPoint_32f;

/* A rectangle of pixels. */
typedef struct {
    Zel32s x;
    Zel32s y;
    Zel32s width;
    Zel32s height;
} ZeliRect;

/* A line x cos(theta) + y sin(theta) = rho: rho in pixels, theta in radians. Also the resolution of a line search. */
typedef struct {
    Zel32f rho;
    Zel32f theta;
} ZeliPolarPoint;

/* What a flood fill reports: the number of pixels, the value painted (one or three channels), the bounding rectangle. */
typedef struct {
    Zel64f area;
    Zel64f value[3];
    ZeliRect rect;
} ZeliConnectedComp;

/* An image pyramid: levels + 1 entries in each array. The caller fills in images and steps. */
typedef struct {
    Zel8u** images;
    ZeliSize* roiSizes;
    Zel64f* rates; /* scale of each level against level 0 */
    Zel32s* steps;
    Zel8u* state;  /* for the caller's use */
    Zel32s levels; /* number of the last level */
} ZeliPyramid;

/* Version of the library. */
typedef struct {
    Zel32s major;
    Zel32s minor;
    Zel32s majorBuild;
    Zel32s build;
    char targetCode[4];    /* the instruction set this build is for: "mx" is SSE2, "v3" is x86-64-v3 */
    const char* name;
    const char* version;
    const char* buildDate;
} ZelLibVersion;

/* What stands outside a region. The low four bits are the kind; the flags say on which sides real pixels surround it. */
typedef Zel32s ZeliBorderType;
enum {
    zeliBorderConstant = 0,          /* the borderValue of the call */
    zeliBorderReplicate = 1,         /* the nearest pixel:          a a | a b c | c c */
    zeliBorderWrap = 2,              /* periodic continuation:      b c | a b c | a b */
    zeliBorderReflect = 3,           /* mirror on the edge pixel:   c b | a b c | b a */
    zeliBorderReflectEdge = 4,       /* mirror beyond the edge:     b a | a b c | c b */
    zeliBorderInMemory = 6,          /* real pixels on all sides */
    zeliBorderInMemoryTop = 0x10,    /* flag: real rows above the region */
    zeliBorderInMemoryBottom = 0x20, /* flag: real rows below the region */
    zeliBorderInMemoryLeft = 0x40,   /* flag: real columns on the left */
    zeliBorderInMemoryRight = 0x80   /* flag: real columns on the right */
};

/* Size of a fixed mask. */
typedef Zel32s ZeliMaskSize;
enum {
    zeliMask3x3 = 33,
    zeliMask5x5 = 55
};

/* A norm. As a neighbourhood, Inf stands for eight neighbours and L1 for four. */
typedef Zel32s ZeliNormType;
enum {
    zeliNormInf = 0,
    zeliNormL1 = 1,
    zeliNormL2 = 2,
    zeliNormFastMarching = 3 /* watershed only */
};

/* Element type, where it is an argument. */
typedef Zel32s ZeliDataType;
enum {
    zeliData8u = 1,
    zeliData8s = 3,
    zeliData16u = 5,
    zeliData32f = 13
};

/* Shape of a morphology mask, as the library sees it. */
typedef Zel32s ZeliMorphShape;
enum {
    zeliMorphShapeGeneral = 0,
    zeliMorphShapeRectangle = 1, /* the set bytes are a solid rectangle */
    zeliMorphShapeRowRuns = 2,   /* one run in each row */
    zeliMorphShapeEmpty = 3      /* no byte is set */
};

/* How inpainting weighs the known pixels. */
typedef Zel32s ZeliInpaintMode;
enum {
    zeliInpaintFront = 0,   /* by the direction of the front */
    zeliInpaintIsophote = 1 /* by the direction of the isophotes */
};

/* Method of watershed segmentation, and whether to mark the boundaries. */
typedef Zel32s ZeliSegmentFlags;
enum {
    zeliSegmentByQueue = 1,
    zeliSegmentByDistance = 2,
    zeliSegmentMark4 = 64,
    zeliSegmentMark8 = 128
};

/* Parameters of the foreground models. Needed as arguments; the models use their defaults whatever stands in them. */
typedef struct {
    Zel32s reserved;
} ZeliForegroundGaussianParams;
typedef struct {
    Zel32s reserved;
} ZeliForegroundHistogramParams;

/* States. Made by an InitAlloc function and released by its Free function, or made by Init in the caller's memory; their
 * contents are the library's own. */
typedef struct ZeliHaarClassifier_32f ZeliHaarClassifier_32f;
typedef struct ZeliHaarClassifier_32s ZeliHaarClassifier_32s;
typedef struct ZeliMorphState ZeliMorphState;
typedef struct ZeliMorphAdvState ZeliMorphAdvState;
typedef struct ZeliMorphGrayState ZeliMorphGrayState;
typedef struct ZeliPyramidLayer ZeliPyramidLayer;
typedef struct ZeliOptFlowPyrLK ZeliOptFlowPyrLK;
typedef struct ZeliForegroundGaussianState ZeliForegroundGaussianState;
typedef struct ZeliForegroundHistogramState ZeliForegroundHistogramState;
typedef struct ZeliInpaintState ZeliInpaintState;
typedef struct ZeliSRHNState ZeliSRHNState;

/* ==== Version ==================================================================================================== */

/* The version record: constant, never null, the same pointer on every call. */
ZELCV_API const ZelLibVersion* zelcvGetLibVersion(void);

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
