// Gradients of colour pictures, and directions of gradients.
#pragma once

#include "operations/filter.h"
#include "pictures/display.h"

namespace app {

// The strength of the gradient of each channel, by the Sobel filters 3 by 3: |dx| + |dy|, which is 8 for a ramp of one gray
// level a pixel. Of 8u a quarter of that, with a limit.
template <class T>
Image<T> channelGradients(Calls& calls, const Picture& colour)
{
    const auto [dx, dy] = gradientFamilies(false);
    const ZeliSize size = colour.size();
    Image<T> dst(size, 3);
    for (int channel = 0; channel < 3; ++channel) {
        Picture plane(size, 1);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) plane.row(y)[x] = colour.row(y)[3 * x + channel];
        const auto strength = gradientStrength(dx.to16s(calls, plane, {}), dy.to16s(calls, plane, {}));
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                const float value = strength.row(y)[x];
                dst.row(y)[3 * x + channel] = sizeof(T) == 1 ? T(toByte(value / 4)) : T(value);
            }
    }
    return dst;
}

template <class T>
constexpr auto kFoldChannels = ZELCV_FUNCTION(zeliGradientColorToGray_8u_C3C1R);
template <>
inline constexpr auto kFoldChannels<Zel16u> = ZELCV_FUNCTION(zeliGradientColorToGray_16u_C3C1R);
template <>
inline constexpr auto kFoldChannels<Zel32f> = ZELCV_FUNCTION(zeliGradientColorToGray_32f_C3C1R);

template <class T>
Image<T> foldChannels(Calls& calls, const Image<T>& src, ZeliNormType norm)
{
    Image<T> dst(src.size(), 1);
    callWith(calls, kFoldChannels<T>, src, dst, src.size(), norm);
    return dst;
}

// Degrees from 0 to 360, 0 to the right and 90 downwards where dy grows downwards. Rows and what fills them up are one vector.
inline Image<Zel32f> directions(Calls& calls, const Image<Zel32f>& dy, const Image<Zel32f>& dx)
{
    Image<Zel32f> dst(dx.size(), 1);
    const int length = dst.step() / int(sizeof(Zel32f)) * dst.size().height;
    calls(ZELCV_FUNCTION(zelibFastArctan_32f), dy.row(0), dx.row(0), dst.data(), length);
    return dst;
}

} // namespace app
