// The column stages of minimum and maximum filters: extremes over rows that follow each other. All rows that are read are
// aligned, and as long as whole vectors. Of equal numbers the last row's is taken, as row_extremes.h does.
#pragma once

#include "extremes.h"
#include "machine.h"
#include "plane.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

namespace zelcv {

// Calls strip(i, vectors, loadAt, storeAt) for strips of up to eight vectors that cover n elements; the last one overlaps what
// is before, or is stored in part.
template <class T, class Strip>
ZELCV_INLINE inline void forStrips(std::ptrdiff_t n, const Strip& strip)
{
    constexpr int lanes = kLanes<T>;
    const auto aligned = [](const T* from) ZELCV_INLINE { return loadAligned(from); };
    const auto anywhere = [](const T* from) ZELCV_INLINE { return load(from); };
    const auto whole = [](T* to, Vec<T> v) ZELCV_INLINE { store(to, v); };
    const auto inPart = [n](T* to, Vec<T> v) ZELCV_INLINE { std::memcpy(to, &v, sizeof(T) * std::size_t(n)); };
    constexpr std::integral_constant<int, 8> eight;
    constexpr std::integral_constant<int, 4> four;
    constexpr std::integral_constant<int, 1> one;
    std::ptrdiff_t i = 0;
    for (; i <= n - 8 * lanes; i += 8 * lanes) strip(i, eight, aligned, whole);
    if (i <= n - 4 * lanes) strip(i, four, aligned, whole), i += 4 * lanes;
    for (; i <= n - lanes; i += lanes) strip(i, one, aligned, whole);
    if (i == n) return;
    if (n >= lanes) strip(n - lanes, one, anywhere, whole);
    else strip(0, one, aligned, inPart);
}

// ---- windows of few rows

// Two rows that are written next: they are brought into the caches, where they need it, while the two before are made.
template <class T>
struct RowsAhead {
    const T *first, *second;

    ZELCV_INLINE void fetch(std::ptrdiff_t i, int vectors) const
    {
        constexpr int cacheLine = 64;
        for (int at = 0; at < vectors * kVectorBytes; at += cacheLine) {
            fetchForWriting(first + i + at / int(sizeof(T)));
            fetchForWriting(second + i + at / int(sizeof(T)));
        }
    }
};
struct NoRowsAhead {
    ZELCV_INLINE static void fetch(std::ptrdiff_t, int) {}
};

// dst[0] and dst[1] = the extremes of rows 0 ... taps - 1 and of rows 1 ... taps: all but two are common to both.
template <class Pick, int taps, class T, class Ahead>
void extremesOfTwoWindows(const T* const* rows, T* const* dst, int n, Ahead ahead)
{
    const T* row[taps + 1];
    std::copy_n(rows, taps + 1, row);
    T *const first = dst[0], *const second = dst[1];
    forStrips<T>(n, [&](std::ptrdiff_t i, auto vectors, const auto& loadAt, const auto& storeAt) ZELCV_INLINE {
        ahead.fetch(i, vectors);
        for (int v = 0; v < vectors; ++v, i += kLanes<T>) {
            Vec<T> common = loadAt(row[1] + i);
            for (int tap = 2; tap < taps; ++tap) common = Pick::of(common, loadAt(row[tap] + i));
            storeAt(first + i, Pick::of(loadAt(row[0] + i), common));
            storeAt(second + i, Pick::of(common, loadAt(row[taps] + i)));
        }
    });
}

// ---- windows of many rows
//
// Rows are cut into blocks as long as a window. A window that does not start with a block holds the end of one block and the
// start of the next: two running extremes, however long it is.

// Makes each of `count` rows the extreme of itself and all rows behind it. `pitch` elements from row to row.
template <class Pick, class T>
void extremesToTheEnd(T* block, std::ptrdiff_t pitch, int count)
{
    forStrips<T>(pitch, [=](std::ptrdiff_t i, auto vectors, const auto& loadAt, const auto& storeAt) ZELCV_INLINE {
        T* row = block + (count - 1) * pitch + i;
        Vec<T> running[vectors];
        for (int v = 0; v < vectors; ++v) running[v] = loadAt(row + v * kLanes<T>);
        for (int y = count - 2; y >= 0; --y) {
            row -= pitch;
            for (int v = 0; v < vectors; ++v) {
                running[v] = Pick::of(loadAt(row + v * kLanes<T>), running[v]);
                storeAt(row + v * kLanes<T>, running[v]);
            }
        }
    });
}

// Row y of dst = the extreme of row y of `ends` and of rows 0 ... y of `starts`, for `count` rows.
template <class Pick, class T>
void extremesOverBlocks(const T* ends, const T* starts, std::ptrdiff_t pitch, Plane<T> dst, int count, int n)
{
    forStrips<T>(n, [=](std::ptrdiff_t i, auto vectors, const auto& loadAt, const auto& storeAt) ZELCV_INLINE {
        const T *end = ends + i, *start = starts + i;
        Plane<T> to{dst.data + i, dst.step};
        Vec<T> running[vectors];
        for (int v = 0; v < vectors; ++v) running[v] = loadAt(start + v * kLanes<T>);
        for (int y = 0; y < count; ++y) {
            for (int v = 0; v < vectors; ++v) {
                running[v] = Pick::of(running[v], loadAt(start + v * kLanes<T>));
                storeAt(to.data + v * kLanes<T>, Pick::of(loadAt(end + v * kLanes<T>), running[v]));
            }
            start += pitch, end += pitch, to.data = to.row(1);
        }
    });
}

} // namespace zelcv
