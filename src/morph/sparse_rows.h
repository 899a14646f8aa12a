// The kernel of masks that are neither rectangles nor runs: each set byte of the mask is a place to read from.
#pragma once

#include "extremes.h"

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

namespace zelcv {

// Elements that must be readable from each place, however few are wanted.
template <class T>
constexpr int kSparseBlock = kLanes<T>;

// Lists of up to so many places have loops of their own, in which the places stay in registers.
constexpr int kFewPlaces = 6;

// Makes vectors from element i on, which stay in registers while the list of places runs. `few` is the length of the list where
// that is known, else 0.
template <class Pick, int vectors, int few, class T>
ZELCV_INLINE inline void extremesOfPlacesAt(std::ptrdiff_t i, const T* const* at, int count, T start, Vec<T> (&extremes)[vectors])
{
    const auto compare = [&](const T* place) ZELCV_INLINE {
        for (int v = 0; v < vectors; ++v)
            extremes[v] = inThisOrder(Pick::of(extremes[v], load(place + i + v * kLanes<T>)));
    };
    // No integer is worse than `start`, so that the first place can take its place.
    const bool first = std::is_integral_v<T> && count > 0;
    for (int v = 0; v < vectors; ++v) extremes[v] = first ? load(at[0] + i + v * kLanes<T>) : splat(start);
    std::ptrdiff_t k = first;
    if constexpr (few > 0) {
        for (; k < few; ++k) compare(at[k]);
        return;
    }
    constexpr int kAtOnce = 4;
    for (; k <= count - kAtOnce; k += kAtOnce)
        for (int j = 0; j < kAtOnce; ++j) compare(at[k + j]);
    for (; k < count; ++k) compare(at[k]);
}

template <class Pick, int few, class T>
void extremesOfSomePlaces(const T* const* list, int length, T start, T* dst, int n)
{
    constexpr int lanes = kLanes<T>;
    const T* known[few > 0 ? few : 1]; // a copy that no store to dst can change
    if constexpr (few > 0) std::copy_n(list, few, known);
    const T* const* const at = few > 0 ? known : list;
    const int count = few > 0 ? few : length;
    const auto make = [=, &known]<int vectors>(std::ptrdiff_t i, std::integral_constant<int, vectors>) ZELCV_INLINE {
        Vec<T> extremes[vectors];
        extremesOfPlacesAt<Pick, vectors, few>(i, few > 0 ? known : at, count, start, extremes);
        for (int v = 0; v < vectors; ++v) store(dst + i + v * lanes, extremes[v]);
    };
    constexpr std::integral_constant<int, 8> eight;
    constexpr std::integral_constant<int, 4> four;
    constexpr std::integral_constant<int, 2> two;
    constexpr std::integral_constant<int, 1> one;
    if (n < lanes) {
        Vec<T> extremes[1];
        extremesOfPlacesAt<Pick, 1, few>(0, at, count, start, extremes);
        std::memcpy(dst, extremes, sizeof(T) * std::size_t(n));
        return;
    }
    std::ptrdiff_t i = 0;
    for (; i <= n - 8 * lanes; i += 8 * lanes) make(i, eight);
    // What is left, by as few vectors as cover it; they overlap those before, or each other where there are none.
    const std::ptrdiff_t left = n - i;
    if (left > 4 * lanes && n >= 8 * lanes) make(n - 8 * lanes, eight);
    else if (left > 4 * lanes) make(i, four), make(n - 4 * lanes, four);
    else if (left > 2 * lanes && n >= 4 * lanes) make(n - 4 * lanes, four);
    else if (left > 2 * lanes) make(i, two), make(n - 2 * lanes, two);
    else if (left > lanes) make(n - 2 * lanes, two);
    else if (left > 0) make(n - lanes, one);
}

// dst[i] = the extreme of `start` and at[0][i] ... at[count - 1][i], for i below n: the running value is replaced, in this
// order, unless it is strictly better. `start` is a number that no integer is worse than. From each place n elements are
// readable, and kSparseBlock<T> at the least; dst has n elements and is none of the places.
template <class Pick, class T>
void extremesOfPlaces(const T* const* at, int count, T start, T* dst, int n)
{
    static_assert(kFewPlaces == 6);
    switch (count) {
    case 2: return extremesOfSomePlaces<Pick, 2>(at, count, start, dst, n);
    case 3: return extremesOfSomePlaces<Pick, 3>(at, count, start, dst, n);
    case 4: return extremesOfSomePlaces<Pick, 4>(at, count, start, dst, n);
    case 5: return extremesOfSomePlaces<Pick, 5>(at, count, start, dst, n);
    case 6: return extremesOfSomePlaces<Pick, 6>(at, count, start, dst, n);
    default: return extremesOfSomePlaces<Pick, 0>(at, count, start, dst, n);
    }
}

} // namespace zelcv
