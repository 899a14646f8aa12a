// What the frame knows about the machine, and what it asks zelcore.
#pragma once

#include "zelcv.h"

namespace zelcv {

// So much stays in a core's own caches on all but small processors.
constexpr int kCachedBytes = 1 << 19;

// Brings the cache line at `to` near, to be written soon; any address will do. Stores into memory that is far away stall
// where a core does not see them coming. (Inlined always: compilers leave out calls of functions that do nothing else.)
[[gnu::always_inline]] inline void fetchForWriting(const void* to) { __builtin_prefetch(to, 1); }

inline int ownGetThreadCount()
{
    Zel32s count = 1;
    zelGetNumThreads(&count);
    return count;
}

} // namespace zelcv
