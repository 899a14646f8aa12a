// The library's integral images and what is read from them.
#pragma once

#include "calls.h"

namespace app {

// Sums and sums of squares over everything above and to the left of a point: one element more than the picture each way. The
// integer sums wrap in very large pictures, which the sum of a box does not notice.
struct IntegralPair {
    Image<Zel32s> sums;
    Image<Zel64f> squares;

    IntegralPair(Calls& calls, const Picture& src)
        : sums({src.size().width + 1, src.size().height + 1}, 1), squares(sums.size(), 1)
    {
        callWith(calls, ZELCV_FUNCTION(zeliSqrIntegral_8u32s64f_C1R), src, sums, squares, src.size(), 0, 0.0);
    }
};

// The standard deviation of the window whose upper left pixel is at each place where the whole window fits.
inline Image<Zel32f> windowDeviation(Calls& calls, const IntegralPair& integral, ZeliSize window)
{
    Image<Zel32f> dst({integral.sums.size().width - window.width, integral.sums.size().height - window.height}, 1);
    callWith(calls, ZELCV_FUNCTION(zeliRectStdDev_32s32f_C1R), integral.sums, integral.squares, dst, dst.size(),
             ZeliRect{0, 0, window.width, window.height});
    return dst;
}

} // namespace app
