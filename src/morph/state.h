// The states of morphology: a mask, what has been found out about it, and the room that filtering with it takes.
#pragma once

#include "zelcv.h"

#include <cstdint>

// The runs of a mask, within the smallest rectangle around its set bytes. A rectangle has the first four fields alone.
struct ZeliMorphRowRuns {
    Zel32s width, height;
    Zel32s anchorX, anchorY; // of a rectangle also outside it
    Zel32s rowCount;         // rows that are not empty
    Zel32s lengthCount;      // different lengths of their runs
    Zel32s* rowOffset;       // of each row that is not empty: its place below the first one
    Zel32s* lengthIndex;     // of each row that is not empty: its length, as an index into runLength
    Zel32s* runLength;       // each length once, the longest first
    Zel32s* runAnchor;       // of each length: the anchor column, from the start of the run
};

// One block: these fields, the runs with their tables, the mask and the work area. All pointers lead into the block.
struct ZeliMorphState {
    Zel8u* mask; // a copy, whole also where maskWidth and maskHeight are smaller; for the empty shape no byte is set
    Zel8u *maskAlias1, *maskAlias2; // the same for the general shape, null otherwise; nobody reads them
    Zel8u* work;                    // null for the empty shape
    ZeliMorphRowRuns* rowRuns;      // null for the general shape; for the empty shape there is nothing to read there
    Zel32s maskWidth, maskHeight;   // of rectangles and runs: of the smallest rectangle around the set bytes
    Zel32s anchorX, anchorY;        // of these two: within that rectangle, or outside it; of the empty shape 0, 0
    Zel32s rightExtent, bottomExtent; // of the general shape: columns right of the anchor and rows below it
    Zel32s bufferStep;                // of the general shape: bytes from row to row of the work area
    Zel32s totalSize;                 // of the block, in bytes
    Zel32s dataType;                  // of the form that built the state
    Zel32s channels;                  // of that form
    Zel32s roiWidthLimit;             // the widest region that it was built for
    Zel32s reservedMark;              // -1
    ZeliMorphShape shape;

    // The end of the work area.
    const Zel8u* end() const { return reinterpret_cast<const Zel8u*>(this) + totalSize; }
};

namespace zelcv {

struct MorphMask {
    const Zel8u* bytes; // row after row without gaps
    ZeliSize size;
    ZeliPoint anchor;
};

inline ZeliPoint centre(ZeliSize size) { return {size.width >> 1, size.height >> 1}; }

// The pixels that a state is made for.
struct MorphPixel {
    ZeliDataType dataType; // zeliData8u or zeliData32f
    Zel32s channels;

    Zel32s bytes() const { return channels * (dataType == zeliData8u ? 1 : 4); }
};

template <class T, int Channels>
constexpr MorphPixel kMorphPixel = {sizeof(T) == 1 ? zeliData8u : zeliData32f, Channels};

enum class MorphBuild { size, inPlace, allocate };

// Tells the size of a state at *size, builds it at *state, or allocates and builds it and stores it at *state. The pointer that
// a mode does not use may be null. With `noRowRuns` the shape of row runs is taken for a general one. Statuses in this order:
// mask null -8; a size below 1 -6; an anchor outside the mask -34; no memory for the analysis -9; the pointer of the mode
// null -8; no memory, or a size beyond 32 bits -9.
ZelStatus ownMorphStateBuild(MorphPixel pixel, Zel32s roiWidth, MorphMask mask, MorphBuild mode, bool noRowRuns, Zel32s* size,
                             ZeliMorphState** state);

} // namespace zelcv
