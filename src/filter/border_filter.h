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

// Calls make(i) for blocks that cover the n elements of a stretch. Where n is no multiple of a block, the last one overlaps
// what is before; it lies in front of the stretch by a block less `reach` at the most.
template <int block, int reach, class Make>
ZELCV_INLINE inline void forRowBlocks(int n, const Make& make)
{
    if (n == block) return make(0);
    const std::ptrdiff_t last = n - block;
    if (last < 0) return make(std::max<std::ptrdiff_t>(last, reach - block));
    if (forBlocks<block>(last, make) < n) make(last);
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

// Filters the rows of one band with `taps` by `taps` taps, a number that the compiler may know. The row stage makes one
// plane or several of each intermediate row, `apart` elements from one to the next: rowStage(src, mid, n, apart) makes
// mid[i], and mid[i + apart] and so on, of src[i] and the taps - 1 pixels behind it. columnStage(rows, dst, n, apart) makes
// dst[i] of element i of `taps` rows. Both work block by block, as forRowBlocks and forColumnBlocks do. fillConstant(row,
// apart) makes the row that stands outside a constant border.
//
// Intermediate rows are aligned, and as long as whole blocks. What stages read besides real pixels is zero or a stand-in, and
// not what happens to lie in the scratch, which may be slow to add. Takes taps + 1 rows of whole blocks for each plane from
// `scratch`, taps pointers, a block, and what ExtendedRow takes.
template <class Mid, int planes, int block, class Count, class Src, class Dst, class Fill, class RowStage, class ColumnStage>
void filterBand(Count taps, const BorderedSource<Src>& source, Plane<Dst> dst, Band band, Carver scratch,
                const Fill& fillConstant, const RowStage& rowStage, const ColumnStage& columnStage)
{
    constexpr int cacheLine = 64;
    const int reach = taps / 2, width = source.size.width, apart = wholeBlocks(width, block);
    const std::ptrdiff_t rowLength = std::ptrdiff_t(apart) * planes;
    Mid* const ring = scratch.take<Mid>(rowLength * taps, cacheLine);
    Mid* const constant = scratch.take<Mid>(rowLength, cacheLine);
    Dst* const narrow = scratch.take<Dst>(block); // a row that is narrower than a block is made here
    const Mid** const rows = scratch.take<const Mid*>(taps); // rows[i] stands for row y - reach + i
    ExtendedRow<Src, 1> extended(width, taps, reach, source.border, &source.value, scratch, block);
    fillConstant(constant, apart);
    std::fill_n(rows, int(taps), nullptr);

    int slot = 0;
    for (int y = band.first - 2 * reach; y < band.last; ++y) {
        for (int i = 0; i < taps - 1; ++i) rows[i] = rows[i + 1];
        const int next = y + reach;
        const int standIn = next >= 0 && next < source.size.height ? next : source.standInRow(next);
        if (standIn == kConstantPixel) {
            rows[taps - 1] = constant;
        } else {
            Mid* const row = ring + rowLength * slot;
            slot = slot == taps - 1 ? 0 : slot + 1;
            extended.apply(source.plane.row(standIn), row, [&](const Src* from, Mid* to, int n, bool isCopy) ZELCV_INLINE {
                rowStage(from, to, isCopy ? wholeBlocks(n, block) : n, apart);
            });
            rows[taps - 1] = row;
        }
        if (y < band.first) continue;
        if (width >= block) {
            columnStage(rows, dst.row(y), width, apart);
        } else {
            columnStage(rows, narrow, block, apart);
            std::memcpy(dst.row(y), narrow, sizeof(Dst) * std::size_t(width));
        }
    }
}

} // namespace zelcv
