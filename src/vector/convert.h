// Widening and narrowing. What comes from `isa` is told in portable.h.
#pragma once

#include "vector/isa.h"
#include "vector/shuffle.h"

namespace zelcv {

using isa::loadWidened;
using isa::narrowPairs;
using isa::truncate;
using isa::widen;

ZELCV_INLINE inline Vec<Zel32f> toFloat(Vec<Zel32s> v) { return __builtin_convertvector(v, Vec<Zel32f>); }
using isa::toFloat;

ZELCV_INLINE inline Doubles toDoubles(const Doubles& v) { return v; }
ZELCV_INLINE inline Doubles toDoubles(Vec<Zel32f> v) { return widen<Zel64f>(v); }
ZELCV_INLINE inline Doubles toDoubles(Vec<Zel32s> v) { return widen<Zel64f>(v); }

// The elements of a, then those of b, limited to the 8 bits of T.
template <class T>
Vec<T> narrowInOrder(Vec<Zel16s> a, Vec<Zel16s> b)
{
    const auto words = Vec<std::uint64_t>(narrowPairs<T>(a, b));
    if constexpr (kVectorBytes == 16)
        return Vec<T>(words);
    else
        return Vec<T>(shuffle<[](int i) { return i % 2 * 2 + i / 2; }>(words, words));
}

// ---- all elements in order as a type that holds them exactly: as many vectors of it as they fill

template <class To, class V>
ZELCV_INLINE inline auto convert(V v)
{
    if constexpr (std::is_same_v<To, LaneOf<V>>)
        return Group<Vec<To>, 1>{v};
    else if constexpr (std::is_same_v<To, Zel32f>)
        return forParts([](Vec<Zel32s> x) { return toFloat(x); }, convert<Zel32s>(v));
    else
        return widen<To>(v);
}

// convert<To>(load(from)), where that costs less.
template <class To, class T>
ZELCV_INLINE inline auto loadConverted(const T* from)
{
    if constexpr (std::is_same_v<To, T>)
        return Group<Vec<To>, 1>{load(from)};
    else if constexpr (std::is_same_v<To, Zel32f>)
        return forParts([](Vec<Zel32s> x) { return toFloat(x); }, loadWidened<Zel32s>(from));
    else
        return loadWidened<To>(from);
}

// All elements of sortGroups(a, b), widened to twice their size, where sorting the results costs less.
template <class To, class V>
ZELCV_INLINE inline Group<Vec<To>, 4> widenSorted(V a, V b)
{
    const auto x = widen<To>(a), y = widen<To>(b);
    if constexpr (kVectorBytes == 16)
        return {x.part[0], x.part[1], y.part[0], y.part[1]};
    else
        return {x.part[0], y.part[0], x.part[1], y.part[1]};
}

// convert for groups.
template <class To, class V, int n>
ZELCV_INLINE inline auto convert(const Group<V, n>& v)
{
    constexpr int each = int(sizeof(To) / sizeof(LaneOf<V>));
    Group<Vec<To>, n * each> all;
    for (int i = 0; i < n; ++i) {
        const auto some = convert<To>(v.part[i]);
        for (int k = 0; k < each; ++k) all.part[i * each + k] = some.part[k];
    }
    return all;
}

} // namespace zelcv
