// Numbers that the library's statistics give for a picture, gray or channel by channel.
#pragma once

#include "operations/calls.h"

namespace app {

// Calls the form for gray pictures, or the one for a channel of three, 1..3. The masked forms take `images` with a mask at
// their end.
template <class Gray, class Colour, class... Images, class... Results>
void onChannel(Calls& calls, Function<Gray> gray, Function<Colour> colour, int channel, const std::tuple<Images...>& images,
               Results... results)
{
    const Picture& src = std::get<0>(images);
    const auto run = [&](auto function, auto... more) {
        std::apply([&](const auto&... image) { callWith(calls, function, image..., src.size(), more..., results...); },
                   images);
    };
    if (src.channels() == 3)
        run(colour, channel);
    else
        run(gray);
}

inline const char* channelName(const Picture& src, int channel)
{
    const char* const names[] = {"red", "green", "blue"};
    return src.channels() == 3 ? names[channel - 1] : "gray";
}

struct Norms {
    double inf = 0, l1 = 0, l2 = 0;
};

} // namespace app
