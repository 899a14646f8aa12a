// The engine of the filters with border: a row stage into a ring of intermediate rows, a column stage from the ring to the
// output, row by row, so that a whole intermediate image never exists.
//
// Rows above and below the region are made by the border rule on whole rows of the image: the row stage runs on the row that
// stands in, or a row filled with the constant takes its place.
#pragma once

#include "bands.h"
#include "border.h"
#include "checks.h"

namespace zelcv {

// A source region and what surrounds it. `border` is a kind, with flags for the sides where real pixels are.
template <class T>
struct BorderedSource {
    Plane<const T> plane;
    ZeliSize size;
    ZeliBorderType border;
    T value;

    // The row that stands for row `y` of the region; kConstantPixel for a row of the border value.
    int standInRow(int y) const
    {
        if (y >= 0 && y < size.height) return y;
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

// Length of an intermediate row: whole vectors of every width.
inline Wrapped ringRowLength(int width)
{
    return Wrapped(width).roundedUp(16);
}

// Filters the rows of one band with `Taps` by `Taps` taps. rowStage(src, mid, n) makes mid[i] of src[i] and the Taps - 1
// pixels behind it; columnStage(rows, dst, n) makes dst[i] of element i of Taps rows. A row outside a constant border is
// filled with `constantRow`. Takes Taps + 1 rows of ringRowLength from `scratch`, and a few hundred bytes.
template <int Taps, class Mid, class Src, class Dst, class RowStage, class ColumnStage>
void filterBand(const BorderedSource<Src>& source, Plane<Dst> dst, Band band, Mid constantRow, Carver scratch,
                const RowStage& rowStage, const ColumnStage& columnStage)
{
    constexpr int reach = Taps / 2;
    constexpr int cacheLine = 64;
    const int width = source.size.width, rowLength = ringRowLength(width).value();
    Mid* const ring = scratch.take<Mid>(std::int64_t(rowLength) * Taps, cacheLine);
    Mid* const constant = scratch.take<Mid>(rowLength, cacheLine);
    ExtendedRow<Src, 1> extended(width, Taps, reach, source.border, &source.value, scratch);
    std::fill_n(constant, width, constantRow);

    const Mid* rows[Taps]; // rows[i] stands for row y - reach + i
    int slot = 0;
    const auto nextRow = [&](int y) -> const Mid* {
        const int standIn = source.standInRow(y);
        if (standIn == kConstantPixel) return constant;
        Mid* const row = ring + std::ptrdiff_t(rowLength) * slot;
        slot = slot == Taps - 1 ? 0 : slot + 1;
        extended.apply(source.plane.row(standIn), row, rowStage);
        return row;
    };
    for (int i = 0; i < Taps - 1; ++i) rows[i + 1] = nextRow(band.first - reach + i);
    for (int y = band.first; y < band.last; ++y) {
        for (int i = 0; i < Taps - 1; ++i) rows[i] = rows[i + 1];
        rows[Taps - 1] = nextRow(y + reach);
        columnStage(rows, dst.row(y), width);
    }
}

} // namespace zelcv
