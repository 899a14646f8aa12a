// Lanes moved along the vector; zeros come in at its end.
#pragma once

#include "vector/isa.h"

namespace zelcv {

// All lanes `count` places up, or down, 16 bytes at the most.
template <int count, class V>
ZELCV_INLINE inline V shiftLanesUp(V v)
{
    return V(isa::shiftAllUp<count * int(sizeof(v[0]))>(Vec<Zel8u>(v)));
}
template <int count, class V>
ZELCV_INLINE inline V shiftLanesDown(V v)
{
    return V(isa::shiftAllDown<count * int(sizeof(v[0]))>(Vec<Zel8u>(v)));
}

// The lanes of each 16 bytes.
template <int count, class V>
ZELCV_INLINE inline V shiftLanesDownInGroups(V v)
{
    return V(isa::shiftBytesDown<count * int(sizeof(v[0]))>(Vec<Zel8u>(v)));
}

} // namespace zelcv
