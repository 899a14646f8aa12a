/* zelcore: what the zelcv library asks of the machine it runs on, and the types both libraries share.
 *
 * Element types, status numbers, aligned memory, the thread setting, and a few facts about the processor.
 * Plain C99; every function may be called from any thread at any time.
 */
#ifndef ZELCORE_H
#define ZELCORE_H

#include <stdint.h>

#if defined(_WIN32)
#  if defined(ZELCORE_BUILD)
#    define ZELCORE_API __declspec(dllexport)
#  else
#    define ZELCORE_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__)
#  define ZELCORE_API __attribute__((visibility("default")))
#else
#  define ZELCORE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Element types. Images are arrays of them in the caller's memory. */
typedef uint8_t Zel8u;   /* 8u:  0..255 */
typedef int8_t Zel8s;    /* 8s:  -128..127 */
typedef uint16_t Zel16u; /* 16u: 0..65535 */
typedef int16_t Zel16s;  /* 16s: -32768..32767 */
typedef uint32_t Zel32u;
typedef int32_t Zel32s;  /* 32s */
typedef float Zel32f;    /* 32f: IEEE 754 single */
typedef double Zel64f;   /* 64f: IEEE 754 double */

/* The result of a call: 0 is success; a negative number is an error, and nothing was written; a positive number is a
 * warning, and the result was delivered. An integer and not an enumeration, so that it is 32 bits wide on every compiler. */
typedef Zel32s ZelStatus;

enum {
    zelStatusKernelNotSymmetric = 38, /* warning: the halves of a pyramid kernel differ; the state was created */
    zelStatusTooManyLines = 33,       /* warning: more results than the list has room for; the list is cut */
    zelStatusSizeWarning = 12,        /* warning: a buffer size exceeds 2147483647; it was stored all the same */
    zelStatusZeroDivisor = 6,         /* warning: a divisor was zero; a defined result was delivered */
    zelStatusOk = 0,
    zelStatusFailure = -2,            /* the operation failed */
    zelStatusBadArgument = -5,        /* a parameter lies outside its allowed values */
    zelStatusBadSize = -6,            /* a width, height, length or count is below what is needed */
    zelStatusBadRange = -7,           /* a range of values is empty or reversed */
    zelStatusNullPointer = -8,        /* a required pointer is null */
    zelStatusNoMemory = -9,           /* memory could not be allocated */
    zelStatusOutOfBounds = -11,       /* a point lies outside the region, or a value outside its table */
    zelStatusBadDataType = -12,       /* an element-type code is not known */
    zelStatusBadStep = -14,           /* a step is smaller than the bytes of a row */
    zelStatusBadMaskSize = -33,       /* a mask size is not one the function knows */
    zelStatusBadAnchor = -34,         /* an anchor lies outside its kernel */
    zelStatusBadChannelIndex = -52,   /* a channel of interest is not 1, 2 or 3 */
    zelStatusBadChannelCount = -53,   /* a channel count is not one the function knows */
    zelStatusBadMetric = -56,         /* a distance metric value is below 1 */
    zelStatusStepNotAligned = -108,   /* a step is not a multiple of its element's size */
    zelStatusInternal = -9999         /* an internal consistency check failed */
};

/* Allocates `bytes` bytes, aligned to 64. Null when `bytes` is 0 or the memory is not to be had.
 * The block is released with zelFree and with nothing else. */
ZELCORE_API void* zelMalloc(uint64_t bytes);

/* Releases a block of zelMalloc. Null is allowed and does nothing. */
ZELCORE_API void zelFree(void* block);

/* Stores the number of threads that large operations may use. Until zelSetNumThreads is called this is the first number
 * of the environment variable OMP_NUM_THREADS where that is set, otherwise the number of processors that this process
 * may run on. Null: zelStatusNullPointer (-8). */
ZELCORE_API ZelStatus zelGetNumThreads(Zel32s* count);

/* Sets that number for the whole process. Below 1: zelStatusBadArgument (-5), and the setting stays.
 * Buffers must be sized and used under the same setting. A call may use fewer threads:
 * - never more than 64 or, where that is more, twice the processors of this process;
 * - where the process cannot start as many when the calling thread first needs them, at most half of those that it can
 *   (setting the number again makes it try again);
 * - one in the child of a fork, on the thread that forked, unless the process had no other thread at that time. */
ZELCORE_API ZelStatus zelSetNumThreads(Zel32s count);

/* The number of threads to ask for in a parallel region that is about to open: the setting within the limits told above.
 * A thread that asks for more than it had before starts as many threads for a moment, to see whether they can be had. */
ZELCORE_API Zel32s ownGetNumThreads(void);

/* Stores the size in bytes of the largest cache of the processor (1 MiB where it cannot be read).
 * Null: zelStatusNullPointer (-8). */
ZELCORE_API ZelStatus zelGetMaxCacheSizeB(Zel32s* bytes);

/* The number of cores on the die of the processor; 1 or more. */
ZELCORE_API Zel32s zelGetNumCoresOnDie(void);

/* A plain English sentence for a status number; "Unknown status." for a number that is none. Constant text, never null. */
ZELCORE_API const char* zelGetStatusString(ZelStatus status);

#ifdef __cplusplus
}
#endif

#endif
