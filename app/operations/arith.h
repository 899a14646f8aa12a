// Absolute differences from image to image.
#pragma once

#include "operations/calls.h"

namespace app {

template <class T, class F>
Image<T> absDiff(Calls& calls, Function<F> function, const Image<T>& a, const Image<T>& b)
{
    Image<T> dst(a.size(), a.channels());
    calls(function, a.view().data, a.step(), b.view().data, b.step(), dst.data(), dst.step(), dst.size());
    return dst;
}

template <class T, class F, class Value>
Image<T> absDiffC(Calls& calls, Function<F> function, const Image<T>& a, Value value)
{
    Image<T> dst(a.size(), a.channels());
    calls(function, a.view().data, a.step(), dst.data(), dst.step(), dst.size(), value);
    return dst;
}

// Absolute difference of two pictures of one size and one number of channels.
inline Picture pictureDifference(Calls& calls, const Picture& a, const Picture& b)
{
    return a.channels() == 3 ? absDiff(calls, ZELCV_FUNCTION(zeliAbsDiff_8u_C3R), a, b)
                             : absDiff(calls, ZELCV_FUNCTION(zeliAbsDiff_8u_C1R), a, b);
}

} // namespace app
