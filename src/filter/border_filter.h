// The engine of the filters with border: a row stage into a ring of intermediate rows, a column stage from the ring to the
// output, row by row, so that a whole intermediate image never exists.
//
// Rows above and below the region are made by the border rule on whole rows of the image: the row stage runs on the row that
// stands in, or a row filled with the constant takes its place.
#pragma once

#include "bands.h"
#include "border.h"
#include "checks.h"
#include "vector/vector.h"

#include <algorithm>

namespace zelcv {

// A source region and what surrounds it. `border` is a kind, with flags for the sides where real pixels are.
template <class T>
struct BorderedSource {
    Plane<const T> plane;
    ZeliSize size;
    ZeliBorderType border;
    T value;

    // The row that stands for row `y` outside the region; kConstantPixel for a row of the border value.
    int standInRow(int y) const
    {
        const bool above = y < 0;
        if (border & (above ? zeliBorderInMemoryTop : zeliBorderInMemoryBottom)) return y;
        const int kind = border & kBorderKindMask;
        const bool mirrored = kind == zeliBorderReflect || kind == zeliBorderReflectEdge;
        const bool farSideIsReal = border & (above ? zeliBorderInMemoryBottom : zeliBorderInMemoryTop);
        if (mirrored && farSideIsReal && size.height > 1) { // no bounce there: the mirror image runs on into real rows
            const int edge = kind == zeliBorderReflectEdge ? 1 : 0;
            return above ? -y - edge : 2 * (size.height - 1) + edge - y;
        }
        return borderIndex(y, size.height, kind);
    }
};

// A border kind that the filters with border know, and no high bits but for the InMemory flags (bits above 0xffff are not
// looked at, nor are others beside a flag).
inline ZelStatus checkBorder(ZeliBorderType border)
{
    constexpr ZeliBorderType flags =
        zeliBorderInMemoryTop | zeliBorderInMemoryBottom | zeliBorderInMemoryLeft | zeliBorderInMemoryRight;
    const int kind = border & kBorderKindMask;
    if (kind > zeliBorderReflectEdge && kind != zeliBorderInMemory) return zelStatusBadArgument;
    if ((border & 0xfff0) != 0 && (border & flags) == 0) return zelStatusBadArgument;
    return zelStatusOk;
}

// zeliBorderInMemory is short for all four flags.
inline ZeliBorderType expandBorder(ZeliBorderType border)
{
    return (border & kBorderKindMask) == zeliBorderInMemory ? 0xf0 : border;
}

// Length of an intermediate row in the sizes that callers know.
inline Wrapped ringRowLength(int width)
{
    return Wrapped(width).roundedUp(16);
}

// What the stages make at a time: two vectors of intermediate elements.
template <class Mid>
constexpr int kFilterBlock = 2 * kLanes<Mid>;
template <class Mid>
using FilterBlock = Group<Vec<Mid>, 2>;

// Calls make(i) for blocks from 0 up to `last`, or a little less than a block below it; returns the index of the next one.
template <int block, class Make>
ZELCV_INLINE inline std::ptrdiff_t forBlocks(std::ptrdiff_t last, const Make& make)
{
    std::ptrdiff_t i = 0;
    for (; i <= last - block; i += 2 * block) {
        make(i);
        make(i + block);
    }
    for (; i <= last; i += block) make(i);
    return i;
}

// mid[i] = block(src + i) for all i below n, block by block. Where n is no multiple of a block, the last one overlaps what is
// before; it lies in front of src and mid by a block less `reach` at the most.
template <int reach, class Src, class Mid, class Block>
ZELCV_INLINE inline void forRowBlocks(const Src* src, Mid* mid, int n, const Block& block)
{
    constexpr int kBlock = kFilterBlock<Mid>;
    const std::ptrdiff_t last = n - kBlock;
    const auto make = [&](std::ptrdiff_t i) ZELCV_INLINE { store(mid + i, block(src + i)); };
    if (last <= 0) return make(std::max<std::ptrdiff_t>(last, reach - kBlock));
    if (forBlocks<kBlock>(last, make) < n) make(last);
}

// A block of an intermediate row from element i on, which is aligned where i is a multiple of a block.
template <bool aligned, class Mid>
ZELCV_INLINE inline FilterBlock<Mid> ringBlock(const Mid* row, std::ptrdiff_t i)
{
    if constexpr (aligned) return {loadAligned(row + i), loadAligned(row + i + kLanes<Mid>)};
    else return {load(row + i), load(row + i + kLanes<Mid>)};
}

// dst[i] = block(at) for all i below n, which is a block or more; at(row) is the block from element i on of an intermediate
// row.
template <class Mid, class Dst, class Block>
ZELCV_INLINE inline void forColumnBlocks(Dst* dst, int n, const Block& block)
{
    const auto blockAt = [&]<bool aligned>(std::ptrdiff_t i, std::bool_constant<aligned>) ZELCV_INLINE {
        return block([=](const Mid* row) ZELCV_INLINE { return ringBlock<aligned>(row, i); });
    };
    const std::ptrdiff_t last = n - kFilterBlock<Mid>;
    const auto make = [&](std::ptrdiff_t i) ZELCV_INLINE { store(dst + i, blockAt(i, std::true_type())); };
    if (forBlocks<kFilterBlock<Mid>>(last, make) < n) store(dst + last, blockAt(last, std::false_type()));
}

// Filters the rows of one band with `Taps` by `Taps` taps, Taps / 2 not above a block. rowStage(src, mid, n) makes mid[i] of
// src[i] and the Taps - 1 pixels behind it, as forRowBlocks does; columnStage(rows, dst, n) makes dst[i] of element i of Taps
// rows, as forColumnBlocks does. A row outside a constant border is filled with `constantRow`.
//
// Intermediate rows are aligned, and as long as whole blocks. What stages read besides real pixels is zero or a stand-in, and
// not what happens to lie in the scratch, which may be slow to add. Takes Taps + 2 rows of whole blocks from `scratch`, and a
// few hundred bytes.
template <int Taps, class Mid, class Src, class Dst, class RowStage, class ColumnStage>
void filterBand(const BorderedSource<Src>& source, Plane<Dst> dst, Band band, Mid constantRow, Carver scratch,
                const RowStage& rowStage, const ColumnStage& columnStage)
{
    constexpr int reach = Taps / 2;
    constexpr int cacheLine = 64;
    constexpr int block = kFilterBlock<Mid>;
    static_assert(reach <= block);
    const int width = source.size.width, rowLength = wholeBlocks(width, block);
    Mid* const ring = scratch.take<Mid>(std::int64_t(rowLength) * Taps, cacheLine);
    Mid* const constant = scratch.take<Mid>(rowLength, cacheLine);
    Dst* const narrow = scratch.take<Dst>(block); // a row that is narrower than a block is made here
    ExtendedRow<Src, 1> extended(width, Taps, reach, source.border, &source.value, scratch, block);
    std::fill_n(constant, rowLength, constantRow);

    const Mid* rows[Taps] = {}; // rows[i] stands for row y - reach + i
    int slot = 0;
    for (int y = band.first - 2 * reach; y < band.last; ++y) {
        for (int i = 0; i < Taps - 1; ++i) rows[i] = rows[i + 1];
        const int next = y + reach;
        const int standIn = next >= 0 && next < source.size.height ? next : source.standInRow(next);
        if (standIn == kConstantPixel) {
            rows[Taps - 1] = constant;
        } else {
            Mid* const row = ring + std::ptrdiff_t(rowLength) * slot;
            slot = slot == Taps - 1 ? 0 : slot + 1;
            extended.apply(source.plane.row(standIn), row, [&](const Src* from, Mid* to, int n, bool isCopy) ZELCV_INLINE {
                rowStage(from, to, isCopy ? wholeBlocks(n, block) : n);
            });
            rows[Taps - 1] = row;
        }
        if (y < band.first) continue;
        if (width >= block) {
            columnStage(rows, dst.row(y), width);
        } else {
            columnStage(rows, narrow, block);
            std::memcpy(dst.row(y), narrow, sizeof(Dst) * std::size_t(width));
        }
    }
}

} // namespace zelcv
