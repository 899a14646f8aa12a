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

// What every other number replaces, infinities too, and a NaN.
template <class Pick, class T>
constexpr T kNeutral = std::numeric_limits<T>::is_integer ? Pick::template kStart<T>
                       : Pick::template kStart<T> < 0     ? -std::numeric_limits<T>::infinity()
                                                          : std::numeric_limits<T>::infinity();

// The room in a work area, in bytes, from a piece on.
inline std::ptrdiff_t roomFrom(const void* piece, const ZeliMorphState& state)
{
    return state.end() - static_cast<const Zel8u*>(piece);
}

// The rows of a region that lie under a mask, in a ring of as many slots as the mask has rows. Rows outside of the region are
// its first or last one.
class RowWindow {
public:
    RowWindow(int regionHeight, int maskHeight, int anchor)
        : lastRow_(regionHeight - 1), slots_(maskHeight), anchor_(anchor) {}

    // Puts the mask on row `y` of the output, which goes up from 0 one by one; calls load(row, slot) for the rows that come in.
    template <class Load>
    ZELCV_INLINE void moveTo(int y, const Load& load)
    {
        const int first = std::max(0, y - anchor_);
        if (first > first_) {
            first_ = first;
            if (++firstSlot_ == slots_) firstSlot_ = 0;
        }
        top_ = y - anchor_;
        for (const int last = row(slots_ - 1); loaded_ <= last; ++loaded_) load(loaded_, slotOf(loaded_));
    }

    // The row of the region under row `j` of the mask, and the slot where it is.
    int row(int j) const { return int(std::clamp<std::int64_t>(std::int64_t(top_) + j, 0, lastRow_)); }
    int slotOf(int row) const
    {
        const int slot = firstSlot_ + (row - first_);
        return slot < slots_ ? slot : slot - slots_;
    }

private:
    int lastRow_, slots_, anchor_;
    int top_ = 0;                   // the row under row 0 of the mask, maybe outside of the region
    int first_ = 0, firstSlot_ = 0; // the first row of the region that is still there
    int loaded_ = 0;                // rows that have come in
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

// Copies a row with `left` pixels in front, which are its first one, and `right` behind, which are its last.
template <int Channels, class T>
void padRow(const T* src, T* dst, int width, int left, int right)
{
    const std::ptrdiff_t elements = std::ptrdiff_t(width) * Channels;
    for (std::ptrdiff_t i = 0; i < left; ++i) std::memcpy(dst + i * Channels, src, sizeof(T) * Channels);
    dst += std::ptrdiff_t(left) * Channels;
    std::memcpy(dst, src, sizeof(T) * std::size_t(elements));
    dst += elements;
    for (std::ptrdiff_t i = 0; i < right; ++i)
        std::memcpy(dst + i * Channels, src + elements - Channels, sizeof(T) * Channels);
}

// Rows with their border columns stand in a ring in the work area, and the set bytes are places there. Of masks with very many
// set bytes some are taken at a time, and the row so far is a further place. False where the work area is too small.
template <class Pick, class T, int Channels>
bool extremesOfGeneral(Plane<const T> src, Plane<T> dst, ZeliSize roi, const ZeliMorphState& state)
{
    const int elements = roi.width * Channels;
    const std::int64_t rowBytes = std::int64_t(sizeof(T)) * elements;
    const std::int64_t paddedBytes = rowBytes + std::int64_t(sizeof(T)) * Channels * (state.maskWidth - 1);
    const std::int64_t ringBytes = std::int64_t(state.maskHeight) * state.bufferStep;
    const std::int64_t behind = std::max(rowBytes, std::int64_t(sizeof(T)) * kSparseBlock<T>); // of the ring
    if (paddedBytes > state.bufferStep || ringBytes + behind > roomFrom(state.work, state)) return false;
    const Plane<T> ring{reinterpret_cast<T*>(state.work), state.bufferStep};
    T* const soFar = ring.row(state.maskHeight);

    Places places;
    const T* at[1 + Places::kAtOnce];
    const std::ptrdiff_t end = std::ptrdiff_t(state.maskWidth) * state.maskHeight;
    for (std::ptrdiff_t from = 0; from < end;) {
        const bool more = from > 0;
        from = places.collect(state, from, Channels);
        RowWindow window(roi.height, state.maskHeight, state.anchorY);
        for (int y = 0; y < roi.height; ++y) {
            window.moveTo(y, [&](int row, int slot) {
                padRow<Channels>(src.row(row), ring.row(slot), roi.width, state.anchorX, state.rightExtent);
            });
            places.locate(at + more, [&](int j) { return ring.row(window.slotOf(window.row(j))); });
            if (more) {
                std::memcpy(soFar, dst.row(y), std::size_t(rowBytes));
                at[0] = soFar;
            }
            extremesOfPlaces<Pick>(at, places.count() + more, more ? kNeutral<Pick, T> : Pick::template kStart<T>, dst.row(y),
                                   elements);
        }
    }
    return true;
}

} // namespace zelcv
