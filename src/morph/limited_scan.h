// Growth along a row under a limit, a vector at a time: each element becomes grow(itself, limit(its neighbour, own limit)),
// from one end to the other. Such steps compose to one of their kind, so that a vector takes log2 of its lanes many: after a
// step over k lanes each lane knows what comes from 2k lanes before it, and the limit of that way.
#pragma once

#include "extremes.h"
#include "vector/vector.h"

#include <array>
#include <bit>
#include <type_traits>

namespace zelcv {

// Growth to larger or to smaller numbers, and what limits it.
template <class Extreme>
using Opposite = std::conditional_t<std::is_same_v<Extreme, Largest>, Smallest, Largest>;

enum class Towards { end, start };

// The lanes moved towards the end or the start of a row, with a neutral value behind them.
template <class Extreme, Towards direction, int count, class V>
ZELCV_INLINE inline V moved(V v)
{
    using T = LaneOf<V>;
    using Bytes = std::array<unsigned char, kVectorBytes>;
    constexpr int from = direction == Towards::end ? 0 : kVectorBytes - count * int(sizeof(T));
    static constexpr auto behind = [] {
        Bytes bytes = {};
        const auto value = std::bit_cast<std::array<unsigned char, sizeof(T)>>(kNeutral<Extreme, T>);
        for (int i = 0; i < count * int(sizeof(T)); ++i) bytes[std::size_t(from + i)] = value[std::size_t(i) % sizeof(T)];
        return bytes;
    }();
    const V shifted = direction == Towards::end ? shiftLanesUp<count>(v) : shiftLanesDown<count>(v);
    if constexpr (std::bit_cast<std::array<unsigned char, sizeof(T)>>(kNeutral<Extreme, T>) ==
                  std::array<unsigned char, sizeof(T)>{})
        return shifted;
    else
        return V(Vec<Zel8u>(shifted) | load(behind.data()));
}

// Growth of the row's elements v into each other, with `entering` in all lanes for what enters the vector.
template <class Grow, Towards direction, class V>
ZELCV_INLINE inline V spread(V v, V limit, V entering)
{
    using Limit = Opposite<Grow>;
    const auto step = [&]<int count>(std::integral_constant<int, count>) ZELCV_INLINE {
        v = Grow::of(v, Limit::of(moved<Grow, direction, count>(v), limit));
        limit = Limit::of(limit, moved<Limit, direction, count>(limit));
    };
    constexpr int lanes = kLanes<LaneOf<V>>;
    step(std::integral_constant<int, 1>());
    if constexpr (lanes > 2) step(std::integral_constant<int, 2>());
    if constexpr (lanes > 4) step(std::integral_constant<int, 4>());
    if constexpr (lanes > 8) step(std::integral_constant<int, 8>());
    if constexpr (lanes > 16) step(std::integral_constant<int, 16>());
    return Grow::of(v, Limit::of(entering, limit));
}

// What leaves a vector, in all lanes.
template <Towards direction, class V>
ZELCV_INLINE inline V leaving(V v)
{
    return shuffle<[](int) { return direction == Towards::end ? kLanes<LaneOf<V>> - 1 : 0; }>(v, v);
}

} // namespace zelcv
