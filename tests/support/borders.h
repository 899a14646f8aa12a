// The border rule as a definition: walk back into the line, one bounce at a time.
#pragma once

#include "zelcv.h"

#include <limits>

namespace zeltest {

constexpr int kConstant = std::numeric_limits<int>::min();

// Which pixel of a line of `length` stands for pixel `i`; kConstant for the border value. `lowReal` and `highReal` tell that
// pixels beyond that end are real. A mirror image bounces at the low and the high end as told.
inline int standIn(int i, int length, ZeliBorderType kind, bool lowReal, bool highReal, bool bounceLow = true,
                   bool bounceHigh = true)
{
    if ((i < 0 && lowReal) || (i >= length && highReal)) return i;
    if (i >= 0 && i < length) return i;
    if (kind == zeliBorderConstant) return kConstant;
    if (kind == zeliBorderReplicate || length == 1) return i < 0 ? 0 : length - 1;
    if (kind == zeliBorderWrap) {
        while (i < 0) i += length;
        while (i >= length) i -= length;
        return i;
    }
    const int edge = kind == zeliBorderReflectEdge ? 1 : 0;
    for (;;) {
        if (i < 0 && bounceLow) i = -i - edge;
        else if (i >= length && bounceHigh) i = 2 * (length - 1) + edge - i;
        else return i;
    }
}

} // namespace zeltest
