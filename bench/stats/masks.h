// Masks to measure with.
#pragma once

#include "support/measure.h"

namespace zelbench {

// Calls value(random bit) for every pixel.
template <class Value>
Plane<Zel8u> maskOf(ZeliSize size, Value value)
{
    Plane<Zel8u> mask(size);
    unsigned state = 1;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            state = state * 1664525u + 1013904223u;
            mask.row(y)[x] = value(state >> 31);
        }
    return mask;
}

// Half of the pixels set, at random.
inline Plane<Zel8u> randomMask(ZeliSize size)
{
    return maskOf(size, [](unsigned bit) { return Zel8u(bit ? 255 : 0); });
}

// Every pixel set.
inline Plane<Zel8u> solidMask(ZeliSize size)
{
    return maskOf(size, [](unsigned) { return Zel8u(255); });
}

} // namespace zelbench
