// Dilation and erosion by masks of numbers.
#pragma once

#include "operations/calls.h"

#include <cmath>
#include <memory>
#include <vector>

namespace app {

enum class GrayOperation { dilate, erode };

// The functions for a type of pixels.
template <class T>
struct GrayFunctions;
template <>
struct GrayFunctions<Zel8u> {
    using Element = Zel32s;
    static constexpr Function size = ZELCV_FUNCTION(zeliMorphGrayGetSize_8u_C1R);
    static constexpr Function init = ZELCV_FUNCTION(zeliMorphGrayInit_8u_C1R);
    static constexpr Function initAlloc = ZELCV_FUNCTION(zeliMorphGrayInitAlloc_8u_C1R);
    static constexpr Function release = ZELCV_FUNCTION(zeliMorphGrayFree_8u_C1R);
    static constexpr Function dilate = ZELCV_FUNCTION(zeliGrayDilateBorder_8u_C1R);
    static constexpr Function erode = ZELCV_FUNCTION(zeliGrayErodeBorder_8u_C1R);
};
template <>
struct GrayFunctions<Zel32f> {
    using Element = Zel32f;
    static constexpr Function size = ZELCV_FUNCTION(zeliMorphGrayGetSize_32f_C1R);
    static constexpr Function init = ZELCV_FUNCTION(zeliMorphGrayInit_32f_C1R);
    static constexpr Function initAlloc = ZELCV_FUNCTION(zeliMorphGrayInitAlloc_32f_C1R);
    static constexpr Function release = ZELCV_FUNCTION(zeliMorphGrayFree_32f_C1R);
    static constexpr Function dilate = ZELCV_FUNCTION(zeliGrayDilateBorder_32f_C1R);
    static constexpr Function erode = ZELCV_FUNCTION(zeliGrayErodeBorder_32f_C1R);
};

// A square of numbers with the anchor in its middle.
template <class T>
struct GrayMask {
    int side;
    std::vector<typename GrayFunctions<T>::Element> elements;

    // height(u, v) for distances from the middle, from -1 to 1.
    template <class Height>
    static GrayMask of(int side, const Height& height)
    {
        GrayMask mask{side, {}};
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                const auto at = [=](int i) { return side > 1 ? (2.0 * i - side + 1) / (side - 1) : 0.0; };
                mask.elements.push_back(typename GrayFunctions<T>::Element(std::lround(height(at(x), at(y)))));
            }
        return mask;
    }
    // 0 in the middle, and falling by `depth` up to the middle of each side.
    static GrayMask paraboloid(int side, double depth)
    {
        return of(side, [=](double u, double v) { return -depth * (u * u + v * v); });
    }
    // The numbers for the erosion that a dilation belongs to.
    GrayMask negated() const
    {
        GrayMask mask = *this;
        for (auto& element : mask.elements) element = -element;
        return mask;
    }
};

// The state allocated by the library, or built in memory of the program's own.
template <class T>
Image<T> grayMorph(Calls& calls, GrayOperation operation, const Image<T>& src, const GrayMask<T>& mask, bool ownMemory = false)
{
    using Functions = GrayFunctions<T>;
    const auto run = [&](const ZeliMorphGrayState* state) {
        Image<T> dst(src.size(), 1);
        callWith(calls, operation == GrayOperation::dilate ? Functions::dilate : Functions::erode, src, dst, src.size(),
                 ZeliBorderType(zeliBorderReplicate), state);
        return dst;
    };
    const ZeliSize size = {mask.side, mask.side};
    const ZeliPoint middle = {mask.side / 2, mask.side / 2};
    if (ownMemory) {
        const Block memory = calls.scratch(Functions::size, src.size(), mask.elements.data(), size);
        auto* const state = reinterpret_cast<ZeliMorphGrayState*>(memory.data());
        calls(Functions::init, state, src.size(), mask.elements.data(), size, middle);
        return run(state);
    }
    ZeliMorphGrayState* state = nullptr;
    calls(Functions::initAlloc, &state, src.size(), mask.elements.data(), size, middle);
    const auto release = [&](ZeliMorphGrayState* made) { calls(Functions::release, made); };
    const std::unique_ptr<ZeliMorphGrayState, decltype(release)> released(state, release);
    return run(state);
}

} // namespace app
