// Calls of the filters with border that take a mask size.
#pragma once

#include "support/measure.h"

namespace zelbench {

// One call of a filter with border; `tail` holds what stands between borderValue and buffer.
template <class Src, class Dst, class SizeFunction, class Function, class... Tail>
Prepare bordered(SizeFunction sizeFunction, Function function, ZeliMaskSize maskSize, Tail... tail)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<Src> src(size);
        Plane<Dst> dst(size);
        int bytes = 0;
        require(sizeFunction(size, maskSize, &bytes));
        auto buffer = scratch(bytes);
        return [=] {
            require(function(src.data(), src.step(), dst.data(), dst.step(), size, maskSize, zeliBorderReplicate, 0,
                             tail..., buffer.get()));
        };
    };
}

} // namespace zelbench
