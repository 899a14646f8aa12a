// Edges from derivatives.
#pragma once

#include "operations/calls.h"

namespace app {

template <class T>
Picture canny(Calls& calls, const Image<T>& dx, const Image<T>& dy, float low, float high)
{
    Picture dst(dx.size(), 1);
    const Block buffer = calls.scratch(ZELCV_FUNCTION(zeliCannyGetSize), dx.size());
    const auto run = [&](auto function) {
        calls(function, dx.view().data, dx.step(), dy.view().data, dy.step(), dst.data(), dst.step(), dst.size(), low, high,
              buffer.data());
    };
    if constexpr (std::is_same_v<T, Zel16s>)
        run(ZELCV_FUNCTION(zeliCanny_16s8u_C1R));
    else
        run(ZELCV_FUNCTION(zeliCanny_32f8u_C1R));
    return dst;
}

} // namespace app
