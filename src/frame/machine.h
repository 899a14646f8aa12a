// What the frame asks zelcore about the machine.
#pragma once

#include "zelcv.h"

namespace zelcv {

inline int ownGetThreadCount()
{
    Zel32s count = 1;
    zelGetNumThreads(&count);
    return count;
}

inline int ownGetCacheSize()
{
    Zel32s bytes = 0;
    zelGetMaxCacheSizeB(&bytes);
    return bytes;
}

// The number of cores, with 0 for a single one: a truth value that says "several cores".
inline int ownGetMultiCore()
{
    const int cores = zelGetNumCoresOnDie();
    return cores == 1 ? 0 : cores;
}

// Several cores, for kernels of 3 and 5 taps; always true for the others.
inline int ownGetMultiCoreOdd(int kernelSize)
{
    const int cores = ownGetMultiCore();
    return kernelSize == 3 || kernelSize == 5 ? cores : cores | 1;
}

} // namespace zelcv
