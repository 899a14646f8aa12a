// Opening, closing, top hat, black hat and gradient: two steps of dilation and erosion, and differences.
#include "checks.h"
#include "map.h"
#include "morph/state.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace zelcv;

struct ZeliMorphAdvState {
    ZeliMorphState *stateForward, *stateReflected; // the mask as given; the mask turned by 180 degrees, with its anchor
    Zel8u* tempImage;
    Zel32s tempSize; // in bytes
    Zel32s reserved; // 0
};
static_assert(sizeof(ZeliMorphAdvState) == 32);

namespace {

constexpr int kAlignment = 32; // of the parts of a state, and of the rows of its image

Wrapped tempStep(Zel32s width, MorphPixel pixel) { return (Wrapped(width) * pixel.bytes()).roundedUp(kAlignment); }

// The same without the limits of 32 bits.
double exactTempSize(ZeliSize roi, MorphPixel pixel)
{
    return std::ceil(double(roi.width) * pixel.bytes() / kAlignment) * kAlignment * roi.height;
}

bool fits32Bits(double size) { return size <= std::numeric_limits<Zel32s>::max(); }

// ---- states

ZelStatus getSize(MorphPixel pixel, ZeliSize roi, const Zel8u* mask, ZeliSize maskSize, int* size)
{
    if (roi.height < 1) return zelStatusBadSize;
    if (auto status = checkPointers(size)) return status;
    Zel32s each = 0;
    if (auto status = ownMorphStateBuild(pixel, roi.width, {mask, maskSize, centre(maskSize)}, MorphBuild::size, true, &each,
                                         nullptr))
        return status;
    *size = (tempStep(roi.width, pixel) * roi.height + Wrapped(2) * each + 96).value();
    return zelStatusOk;
}

// Builds the state of the turned mask, whose bytes are those of `forward` from the last to the first.
ZelStatus buildReflected(MorphPixel pixel, Zel32s roiWidth, const MorphMask& mask, const ZeliMorphState& forward,
                         MorphBuild mode, bool noRowRuns, ZeliMorphState** reflected)
{
    Zel8u* const end = forward.mask + std::ptrdiff_t(mask.size.width) * mask.size.height;
    std::reverse(forward.mask, end);
    const ZeliPoint anchor = {mask.size.width - mask.anchor.x - 1, mask.size.height - mask.anchor.y - 1};
    const ZelStatus status =
        ownMorphStateBuild(pixel, roiWidth, {forward.mask, mask.size, anchor}, mode, noRowRuns, nullptr, reflected);
    std::reverse(forward.mask, end);
    return status;
}

// The block holds the record, both states and the image.
ZelStatus init(MorphPixel pixel, ZeliMorphAdvState* state, ZeliSize roi, const MorphMask& mask)
{
    if (roi.height < 1) return zelStatusBadSize;
    if (auto status = checkPointers(state)) return status;
    const auto behind = [](ZeliMorphState* part) { // the next part
        return Carver(reinterpret_cast<Zel8u*>(part) + part->totalSize).take<Zel8u>(0, kAlignment);
    };
    auto* forward = reinterpret_cast<ZeliMorphState*>(state + 1);
    if (auto status = ownMorphStateBuild(pixel, roi.width, mask, MorphBuild::inPlace, true, nullptr, &forward)) return status;
    if (!fits32Bits(exactTempSize(roi, pixel) + 2.0 * forward->totalSize + 96)) return zelStatusNoMemory;
    auto* reflected = reinterpret_cast<ZeliMorphState*>(behind(forward));
    if (auto status = buildReflected(pixel, roi.width, mask, *forward, MorphBuild::inPlace, true, &reflected)) return status;
    *state = {forward, reflected, behind(reflected), (tempStep(roi.width, pixel) * roi.height).value(), 0};
    return zelStatusOk;
}

ZelStatus initAlloc(MorphPixel pixel, ZeliMorphAdvState** state, ZeliSize roi, const MorphMask& mask)
{
    if (auto status = checkPointers(state)) return status;
    if (roi.height < 1) return zelStatusBadSize;
    ZeliMorphState *forward = nullptr, *reflected = nullptr;
    if (auto status = ownMorphStateBuild(pixel, roi.width, mask, MorphBuild::allocate, false, nullptr, &forward)) return status;
    OwnedBlock forwardBlock(forward);
    if (auto status = buildReflected(pixel, roi.width, mask, *forward, MorphBuild::allocate, false, &reflected)) return status;
    OwnedBlock reflectedBlock(reflected);
    if (!fits32Bits(exactTempSize(roi, pixel))) return zelStatusNoMemory;
    const Zel32s tempSize = (tempStep(roi.width, pixel) * roi.height).value();
    OwnedBlock tempBlock(ownMalloc_8u(tempSize));
    if (!tempBlock) return zelStatusNoMemory;
    OwnedBlock block(ownMalloc_8u(sizeof(ZeliMorphAdvState)));
    if (!block) return zelStatusNoMemory;
    forwardBlock.release();
    reflectedBlock.release();
    *state = new (block.release())
        ZeliMorphAdvState{forward, reflected, static_cast<Zel8u*>(tempBlock.release()), tempSize, 0};
    return zelStatusOk;
}

// ---- operations

template <class T>
using Step = ZelStatus(const T* src, int srcStep, T* dst, int dstStep, ZeliSize roiSize, ZeliBorderType border,
                       ZeliMorphState* state);

// One call: its planes and the two steps that operations are made of.
template <class T, int Channels>
struct Work {
    Plane<const T> src;
    Plane<T> dst, temp;
    ZeliSize roi;
    ZeliMorphState *forward, *reflected;
    Step<T> *dilateStep, *erodeStep;

    ZelStatus dilate(ZeliMorphState* state, Plane<const T> from, Plane<T> to) const
    {
        return step(dilateStep, state, from, to);
    }
    ZelStatus erode(ZeliMorphState* state, Plane<const T> from, Plane<T> to) const
    {
        return step(erodeStep, state, from, to);
    }

    // dst = a - b, or 0 where that is below 0.
    ZelStatus subtract(Plane<const T> a, Plane<const T> b) const
    {
        const ZeliSize rows{roi.width * Channels, roi.height};
        forRows(rows, Gate::serial(), [=, this](int y, int n) {
            mapRow(dst.row(y), n, [](auto p, auto q) {
                return forParts([](Vec<T> x, Vec<T> z) {
                    if constexpr (std::numeric_limits<T>::is_integer) return subtractSaturating(x, z);
                    else return maximum(Vec<T>{}, x - z); // keeps a NaN, and the sign of a zero
                }, p, q);
            }, elements(a.row(y)), elements(b.row(y)));
        }, a, b, dst);
        return zelStatusOk;
    }

private:
    ZelStatus step(Step<T>* function, ZeliMorphState* state, Plane<const T> from, Plane<T> to) const
    {
        return function(from.data, from.step, to.data, to.step, roi, zeliBorderReplicate, state);
    }
};

template <class T>
Plane<const T> readable(Plane<T> plane)
{
    return {plane.data, plane.step};
}

struct Open {
    static ZelStatus run(const auto& w)
    {
        if (auto status = w.erode(w.forward, w.src, w.temp)) return status;
        return w.dilate(w.reflected, readable(w.temp), w.dst);
    }
};

struct Close {
    static ZelStatus run(const auto& w)
    {
        if (auto status = w.dilate(w.forward, w.src, w.temp)) return status;
        return w.erode(w.reflected, readable(w.temp), w.dst);
    }
};

struct Tophat {
    static ZelStatus run(const auto& w)
    {
        if (auto status = w.erode(w.forward, w.src, w.dst)) return status;
        if (auto status = w.dilate(w.reflected, readable(w.dst), w.temp)) return status;
        return w.subtract(w.src, readable(w.temp));
    }
};

struct Blackhat {
    static ZelStatus run(const auto& w)
    {
        if (auto status = Close::run(w)) return status;
        return w.subtract(readable(w.dst), w.src);
    }
};

struct Gradient {
    static ZelStatus run(const auto& w)
    {
        if (auto status = w.dilate(w.forward, w.src, w.dst)) return status;
        if (auto status = w.erode(w.forward, w.src, w.temp)) return status;
        return w.subtract(readable(w.dst), readable(w.temp));
    }
};

template <class Operation, class T, int Channels>
ZelStatus compound(Step<T>* dilate, Step<T>* erode, Plane<const T> src, Plane<T> dst, ZeliSize roi, ZeliBorderType border,
                   ZeliMorphAdvState* state)
{
    constexpr MorphPixel pixel = kMorphPixel<T, Channels>;
    if (auto status = checkPointers(src.data, dst.data, state)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(wrappingProduct(roi.width, Channels), src, dst)) return status;
    if (border != zeliBorderReplicate) return zelStatusBadArgument;
    const Wrapped step = tempStep(roi.width, pixel);
    if (roi.width > state->stateForward->roiWidthLimit || (step * roi.height).value() < state->tempSize)
        return zelStatusBadSize;

    // Regions larger than the one that the state was made for are let through, and need an image of their own.
    OwnedBlock larger;
    Zel8u* temp = state->tempImage;
    if (exactTempSize(roi, pixel) > state->tempSize) {
        larger.reset(ownMalloc_8u(std::int64_t(step.value()) * roi.height));
        if (!larger) return zelStatusNoMemory;
        temp = static_cast<Zel8u*>(larger.get());
    }
    const Plane<T> between{reinterpret_cast<T*>(temp), step.value()};
    return Operation::run(
        Work<T, Channels>{src, dst, between, roi, state->stateForward, state->stateReflected, dilate, erode});
}

} // namespace

// ---- exports

ZelStatus zeliMorphAdvFree(ZeliMorphAdvState* state)
{
    if (auto status = checkPointers(state)) return status;
    for (void* part : {static_cast<void*>(state->stateForward), static_cast<void*>(state->stateReflected),
                       static_cast<void*>(state->tempImage), static_cast<void*>(state)})
        ownFree(part);
    return zelStatusOk;
}

#define STATE(T, channels, sizeName, initName, initAllocName)                                                             \
    ZelStatus sizeName(ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, int* size)                                 \
    {                                                                                                                     \
        return getSize(kMorphPixel<T, channels>, roiSize, mask, maskSize, size);                                               \
    }                                                                                                                     \
    ZelStatus initName(ZeliMorphAdvState* state, ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize, ZeliPoint anchor) \
    {                                                                                                                     \
        return init(kMorphPixel<T, channels>, state, roiSize, {mask, maskSize, anchor});                                       \
    }                                                                                                                     \
    ZelStatus initAllocName(ZeliMorphAdvState** state, ZeliSize roiSize, const Zel8u* mask, ZeliSize maskSize,            \
                            ZeliPoint anchor)                                                                             \
    {                                                                                                                     \
        return initAlloc(kMorphPixel<T, channels>, state, roiSize, {mask, maskSize, anchor});                                  \
    }
#define OPERATION(Operation, T, channels, dilate, erode, name)                                                            \
    ZelStatus name(const T* src, int srcStep, T* dst, int dstStep, ZeliSize roiSize, ZeliBorderType border,               \
                   ZeliMorphAdvState* state)                                                                              \
    {                                                                                                                     \
        return compound<Operation, T, channels>(dilate, erode, {src, srcStep}, {dst, dstStep}, roiSize, border, state);   \
    }
#define OPERATIONS(T, channels, dilate, erode, open, close, tophat, blackhat, gradient)                                   \
    OPERATION(Open, T, channels, dilate, erode, open)                                                                     \
    OPERATION(Close, T, channels, dilate, erode, close)                                                                   \
    OPERATION(Tophat, T, channels, dilate, erode, tophat)                                                                 \
    OPERATION(Blackhat, T, channels, dilate, erode, blackhat)                                                             \
    OPERATION(Gradient, T, channels, dilate, erode, gradient)

STATE(Zel8u, 1, zeliMorphAdvGetSize_8u_C1R, zeliMorphAdvInit_8u_C1R, zeliMorphAdvInitAlloc_8u_C1R)
STATE(Zel8u, 3, zeliMorphAdvGetSize_8u_C3R, zeliMorphAdvInit_8u_C3R, zeliMorphAdvInitAlloc_8u_C3R)
STATE(Zel8u, 4, zeliMorphAdvGetSize_8u_C4R, zeliMorphAdvInit_8u_C4R, zeliMorphAdvInitAlloc_8u_C4R)
STATE(Zel32f, 1, zeliMorphAdvGetSize_32f_C1R, zeliMorphAdvInit_32f_C1R, zeliMorphAdvInitAlloc_32f_C1R)
STATE(Zel32f, 3, zeliMorphAdvGetSize_32f_C3R, zeliMorphAdvInit_32f_C3R, zeliMorphAdvInitAlloc_32f_C3R)
STATE(Zel32f, 4, zeliMorphAdvGetSize_32f_C4R, zeliMorphAdvInit_32f_C4R, zeliMorphAdvInitAlloc_32f_C4R)

OPERATIONS(Zel8u, 1, zeliDilateBorderReplicate_8u_C1R, zeliErodeBorderReplicate_8u_C1R, zeliMorphOpenBorder_8u_C1R,
           zeliMorphCloseBorder_8u_C1R, zeliMorphTophatBorder_8u_C1R, zeliMorphBlackhatBorder_8u_C1R,
           zeliMorphGradientBorder_8u_C1R)
OPERATIONS(Zel8u, 3, zeliDilateBorderReplicate_8u_C3R, zeliErodeBorderReplicate_8u_C3R, zeliMorphOpenBorder_8u_C3R,
           zeliMorphCloseBorder_8u_C3R, zeliMorphTophatBorder_8u_C3R, zeliMorphBlackhatBorder_8u_C3R,
           zeliMorphGradientBorder_8u_C3R)
OPERATIONS(Zel8u, 4, zeliDilateBorderReplicate_8u_C4R, zeliErodeBorderReplicate_8u_C4R, zeliMorphOpenBorder_8u_C4R,
           zeliMorphCloseBorder_8u_C4R, zeliMorphTophatBorder_8u_C4R, zeliMorphBlackhatBorder_8u_C4R,
           zeliMorphGradientBorder_8u_C4R)
OPERATIONS(Zel32f, 1, zeliDilateBorderReplicate_32f_C1R, zeliErodeBorderReplicate_32f_C1R, zeliMorphOpenBorder_32f_C1R,
           zeliMorphCloseBorder_32f_C1R, zeliMorphTophatBorder_32f_C1R, zeliMorphBlackhatBorder_32f_C1R,
           zeliMorphGradientBorder_32f_C1R)
OPERATIONS(Zel32f, 3, zeliDilateBorderReplicate_32f_C3R, zeliErodeBorderReplicate_32f_C3R, zeliMorphOpenBorder_32f_C3R,
           zeliMorphCloseBorder_32f_C3R, zeliMorphTophatBorder_32f_C3R, zeliMorphBlackhatBorder_32f_C3R,
           zeliMorphGradientBorder_32f_C3R)
OPERATIONS(Zel32f, 4, zeliDilateBorderReplicate_32f_C4R, zeliErodeBorderReplicate_32f_C4R, zeliMorphOpenBorder_32f_C4R,
           zeliMorphCloseBorder_32f_C4R, zeliMorphTophatBorder_32f_C4R, zeliMorphBlackhatBorder_32f_C4R,
           zeliMorphGradientBorder_32f_C4R)
