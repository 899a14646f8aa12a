// The row kernel of minimum and maximum filters and of morphology: the extreme of a window that moves along a row.
//
// A window that reaches over an end of the row is cut there. No pixel need stand in for one outside: the window holds the
// pixel at the end, which would.
//
// Of numbers that compare equal the last one of a window is taken, which tells zeros apart: wherever two extremes meet, the
// one that ends further behind is the second.
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
ZELCV_INLINE inline void extremesFromStart(const T* src, T* dst, std::ptrdiff_t count, std::ptrdiff_t behind)
{
    for (int c = 0; c < Channels; ++c) {
        T extreme = src[c];
        for (std::ptrdiff_t i = 1; i <= behind; ++i) extreme = Pick::of(extreme, src[i * Channels + c]);
        dst[c] = extreme;
        for (std::ptrdiff_t x = 1; x < count; ++x)
            dst[x * Channels + c] = extreme = Pick::of(extreme, src[(x + behind) * Channels + c]);
    }
}

// The last `count` pixels of a row: dst[x] = the extreme of src[x - before] and all behind it. `end` is where the row ends.
template <class Pick, int Channels, class T>
ZELCV_INLINE inline void extremesToEnd(const T* srcEnd, T* dstEnd, std::ptrdiff_t count, std::ptrdiff_t before)
{
    for (int c = 0; c < Channels; ++c) {
        T extreme = srcEnd[c - Channels];
        for (std::ptrdiff_t i = 2; i <= before + 1; ++i) extreme = Pick::of(srcEnd[c - i * Channels], extreme);
        dstEnd[c - Channels] = extreme;
        for (std::ptrdiff_t x = 2; x <= count; ++x)
            dstEnd[c - x * Channels] = extreme = Pick::of(srcEnd[c - (x + before) * Channels], extreme);
    }
}

// The pixels whose windows of `taps` pixels are cut.
template <class Pick, int taps, int Channels, class T>
ZELCV_INLINE inline void extremesAtEnds(const T* src, T* dst, int width, int before)
{
    const std::ptrdiff_t n = width * std::ptrdiff_t(Channels);
    const int behind = taps - 1 - before;
    if (before > 0) extremesFromStart<Pick, Channels>(src, dst, before, behind);
    if (behind > 0) extremesToEnd<Pick, Channels>(src + n, dst + n, behind, before);
}
template <class Pick, int taps, int Channels, class T>
[[gnu::noinline]] void extremesAtOddEnds(const T* src, T* dst, int width, int before)
{
    extremesAtEnds<Pick, taps, Channels>(src, dst, width, before);
}

// A row that has no block of whole windows, with its first and last pixel repeated around it.
template <class Pick, int taps, int Channels, class T>
[[gnu::noinline]] void extremesOfNarrowRow(const T* src, T* dst, int width, int before)
{
    constexpr int around = (taps - 1) * Channels, most = kLanes<T> + around; // elements
    T padded[around + most + kLanes<T>] = {}, extremes[most + kLanes<T>];
    const int n = width * Channels, first = before * Channels;
    for (int i = 0; i < first; ++i) padded[i] = src[i % Channels];
    std::memcpy(padded + first, src, sizeof(T) * std::size_t(n));
    for (int i = first + n; i < n + around; ++i) padded[i] = padded[i - Channels];
    for (int i = 0; i < n; i += kLanes<T>)
        store(extremes + i, FewPixels<Pick, taps, Channels, T>{padded}.template block<kLanes<T>>(i).part[0]);
    std::memcpy(dst, extremes, sizeof(T) * std::size_t(n));
}

// dst[x] = the extreme of src[x - before] ... src[x - before + taps - 1].
template <class Pick, int taps, int Channels, class T>
void extremesOfFew(const T* src, T* dst, int width, int before)
{
    const int n = (width - (taps - 1)) * Channels; // elements with whole windows
    if (n < kLanes<T>) return extremesOfNarrowRow<Pick, taps, Channels>(src, dst, width, before);
    switch (before) {
    case 0: extremesAtEnds<Pick, taps, Channels>(src, dst, width, 0); break; // where the usual ones are constants
    case taps / 2: extremesAtEnds<Pick, taps, Channels>(src, dst, width, taps / 2); break;
    default: extremesAtOddEnds<Pick, taps, Channels>(src, dst, width, before);
    }
    mapRow(dst + before * Channels, n, [](auto block) ZELCV_INLINE { return block; }, FewPixels<Pick, taps, Channels, T>{src});
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
ZELCV_INLINE inline void extremesFromHere(const T* src, T* dst, int width, int length)
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
        extremesOfTwo<Pick>(dst, dst + more * Channels, dst, (width - more) * Channels);
        done += more;
    }
}

// Repeats the first pixel of a row in front of it, `count` times or more, up to kRepeatBytes.
constexpr int kRepeatBytes = 32;
template <int Channels, class T>
ZELCV_INLINE inline void repeatFirstPixel(T* row, int count)
{
    if constexpr (Channels == 1) {
        for (int i = 1; i <= kRepeatBytes / kVectorBytes; ++i) store(row - i * kLanes<T>, splat(*row));
    } else {
        T pixel[Channels];
        std::memcpy(pixel, row, sizeof pixel);
        for (int i = 1; i <= count; ++i) std::memcpy(row - i * Channels, pixel, sizeof pixel);
    }
}

// A window is laid over by two parts of it: the one that starts with it, or with the row, and the one that ends with it. The
// latter is cut where the window is shorter: at the first `lead` pixels.
//
// The first pixels of a row one by one, where their first parts cannot be had by repeating the first of `parts`.
template <class Pick, int Channels, class T>
[[gnu::noinline]] void extremesOfFirstPixels(const T* src, const T* parts, T* dst, Window window, int lead)
{
    if (lead > 0) extremesFromStart<Pick, Channels>(src, dst, lead, window.behind);
    for (std::ptrdiff_t x = lead; x < window.before; ++x)
        for (std::ptrdiff_t c = 0; c < Channels; ++c)
            dst[x * Channels + c] = Pick::of(parts[c], parts[(x - lead) * Channels + c]);
}

template <class Pick, int Channels, class T>
void extremesOfMany(const T* src, T* dst, int width, Window window, T* spare)
{
    T* const parts = spare + kRepeatBytes / sizeof(T);
    const int lead = std::max(0, window.before - window.behind) / 2;
    extremesFromHere<Pick, Channels>(src, parts, width, window.behind + 1 + lead);
    const std::ptrdiff_t apart = (window.before - lead) * std::ptrdiff_t(Channels); // the starts of both parts
    if (lead == 0 && apart * std::ptrdiff_t(sizeof(T)) <= kRepeatBytes) {
        repeatFirstPixel<Channels>(parts, window.before);
        extremesOfTwo<Pick>(parts - apart, parts, dst, width * Channels);
    } else {
        extremesOfFirstPixels<Pick, Channels>(src, parts, dst, window, lead);
        const std::ptrdiff_t done = window.before * std::ptrdiff_t(Channels);
        extremesOfTwo<Pick>(parts, parts + apart, dst + done, int(width * std::ptrdiff_t(Channels) - done));
    }
}

// ---- all windows

// dst[x] = the extreme of the pixels of src in the window at x, cut to the row, channel by channel. `spare` is a row of
// width * Channels elements and kRepeatBytes bytes more. src, dst and spare are different rows.
template <class Pick, int Channels, class T>
void extremesOfWindows(const T* src, T* dst, int width, Window window, T* spare)
{
    switch (window.size()) {
    case 1: std::memcpy(dst, src, sizeof(T) * Channels * std::size_t(width)); break;
    case 2: extremesOfFew<Pick, 2, Channels>(src, dst, width, window.before); break;
    case 3: extremesOfFew<Pick, 3, Channels>(src, dst, width, window.before); break;
    case 4: extremesOfFew<Pick, 4, Channels>(src, dst, width, window.before); break;
    case kFewPixels: extremesOfFew<Pick, kFewPixels, Channels>(src, dst, width, window.before); break;
    default: extremesOfMany<Pick, Channels>(src, dst, width, window, spare);
    }
}

// The same for the window of src[x - anchor] ... src[x - anchor + length - 1], in pixels; the anchor lies within it.
template <class Pick, class T, int Channels>
void extremeRow(const T* src, T* dst, int width, int length, int anchor, T* spare)
{
    extremesOfWindows<Pick, Channels>(src, dst, width, Window(length, anchor, width), spare);
}

} // namespace zelcv
