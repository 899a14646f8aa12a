// What a mask is: a rectangle, runs of rows, empty or anything else; and the states that hold it.
#include "morph/state.h"

#include "checks.h"
#include "scratch.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

using namespace zelcv;

static_assert(sizeof(ZeliMorphState) == 96 && sizeof(ZeliMorphRowRuns) == 56);

namespace {

// ---- what a mask is

// A row of a mask that is not empty: columns `first` to `end` - 1 are set.
struct MaskRow {
    Zel32s row, first, end;
    Zel32s length, anchor; // of the run, and the anchor column within it
    Zel32s lengthIndex;
};
static_assert(sizeof(MaskRow) == 6 * sizeof(Zel32s));

constexpr std::int64_t kTableBytesPerRow = 4 * sizeof(Zel32s), kRecordBytes = 64;

// Room for the analysis of a mask: its rows, and the record under construction with tables for as many.
struct Analysis {
    explicit Analysis(Zel32s height)
        : rowBlock(ownMalloc_32s(6 * std::int64_t(height))),
          recordBlock(rowBlock ? ownMalloc_8u(kTableBytesPerRow * height + kRecordBytes) : nullptr)
    {
        if (!recordBlock) return;
        rows = static_cast<MaskRow*>(rowBlock.get());
        Carver pieces(static_cast<Zel8u*>(recordBlock.get()));
        runs = new (pieces.take<ZeliMorphRowRuns>(1)) ZeliMorphRowRuns{};
        for (Zel32s** table : {&runs->rowOffset, &runs->lengthIndex, &runs->runLength, &runs->runAnchor})
            *table = pieces.take<Zel32s>(height);
    }

    OwnedBlock rowBlock, recordBlock;
    MaskRow* rows = nullptr;
    ZeliMorphRowRuns* runs = nullptr;
};

// Makes the list of different run lengths. False where two runs of one length lie differently to the anchor column.
bool listLengths(MaskRow* rows, ZeliMorphRowRuns* runs)
{
    const auto find = [&](Zel32s length) {
        return std::lower_bound(runs->runLength, runs->runLength + runs->lengthCount, length, std::greater<>());
    };
    for (Zel32s i = 0; i < runs->rowCount; ++i) {
        Zel32s* const length = find(rows[i].length);
        Zel32s* const anchor = runs->runAnchor + (length - runs->runLength);
        Zel32s* const end = runs->runLength + runs->lengthCount;
        if (length != end && *length == rows[i].length) {
            if (*anchor != rows[i].anchor) return false;
            continue;
        }
        std::copy_backward(length, end, end + 1);
        std::copy_backward(anchor, runs->runAnchor + runs->lengthCount, runs->runAnchor + runs->lengthCount + 1);
        *length = rows[i].length;
        *anchor = rows[i].anchor;
        ++runs->lengthCount;
    }
    for (Zel32s i = 0; i < runs->rowCount; ++i) rows[i].lengthIndex = Zel32s(find(rows[i].length) - runs->runLength);
    return true;
}

// Fills `runs` for a rectangle and for row runs; of the other shapes it is not to be read.
ZeliMorphShape ownMorphClassifyMask(const MorphMask& mask, bool noRowRuns, MaskRow* rows, ZeliMorphRowRuns* runs)
{
    const auto isSet = [](Zel8u byte) { return byte != 0; };
    const ZeliPoint anchor = mask.anchor;
    bool missed = noRowRuns; // some run does not cover the anchor column
    Zel32s count = 0, left = mask.size.width, right = 0;
    for (Zel32s y = 0; y < mask.size.height; ++y) {
        const Zel8u* const row = mask.bytes + std::ptrdiff_t(y) * mask.size.width;
        const Zel8u* const rowEnd = row + mask.size.width;
        const Zel8u* const run = std::find_if(row, rowEnd, isSet);
        if (run == rowEnd) continue;
        const Zel8u* const runEnd = std::find(run, rowEnd, 0);
        if (std::any_of(runEnd, rowEnd, isSet)) return zeliMorphShapeGeneral;
        const Zel32s first = Zel32s(run - row), end = Zel32s(runEnd - row);
        left = std::min(left, first);
        right = std::max(right, end);
        missed |= anchor.x < first || anchor.x >= end;
        rows[count++] = {y, first, end, end - first, anchor.x - first, 0};
    }
    if (count == 0) return zeliMorphShapeEmpty;

    const MaskRow top = rows[0], bottom = rows[count - 1];
    missed |= anchor.y < top.row || anchor.y > bottom.row;
    runs->width = right - left;
    runs->height = bottom.row - top.row + 1;
    runs->anchorX = anchor.x - left;
    runs->anchorY = anchor.y - top.row;
    const auto asTop = [&](const MaskRow& row) { return row.length == top.length && row.anchor == top.anchor; };
    if (count == runs->height && std::all_of(rows, rows + count, asTop)) return zeliMorphShapeRectangle;
    if (missed) return zeliMorphShapeGeneral;

    runs->rowCount = count;
    if (!listLengths(rows, runs)) return zeliMorphShapeGeneral;
    for (Zel32s i = 0; i < count; ++i) {
        runs->rowOffset[i] = rows[i].row - top.row;
        runs->lengthIndex[i] = rows[i].lengthIndex;
    }
    return zeliMorphShapeRowRuns;
}

// ---- the block

constexpr Wrapped roundedUp(Wrapped value, int unit) { return value.roundedUp(Zel32u(unit)); }
double roundedUp(double value, int unit) { return std::ceil(value / unit) * unit; }
constexpr Wrapped larger(Wrapped a, Wrapped b) { return std::max(a.value(), b.value()); }
double larger(double a, double b) { return std::max(a, b); }

// The sizes of the parts of a block. N is Wrapped, the numbers that callers know, or double, which tells where these are wrong.
template <class N>
struct BlockSizes {
    N mask, bufferStep, total;

    BlockSizes(ZeliMorphShape shape, const ZeliMorphRowRuns& runs, ZeliSize maskSize, Zel32s roiWidth, Zel32s pixelBytes)
        : mask(roundedUp(N(maskSize.width) * N(maskSize.height), 16)),
          bufferStep(roundedUp((N(roiWidth) + N(maskSize.width)) * N(pixelBytes), 16)), total(0)
    {
        const N row = N(roiWidth) * N(pixelBytes) + N(32), height = N(runs.height);
        switch (shape) {
        case zeliMorphShapeEmpty: total = mask + N(96); break;
        case zeliMorphShapeRectangle: // the buffer of the filters for rectangles
            total = mask + N(2) * height * row + N(4) * height * N(8) + N(32) + N(128);
            break;
        case zeliMorphShapeRowRuns:
            total = mask + (height * N(runs.lengthCount) + N(1)) * row + N(5) * height * N(8) + N(40) +
                    (N(runs.rowCount) + N(runs.lengthCount)) * N(8) + N(160);
            break;
        default:
            total = mask + larger(N(2) * N(maskSize.height) * bufferStep, N(pixelBytes) * N(maskSize.height)) + N(112);
        }
    }
};

Zel32s* copyTable(Carver& pieces, const Zel32s* table, Zel32s count)
{
    Zel32s* const copy = pieces.take<Zel32s>(count);
    std::copy_n(table, count, copy);
    return copy;
}

ZeliMorphState* writeState(Zel8u* block, MorphPixel pixel, Zel32s roiWidth, const MorphMask& mask, ZeliMorphShape shape,
                           const ZeliMorphRowRuns& runs, const BlockSizes<Wrapped>& sizes)
{
    Carver pieces(block);
    ZeliMorphState* const state = new (pieces.take<ZeliMorphState>(1)) ZeliMorphState{};
    state->shape = shape;
    state->totalSize = sizes.total.value();
    state->dataType = pixel.dataType;
    state->channels = pixel.channels;
    state->roiWidthLimit = roiWidth;
    state->reservedMark = -1;
    state->maskWidth = mask.size.width;
    state->maskHeight = mask.size.height;

    std::uintptr_t alignment = 16;
    switch (shape) {
    case zeliMorphShapeGeneral:
        state->anchorX = mask.anchor.x;
        state->anchorY = mask.anchor.y;
        state->rightExtent = mask.size.width - mask.anchor.x - 1;
        state->bottomExtent = mask.size.height - mask.anchor.y - 1;
        state->bufferStep = sizes.bufferStep.value();
        break;
    case zeliMorphShapeEmpty: // its block has no room but for the mask
        state->rowRuns = reinterpret_cast<ZeliMorphRowRuns*>(pieces.take<Zel8u>(0));
        alignment = 1;
        break;
    default: {
        const Zel32s place[] = {runs.width, runs.height, runs.anchorX, runs.anchorY};
        std::copy_n(place, 4, &state->maskWidth);
        if (shape == zeliMorphShapeRectangle) {
            state->rowRuns = reinterpret_cast<ZeliMorphRowRuns*>(copyTable(pieces, place, 4));
        } else {
            ZeliMorphRowRuns* const copy = state->rowRuns = new (pieces.take<ZeliMorphRowRuns>(1)) ZeliMorphRowRuns(runs);
            copy->rowOffset = copyTable(pieces, runs.rowOffset, runs.rowCount);
            copy->lengthIndex = copyTable(pieces, runs.lengthIndex, runs.rowCount);
            copy->runLength = copyTable(pieces, runs.runLength, runs.lengthCount);
            copy->runAnchor = copyTable(pieces, runs.runAnchor, runs.lengthCount);
        }
    }
    }
    state->mask = pieces.take<Zel8u>(sizes.mask.value(), alignment);
    std::memcpy(state->mask, mask.bytes, std::size_t(mask.size.width) * std::size_t(mask.size.height));
    if (shape != zeliMorphShapeEmpty) state->work = pieces.take<Zel8u>(0);
    if (shape == zeliMorphShapeGeneral) state->maskAlias1 = state->maskAlias2 = state->mask;
    return state;
}

} // namespace

ZelStatus zelcv::ownMorphStateBuild(MorphPixel pixel, Zel32s roiWidth, MorphMask mask, MorphBuild mode, bool noRowRuns,
                                    Zel32s* size, ZeliMorphState** state)
{
    if (auto status = checkPointers(mask.bytes)) return status;
    if (roiWidth < 1) return zelStatusBadSize;
    if (auto status = checkSize(mask.size)) return status;
    if (mask.anchor.x < 0 || mask.anchor.x >= mask.size.width || mask.anchor.y < 0 || mask.anchor.y >= mask.size.height)
        return zelStatusBadAnchor;
    const Analysis analysis(mask.size.height);
    if (!analysis.recordBlock) return zelStatusNoMemory;

    const ZeliMorphShape shape = ownMorphClassifyMask(mask, noRowRuns, analysis.rows, analysis.runs);
    const BlockSizes<Wrapped> sizes(shape, *analysis.runs, mask.size, roiWidth, pixel.bytes());
    if (mode == MorphBuild::size) {
        if (auto status = checkPointers(size)) return status;
        *size = sizes.total.value();
        return zelStatusOk;
    }
    if (auto status = checkPointers(state)) return status;
    if (mode == MorphBuild::inPlace)
        if (auto status = checkPointers(*state)) return status;
    const double exact = BlockSizes<double>(shape, *analysis.runs, mask.size, roiWidth, pixel.bytes()).total;
    if (exact > std::numeric_limits<Zel32s>::max()) return zelStatusNoMemory; // no block holds what its record could not tell
    Zel8u* block = reinterpret_cast<Zel8u*>(*state);
    if (mode == MorphBuild::allocate) {
        block = ownMalloc_8u(sizes.total.value());
        if (!block) return zelStatusNoMemory;
    }
    *state = writeState(block, pixel, roiWidth, mask, shape, *analysis.runs, sizes);
    return zelStatusOk;
}
