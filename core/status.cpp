// A sentence for each status number.
#include "zelcore.h"

const char* zelGetStatusString(ZelStatus status)
{
    switch (status) {
    case zelStatusKernelNotSymmetric: return "The halves of the kernel differ; only its left half is used.";
    case zelStatusTooManyLines: return "There are more results than the list has room for; the list is cut.";
    case zelStatusSizeWarning: return "The buffer size does not fit 31 bits.";
    case zelStatusZeroDivisor: return "A divisor is zero.";
    case zelStatusOk: return "No error.";
    case zelStatusFailure: return "The operation failed.";
    case zelStatusBadArgument: return "A parameter lies outside its allowed values.";
    case zelStatusBadSize: return "A width, height, length or count is too small.";
    case zelStatusBadRange: return "A range of values is empty or reversed.";
    case zelStatusNullPointer: return "A required pointer is null.";
    case zelStatusNoMemory: return "There is not enough memory.";
    case zelStatusOutOfBounds: return "A point lies outside the image, or a value outside its table.";
    case zelStatusBadDataType: return "The element type is not supported.";
    case zelStatusBadStep: return "A row step is smaller than the bytes of one row.";
    case zelStatusBadMaskSize: return "The mask size is not supported.";
    case zelStatusBadAnchor: return "The anchor lies outside its kernel.";
    case zelStatusBadChannelIndex: return "The channel of interest is not 1, 2 or 3.";
    case zelStatusBadChannelCount: return "The number of channels is not supported.";
    case zelStatusBadMetric: return "A distance metric value is below 1.";
    case zelStatusStepNotAligned: return "A row step is not a multiple of the element size.";
    case zelStatusInternal: return "An internal consistency check failed.";
    default: return "Unknown status.";
    }
}
