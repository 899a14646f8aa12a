// The kernel of masks that are neither rectangles nor runs: each set byte of the mask is a place to read from.
#pragma once

#include "extremes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace zelcv {

// Elements that must be readable from each place, however few are wanted.
template <class T>
constexpr int kSparseBlock = kLanes<T>;

// Calls make(i) for strips of vectors from element i on, while more than half a strip is left; the last one overlaps the one
// before. Returns the element behind them.
template <class T, int vectors, class Make>
ZELCV_INLINE inline std::ptrdiff_t coverByStrips(std::ptrdiff_t i, std::ptrdiff_t n, const Make& make)
{
    constexpr int elements = vectors * kLanes<T>;
    if (n >= elements)
        for (; n - i > vectors / 2 * kLanes<T>; i += elements) make(std::min(i, n - elements));
    return i;
}

// Makes vectors from element i on, which stay in registers while the list of places runs.
template <class Pick, int vectors, class T>
ZELCV_INLINE inline void extremesOfPlacesAt(std::ptrdiff_t i, const T* const* at, int count, T start, T* dst)
{
    Vec<T> extremes[vectors];
    const auto compare = [&](const T* place) ZELCV_INLINE {
        for (int v = 0; v < vectors; ++v)
            extremes[v] = inThisOrder(Pick::of(extremes[v], load(place + i + v * kLanes<T>)));
    };
    // No integer is worse than `start`, so that the first place can take its place.
    const bool first = std::is_integral_v<T> && count > 0;
    for (int v = 0; v < vectors; ++v) extremes[v] = first ? load(at[0] + i + v * kLanes<T>) : splat(start);
    std::ptrdiff_t k = first;
    constexpr int kAtOnce = 4;
    for (; k <= count - kAtOnce; k += kAtOnce)
        for (int j = 0; j < kAtOnce; ++j) compare(at[k + j]);
    for (; k < count; ++k) compare(at[k]);
    for (int v = 0; v < vectors; ++v) store(dst + i + v * kLanes<T>, extremes[v]);
}

template <class Pick, class T>
void extremesOfManyPlaces(const T* const* at, int count, T start, T* dst, int n)
{
    std::ptrdiff_t i = 0;
    const auto cover = [&]<int vectors>(std::integral_constant<int, vectors>) ZELCV_INLINE {
        i = coverByStrips<T, vectors>(i, n, [=](std::ptrdiff_t from) ZELCV_INLINE {
            extremesOfPlacesAt<Pick, vectors>(from, at, count, start, dst);
        });
    };
    cover(std::integral_constant<int, 8>());
    cover(std::integral_constant<int, 4>());
    cover(std::integral_constant<int, 2>());
    cover(std::integral_constant<int, 1>());
}

// A list of `count` places, which stay in registers.
template <class Pick, int count, class T>
void extremesOfFewPlaces(const T* const* list, T start, T* dst, int n)
{
    const T* at[count];
    for (int k = 0; k < count; ++k) at[k] = list[k];
    const auto make = [&](std::ptrdiff_t i) ZELCV_INLINE {
        constexpr bool first = std::is_integral_v<T>;
        Vec<T> extreme = first ? load(at[0] + i) : splat(start);
        for (int k = first; k < count; ++k) extreme = inThisOrder(Pick::of(extreme, load(at[k] + i)));
        store(dst + i, extreme);
    };
    std::ptrdiff_t i = 0;
    const auto cover = [&]<int vectors>(std::integral_constant<int, vectors>) ZELCV_INLINE {
        i = coverByStrips<T, vectors>(i, n, [&](std::ptrdiff_t from) ZELCV_INLINE {
            for (int v = 0; v < vectors; ++v) make(from + v * kLanes<T>);
        });
    };
    cover(std::integral_constant<int, 8>());
    cover(std::integral_constant<int, 4>());
    cover(std::integral_constant<int, 1>());
}

// dst[i] = the extreme of `start` and at[0][i] ... at[count - 1][i], for i below n: the running value is replaced, in this
// order, unless it is strictly better. `start` is a number that no integer is worse than. From each place n elements are
// readable, and kSparseBlock<T> at the least; dst has n elements and is none of the places.
template <class Pick, class T>
void extremesOfPlaces(const T* const* at, int count, T start, T* dst, int n)
{
    if (n < kLanes<T>) {
        T block[kLanes<T>];
        extremesOfPlacesAt<Pick, 1>(0, at, count, start, block);
        std::memcpy(dst, block, sizeof(T) * std::size_t(n));
        return;
    }
    switch (count) {
    case 2: return extremesOfFewPlaces<Pick, 2>(at, start, dst, n);
    case 3: return extremesOfFewPlaces<Pick, 3>(at, start, dst, n);
    case 4: return extremesOfFewPlaces<Pick, 4>(at, start, dst, n);
    case 5: return extremesOfFewPlaces<Pick, 5>(at, start, dst, n);
    case 6: return extremesOfFewPlaces<Pick, 6>(at, start, dst, n);
    default: return extremesOfManyPlaces<Pick>(at, count, start, dst, n);
    }
}

} // namespace zelcv
