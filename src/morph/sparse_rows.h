// The kernel of masks that are neither rectangles nor runs: each set byte of the mask is a place to read from.
#pragma once

#include "extremes.h"
#include "map.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace zelcv {

// Elements that must be readable from each place, however few are wanted.
template <class T>
constexpr int kSparseBlock = kLanes<T>;

// Few places at once, without a list.
template <class Pick, int count, class T>
void extremesOfFewPlaces(const T* const* at, T start, T* dst, int n)
{
    const auto compare = [start](auto first, auto... rest) ZELCV_INLINE {
        const auto pick = [](Vec<T> a, Vec<T> b) ZELCV_INLINE { return Pick::of(a, b); };
        auto extreme = first;
        if constexpr (!std::is_integral_v<T>) extreme.part[0] = pick(splat(start), first.part[0]);
        ((extreme = forParts(pick, extreme, rest)), ...);
        return extreme;
    };
    [&]<int... k>(std::integer_sequence<int, k...>) ZELCV_INLINE {
        mapRow(dst, n, compare, elements(at[k])...);
    }(std::make_integer_sequence<int, count>());
}

// The extremes of vectors from element i on, which stay in registers while the list of places runs.
template <class Pick, int vectors, class T>
ZELCV_INLINE inline void extremesOfPlacesAt(std::ptrdiff_t i, const T* const* at, int count, T start, Vec<T> (&extremes)[vectors])
{
    const auto compare = [&](const T* place) ZELCV_INLINE {
        for (int v = 0; v < vectors; ++v) extremes[v] = Pick::of(extremes[v], load(place + i + v * kLanes<T>));
    };
    // No integer is worse than `start`, so that the first place can take its place.
    const bool first = std::is_integral_v<T> && count > 0;
    for (int v = 0; v < vectors; ++v) extremes[v] = first ? load(at[0] + i + v * kLanes<T>) : splat(start);
    std::ptrdiff_t k = first;
    constexpr int kAtOnce = 4;
    for (; k <= count - kAtOnce; k += kAtOnce)
        for (int j = 0; j < kAtOnce; ++j) compare(at[k + j]);
    for (; k < count; ++k) compare(at[k]);
}

// dst[i] = the extreme of `start` and at[0][i] ... at[count - 1][i], for i below n: the running value is replaced, in this
// order, unless it is strictly better. `start` is Pick::kStart<T>, a number that no integer is worse than. From each place n
// elements are readable, and kSparseBlock<T> at the least; dst has n elements and is none of the places.
template <class Pick, class T>
void extremesOfPlaces(const T* const* at, int count, T start, T* dst, int n)
{
    constexpr int lanes = kLanes<T>;
    switch (count) {
    case 1: return extremesOfFewPlaces<Pick, 1>(at, start, dst, n);
    case 2: return extremesOfFewPlaces<Pick, 2>(at, start, dst, n);
    case 3: return extremesOfFewPlaces<Pick, 3>(at, start, dst, n);
    case 4: return extremesOfFewPlaces<Pick, 4>(at, start, dst, n);
    }
    if (n < lanes) {
        Vec<T> extremes[1];
        extremesOfPlacesAt<Pick>(0, at, count, start, extremes);
        std::memcpy(dst, extremes, sizeof(T) * std::size_t(n));
        return;
    }
    // Strips of eight vectors, then of four, two and one. What is left behind a strip is covered by another one of its size
    // that overlaps it, where the next size would not do.
    std::ptrdiff_t i = 0;
    const auto cover = [&]<int vectors>(std::integral_constant<int, vectors>) ZELCV_INLINE {
        const auto make = [&](std::ptrdiff_t from) ZELCV_INLINE {
            Vec<T> extremes[vectors];
            extremesOfPlacesAt<Pick>(from, at, count, start, extremes);
            for (int v = 0; v < vectors; ++v) store(dst + from + v * lanes, extremes[v]);
        };
        constexpr int elements = vectors * lanes;
        if (n < elements) return;
        for (; n - i > vectors / 2 * lanes; i += elements) make(std::min<std::ptrdiff_t>(i, n - elements));
    };
    cover(std::integral_constant<int, 8>());
    cover(std::integral_constant<int, 4>());
    cover(std::integral_constant<int, 2>());
    cover(std::integral_constant<int, 1>());
}

} // namespace zelcv
