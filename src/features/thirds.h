// Pixels of three channels as three vectors, one for each channel, in an order that all three share: cheaper to come by than
// the order of the pixels, which what is made of them is brought into at the end.
#pragma once

#include "vector/vector.h"

#include <array>

namespace zelcv {

template <class T>
struct Triple {
    T channel[3];
};

// All ones at every third element of the 48 bytes that hold 16 bytes of each channel, in each 16 bytes of a vector.
template <class T>
constexpr std::array<std::array<T, kLanes<T>>, 3> kFirstOfThree = [] {
    std::array<std::array<T, kLanes<T>>, 3> period = {};
    for (int third = 0; third < 3; ++third)
        for (int i = 0; i < kLanes<T>; ++i)
            if ((kGroupLanes<T> * third + i % kGroupLanes<T>) % 3 == 0) period[std::size_t(third)][std::size_t(i)] = T(-1);
    return period;
}();

// A reader for mapRow. In each 16 bytes of the vectors that it gives, pixel i stands at place 3i, counted around.
template <class T>
struct Thirds {
    const Triple<T>* from;
    static constexpr bool kTakesLong = true;

    template <int count>
    ZELCV_INLINE Group<Vec<T>, 3> block(std::ptrdiff_t i) const
    {
        static_assert(count == kLanes<T>);
        const T* pixels = from[i].channel;
        return {channel<0>(pixels), channel<1>(pixels), channel<2>(pixels)};
    }

private:
    using Bits = std::conditional_t<sizeof(T) == 4, Zel32u, std::conditional_t<sizeof(T) == 2, Zel16u, Zel8u>>;

    // Loads that begin at the channel have it at the places of the first one. The last one would end behind the pixels, and
    // is shifted instead.
    template <int c>
    ZELCV_INLINE static Vec<T> channel(const T* pixels)
    {
        constexpr int lanes = kGroupLanes<T>;
        const auto part = [=](int third, int offset) ZELCV_INLINE {
            return Vec<Bits>(loadGroups(pixels + lanes * third + offset, 3 * lanes));
        };
        const Vec<Bits> last = shiftLanesDownInGroups<c>(part(2, 0));
        return Vec<T>((part(0, c) & load(kFirstOfThree<Bits>[0].data())) | (part(1, c) & load(kFirstOfThree<Bits>[1].data())) |
                      (last & load(kFirstOfThree<Bits>[2].data())));
    }
};

// The order of Thirds back into that of the pixels.
template <class V>
ZELCV_INLINE inline V fromThirds(V v)
{
    if constexpr (sizeof(v[0]) == 4)
        return shuffle<[](int i) { return i / 4 * 4 + 3 * i % 4; }>(v, v);
    else
        return unwindThirds(v);
}

} // namespace zelcv
