// The library's integral images and what is read from them.
#pragma once

#include "operations/calls.h"

namespace app {

// Sums over everything above and to the left of a point take one row and one column more than the picture; sums over the
// triangle above a point take two.
enum class Form { upright = 1, tilted = 2 };

template <class T>
Image<T> integralPlane(ZeliSize size, Form form)
{
    return Image<T>({size.width + int(form), size.height + int(form)}, 1);
}

template <class D>
Image<D> sums(Calls& calls, Function<ZelStatus(const Zel8u*, int, D*, int, ZeliSize, D)> function, PictureView src, Form form)
{
    Image<D> dst = integralPlane<D>(src.size, form);
    callWith(calls, function, src, dst, src.size, D(0));
    return dst;
}

template <class D, class Q>
struct SumsAndSquares {
    Image<D> sums;
    Image<Q> squares;
};
template <class D, class Q>
SumsAndSquares<D, Q> sumsAndSquares(Calls& calls,
                                    Function<ZelStatus(const Zel8u*, int, D*, int, Q*, int, ZeliSize, D, Q)> function,
                                    PictureView src, Form form)
{
    SumsAndSquares<D, Q> dst{integralPlane<D>(src.size, form), integralPlane<Q>(src.size, form)};
    callWith(calls, function, src, dst.sums, dst.squares, src.size, D(0), Q(0));
    return dst;
}

// What windows are read from, upright. The integer sums wrap in very large pictures, which the sum in a window does not
// notice.
using IntegralPair = SumsAndSquares<Zel32s, Zel64f>;
inline IntegralPair integralPair(Calls& calls, const Picture& src)
{
    return sumsAndSquares(calls, ZELCV_FUNCTION(zeliSqrIntegral_8u32s64f_C1R), src, Form::upright);
}

// The standard deviation of the window whose upper left pixel is at each place where the whole window fits.
inline Image<Zel32f> windowDeviation(Calls& calls, const IntegralPair& integral, ZeliSize window)
{
    Image<Zel32f> dst({integral.sums.size().width - window.width, integral.sums.size().height - window.height}, 1);
    callWith(calls, ZELCV_FUNCTION(zeliRectStdDev_32s32f_C1R), integral.sums, integral.squares, dst, dst.size(),
             ZeliRect{0, 0, window.width, window.height});
    return dst;
}

} // namespace app
