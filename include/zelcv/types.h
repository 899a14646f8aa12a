/* zelcv: what all functions share: records, enumerations and states, and the version of the library. */
#ifndef ZELCV_TYPES_H
#define ZELCV_TYPES_H

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

#ifdef __cplusplus
}
#endif

#endif
