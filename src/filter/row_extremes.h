// The row kernel of minimum and maximum filters and of morphology: the extreme of a window that moves along a row.
//
// A window that reaches over an end of the row is cut there. No pixel need stand in for one outside: the window holds the
// pixel at the end, which would.
#pragma once

#include "extremes.h"
#include "map.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace zelcv {

// Windows up to this are taken by loading every pixel of them.
constexpr int kFewPixels = 5;

template <class Pick>
struct PickBlocks {
    template <class First, class... Rest>
    ZELCV_INLINE auto operator()(const First& first, const Rest&... rest) const
    {
        First extreme = first;
        ((extreme = forParts([](auto a, auto b) ZELCV_INLINE { return Pick::of(a, b); }, extreme, rest)), ...);
        return extreme;
    }
};

// dst[x] = the extreme of src[x - anchor] and the `taps` - 1 pixels behind it.
template <class Pick, int taps, int Channels, class T>
void extremesOfFew(const T* src, T* dst, int width, int anchor)
{
    const auto cutWindow = [=](int x) ZELCV_INLINE {
        const std::ptrdiff_t first = std::max(0, x - anchor), last = std::min(width, x - anchor + taps);
        for (int c = 0; c < Channels; ++c) {
            T extreme = src[first * Channels + c];
            for (std::ptrdiff_t i = first + 1; i < last; ++i) extreme = Pick::of(extreme, src[i * Channels + c]);
            dst[std::ptrdiff_t(x) * Channels + c] = extreme;
        }
    };
    const int uncut = width - (taps - 1), firstCut = uncut > 0 ? anchor + uncut : anchor;
    for (int x = 0; x < std::min(anchor, width); ++x) cutWindow(x);
    if (uncut > 0)
        [&]<int... tap>(std::integer_sequence<int, tap...>) ZELCV_INLINE {
            mapRow(dst + anchor * Channels, uncut * Channels, PickBlocks<Pick>(), elements(src + tap * Channels)...);
        }(std::make_integer_sequence<int, taps>());
    for (int x = firstCut; x < width; ++x) cutWindow(x);
}

// dst[x] = the extreme of `length` pixels from src[x] on; length is not above width. Window by window twice as long: of those
// that are cut at the end of the row nothing is missing.
template <class Pick, int Channels, class T>
void extremesFromHere(const T* src, T* dst, int width, int length)
{
    constexpr int kFirst = 4;
    switch (length) {
    case 1: std::memcpy(dst, src, sizeof(T) * Channels * std::size_t(width)); return;
    case 2: return extremesOfFew<Pick, 2, Channels>(src, dst, width, 0);
    case 3: return extremesOfFew<Pick, 3, Channels>(src, dst, width, 0);
    default: extremesOfFew<Pick, kFirst, Channels>(src, dst, width, 0);
    }
    for (int done = kFirst; done < length;) {
        const int more = std::min(done, length - done);
        mapRow(dst, (width - more) * Channels, PickBlocks<Pick>(), elements<T>(dst), elements<T>(dst + more * Channels));
        done += more;
    }
}

// dst[x] = the extreme of src[x - anchor] ... src[x - anchor + length - 1], clamped to the row, channel by channel; `width` in
// pixels; the anchor lies within the window. `spare` is a row of width * Channels elements. src, dst and spare are different
// rows.
template <class Pick, class T, int Channels>
void extremeRow(const T* src, T* dst, int width, int length, int anchor, T* spare)
{
    const std::ptrdiff_t left = std::min(anchor, width - 1), right = std::min(length - 1 - anchor, width - 1);
    const std::ptrdiff_t window = left + 1 + right;
    switch (window) {
    case 1: std::memcpy(dst, src, sizeof(T) * Channels * std::size_t(width)); return;
    case 2: return extremesOfFew<Pick, 2, Channels>(src, dst, width, int(left));
    case 3: return extremesOfFew<Pick, 3, Channels>(src, dst, width, int(left));
    case 4: return extremesOfFew<Pick, 4, Channels>(src, dst, width, int(left));
    case kFewPixels: return extremesOfFew<Pick, kFewPixels, Channels>(src, dst, width, int(left));
    }
    // A window is laid over by two parts of it: the one that starts with it, or with the row, and the one that ends with it.
    const std::ptrdiff_t part = std::max(right + 1, (window + 1) / 2), lead = part - (right + 1);
    extremesFromHere<Pick, Channels>(src, spare, width, int(part));

    const std::ptrdiff_t begun = lead * Channels, whole = left * Channels; // where the parts have their full length
    for (std::ptrdiff_t i = 0; i < begun; ++i) { // the row starts within the second part, too
        if (i < Channels) {
            dst[i] = src[i];
            for (std::ptrdiff_t j = 1; j <= right; ++j) dst[i] = Pick::of(dst[i], src[i + j * Channels]);
        } else {
            dst[i] = Pick::of(dst[i - Channels], src[i + right * Channels]);
        }
    }
    for (std::ptrdiff_t i = begun; i < whole; i += Channels)
        for (int c = 0; c < Channels; ++c) dst[i + c] = Pick::of(spare[c], spare[i + c - begun]);
    mapRow(dst + whole, int(width * std::ptrdiff_t(Channels) - whole), PickBlocks<Pick>(), elements<T>(spare),
           elements<T>(spare + (whole - begun)));
}

} // namespace zelcv
