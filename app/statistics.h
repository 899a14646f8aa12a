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

// Calls the form for gray pictures, or the one for a channel of three, 1..3. The masked forms take `images` with a mask at
// their end.
template <class Gray, class Colour, class... Images, class... Results>
void onChannel(Calls& calls, Function<Gray> gray, Function<Colour> colour, int channel, const std::tuple<Images...>& images,
               Results... results)
{
    const Picture& src = std::get<0>(images);
    const auto run = [&](auto function, auto... more) {
        std::apply([&](const auto&... image) { callWith(calls, function, image..., src.size(), more..., results...); }, images);
    };
    if (src.channels() == 3)
        run(colour, channel);
    else
        run(gray);
}

struct Norms {
    double inf = 0, l1 = 0, l2 = 0;
};

} // namespace app
