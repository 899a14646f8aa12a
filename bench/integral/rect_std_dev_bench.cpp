#include "support/measure.h"

using namespace zelbench;

namespace {

// A tilted window of 10 by 10 reaches 10 columns to the left, and 20 rows down.
template <class T, class S, class D, class... Scale>
Prepare deviation(ZelStatus (*function)(const T*, int, const S*, int, D*, int, ZeliSize, ZeliRect, Scale...), Scale... scale)
{
    return [=](ZeliSize size) -> std::function<void()> {
        const ZeliSize larger = {size.width + 40, size.height + 24};
        Plane<T> src(larger);
        Plane<S> sqr(larger);
        Plane<D> dst(size);
        return [=] {
            require(function(src.data() + 12, src.step(), sqr.data() + 12, sqr.step(), dst.data(), dst.step(), size,
                             {0, 0, 10, 10}, scale...));
        };
    };
}

#define MEASURE(name, bytes, ...) measure(#name, bytes, deviation(name __VA_OPT__(, ) __VA_ARGS__));

const bool registered = [] {
    MEASURE(zeliRectStdDev_32f_C1R, 16)
    measure("zeliRectStdDev_32f_C1R/2 threads", 16, deviation(zeliRectStdDev_32f_C1R), 2);
    MEASURE(zeliRectStdDev_32s32f_C1R, 16)
    MEASURE(zeliRectStdDev_32s_C1RSfs, 12, 0)
    MEASURE(zeliTiltedRectStdDev_32f_C1R, 16)
    MEASURE(zeliTiltedRectStdDev_32s32f_C1R, 16)
    MEASURE(zeliTiltedRectStdDev_32s_C1RSfs, 12, 0)
    return true;
}();

} // namespace
