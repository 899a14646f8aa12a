// Sums over lanes: of all of them, and of each with those before it.
#pragma once

#include "vector/isa.h"
#include "vector/shuffle.h"

namespace zelcv {

using isa::sumBytes; // told in portable.h

template <class V>
auto sumOfLanes(V v)
{
    auto sum = v[0];
    for (std::size_t i = 1; i < sizeof v / sizeof sum; ++i) sum += v[i];
    return sum;
}

// The sums of the two 32-bit halves of each 64-bit lane.
ZELCV_INLINE inline Vec<std::uint64_t> sumHalves(Vec<Zel32u> v)
{
    return (Vec<std::uint64_t>(v) & 0xffffffffu) + (Vec<std::uint64_t>(v) >> 32);
}

// Each lane plus all lanes before it in its 16 bytes, wrapping.
template <class V>
ZELCV_INLINE inline V prefixSumsInGroups(V v)
{
    constexpr int size = int(sizeof(v[0]));
    if constexpr (size <= 8) v += V(isa::shiftBytesUp<size>(Vec<Zel8u>(v)));
    if constexpr (size <= 4) v += V(isa::shiftBytesUp<2 * size>(Vec<Zel8u>(v)));
    if constexpr (size <= 2) v += V(isa::shiftBytesUp<4 * size>(Vec<Zel8u>(v)));
    if constexpr (size <= 1) v += V(isa::shiftBytesUp<8 * size>(Vec<Zel8u>(v)));
    return v;
}

} // namespace zelcv
