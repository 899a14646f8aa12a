// What the frame knows about the machine, and what it asks zelcore.
#pragma once

#include "zelcv.h"

namespace zelcv {

// So much stays in a core's own caches on all but small processors.
constexpr int kCachedBytes = 1 << 19;

inline int ownGetThreadCount()
{
    Zel32s count = 1;
    zelGetNumThreads(&count);
    return count;
}

} // namespace zelcv
