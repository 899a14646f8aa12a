// One channel of three.
#pragma once

#include "vector/vector.h"

namespace zelcv {

// Of 48 bytes those at 0, 3, 6, ... To interleave the first half with the second one moves byte i to 2i mod 47. Done four
// times, that is 16i mod 47, which takes 3i to i.
inline Vec<Zel8u> everyThird(const Zel8u* from)
{
    Vec<Zel8u> a = load(from), b = load(from + 16), c = load(from + 32);
    for (int time = 0; time < 4; ++time) {
        const Vec<Zel8u> around = firstHalves(secondHalves(b, b), c);
        const Vec<Zel8u> lowest = interleaveLow(a, around), middle = interleaveHigh(a, around);
        c = interleaveLow(b, secondHalves(c, c));
        a = lowest;
        b = middle;
    }
    return a;
}

// to[i] = from[3 * i]
template <class T>
void copyEveryThird(T* to, const T* from, int count)
{
    int i = 0;
    if constexpr (sizeof(T) == 1 && kVectorBytes == 16) // in vectors of 32 bytes the compiler does as well
        for (; i < count - 16; i += 16)
            store(reinterpret_cast<Zel8u*>(to + i), everyThird(reinterpret_cast<const Zel8u*>(from + std::ptrdiff_t(3) * i)));
    for (; i < count; ++i) to[i] = from[std::ptrdiff_t(3) * i];
}

} // namespace zelcv
