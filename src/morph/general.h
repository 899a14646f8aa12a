// Dilation and erosion under a mask of any shape: each set byte of the mask is a place to read from.
#pragma once

#include "extremes.h"
#include "map.h"
#include "morph/sparse_rows.h"
#include "morph/state.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace zelcv {

// The room in a work area, in bytes, from a piece on.
inline std::ptrdiff_t roomFrom(const void* piece, const ZeliMorphState& state)
{
    return state.end() - static_cast<const Zel8u*>(piece);
}

// What stands for the rows of a region that lie under a mask, the top one first. Rows outside of the region are its first or
// last one. The table holds twice as many entries as the mask has rows, so that the rows under it never wrap.
template <class Entry>
class RowWindow {
public:
    RowWindow(int regionHeight, int maskHeight, int anchor, Entry* table)
        : lastRow_(regionHeight - 1), slots_(maskHeight), anchor_(anchor), next_(-std::int64_t(anchor)), table_(table)
    {
    }

    // Puts the mask on row `y` of the region, which goes up from 0 one by one, and returns the entries under it. Entries come
    // from load(row, slot), once for each row. A slot is free again when its row is no longer under the mask.
    template <class Load>
    ZELCV_INLINE const Entry* moveTo(int y, const Load& load)
    {
        for (const std::int64_t end = std::int64_t(y) - anchor_ + slots_; next_ < end; ++next_) {
            if (loaded_ < 0 || (next_ > 0 && next_ <= lastRow_)) {
                entry_ = load(++loaded_, slot_);
                if (++slot_ == slots_) slot_ = 0;
            }
            table_[place_] = table_[place_ + slots_] = entry_;
            if (++place_ == slots_) place_ = 0;
        }
        return table_ + place_;
    }

private:
    int lastRow_, slots_, anchor_;
    std::int64_t next_; // the row that comes next, which may be outside of the region
    Entry* table_;
    Entry entry_ = {};     // of the row that came last
    int loaded_ = -1;      // the row that was loaded last
    int slot_ = 0, place_ = 0;
};

// visit(x, y) for every set byte of the mask of a state, relative to the anchor, row by row.
template <class Visit>
void forSetBytes(const ZeliMorphState& state, const Visit& visit)
{
    const auto run = [&](int x, int y, int length) {
        for (int i = 0; i < length; ++i) visit(x + i, y);
    };
    if (state.shape == zeliMorphShapeRowRuns) {
        const ZeliMorphRowRuns& runs = *state.rowRuns;
        for (int k = 0; k < runs.rowCount; ++k) {
            const int length = runs.lengthIndex[k];
            run(-runs.runAnchor[length], runs.rowOffset[k] - runs.anchorY, runs.runLength[length]);
        }
        return;
    }
    for (int y = 0; y < state.maskHeight; ++y) {
        const Zel8u* const bytes = state.mask + std::ptrdiff_t(y) * state.maskWidth;
        if (state.shape == zeliMorphShapeRectangle)
            run(-state.anchorX, y - state.anchorY, state.maskWidth);
        else
            for (int x = 0; x < state.maskWidth; ++x)
                if (bytes[x] != 0) visit(x - state.anchorX, y - state.anchorY);
    }
}

// By the definition, without a work area: for states whose own is too small for these pixels.
template <class Pick, class T, int Channels>
void extremesInPlace(Plane<const T> src, Plane<T> dst, ZeliSize roi, const ZeliMorphState& state)
{
    const T start = state.shape == zeliMorphShapeGeneral ? Pick::template kStart<T> : kNeutral<Pick, T>;
    for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x) {
            T extreme[Channels];
            std::fill_n(extreme, Channels, start);
            forSetBytes(state, [&](int i, int j) {
                const int row = std::clamp(y + j, 0, roi.height - 1), column = std::clamp(x + i, 0, roi.width - 1);
                const T* const pixel = src.row(row) + std::ptrdiff_t(column) * Channels;
                for (int c = 0; c < Channels; ++c) extreme[c] = Pick::of(extreme[c], pixel[c]);
            });
            std::copy_n(extreme, Channels, dst.row(y) + std::ptrdiff_t(x) * Channels);
        }
}

// The set bytes of a mask, or as many of them as are taken at once.
class Places {
public:
    static constexpr int kAtOnce = 256;

    // Takes set bytes from byte `from` of the mask on. Returns the first byte that was not looked at.
    std::ptrdiff_t collect(const ZeliMorphState& state, std::ptrdiff_t from, int channels)
    {
        const std::ptrdiff_t end = std::ptrdiff_t(state.maskWidth) * state.maskHeight;
        count_ = rowCount_ = 0;
        for (; from < end && count_ < kAtOnce; ++from) {
            if (state.mask[from] == 0) continue;
            const int row = int(from / state.maskWidth);
            if (rowCount_ == 0 || rows_[rowCount_ - 1].row != row) rows_[rowCount_++] = {row, 0};
            ++rows_[rowCount_ - 1].count;
            offsets_[count_++] = from % state.maskWidth * channels;
        }
        while (from < end && state.mask[from] == 0) ++from;
        return from;
    }
    int count() const { return count_; }

    // Stores where all of them are when row j of the mask is at rowAt(j).
    template <class T, class RowAt>
    ZELCV_INLINE void locate(const T** at, const RowAt& rowAt) const
    {
        const std::ptrdiff_t* offset = offsets_;
        for (int r = 0; r < rowCount_; ++r) {
            const T* const row = rowAt(rows_[r].row);
            for (int k = 0; k < rows_[r].count; ++k) *at++ = row + *offset++;
        }
    }

private:
    struct Row {
        int row, count;
    };

    int count_, rowCount_;
    Row rows_[kAtOnce];
    std::ptrdiff_t offsets_[kAtOnce]; // in elements, from the start of a row of the mask
};

// Few bytes, which are known to be few.
ZELCV_INLINE inline void copyShort(void* dst, const void* src, std::size_t bytes)
{
    const auto ends = [=]<class Word>(Word first) ZELCV_INLINE { // a word at the start and one at the end, which may overlap
        Word last;
        std::memcpy(&first, src, sizeof first);
        std::memcpy(&last, static_cast<const char*>(src) + bytes - sizeof last, sizeof last);
        std::memcpy(dst, &first, sizeof first);
        std::memcpy(static_cast<char*>(dst) + bytes - sizeof last, &last, sizeof last);
    };
    if (bytes > 16) std::memcpy(dst, src, bytes);
    else if (bytes >= 8) ends(std::uint64_t());
    else if (bytes >= 4) ends(Zel32u());
    else if (bytes >= 2) ends(Zel16u());
    else if (bytes == 1) ends(Zel8u());
}

template <int Channels, class T>
T* repeatPixel(const T* pixel, T* to, int count)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) std::memcpy(to + i * Channels, pixel, sizeof(T) * Channels);
    return to + std::ptrdiff_t(count) * Channels;
}

// The same; up to a vector more may be written.
template <int Channels, class T>
ZELCV_INLINE inline T* repeatPixelAndMore(const T* pixel, T* to, int count)
{
    if (Channels > 1 || count > kLanes<T>) return repeatPixel<Channels>(pixel, to, count);
    store(to, splat(*pixel));
    return to + count;
}

// The columns that the mask reaches over: for whole bands of rows the two edges of the source, with their border columns, stand
// beside each other in the work area, row behind row without gaps, so that a band is one long row. False where the work area
// is too small.
template <class Pick, class T, int Channels>
bool extremesOfSides(Plane<const T> src, Plane<T> dst, ZeliSize roi, const ZeliMorphState& state, const Places& places)
{
    const int left = state.anchorX, right = state.rightExtent;
    const std::ptrdiff_t reach = std::ptrdiff_t(left + right) * Channels, elements = std::ptrdiff_t(roi.width) * Channels;
    const std::ptrdiff_t across = 3 * reach; // of a row: the border and the edge on the left, those on the right
    const std::ptrdiff_t room = roomFrom(state.work, state) / std::ptrdiff_t(sizeof(T)) - kSparseBlock<T>;
    const int under = state.maskHeight - 1;
    if (reach == 0) return true;
    const int band = int(std::min<std::ptrdiff_t>(roi.height, (room / across - under) / 2));
    if (band < 1) return false;
    T* const edges = reinterpret_cast<T*>(state.work);
    T* const result = edges + (band + under) * across;

    const T* at[Places::kAtOnce];
    places.locate(at, [&](int j) { return edges + j * across; });
    for (int y = 0; y < roi.height; y += band) {
        const int rows = std::min(band, roi.height - y);
        for (int v = 0; v < rows + under; ++v) {
            const T* const row = src.row(std::clamp(y - state.anchorY + v, 0, roi.height - 1));
            T* const edge = repeatPixelAndMore<Channels>(row, edges + v * across, left); // what is too much is overwritten
            if (reach <= kLanes<T>) store(edge, load(row));
            else std::memcpy(edge, row, sizeof(T) * std::size_t(reach));
            copyShort(edge + reach, row + elements - reach, sizeof(T) * std::size_t(reach));
            repeatPixelAndMore<Channels>(row + elements - Channels, edge + 2 * reach, right);
        }
        extremesOfPlaces<Pick>(at, places.count(), Pick::template kStart<T>, result, int((rows - 1) * across + 2 * reach));
        for (int v = 0; v < rows; ++v) {
            const T* const row = result + v * across;
            T* const to = dst.row(y + v);
            copyShort(to, row, sizeof(T) * Channels * std::size_t(left));
            copyShort(to + elements - std::ptrdiff_t(right) * Channels, row + std::ptrdiff_t(left) * Channels + reach,
                      sizeof(T) * Channels * std::size_t(right));
        }
    }
    return true;
}

// The columns that the mask does not reach over, from the source itself. Where rows follow each other without gaps, those that
// have all places within the region are one long row, in which the columns at the sides come out wrong.
template <class Pick, class T, int Channels>
void extremesOfMiddle(Plane<const T> src, Plane<T> dst, ZeliSize roi, const ZeliMorphState& state, const Places& places)
{
    const int elements = roi.width * Channels, middle = (roi.width - (state.maskWidth - 1)) * Channels;
    const bool gapless = isGapless(src, elements) && isGapless(dst, elements);
    const int atOnce = gapless ? std::numeric_limits<int>::max() / elements : 1;
    const T* at[Places::kAtOnce];
    for (int y = 0; y < roi.height;) {
        const bool inside = y >= state.anchorY && y < roi.height - state.bottomExtent;
        const int rows = inside ? std::min(atOnce, roi.height - state.bottomExtent - y) : 1;
        if (inside && y > state.anchorY && !gapless) // all places are a row below those before
            for (int k = 0; k < places.count(); ++k)
                at[k] = reinterpret_cast<const T*>(reinterpret_cast<const char*>(at[k]) + src.step);
        else
            places.locate(at, [&](int j) { return src.row(std::clamp(y - state.anchorY + j, 0, roi.height - 1)); });
        extremesOfPlaces<Pick>(at, places.count(), Pick::template kStart<T>,
                               dst.row(y) + std::ptrdiff_t(state.anchorX) * Channels, (rows - 1) * elements + middle);
        y += rows;
    }
}

// All columns, for narrow regions and masks with very many set bytes. Rows with their border columns stand in a ring in the
// work area. Some set bytes are taken at a time, and the row so far is a further place. False where the work area is too small.
template <class Pick, class T, int Channels>
bool extremesOfPaddedRows(Plane<const T> src, Plane<T> dst, ZeliSize roi, const ZeliMorphState& state, Places& places)
{
    const int elements = roi.width * Channels;
    const std::int64_t rowBytes = std::int64_t(sizeof(T)) * elements;
    const std::int64_t paddedBytes = rowBytes + std::int64_t(sizeof(T)) * Channels * (state.maskWidth - 1);
    const std::int64_t ringBytes = std::int64_t(state.maskHeight) * state.bufferStep;
    const std::int64_t behind = std::max(rowBytes, std::int64_t(sizeof(T)) * kSparseBlock<T>); // of the ring
    Carver pieces(state.work);
    const T** const table = pieces.take<const T*>(2 * std::int64_t(state.maskHeight));
    const Plane<T> ring{pieces.take<T>(0), state.bufferStep};
    if (paddedBytes > state.bufferStep || ringBytes + behind > roomFrom(ring.data, state)) return false;
    T* const soFar = ring.row(state.maskHeight);

    const T* at[1 + Places::kAtOnce];
    const std::ptrdiff_t end = std::ptrdiff_t(state.maskWidth) * state.maskHeight;
    for (std::ptrdiff_t from = 0; from < end;) {
        const bool more = from > 0;
        from = places.collect(state, from, Channels);
        RowWindow<const T*> window(roi.height, state.maskHeight, state.anchorY, table);
        for (int y = 0; y < roi.height; ++y) {
            const T* const* const rows = window.moveTo(y, [&](int row, int slot) {
                T* const padded = repeatPixel<Channels>(src.row(row), ring.row(slot), state.anchorX);
                std::memcpy(padded, src.row(row), std::size_t(rowBytes));
                repeatPixel<Channels>(padded + elements - Channels, padded + elements, state.rightExtent);
                return ring.row(slot);
            });
            places.locate(at + more, [&](int j) { return rows[j]; });
            if (more) {
                std::memcpy(soFar, dst.row(y), std::size_t(rowBytes));
                at[0] = soFar;
            }
            extremesOfPlaces<Pick>(at, places.count() + more, Pick::template kStart<T>, dst.row(y), elements);
        }
    }
    return true;
}

// False where the work area is too small.
template <class Pick, class T, int Channels>
bool extremesOfGeneral(Plane<const T> src, Plane<T> dst, ZeliSize roi, const ZeliMorphState& state)
{
    Places places;
    const bool all = places.collect(state, 0, Channels) == std::ptrdiff_t(state.maskWidth) * state.maskHeight;
    const std::int64_t middle = (std::int64_t(roi.width) - (state.maskWidth - 1)) * Channels;
    if (all && middle >= kSparseBlock<T>) {
        extremesOfMiddle<Pick, T, Channels>(src, dst, roi, state, places);
        if (extremesOfSides<Pick, T, Channels>(src, dst, roi, state, places)) return true;
    }
    return extremesOfPaddedRows<Pick, T, Channels>(src, dst, roi, state, places);
}

} // namespace zelcv
