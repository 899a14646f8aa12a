// The kernel of masks that are neither rectangles nor runs: each set byte of the mask is a place to read from.
#pragma once

#include "extremes.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace zelcv {

// Elements that must be readable from each place, however few are wanted.
template <class T>
constexpr int kSparseBlock = kLanes<T>;

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
    const auto make = [=]<int vectors>(std::ptrdiff_t i, std::integral_constant<int, vectors>) ZELCV_INLINE {
        Vec<T> extremes[vectors];
        extremesOfPlacesAt<Pick>(i, at, count, start, extremes);
        for (int v = 0; v < vectors; ++v) store(dst + i + v * lanes, extremes[v]);
    };
    constexpr std::integral_constant<int, 8> eight;
    constexpr std::integral_constant<int, 4> four;
    constexpr std::integral_constant<int, 2> two;
    constexpr std::integral_constant<int, 1> one;
    if (n < lanes) {
        Vec<T> extremes[1];
        extremesOfPlacesAt<Pick>(0, at, count, start, extremes);
        std::memcpy(dst, extremes, sizeof(T) * std::size_t(n));
        return;
    }
    std::ptrdiff_t i = 0;
    for (; i <= n - 8 * lanes; i += 8 * lanes) make(i, eight);
    // What is left, by as few vectors as cover it or as there are; the last ones overlap those before.
    if (i <= n - 4 * lanes) make(i, four), i += 4 * lanes;
    if (i <= n - 2 * lanes) make(i, two), i += 2 * lanes;
    if (i <= n - lanes) make(i, one), i += lanes;
    if (i < n) make(n - lanes, one);
}

} // namespace zelcv
