// Lanes moved to other places. The compilers have one operation for all of it; which instructions that takes is their
// business.
#pragma once

#include "vector/vec.h"

#include <utility>

namespace zelcv {

// Lane i of the result is lane at(i) of a and b, counted through both.
template <auto at, class V>
ZELCV_INLINE inline V shuffle(V a, V b)
{
    return [=]<int... i>(std::integer_sequence<int, i...>) ZELCV_INLINE {
        return __builtin_shufflevector(a, b, at(i)...);
    }(std::make_integer_sequence<int, int(sizeof(V) / sizeof(a[0]))>());
}

// ---- within each 16 bytes of a vector

// Lanes of type T in 16 bytes.
template <class T>
constexpr int kGroupLanes = 16 / int(sizeof(T));

// The lanes of a and b in turn, from the first half of each 16 bytes.
template <class V>
ZELCV_INLINE inline V interleaveLow(V a, V b)
{
    return shuffle<[](int i) {
        constexpr int group = kGroupLanes<LaneOf<V>>, lanes = kLanes<LaneOf<V>>;
        return i / group * group + i % group / 2 + i % 2 * lanes;
    }>(a, b);
}

// The same from the second half.
template <class V>
ZELCV_INLINE inline V interleaveHigh(V a, V b)
{
    return shuffle<[](int i) {
        constexpr int group = kGroupLanes<LaneOf<V>>, lanes = kLanes<LaneOf<V>>;
        return i / group * group + group / 2 + i % group / 2 + i % 2 * lanes;
    }>(a, b);
}

// Every second lane, from the second on, of the 16 bytes of a, then of those of b.
template <class V>
ZELCV_INLINE inline V upperHalvesInGroups(V a, V b)
{
    return shuffle<[](int i) {
        constexpr int group = kGroupLanes<LaneOf<V>>, lanes = kLanes<LaneOf<V>>;
        const int at = i % group * 2 + 1;
        return i / group * group + at % group + (at < group ? 0 : lanes);
    }>(a, b);
}

// ---- across the vector

// The last lane in all lanes.
template <class V>
ZELCV_INLINE inline V splatLast(V v)
{
    return shuffle<[](int) { return kLanes<LaneOf<V>> - 1; }>(v, v);
}

// The first half of both, and the second half of both.
template <class V>
ZELCV_INLINE inline V firstHalves(V a, V b)
{
    return shuffle<[](int i) {
        constexpr int half = kLanes<LaneOf<V>> / 2;
        return i < half ? i : i + half;
    }>(a, b);
}
template <class V>
ZELCV_INLINE inline V secondHalves(V a, V b)
{
    return shuffle<[](int i) {
        constexpr int half = kLanes<LaneOf<V>> / 2;
        return i < half ? i + half : i + 2 * half;
    }>(a, b);
}

// Element i from place 3i, counted around: in all of a vector of double words, else in each 16 bytes.
template <class V>
ZELCV_INLINE inline V unwindThirds(V v)
{
    constexpr int size = int(sizeof(v[0]));
    if constexpr (kVectorBytes == 16 && size < 4) { // in steps that take few instructions: bytes, words, and double words
        const auto around = [](Vec<Zel32u> x) { return shuffle<[](int i) { return (i + 1) % 4; }>(x, x); };
        auto words = Vec<Zel16u>(v);
        if constexpr (size == 1) { // every second byte from two places on
            const auto halves = Vec<std::uint64_t>(v), swapped = shuffle<[](int i) { return i ^ 1; }>(halves, halves);
            words = (words & 0xff) | (Vec<Zel16u>(halves >> 16 | swapped << 48) & 0xff00);
        }
        const auto pairs = Vec<Zel32u>(words);
        return V(unwindThirds((pairs & 0xffffu) | (around(pairs) & 0xffff0000u)));
    } else {
        return shuffle<[](int i) {
            constexpr int group = size == 4 ? kLanes<LaneOf<V>> : kGroupLanes<LaneOf<V>>;
            return i / group * group + 3 * i % group;
        }>(v, v);
    }
}

// What operations on groups of 16 bytes leave apart: of x and y, a has the first halves of their groups and b the second
// halves, or the other way round of how they came to be interleaved. Groups 0 and 1 of the result come from group 0 of a and b.
template <class V>
ZELCV_INLINE inline Group<V, 2> sortGroups(V a, V b)
{
    if constexpr (kVectorBytes == 16)
        return {a, b};
    else
        return {firstHalves(a, b), secondHalves(a, b)};
}

} // namespace zelcv
