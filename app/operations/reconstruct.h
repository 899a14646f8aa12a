// Reconstruction, and what is done with it.
#pragma once

#include "operations/calls.h"
#include "pictures/pictures.h"

namespace app {

template <class T>
struct ReconstructFunctions;
#define RECONSTRUCT_FUNCTIONS(type, T)                                                                  \
    template <>                                                                                         \
    struct ReconstructFunctions<T> {                                                                    \
        static constexpr Function size = ZELCV_FUNCTION(zeliMorphReconstructGetBufferSize_##type##_C1); \
        static constexpr Function dilate = ZELCV_FUNCTION(zeliMorphReconstructDilate_##type##_C1IR);    \
        static constexpr Function erode = ZELCV_FUNCTION(zeliMorphReconstructErode_##type##_C1IR);      \
    };
RECONSTRUCT_FUNCTIONS(8u, Zel8u)
RECONSTRUCT_FUNCTIONS(16u, Zel16u)
RECONSTRUCT_FUNCTIONS(32f, Zel32f)
RECONSTRUCT_FUNCTIONS(64f, Zel64f)
#undef RECONSTRUCT_FUNCTIONS

enum class Growth { dilate, erode };

// The marker grown under (over) the mask.
template <class T>
Image<T> reconstruct(Calls& calls, Growth growth, const Image<T>& mask, Image<T> marker, ZeliNormType norm)
{
    using Functions = ReconstructFunctions<T>;
    const Block buffer = calls.scratch(Functions::size, mask.size());
    callWith(calls, growth == Growth::dilate ? Functions::dilate : Functions::erode, mask, marker, mask.size(), buffer.data(),
             norm);
    return marker;
}

// An image that is `src` at the border of the picture and `value` within.
template <class T>
Image<T> onlyBorder(const Image<T>& src, T value)
{
    Image<T> dst(src.size(), 1);
    const ZeliSize size = src.size();
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const bool border = x == 0 || y == 0 || x == size.width - 1 || y == size.height - 1;
            dst.row(y)[x] = border ? src.row(y)[x] : value;
        }
    return dst;
}

// What is darker than all ways to the border becomes as bright as the brightest of its ways.
template <class T>
Image<T> fillHoles(Calls& calls, const Image<T>& src, T white, ZeliNormType norm)
{
    return reconstruct(calls, Growth::erode, src, onlyBorder(src, white), norm);
}

template <class T>
Image<T> subtract(const Image<T>& a, const Image<T>& b)
{
    Image<T> dst(a.size(), 1);
    for (int y = 0; y < a.size().height; ++y)
        for (int x = 0; x < a.size().width; ++x) dst.row(y)[x] = T(a.row(y)[x] - b.row(y)[x]);
    return dst;
}

// What does not hang together with the border of the picture.
template <class T>
Image<T> clearBorder(Calls& calls, const Image<T>& src, ZeliNormType norm)
{
    return subtract(src, reconstruct(calls, Growth::dilate, src, onlyBorder(src, T(0)), norm));
}

// The tops that stand out of what is around them, up to `height`.
template <class T>
Image<T> domes(Calls& calls, const Image<T>& src, T height, ZeliNormType norm)
{
    Image<T> lower = mapElements<T>(src, [=](T value) { return T(value > height ? value - height : 0); });
    return subtract(src, reconstruct(calls, Growth::dilate, src, std::move(lower), norm));
}

} // namespace app
