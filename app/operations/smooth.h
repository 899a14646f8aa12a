// Smoothing filters and Laplacians, by kind and type.
#pragma once

#include "operations/filter.h"
#include "pictures/pictures.h"

namespace app {

struct MaskFilters {
    Derivative<Zel8u, Zel8u> box8u;
    Derivative<Zel32f, Zel32f> box32f;
    Derivative<Zel8u, Zel16s> laplacian16s;
    Derivative<Zel8u, Zel8s> laplacian8s;
    Derivative<Zel32f, Zel32f> laplacian32f;
};
inline const MaskFilters kMaskFilters = {
    maskFilter<Zel8u, Zel8u>(ZELCV_FUNCTION(zeliFilterLowpassGetBufferSize_8u_C1R),
                             ZELCV_FUNCTION(zeliFilterLowpassBorder_8u_C1R)),
    maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterLowpassGetBufferSize_32f_C1R),
                               ZELCV_FUNCTION(zeliFilterLowpassBorder_32f_C1R)),
    maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterLaplacianGetBufferSize_8u16s_C1R),
                              ZELCV_FUNCTION(zeliFilterLaplacianBorder_8u16s_C1R)),
    maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterLaplacianGetBufferSize_8u8s_C1R),
                             ZELCV_FUNCTION(zeliFilterLaplacianBorder_8u8s_C1R)),
    maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterLaplacianGetBufferSize_32f_C1R),
                               ZELCV_FUNCTION(zeliFilterLaplacianBorder_32f_C1R))};

struct GaussOptions {
    float sigma = 1;
    int taps = tapsFor(sigma);
    ZeliBorderType border = zeliBorderReplicate;

    // Three standard deviations on each side.
    static int tapsFor(float sigma) { return 2 * std::max(1, int(std::ceil(3 * sigma))) + 1; }
};

inline Image<Zel32f> gauss(Calls& calls, const Image<Zel32f>& src, const GaussOptions& options)
{
    Image<Zel32f> dst(src.size(), 1);
    const Block buffer = calls.scratch(ZELCV_FUNCTION(zeliFilterGaussGetBufferSize_32f_C1R), src.size(), options.taps);
    callWith(calls, ZELCV_FUNCTION(zeliFilterGaussBorder_32f_C1R), src, dst, src.size(), options.taps, options.sigma,
             options.border, 0.0f, buffer.data());
    return dst;
}

// A picture of what filter(gray picture) makes of each channel.
template <class Filter>
Picture channelByChannel(const Picture& src, const Filter& filter)
{
    Picture dst(src.size(), src.channels());
    const auto copyChannel = [](const Zel8u* from, int fromStep, Zel8u* to, int toStep, int count) {
        for (int x = 0; x < count; ++x) to[toStep * x] = from[fromStep * x];
    };
    for (int c = 0; c < src.channels(); ++c) {
        Picture plane(src.size(), 1);
        for (int y = 0; y < src.size().height; ++y)
            copyChannel(src.row(y) + c, src.channels(), plane.row(y), 1, src.size().width);
        const Picture filtered = filter(plane);
        for (int y = 0; y < src.size().height; ++y)
            copyChannel(filtered.row(y), 1, dst.row(y) + c, src.channels(), src.size().width);
    }
    return dst;
}

} // namespace app
