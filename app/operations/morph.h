// Morphology under byte masks, from image to image.
#pragma once

#include "operations/calls.h"

#include <functional>

namespace app {

// Set bytes are not 0; the anchor is the middle.
struct MorphMask {
    ZeliSize size;
    std::vector<Zel8u> bytes;
    ZeliPoint anchor() const { return {size.width / 2, size.height / 2}; }
};

enum class MorphShape { rect, ellipse, cross, diamond };
inline constexpr const char* kMorphShapes[] = {"rect", "ellipse", "cross", "diamond"};

// A mask of size by size pixels that touches all four sides.
inline MorphMask makeMask(MorphShape shape, int size)
{
    MorphMask mask{{size, size}, {}};
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const int right = std::abs(2 * x - (size - 1)), down = std::abs(2 * y - (size - 1)); // twice the distances
            const bool isSet = shape == MorphShape::rect      ? true
                               : shape == MorphShape::ellipse ? right * right + down * down <= size * size
                               : shape == MorphShape::cross   ? right <= 1 || down <= 1
                                                              : right + down < size;
            mask.bytes.push_back(isSet ? 255 : 0);
        }
    return mask;
}

enum class MorphOperation { dilate, erode, open, close, tophat, blackhat, gradient };
inline constexpr const char* kMorphOperations[] = {"dilate", "erode", "open", "close", "tophat", "blackhat", "gradient"};

// The functions of one type and layout.
template <class T>
struct MorphForms {
    template <class State>
    using Run = Function<ZelStatus(const T*, int, T*, int, ZeliSize, ZeliBorderType, State*)>;

    Function<decltype(zeliMorphologyGetSize_8u_C1R)> size;
    Function<decltype(zeliMorphologyInit_8u_C1R)> init;
    Function<decltype(zeliMorphologyInitAlloc_8u_C1R)> initAlloc;
    Run<ZeliMorphState> steps[2];
    Function<decltype(zeliMorphAdvGetSize_8u_C1R)> sizeOfPair;
    Function<decltype(zeliMorphAdvInit_8u_C1R)> initPair;
    Function<decltype(zeliMorphAdvInitAlloc_8u_C1R)> initAllocPair;
    Run<ZeliMorphAdvState> compounds[5];
};
#define ZELCV_MORPH_FORMS(suffix)                                                                                            \
    {                                                                                                                        \
        ZELCV_FUNCTION(zeliMorphologyGetSize_##suffix), ZELCV_FUNCTION(zeliMorphologyInit_##suffix),                         \
            ZELCV_FUNCTION(zeliMorphologyInitAlloc_##suffix),                                                                \
            {ZELCV_FUNCTION(zeliDilateBorderReplicate_##suffix), ZELCV_FUNCTION(zeliErodeBorderReplicate_##suffix)},         \
            ZELCV_FUNCTION(zeliMorphAdvGetSize_##suffix), ZELCV_FUNCTION(zeliMorphAdvInit_##suffix),                         \
            ZELCV_FUNCTION(zeliMorphAdvInitAlloc_##suffix),                                                                  \
            {ZELCV_FUNCTION(zeliMorphOpenBorder_##suffix), ZELCV_FUNCTION(zeliMorphCloseBorder_##suffix),                    \
             ZELCV_FUNCTION(zeliMorphTophatBorder_##suffix), ZELCV_FUNCTION(zeliMorphBlackhatBorder_##suffix),               \
             ZELCV_FUNCTION(zeliMorphGradientBorder_##suffix)}                                                               \
    }
template <class T>
const MorphForms<T>& morphForms(int channels)
{
    const auto of = [=](const MorphForms<T>& one, const MorphForms<T>& three, const MorphForms<T>& four) -> const auto& {
        return channels == 1 ? one : channels == 3 ? three : four;
    };
    if constexpr (std::is_same_v<T, Zel8u>) {
        static const MorphForms<T> one = ZELCV_MORPH_FORMS(8u_C1R), three = ZELCV_MORPH_FORMS(8u_C3R),
                                   four = ZELCV_MORPH_FORMS(8u_C4R);
        return of(one, three, four);
    } else {
        static const MorphForms<T> one = ZELCV_MORPH_FORMS(32f_C1R), three = ZELCV_MORPH_FORMS(32f_C3R),
                                   four = ZELCV_MORPH_FORMS(32f_C4R);
        return of(one, three, four);
    }
}

enum class StateMemory { library, own }; // who allocates the state

// One operation. Opening and what follows it have a state of the mask and the turned mask.
template <class T>
Image<T> morph(Calls& calls, MorphOperation operation, const Image<T>& src, const MorphMask& mask,
               StateMemory memory = StateMemory::library)
{
    Image<T> dst(src.size(), src.channels());
    const MorphForms<T>& forms = morphForms<T>(src.channels());
    const int width = src.size().width, index = int(operation);
    const auto run = [&](auto function, auto* state) {
        callWith(calls, function, src, dst, src.size(), zeliBorderReplicate, state);
    };
    // The state is released whatever comes of the call.
    const auto runAndRelease = [&](auto function, auto release, auto* state) {
        const auto free = [&](auto* made) { calls(release, made); };
        const std::unique_ptr<std::remove_pointer_t<decltype(state)>, decltype(free)> owned(state, free);
        run(function, state);
    };
    if (index < 2 && memory == StateMemory::own) {
        const Block block = calls.scratch(forms.size, width, mask.bytes.data(), mask.size);
        auto* state = reinterpret_cast<ZeliMorphState*>(block.data());
        calls(forms.init, width, mask.bytes.data(), mask.size, mask.anchor(), state);
        run(forms.steps[index], state);
    } else if (index < 2) {
        ZeliMorphState* state = nullptr;
        calls(forms.initAlloc, width, mask.bytes.data(), mask.size, mask.anchor(), &state);
        runAndRelease(forms.steps[index], ZELCV_FUNCTION(zeliMorphologyFree), state);
    } else if (memory == StateMemory::own) {
        const Block block = calls.scratch(forms.sizeOfPair, src.size(), mask.bytes.data(), mask.size);
        auto* state = reinterpret_cast<ZeliMorphAdvState*>(block.data());
        calls(forms.initPair, state, src.size(), mask.bytes.data(), mask.size, mask.anchor());
        run(forms.compounds[index - 2], state);
    } else {
        ZeliMorphAdvState* state = nullptr;
        calls(forms.initAllocPair, &state, src.size(), mask.bytes.data(), mask.size, mask.anchor());
        runAndRelease(forms.compounds[index - 2], ZELCV_FUNCTION(zeliMorphAdvFree), state);
    }
    return dst;
}

} // namespace app
