// Morphological reconstruction: the marker grows into its neighbours, never beyond the mask image, until nothing changes.
//
// What is reached does not depend on the order of the work, so that rows are swept downward and upward in turn. Between
// sweeps every row is closed: nothing in it can grow along the row. A row is looked at when the neighbour that the sweep comes
// from has changed; only blocks into which that neighbour grows are worked on, and those that they grow into.
#include "bands.h"
#include "checks.h"
#include "limited_scan.h"
#include "plane.h"

#include <algorithm>
#include <bit>
#include <cstring>

using namespace zelcv;

namespace {

// Two threads, where there are rows and columns enough.
constexpr Gate kGate = Gate::pairFrom(11);

// ---- neighbourhoods: the extreme of those neighbours of a block's elements that lie in another row

struct FourNeighbours {
    template <class Grow, class T>
    ZELCV_INLINE static Vec<T> block(const T* row, int x, int)
    {
        return load(row + x);
    }
};

struct EightNeighbours {
    template <class Grow, class T>
    ZELCV_INLINE static Vec<T> block(const T* row, int x, int width)
    {
        const Vec<T> middle = load(row + x);
        const Vec<T> left = x > 0 ? load(row + x - 1) : moved<Grow, Towards::end, 1>(middle);
        const Vec<T> right = x + kLanes<T> < width ? load(row + x + 1) : moved<Grow, Towards::start, 1>(middle);
        return Grow::of(Grow::of(left, right), middle);
    }
};

// ---- rows

template <class V>
ZELCV_INLINE inline bool differ(V a, V b)
{
    constexpr Zel32u all = Zel32u(-1) >> (32 - kVectorBytes);
    return laneBits(Vec<Zel8s>(a == b)) != all;
}

// The numbers as they take part: of floats, a zero counts as +0, and one that is not a number as none (in the marker: nothing;
// in the mask: no limit).
template <class Extreme, class T>
ZELCV_INLINE inline Vec<T> readNumbers(const T* from)
{
    if constexpr (std::is_floating_point_v<T>)
        return Extreme::of(load(from) + T(0), splat(kNeutral<Extreme, T>));
    else
        return load(from);
}

// A row of the marker and what limits it, at least a vector long. Its last block overlaps the one before.
template <class Grow, class Neighbours, class T>
class Row {
public:
    // `touched` has a byte for each block.
    Row(T* marker, const T* mask, int width, Zel8u* touched)
        : marker_(marker), mask_(mask), width_(width), lastBlock_((width - 1) / kLanes<T>), touched_(touched)
    {
    }

    // Closes a row that never was, with a row beside it if there is one.
    void closeFirst(const T* beside) const
    {
        Vec<T> entering = nothing();
        for (int block = 0; block <= lastBlock_; ++block) {
            const int x = place(block);
            Vec<T> v = readNumbers<Grow>(marker_ + x);
            if (beside) v = Grow::of(v, Neighbours::template block<Grow>(beside, x, width_));
            if (block == lastBlock_ && block > 0) entering = splat(marker_[x - 1]);
            const Vec<T> limit = limitAt(x);
            v = spread<Grow, Towards::end>(Limit::of(v, limit), limit, entering);
            entering = leaving<Towards::end>(v);
            store(marker_ + x, v);
        }
        entering = nothing();
        for (int block = lastBlock_; block >= 0; --block) {
            const int x = place(block);
            if (block == lastBlock_ - 1) entering = splat(marker_[x + kLanes<T>]);
            const Vec<T> v = spread<Grow, Towards::start>(load(marker_ + x), limitAt(x), entering);
            entering = leaving<Towards::start>(v);
            store(marker_ + x, v);
        }
    }

    // Lets a row beside it grow into a row that is closed, and closes it again. Tells whether it has changed.
    bool grow(const T* beside) const
    {
        int first = -1, last = -1; // blocks touched
        bool before = false;       // was the block before touched
        for (int block = 0; block <= lastBlock_; ++block) {
            const int x = place(block);
            const Vec<T> old = load(marker_ + x), limit = limitAt(x);
            Vec<T> v = Limit::of(Grow::of(old, Neighbours::template block<Grow>(beside, x, width_)), limit);
            touched_[block] = 0;
            if (!before && !differ(v, old)) continue;
            v = spread<Grow, Towards::end>(v, limit, block > 0 ? splat(marker_[x - 1]) : nothing());
            before = differ(v, old);
            if (!before) continue;
            store(marker_ + x, v);
            touched_[block] = 1;
            if (first < 0) first = block;
            last = block;
        }
        if (first < 0) return false;
        before = false;
        for (int block = last; block >= first || (before && block >= 0); --block) {
            if (!before && !touched_[block]) continue;
            const int x = place(block);
            const Vec<T> old = load(marker_ + x);
            const bool atEnd = x + kLanes<T> == width_;
            const Vec<T> v = spread<Grow, Towards::start>(old, limitAt(x), atEnd ? nothing() : splat(marker_[x + kLanes<T>]));
            const bool grown = differ(v, old);
            if (grown) store(marker_ + x, v);
            before = grown || touched_[block];
        }
        return true;
    }

private:
    using Limit = Opposite<Grow>;

    static Vec<T> nothing() { return splat(kNeutral<Grow, T>); }
    int place(int block) const { return block == lastBlock_ ? width_ - kLanes<T> : block * kLanes<T>; }
    Vec<T> limitAt(int x) const { return readNumbers<Limit>(mask_ + x); }

    T* marker_;
    const T* mask_;
    int width_, lastBlock_;
    Zel8u* touched_;
};

// ---- sweeps

template <class Grow, class Neighbours, class T>
class Reconstruction {
public:
    // Takes two bytes a column and one a row from `scratch`.
    Reconstruction(Plane<const T> mask, Plane<T> marker, ZeliSize roi, Carver scratch)
        : mask_(mask), marker_(marker), roi_(roi), touched_{scratch.take<Zel8u>(roi.width), scratch.take<Zel8u>(roi.width)},
          dirty_(scratch.take<Zel8u>(roi.height))
    {
    }

    void onOneThread() const
    {
        const Rows down{0, roi_.height, 1}, up{roi_.height - 1, -1, -1};
        closeRows(down, 0);
        while (sweep(up, false, 0) && sweep(down, false, 0)) {}
    }

    // What the threads tell each other. Each is written by one thread, and read behind a barrier.
    struct Shared {
        bool towards[2] = {}, away[2] = {}, middle = false;
    };

    // Called by two threads of a team. Each has the rows on one side of the middle one: it sweeps towards the middle and away
    // from it. Thread 0 has the middle row, while the other one waits.
    void onTwoThreads(int thread, Shared& shared) const
    {
        const int middle = roi_.height / 2;
        const Rows towards = thread == 0 ? Rows{0, middle, 1} : Rows{roi_.height - 1, middle, -1};
        const Rows away = thread == 0 ? Rows{middle - 1, -1, -1} : Rows{middle + 1, roi_.height, 1};
        closeRows(towards, thread);
#pragma omp barrier
        if (thread == 0) {
            closeFirst(middle, middle - 1, 0);
            grow(middle, middle + 1, 0);
        }
#pragma omp barrier
        for (;;) {
            shared.away[thread] = sweep(away, true, thread);
#pragma omp barrier
            if (!shared.away[0] && !shared.away[1]) return;
            shared.towards[thread] = sweep(towards, false, thread);
#pragma omp barrier
            if (thread == 0) {
                const bool above = grow(middle, middle - 1, 0), below = grow(middle, middle + 1, 0);
                if (above || below) dirty_[middle - 1] = dirty_[middle + 1] = 1;
                shared.middle = above || below;
            }
#pragma omp barrier
            if (!shared.middle && !shared.towards[0] && !shared.towards[1]) return;
        }
    }

private:
    using RowOf = Row<Grow, Neighbours, T>;
    static constexpr int kNone = -1;

    // Rows in the order of a sweep: from `first` on, up to `end`.
    struct Rows {
        int first, end, step;
    };

    void closeRows(Rows rows, int thread) const
    {
        for (int y = rows.first; y != rows.end; y += rows.step) {
            closeFirst(y, y == rows.first ? kNone : y - rows.step, thread);
            dirty_[y] = 1;
        }
    }

    // Looks at the rows that are dirty, and at those behind a row that has changed. Tells whether any changed. `besideFirst`:
    // there is a row in front of the first one.
    bool sweep(Rows rows, bool besideFirst, int thread) const
    {
        bool any = false, before = false;
        for (int y = rows.first; y != rows.end; y += rows.step) {
            if (!before && !dirty_[y]) continue;
            dirty_[y] = 0;
            before = (y != rows.first || besideFirst) && grow(y, y - rows.step, thread);
            if (!before) continue;
            any = true;
            if (y != rows.first) dirty_[y - rows.step] = 1; // for the sweep back
        }
        return any;
    }

    void closeFirst(int y, int besideY, int thread) const
    {
        withRow(y, besideY, thread, [](const RowOf& row, const T* beside) {
            row.closeFirst(beside);
            return true;
        });
    }
    bool grow(int y, int besideY, int thread) const
    {
        return withRow(y, besideY, thread, [](const RowOf& row, const T* beside) { return row.grow(beside); });
    }

    // Rows shorter than a vector are worked on in copies, with nothing behind them.
    template <class Work>
    bool withRow(int y, int besideY, int thread, const Work& work) const
    {
        T* const marker = marker_.row(y);
        const T* const beside = besideY == kNone ? nullptr : marker_.row(besideY);
        if (roi_.width >= kLanes<T>) return work(RowOf(marker, mask_.row(y), roi_.width, touched_[thread]), beside);
        T copies[3][kLanes<T>];
        std::fill_n(copies[0], 3 * kLanes<T>, kNeutral<Grow, T>);
        std::copy_n(marker, roi_.width, copies[0]);
        std::copy_n(mask_.row(y), roi_.width, copies[1]);
        if (beside) std::copy_n(beside, roi_.width, copies[2]);
        const bool changed = work(RowOf(copies[0], copies[1], kLanes<T>, touched_[thread]), beside ? copies[2] : nullptr);
        std::copy_n(copies[0], roi_.width, marker);
        return changed;
    }

    Plane<const T> mask_;
    Plane<T> marker_;
    ZeliSize roi_;
    Zel8u* touched_[2]; // for each thread: blocks of the row that it works on
    Zel8u* dirty_;      // rows that the sweep must look at, since a row that lies behind them has changed
};

// ---- drivers

template <class Grow, class Neighbours, class T>
void reconstructBy(Plane<const T> mask, Plane<T> marker, ZeliSize roi, Zel8u* buffer)
{
    using Work = Reconstruction<Grow, Neighbours, T>;
    const Work work(mask, marker, roi, Carver(buffer));
    typename Work::Shared shared;
    runTeam(roi.height, planTeam(roi, kGate), [&](Band band) {
        if (band.count == 2)
            work.onTwoThreads(band.index, shared);
        else
            work.onOneThread();
    });
}

template <class Grow, class T>
ZelStatus reconstruct(Plane<const T> mask, Plane<T> marker, ZeliSize roi, Zel8u* buffer, ZeliNormType norm)
{
    if (auto status = checkPointers(mask.data, marker.data, buffer)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(roi.width, mask, marker)) return status;
    switch (norm) {
    case zeliNormInf: reconstructBy<Grow, EightNeighbours>(mask, marker, roi, buffer); return zelStatusOk;
    case zeliNormL1: reconstructBy<Grow, FourNeighbours>(mask, marker, roi, buffer); return zelStatusOk;
    default: return zelStatusBadArgument;
    }
}

// Bytes as callers know them: four rows of elements and a byte for each row, for 16u twice.
template <class T>
ZelStatus bufferSize(ZeliSize roi, Zel32s* size, int twice, int rest)
{
    if (auto status = checkPointers(size)) return status;
    if (auto status = checkSize(roi)) return status;
    *size = (Wrapped(4 * int(sizeof(T))) * roi.width + Wrapped(twice) * roi.height + rest).value();
    return zelStatusOk;
}

} // namespace

#define RECONSTRUCT_SIZE(T, rowFlagBytes, restBytes, name)                                                                \
    ZelStatus name(ZeliSize roiSize, Zel32s* size)                                                                        \
    {                                                                                                                     \
        return bufferSize<T>(roiSize, size, rowFlagBytes, restBytes);                                                     \
    }
#define RECONSTRUCT(Grow, T, name)                                                                                        \
    ZelStatus name(const T* src, int srcStep, T* srcDst, int srcDstStep, ZeliSize roiSize, Zel8u* buffer,                 \
                   ZeliNormType norm)                                                                                     \
    {                                                                                                                     \
        return reconstruct<Grow, T>({src, srcStep}, {srcDst, srcDstStep}, roiSize, buffer, norm);                         \
    }

RECONSTRUCT_SIZE(Zel8u, 1, 161, zeliMorphReconstructGetBufferSize_8u_C1)
RECONSTRUCT_SIZE(Zel16u, 2, 322, zeliMorphReconstructGetBufferSize_16u_C1)
RECONSTRUCT_SIZE(Zel32f, 1, 164, zeliMorphReconstructGetBufferSize_32f_C1)
RECONSTRUCT_SIZE(Zel64f, 1, 168, zeliMorphReconstructGetBufferSize_64f_C1)

RECONSTRUCT(Largest, Zel8u, zeliMorphReconstructDilate_8u_C1IR)
RECONSTRUCT(Largest, Zel16u, zeliMorphReconstructDilate_16u_C1IR)
RECONSTRUCT(Largest, Zel32f, zeliMorphReconstructDilate_32f_C1IR)
RECONSTRUCT(Largest, Zel64f, zeliMorphReconstructDilate_64f_C1IR)
RECONSTRUCT(Smallest, Zel8u, zeliMorphReconstructErode_8u_C1IR)
RECONSTRUCT(Smallest, Zel16u, zeliMorphReconstructErode_16u_C1IR)
RECONSTRUCT(Smallest, Zel32f, zeliMorphReconstructErode_32f_C1IR)
RECONSTRUCT(Smallest, Zel64f, zeliMorphReconstructErode_64f_C1IR)
