// Dilation and erosion under a mask with one run in each row.
#pragma once

#include "filter/row_extremes.h"
#include "morph/general.h"

namespace zelcv {

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
    T* const spare = pieces.take<T>(elements + 32 / std::int64_t(sizeof(T)), 32);
    T* const ring = pieces.take<T>(0, 32);
    const std::int64_t behind = std::max<std::int64_t>(0, block - rowLength); // read behind the last row
    if (roomFrom(ring, state) < std::int64_t(sizeof(T)) * (groupLength * runs.height + behind)) return false;

    // A run of one pixel is the source itself, where that may be read in whole blocks.
    const int filtered = runs.lengthCount - (runs.runLength[runs.lengthCount - 1] == 1 && elements >= block);
    RowWindow window(roi.height, runs.height, runs.anchorY);
    for (int y = 0; y < roi.height; ++y) {
        window.moveTo(y, [&](int row, int slot) {
            T* group = ring + slot * groupLength;
            for (int i = 0; i < filtered; ++i, group += rowLength)
                extremeRow<Pick, T, Channels>(src.row(row), group, roi.width, runs.runLength[i], runs.runAnchor[i], spare);
        });
        for (int k = 0; k < runs.rowCount; ++k) {
            const int row = window.row(runs.rowOffset[k]), length = runs.lengthIndex[k];
            at[k] = length < filtered ? ring + window.slotOf(row) * groupLength + length * rowLength : src.row(row);
        }
        extremesOfPlaces<Pick>(at, runs.rowCount, kNeutral<Pick, T>, dst.row(y), elements);
    }
    return true;
}

} // namespace zelcv
