// Lanes as masks: all ones where something holds, all zeros elsewhere.
#pragma once

#include "vector/isa.h"
#include "vector/shuffle.h"

namespace zelcv {

using isa::laneBits; // told in portable.h

template <class Mask>
bool anyLane(Mask mask)
{
    return laneBits(Vec<Zel8s>(mask)) != 0;
}

// `value` where the mask is set, +0 elsewhere.
ZELCV_INLINE inline Vec<Zel32f> keep(Vec<Zel32s> mask, Vec<Zel32f> value) { return Vec<Zel32f>(mask & Vec<Zel32s>(value)); }

// The lanes of a mask of bytes, each as a lane of T: as many vectors as that fills.
template <class T>
ZELCV_INLINE inline auto widenMask(Vec<Zel8s> mask)
{
    if constexpr (sizeof(T) == 1)
        return Group<Vec<Zel8s>, 1>{mask};
    else
        return isa::widen<std::conditional_t<sizeof(T) == 2, Zel16s, Zel32s>>(mask);
}

// The same of the mask bytes of a whole vector in memory: all ones where they are not zero.
template <class T>
ZELCV_INLINE inline auto loadMask(const Zel8u* from)
{
    return widenMask<T>(Vec<Zel8s>(load(from) != 0));
}

// 255 for each bit that is set, the lowest first, 0 for the others.
ZELCV_INLINE inline Vec<Zel8u> bytesFromBits(Zel32u bits)
{
    const Vec<Zel8u> ownBit = Vec<Zel8u>(splat(std::uint64_t(0x8040201008040201)));
    Vec<Zel8u> spread = Vec<Zel8u>(splat(bits));
    if constexpr (kVectorBytes == 16)
        for (int doubling = 0; doubling < 3; ++doubling) spread = interleaveLow(spread, spread);
    else
        spread = shuffle<[](int i) { return i / 8; }>(spread, spread);
    return Vec<Zel8u>((spread & ownBit) == ownBit);
}

} // namespace zelcv
