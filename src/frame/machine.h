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

} // namespace zelcv
