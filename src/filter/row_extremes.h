// The row kernel of minimum and maximum filters and of morphology: the extreme of a window that moves along a row.
#pragma once

#include "extremes.h"

#include <algorithm>
#include <cstddef>

namespace zelcv {

// dst[x] = the extreme of src[x - anchor] ... src[x - anchor + length - 1], clamped to the row, channel by channel; `width` in
// pixels; the anchor lies within the window. `spare` is a row of width * Channels elements and 32 bytes more. src, dst and
// spare are different rows.
template <class Pick, class T, int Channels>
void extremeRow(const T* src, T* dst, int width, int length, int anchor, [[maybe_unused]] T* spare)
{
    for (int x = 0; x < width; ++x) {
        const int first = std::max(0, x - anchor), last = std::min(width, x - anchor + length);
        for (int c = 0; c < Channels; ++c) {
            T extreme = src[std::ptrdiff_t(first) * Channels + c];
            for (int i = first + 1; i < last; ++i) extreme = Pick::of(extreme, src[std::ptrdiff_t(i) * Channels + c]);
            dst[std::ptrdiff_t(x) * Channels + c] = extreme;
        }
    }
}

} // namespace zelcv
