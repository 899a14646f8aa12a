// Minimum and maximum filters: the extreme of a rectangle around each pixel. A row stage writes the extremes along each row
// into scratch rows, once a row; a column stage makes of these the rows of the output.
//
// The nearest pixel of the region would stand for one outside. It lies in the window itself, so that a window is cut at the
// edges instead.
#include "checks.h"
#include "column_extremes.h"
#include "machine.h"
#include "row_extremes.h"
#include "scratch.h"

#include <algorithm>
#include <cstring>
#include <utility>

using namespace zelcv;

namespace {

// Windows of fewer rows take the extremes of two of them at a time; others run over blocks.
constexpr int kManyRows = 8;

// The row stage, and the rows that it writes: aligned, and as long as whole vectors in every build.
template <class Pick, class T, int Channels>
struct RowStage {
    static constexpr int kAlignment = 32;
    static constexpr int kSpare = kRepeatBytes / int(sizeof(T)); // elements of its scratch row in front of another row

    Plane<const T> src;
    ZeliSize size;
    Window window;

    int elements() const { return size.width * Channels; }
    std::ptrdiff_t pitch() const
    {
        constexpr std::ptrdiff_t unit = kAlignment / sizeof(T);
        return (elements() + unit - 1) / unit * unit;
    }
    void operator()(int y, T* dst, T* spare) const
    {
        extremesOfWindows<Pick, Channels>(src.row(y), dst, size.width, window, spare);
    }
};

// Two rows of output at a time, from a ring that holds what both of them need.
template <class Pick, int taps, class T, class Stage>
void filterFewRows(const Stage& stage, Plane<T> dst, int above, T* scratch)
{
    constexpr int kRing = taps + 1;
    const int height = stage.size.height, n = stage.elements();
    const std::ptrdiff_t pitch = stage.pitch();
    T *const spare = scratch, *const ring = scratch + Stage::kSpare + pitch;
    T* slot = ring;
    int staged = 0;
    const T* rows[kRing]; // for row y of the output, and one more
    const auto next = [&](const T* last) -> const T* {
        if (staged == height) return last;
        T* const row = slot;
        stage(staged++, row, spare);
        slot = staged % kRing == 0 ? ring : slot + pitch;
        return row;
    };
    rows[0] = next(nullptr);
    for (int i = 1; i < kRing; ++i) rows[i] = i <= above ? rows[0] : next(rows[i - 1]);
    const bool fetches = std::int64_t(height) * n * std::int64_t(sizeof(T)) > kCachedBytes;
    for (int y = 0;;) {
        T* const to[] = {dst.row(y), dst.row(y + 1)};
        if (fetches && height - y >= 4)
            extremesOfTwoWindows<Pick, taps>(rows, to, n, RowsAhead<T>{dst.row(y + 2), dst.row(y + 3)});
        else
            extremesOfTwoWindows<Pick, taps>(rows, to, n, NoRowsAhead());
        if (y + 2 == height) break;
        const int step = std::min(2, height - 2 - y); // the last row comes with the one above, which is made once more
        for (int i = 0; i < step; ++i) {
            std::copy_n(rows + 1, taps, rows);
            rows[taps] = next(rows[taps]);
        }
        y += step;
    }
}

template <class Pick, class T, class Stage>
void filterManyRows(const Stage& stage, Plane<T> dst, Window window, T* scratch)
{
    const int height = stage.size.height, n = stage.elements(), count = int(window.size());
    const std::ptrdiff_t pitch = stage.pitch();
    // Blocks of staged rows: `ends` of the rows that start windows, `starts` of those behind. Row 0 of `ends` is written to
    // the output before the others, and is spare then, with what lies in front of it.
    T *ends = scratch + Stage::kSpare, *starts = ends + count * pitch + Stage::kSpare;
    const auto fill = [&](T* block, std::int64_t firstRow, int rows, T* spare) {
        for (int i = 0; i < rows; ++i) {
            const std::int64_t y = firstRow + i;
            T* const row = block + i * pitch;
            if (i > 0 && (y <= 0 || y >= height)) std::memcpy(row, row - pitch, sizeof(T) * std::size_t(n));
            else stage(int(std::clamp<std::int64_t>(y, 0, height - 1)), row, spare - Stage::kSpare);
        }
    };
    fill(ends, -window.before, count, starts);
    for (std::int64_t y = 0; y < height; y += count) {
        extremesToTheEnd<Pick>(ends, pitch, count);
        std::memcpy(dst.row(int(y)), ends, sizeof(T) * std::size_t(n));
        const int behind = int(std::min<std::int64_t>(count, height - y)) - 1; // rows of output behind this one
        const bool last = y + count >= height;
        fill(starts, y + count - window.before, last ? behind : count, ends);
        if (behind > 0)
            extremesOverBlocks<Pick>(ends + pitch, starts, pitch, Plane<T>{dst.row(int(y) + 1), dst.step}, behind, n);
        std::swap(ends, starts);
    }
}

template <class T, int Channels>
ZelStatus checkPlanes(Plane<const T> src, Plane<T> dst, int width)
{
    const int elements = wrappingProduct(width, Channels);
    if constexpr (sizeof(T) == 1) return checkSteps(elements, src, dst);
    if (auto status = checkSteps(elements, src)) return status;
    return checkSteps(elements, dst);
}

template <class Pick, class T, int Channels>
ZelStatus filter(Plane<const T> src, Plane<T> dst, ZeliSize roi, ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer)
{
    if (auto status = checkPointers(src.data, dst.data, buffer)) return status;
    if (auto status = checkSize(roi)) return status;
    if (maskSize.width < 1 || maskSize.height < 1) return zelStatusBadMaskSize;
    const auto within = [](int i, int size) { return i >= 0 && i < size; };
    if (!within(anchor.x, maskSize.width) || !within(anchor.y, maskSize.height)) return zelStatusBadAnchor;
    if (auto status = checkPlanes<T, Channels>(src, dst, roi.width)) return status;

    const RowStage<Pick, T, Channels> stage{src, roi, Window(maskSize.width, anchor.x, roi.width)};
    const Window column(maskSize.height, anchor.y, roi.height);
    T* const scratch = Carver(buffer).take<T>(0, stage.kAlignment);
    switch (column.size()) {
    case 1:
        for (int y = 0; y < roi.height; ++y) stage(y, dst.row(y), scratch);
        break;
    case 2: filterFewRows<Pick, 2>(stage, dst, column.before, scratch); break;
    case 3: filterFewRows<Pick, 3>(stage, dst, column.before, scratch); break;
    case 4: filterFewRows<Pick, 4>(stage, dst, column.before, scratch); break;
    case 5: filterFewRows<Pick, 5>(stage, dst, column.before, scratch); break;
    case 6: filterFewRows<Pick, 6>(stage, dst, column.before, scratch); break;
    case kManyRows - 1: filterFewRows<Pick, kManyRows - 1>(stage, dst, column.before, scratch); break;
    default: filterManyRows<Pick>(stage, dst, column, scratch);
    }
    return zelStatusOk;
}

// The rows of the original design, with room for their alignment, and twice as many pointers to them.
template <class T, int Channels>
ZelStatus getBufferSize(int roiWidth, ZeliSize maskSize, int* bufferSize)
{
    if (auto status = checkPointers(bufferSize)) return status;
    if (roiWidth < 1) return zelStatusBadSize;
    if (maskSize.width < 1 || maskSize.height < 1) return zelStatusBadMaskSize;
    const Wrapped rowBytes = Wrapped(roiWidth) * (Channels * int(sizeof(T))) + 32, height = maskSize.height;
    *bufferSize = (height * 2 * rowBytes + height * 4 * 8 + 32).value();
    return zelStatusOk;
}

} // namespace

// ---- exports

#define RANK_SIZE(T, channels, name)                                                    \
    ZelStatus name(int roiWidth, ZeliSize maskSize, int* bufferSize)                    \
    {                                                                                   \
        return getBufferSize<T, channels>(roiWidth, maskSize, bufferSize);              \
    }
#define RANK(Pick, T, channels, name)                                                   \
    ZelStatus name(const T* src, int srcStep, T* dst, int dstStep, ZeliSize roiSize,    \
                   ZeliSize maskSize, ZeliPoint anchor, Zel8u* buffer)                  \
    {                                                                                   \
        return filter<Pick, T, channels>({src, srcStep}, {dst, dstStep}, roiSize,       \
                                         maskSize, anchor, buffer);                     \
    }

RANK_SIZE(Zel8u, 1, zeliFilterMaxGetBufferSize_8u_C1R)
RANK_SIZE(Zel8u, 3, zeliFilterMaxGetBufferSize_8u_C3R)
RANK_SIZE(Zel8u, 4, zeliFilterMaxGetBufferSize_8u_C4R)
RANK_SIZE(Zel32f, 1, zeliFilterMaxGetBufferSize_32f_C1R)
RANK_SIZE(Zel32f, 3, zeliFilterMaxGetBufferSize_32f_C3R)
RANK_SIZE(Zel32f, 4, zeliFilterMaxGetBufferSize_32f_C4R)

RANK(Largest, Zel8u, 1, zeliFilterMaxBorderReplicate_8u_C1R)
RANK(Largest, Zel8u, 3, zeliFilterMaxBorderReplicate_8u_C3R)
RANK(Largest, Zel8u, 4, zeliFilterMaxBorderReplicate_8u_C4R)
RANK(Largest, Zel32f, 1, zeliFilterMaxBorderReplicate_32f_C1R)
RANK(Largest, Zel32f, 3, zeliFilterMaxBorderReplicate_32f_C3R)
RANK(Largest, Zel32f, 4, zeliFilterMaxBorderReplicate_32f_C4R)

RANK(Smallest, Zel8u, 1, zeliFilterMinBorderReplicate_8u_C1R)
RANK(Smallest, Zel8u, 3, zeliFilterMinBorderReplicate_8u_C3R)
RANK(Smallest, Zel8u, 4, zeliFilterMinBorderReplicate_8u_C4R)
RANK(Smallest, Zel32f, 1, zeliFilterMinBorderReplicate_32f_C1R)
RANK(Smallest, Zel32f, 3, zeliFilterMinBorderReplicate_32f_C3R)
RANK(Smallest, Zel32f, 4, zeliFilterMinBorderReplicate_32f_C4R)
