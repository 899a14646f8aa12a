// Corner measures, and the corners that they find.
#pragma once

#include "operations/calls.h"

#include <type_traits>
#include <vector>

namespace app {

struct CornerOptions {
    bool scharr = false;
    int aperture = 3, window = 3; // of the derivatives and of the averages
};

template <class T, class Size, class Measure>
Image<Zel32f> measureCorners(Calls& calls, Function<Size> size, Function<Measure> measure, const Image<T>& src, int numbers,
                             const CornerOptions& options)
{
    Image<Zel32f> dst(src.size(), numbers);
    const Block buffer = calls.scratch(size, src.size(), options.aperture, options.window);
    callWith(calls, measure, src, dst, src.size(), int(options.scharr), options.aperture, options.window, buffer.data());
    return dst;
}

// The smaller eigenvalue: how much of a corner each pixel is.
template <class T>
Image<Zel32f> cornerStrength(Calls& calls, const Image<T>& src, const CornerOptions& options)
{
    if constexpr (std::is_same_v<T, Zel8u>)
        return measureCorners(calls, ZELCV_FUNCTION(zeliMinEigenValGetBufferSize_8u32f_C1R),
                              ZELCV_FUNCTION(zeliMinEigenVal_8u32f_C1R), src, 1, options);
    else
        return measureCorners(calls, ZELCV_FUNCTION(zeliMinEigenValGetBufferSize_32f_C1R),
                              ZELCV_FUNCTION(zeliMinEigenVal_32f_C1R), src, 1, options);
}

// Six channels: both eigenvalues, the larger one first, then both eigenvectors.
template <class T>
Image<Zel32f> eigenvaluesAndVectors(Calls& calls, const Image<T>& src, const CornerOptions& options)
{
    if constexpr (std::is_same_v<T, Zel8u>)
        return measureCorners(calls, ZELCV_FUNCTION(zeliEigenValsVecsGetBufferSize_8u32f_C1R),
                              ZELCV_FUNCTION(zeliEigenValsVecs_8u32f_C1R), src, 6, options);
    else
        return measureCorners(calls, ZELCV_FUNCTION(zeliEigenValsVecsGetBufferSize_32f_C1R),
                              ZELCV_FUNCTION(zeliEigenValsVecs_32f_C1R), src, 6, options);
}

// The strongest corners, not nearer to each other than `distance` along a row or column, and none below a hundredth of the
// strongest one.
std::vector<ZeliPoint> strongestCorners(const Image<Zel32f>& strength, int count, int distance);

// The picture in colour, with a frame around each corner.
Picture markCorners(const Picture& src, const std::vector<ZeliPoint>& corners);

// The picture in colour, with the eigenvectors at each corner: a long stroke across the stronger contour, a short one along
// it.
Picture drawVectors(const Picture& src, const Image<Zel32f>& vectors, const std::vector<ZeliPoint>& corners);

} // namespace app
