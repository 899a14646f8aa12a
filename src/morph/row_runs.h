// Dilation and erosion under a mask with one run in each row.
#pragma once

#include "filter/row_extremes.h"
#include "morph/general.h"

namespace zelcv {

// A run of a mask: how far it reaches to both sides of the anchor column.
struct Run {
    int before, behind;

    Run(const ZeliMorphRowRuns& runs, int index)
        : before(runs.runAnchor[index]), behind(runs.runLength[index] - 1 - runs.runAnchor[index]) {}

    int length() const { return before + 1 + behind; }
    // Whether two of the shorter run lay over this one.
    bool isTwiceIn(const Run& shorter) const
    {
        return before >= shorter.before && behind >= shorter.behind && length() <= 2 * shorter.length();
    }
};

// The extremes of a run, from the row of those of a shorter one that lies over it twice: at its start and at its end. At the
// ends of the row both are cut there.
template <class Pick, class T, int Channels>
void extremesOfLongerRun(const T* shorter, Run from, T* dst, int width, Run to)
{
    const int before = to.before - from.before, behind = to.behind - from.behind, end = std::max(before, width - behind);
    const auto makeEdge = [=](int first, int last) ZELCV_INLINE {
        for (std::ptrdiff_t x = first; x < last; ++x) {
            const T* const start = shorter + std::max<std::ptrdiff_t>(0, x - before) * Channels;
            const T* const other = shorter + std::min<std::ptrdiff_t>(width - 1, x + behind) * Channels;
            for (int c = 0; c < Channels; ++c) dst[x * Channels + c] = Pick::of(start[c], other[c]);
        }
    };
    makeEdge(0, std::min(width, before));
    if (end > before)
        extremesOfTwo<Pick>(shorter, shorter + std::ptrdiff_t(before + behind) * Channels,
                            dst + std::ptrdiff_t(before) * Channels, (end - before) * Channels);
    makeEdge(std::min(width, end), width);
}

// A row of the source, and the rows of its extremes for the runs of the mask.
template <class T>
struct FilteredRow {
    const T* source;
    T* extremes;
};

// Each row of the source is filtered once for each length of run, into a ring with a group of rows for each row of the mask.
// A row of output is the extreme of one filtered row for each row of the mask. False where the work area is too small.
template <class Pick, class T, int Channels>
bool extremesOfRowRuns(Plane<const T> src, Plane<T> dst, ZeliSize roi, const ZeliMorphState& state)
{
    const ZeliMorphRowRuns& runs = *state.rowRuns;
    const int elements = roi.width * Channels, block = kSparseBlock<T>;
    const std::int64_t rowLength = (std::int64_t(elements) * std::int64_t(sizeof(T)) + 31) / 32 * 32 / std::int64_t(sizeof(T));
    const std::int64_t groupLength = rowLength * runs.lengthCount;
    Carver pieces(state.work);
    const T** const at = pieces.take<const T*>(runs.rowCount);
    FilteredRow<T>* const table = pieces.take<FilteredRow<T>>(2 * std::int64_t(runs.height));
    T* const spare = pieces.take<T>(elements + 32 / std::int64_t(sizeof(T)), 32);
    T* const ring = pieces.take<T>(0, 32);
    const std::int64_t behind = std::max<std::int64_t>(0, block - rowLength); // read behind the last row
    if (roomFrom(ring, state) < std::int64_t(sizeof(T)) * (groupLength * runs.height + behind)) return false;

    // A run of one pixel is the source itself, where that may be read in whole blocks.
    const int filtered = runs.lengthCount - (runs.runLength[runs.lengthCount - 1] == 1 && elements >= block);
    const auto filter = [&](int row, int slot) ZELCV_INLINE {
        T* const group = ring + slot * groupLength;
        for (int i = filtered - 1; i >= 0; --i) { // from the shortest one on
            T* const extremes = group + i * rowLength;
            const Run run(runs, i);
            if (i + 1 < filtered && run.isTwiceIn(Run(runs, i + 1)))
                extremesOfLongerRun<Pick, T, Channels>(extremes + rowLength, Run(runs, i + 1), extremes, roi.width, run);
            else
                extremeRow<Pick, T, Channels>(src.row(row), extremes, roi.width, run.length(), run.before, spare);
        }
        return FilteredRow<T>{src.row(row), group};
    };
    RowWindow<FilteredRow<T>> window(roi.height, runs.height, runs.anchorY, table);
    for (int y = 0; y < roi.height; ++y) {
        const FilteredRow<T>* const rows = window.moveTo(y, filter);
        for (std::ptrdiff_t k = 0; k < runs.rowCount; ++k) {
            const FilteredRow<T>& row = rows[runs.rowOffset[k]];
            const int length = runs.lengthIndex[k];
            at[k] = length < filtered ? row.extremes + length * rowLength : row.source;
        }
        extremesOfPlaces<Pick>(at, runs.rowCount, kNeutral<Pick, T>, dst.row(y), elements);
    }
    return true;
}

} // namespace zelcv
