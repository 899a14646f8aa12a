// The kernel of masks that are neither rectangles nor runs: each set byte of the mask is a place to read from.
#pragma once

#include "extremes.h"

#include <cstddef>

namespace zelcv {

// Elements that are made at a time.
template <class T>
constexpr int kSparseBlock = 4 * kLanes<T>;

// dst[i] = the extreme of `start` and at[0][i] ... at[count - 1][i], for i below n: the running value is replaced, in this
// order, unless it is strictly better. `start` is a number that no integer is worse than. Where n is below kSparseBlock<T>,
// that many elements must be readable from each place; dst has n elements and is none of the places.
template <class Pick, class T>
void extremesOfPlaces(const T* const* at, int count, T start, T* dst, int n)
{
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        T extreme = start;
        for (int k = 0; k < count; ++k) extreme = Pick::of(extreme, at[k][i]);
        dst[i] = extreme;
    }
}

} // namespace zelcv
