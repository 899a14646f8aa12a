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

// Up to so many pixels are loaded each by each.
constexpr int kFewPixels = 5;

// What a window reaches to both sides of its pixel, along a row or down a column; no further than a line is long.
struct Window {
    int before, behind;

    Window(int size, int anchor, int lineLength)
        : before(std::min(anchor, lineLength - 1)), behind(std::min(size - 1 - anchor, lineLength - 1))
    {
    }
    std::int64_t size() const { return std::int64_t(before) + 1 + behind; }
};

// ---- windows of few pixels

// Blocks of extremes of `taps` pixels, for mapRow. All of them must be readable.
template <class Pick, int taps, int Channels, class T>
struct FewPixels {
    const T* from;

    template <int count>
    ZELCV_INLINE auto block(std::ptrdiff_t i) const
    {
        static_assert(count == kLanes<T>);
        Vec<T> extreme = load(from + i);
        for (int tap = 1; tap < taps; ++tap) extreme = Pick::of(extreme, load(from + i + tap * Channels));
        return Group<Vec<T>, 1>{extreme};
    }
};

// The first `count` pixels, whose windows are cut: dst[x] = the extreme of src[0] ... src[x + behind].
template <class Pick, int Channels, class T>
ZELCV_INLINE inline void extremesFromStart(const T* src, T* dst, int count, int width, int behind)
{
    for (int c = 0; c < Channels; ++c) {
        T extreme = src[c];
        for (std::ptrdiff_t i = 1; i <= behind; ++i) extreme = Pick::of(extreme, src[i * Channels + c]);
        dst[c] = extreme;
        for (std::ptrdiff_t x = 1; x < count; ++x) {
            if (x + behind < width) extreme = Pick::of(extreme, src[(x + behind) * Channels + c]);
            dst[x * Channels + c] = extreme;
        }
    }
}

// The pixels from `first` on: dst[x] = the extreme of src[x - before] ... src[width - 1].
template <class Pick, int Channels, class T>
ZELCV_INLINE inline void extremesToEnd(const T* src, T* dst, int first, int width, int before)
{
    for (int c = 0; c < Channels; ++c) {
        T extreme = src[std::ptrdiff_t(width - 1) * Channels + c];
        for (std::ptrdiff_t x = width - 2; x >= width - 1 - before; --x) extreme = Pick::of(extreme, src[x * Channels + c]);
        for (std::ptrdiff_t x = width - 1;;) {
            dst[x * Channels + c] = extreme;
            if (--x < first) break;
            extreme = Pick::of(extreme, src[(x - before) * Channels + c]);
        }
    }
}

// dst[x] = the extreme of src[x - window.before] ... src[x + window.behind], which are `taps` pixels.
template <class Pick, int taps, int Channels, class T>
void extremesOfFew(const T* src, T* dst, int width, Window window)
{
    const int uncut = width - (taps - 1), n = uncut * Channels;
    if (window.before > 0) extremesFromStart<Pick, Channels>(src, dst, window.before, width, window.behind);
    if (window.behind > 0)
        extremesToEnd<Pick, Channels>(src, dst, std::max(window.before, width - window.behind), width, window.before);
    dst += window.before * Channels;
    if (n >= kLanes<T>)
        mapRow(dst, n, [](auto block) ZELCV_INLINE { return block; }, FewPixels<Pick, taps, Channels, T>{src});
    else
        for (int i = 0; i < n; ++i) {
            dst[i] = src[i];
            for (int tap = 1; tap < taps; ++tap) dst[i] = Pick::of(dst[i], src[i + tap * Channels]);
        }
}

// ---- windows of many pixels

// dst[i] = the extreme of a[i] and b[i]; dst may be a or b.
template <class Pick, class T>
void extremesOfTwo(const T* a, const T* b, T* dst, int n)
{
    mapRow(dst, n, [](auto x, auto y) ZELCV_INLINE {
        return forParts([](Vec<T> v, Vec<T> w) ZELCV_INLINE { return Pick::of(v, w); }, x, y);
    }, elements(a), elements(b));
}

// dst[x] = the extreme of `length` pixels from src[x] on; length is not above width. Step by step windows twice as long: those
// that are cut at the end of the row are complete as they are.
template <class Pick, int Channels, class T>
void extremesFromHere(const T* src, T* dst, int width, int length)
{
    constexpr int kFirst = 4;
    const Window window(std::min(length, kFirst), 0, width);
    switch (length) {
    case 1: std::memcpy(dst, src, sizeof(T) * Channels * std::size_t(width)); return;
    case 2: return extremesOfFew<Pick, 2, Channels>(src, dst, width, window);
    case 3: return extremesOfFew<Pick, 3, Channels>(src, dst, width, window);
    default: extremesOfFew<Pick, kFirst, Channels>(src, dst, width, window);
    }
    for (int done = kFirst; done < length;) {
        const int more = std::min(done, length - done);
        extremesOfTwo<Pick>(dst, dst + more * Channels, dst, (width - more) * Channels);
        done += more;
    }
}

// A window is laid over by two parts of it: the one that starts with it, or with the row, and the one that ends with it.
template <class Pick, int Channels, class T>
void extremesOfMany(const T* src, T* dst, int width, Window window, T* spare)
{
    const int part = std::max(window.behind + 1, int((window.size() + 1) / 2));
    const int lead = part - (window.behind + 1); // so many windows are shorter than their second part
    extremesFromHere<Pick, Channels>(src, spare, width, part);
    if (lead > 0) extremesFromStart<Pick, Channels>(src, dst, lead, width, window.behind);
    for (std::ptrdiff_t x = lead; x < window.before; ++x)
        for (int c = 0; c < Channels; ++c) dst[x * Channels + c] = Pick::of(spare[c], spare[(x - lead) * Channels + c]);
    const std::ptrdiff_t whole = window.before * std::ptrdiff_t(Channels);
    extremesOfTwo<Pick>(spare, spare + whole - lead * std::ptrdiff_t(Channels), dst + whole,
                        (width - window.before) * Channels);
}

// ---- all windows

// dst[x] = the extreme of src[x - anchor] ... src[x - anchor + length - 1], clamped to the row, channel by channel; `width` in
// pixels; the anchor lies within the window. `spare` is a row of width * Channels elements. src, dst and spare are different
// rows.
template <class Pick, class T, int Channels>
void extremeRow(const T* src, T* dst, int width, int length, int anchor, T* spare)
{
    const Window window(length, anchor, width);
    switch (window.size()) {
    case 1: std::memcpy(dst, src, sizeof(T) * Channels * std::size_t(width)); break;
    case 2: extremesOfFew<Pick, 2, Channels>(src, dst, width, window); break;
    case 3: extremesOfFew<Pick, 3, Channels>(src, dst, width, window); break;
    case 4: extremesOfFew<Pick, 4, Channels>(src, dst, width, window); break;
    case kFewPixels: extremesOfFew<Pick, kFewPixels, Channels>(src, dst, width, window); break;
    default: extremesOfMany<Pick, Channels>(src, dst, width, window, spare);
    }
}

} // namespace zelcv
