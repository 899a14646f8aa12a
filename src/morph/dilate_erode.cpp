// Dilation and erosion under a byte mask: the largest, or smallest, pixel under the set bytes of the mask when its anchor lies
// on the pixel. What is outside of the region is its nearest pixel.
//
// The mask is looked at when a state is built. A rectangle goes to the filters for rectangles, rows with one run each to
// row_runs.h, anything else to general.h.
#include "checks.h"
#include "morph/row_runs.h"

using namespace zelcv;

namespace {

// ---- rectangles

// One axis of a rectangle whose anchor may lie outside of it. The part of the region that reads different pixels shrinks, its
// source or its destination moves by as much, and the anchor comes to lie on the rectangle's edge.
struct Fold {
    int extent, srcShift, dstShift, anchor;

    Fold(int regionExtent, int maskExtent, int maskAnchor) : extent(regionExtent), srcShift(0), dstShift(0), anchor(maskAnchor)
    {
        if (maskAnchor < 0) {
            srcShift = std::min(regionExtent - 1, -maskAnchor);
            extent -= srcShift;
            anchor = 0;
        } else if (maskAnchor >= maskExtent) {
            dstShift = std::min(regionExtent - 1, maskAnchor - maskExtent + 1);
            extent -= dstShift;
            anchor = maskExtent - 1;
        }
    }
    bool folded(int regionExtent) const { return extent != regionExtent; }
};

// Repeats the edges of a block of the region outward.
template <int Channels, class T>
void ownMorphFillEdges(Plane<T> dst, ZeliSize roi, const Fold& columns, const Fold& rows)
{
    const int left = columns.dstShift, right = roi.width - left - columns.extent, bottom = rows.dstShift + rows.extent;
    const auto repeat = [](const T* pixel, T* to, int count) {
        for (std::ptrdiff_t i = 0; i < count; ++i) std::memcpy(to + i * Channels, pixel, sizeof(T) * Channels);
    };
    for (int y = rows.dstShift; y < bottom; ++y) {
        T* const first = dst.row(y) + std::ptrdiff_t(left) * Channels;
        T* const end = first + std::ptrdiff_t(columns.extent) * Channels;
        repeat(first, dst.row(y), left);
        repeat(end - Channels, end, right);
    }
    const std::size_t rowBytes = sizeof(T) * Channels * std::size_t(roi.width);
    for (int y = 0; y < rows.dstShift; ++y) std::memcpy(dst.row(y), dst.row(rows.dstShift), rowBytes);
    for (int y = bottom; y < roi.height; ++y) std::memcpy(dst.row(y), dst.row(bottom - 1), rowBytes);
}

template <class T>
using RectangleFilter = ZelStatus(const T* src, int srcStep, T* dst, int dstStep, ZeliSize roiSize, ZeliSize maskSize,
                                  ZeliPoint anchor, Zel8u* buffer);

// False where the work area is too small.
template <class T, int Channels>
bool extremesOfRectangle(RectangleFilter<T>* filter, Plane<const T> src, Plane<T> dst, ZeliSize roi,
                         const ZeliMorphState& state)
{
    const std::int64_t rowBytes = std::int64_t(sizeof(T)) * Channels * roi.width;
    if (2 * state.maskHeight * (rowBytes + 32) + 32 * std::int64_t(state.maskHeight) + 32 > roomFrom(state.work, state))
        return false;
    const Fold columns(roi.width, state.maskWidth, state.anchorX), rows(roi.height, state.maskHeight, state.anchorY);
    filter(src.row(rows.srcShift) + std::ptrdiff_t(columns.srcShift) * Channels, src.step,
           dst.row(rows.dstShift) + std::ptrdiff_t(columns.dstShift) * Channels, dst.step, {columns.extent, rows.extent},
           {state.maskWidth, state.maskHeight}, {columns.anchor, rows.anchor}, state.work);
    if (columns.folded(roi.width) || rows.folded(roi.height)) ownMorphFillEdges<Channels>(dst, roi, columns, rows);
    return true;
}

// ---- drivers

template <class Pick, class T, int Channels>
ZelStatus dilateOrErode(RectangleFilter<T>* rectangleFilter, Plane<const T> src, Plane<T> dst, ZeliSize roi,
                        ZeliBorderType border, const ZeliMorphState* state)
{
    if (auto status = checkPointers(src.data, dst.data, state)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(wrappingProduct(roi.width, Channels), src, dst)) return status;
    if (border != zeliBorderReplicate) return zelStatusBadArgument;
    if (roi.width > state->roiWidthLimit) return zelStatusBadSize;

    bool done = true;
    switch (state->shape) {
    case zeliMorphShapeRectangle: done = extremesOfRectangle<T, Channels>(rectangleFilter, src, dst, roi, *state); break;
    case zeliMorphShapeRowRuns: done = extremesOfRowRuns<Pick, T, Channels>(src, dst, roi, *state); break;
    case zeliMorphShapeEmpty:
        for (int y = 0; y < roi.height; ++y)
            std::memcpy(dst.row(y), src.row(y), sizeof(T) * Channels * std::size_t(roi.width));
        break;
    default: done = extremesOfGeneral<Pick, T, Channels>(src, dst, roi, *state);
    }
    if (!done) extremesInPlace<Pick, T, Channels>(src, dst, roi, *state);
    return zelStatusOk;
}

ZelStatus buildState(MorphPixel pixel, Zel32s roiWidth, MorphMask mask, MorphBuild mode, ZeliMorphState** state)
{
    return ownMorphStateBuild(pixel, roiWidth, mask, mode, false, nullptr, state);
}

} // namespace

// ---- exports

ZelStatus zeliMorphologyFree(ZeliMorphState* state)
{
    if (auto status = checkPointers(state)) return status;
    ownFree(state);
    return zelStatusOk;
}

#define STATE(T, channels, sizeName, initName, initAllocName)                                                            \
    ZelStatus sizeName(int roiWidth, const Zel8u* mask, ZeliSize maskSize, int* size)                                    \
    {                                                                                                                    \
        return ownMorphStateBuild(kMorphPixel<T, channels>, roiWidth, {mask, maskSize, centre(maskSize)}, MorphBuild::size,   \
                                  false, size, nullptr);                                                                 \
    }                                                                                                                    \
    ZelStatus initName(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor, ZeliMorphState* state)      \
    {                                                                                                                    \
        return buildState(kMorphPixel<T, channels>, roiWidth, {mask, maskSize, anchor}, MorphBuild::inPlace, &state);         \
    }                                                                                                                    \
    ZelStatus initAllocName(int roiWidth, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor, ZeliMorphState** state) \
    {                                                                                                                    \
        return buildState(kMorphPixel<T, channels>, roiWidth, {mask, maskSize, anchor}, MorphBuild::allocate, state);         \
    }
#define FILTER(Pick, T, channels, rectangleFilter, name)                                                                 \
    ZelStatus name(const T* src, int srcStep, T* dst, int dstStep, ZeliSize roiSize, ZeliBorderType border,              \
                   ZeliMorphState* state)                                                                                \
    {                                                                                                                    \
        return dilateOrErode<Pick, T, channels>(rectangleFilter, {src, srcStep}, {dst, dstStep}, roiSize, border, state); \
    }

STATE(Zel8u, 1, zeliMorphologyGetSize_8u_C1R, zeliMorphologyInit_8u_C1R, zeliMorphologyInitAlloc_8u_C1R)
STATE(Zel8u, 3, zeliMorphologyGetSize_8u_C3R, zeliMorphologyInit_8u_C3R, zeliMorphologyInitAlloc_8u_C3R)
STATE(Zel8u, 4, zeliMorphologyGetSize_8u_C4R, zeliMorphologyInit_8u_C4R, zeliMorphologyInitAlloc_8u_C4R)
STATE(Zel32f, 1, zeliMorphologyGetSize_32f_C1R, zeliMorphologyInit_32f_C1R, zeliMorphologyInitAlloc_32f_C1R)
STATE(Zel32f, 3, zeliMorphologyGetSize_32f_C3R, zeliMorphologyInit_32f_C3R, zeliMorphologyInitAlloc_32f_C3R)
STATE(Zel32f, 4, zeliMorphologyGetSize_32f_C4R, zeliMorphologyInit_32f_C4R, zeliMorphologyInitAlloc_32f_C4R)

FILTER(Largest, Zel8u, 1, zeliFilterMaxBorderReplicate_8u_C1R, zeliDilateBorderReplicate_8u_C1R)
FILTER(Largest, Zel8u, 3, zeliFilterMaxBorderReplicate_8u_C3R, zeliDilateBorderReplicate_8u_C3R)
FILTER(Largest, Zel8u, 4, zeliFilterMaxBorderReplicate_8u_C4R, zeliDilateBorderReplicate_8u_C4R)
FILTER(Largest, Zel32f, 1, zeliFilterMaxBorderReplicate_32f_C1R, zeliDilateBorderReplicate_32f_C1R)
FILTER(Largest, Zel32f, 3, zeliFilterMaxBorderReplicate_32f_C3R, zeliDilateBorderReplicate_32f_C3R)
FILTER(Largest, Zel32f, 4, zeliFilterMaxBorderReplicate_32f_C4R, zeliDilateBorderReplicate_32f_C4R)
FILTER(Smallest, Zel8u, 1, zeliFilterMinBorderReplicate_8u_C1R, zeliErodeBorderReplicate_8u_C1R)
FILTER(Smallest, Zel8u, 3, zeliFilterMinBorderReplicate_8u_C3R, zeliErodeBorderReplicate_8u_C3R)
FILTER(Smallest, Zel8u, 4, zeliFilterMinBorderReplicate_8u_C4R, zeliErodeBorderReplicate_8u_C4R)
FILTER(Smallest, Zel32f, 1, zeliFilterMinBorderReplicate_32f_C1R, zeliErodeBorderReplicate_32f_C1R)
FILTER(Smallest, Zel32f, 3, zeliFilterMinBorderReplicate_32f_C3R, zeliErodeBorderReplicate_32f_C3R)
FILTER(Smallest, Zel32f, 4, zeliFilterMinBorderReplicate_32f_C4R, zeliErodeBorderReplicate_32f_C4R)
