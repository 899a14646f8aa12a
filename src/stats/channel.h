// One channel of three, gathered into a row of its own.
#pragma once

#include "vector/vector.h"

namespace zelcv {

// Elements 0, 3, 6, ... of as many as three vectors hold. Vectors that keep every third element have, laid over each other, all
// of the wanted ones: in each 16 bytes element i stands at place 3i, counted around.
template <class T>
Vec<T> everyThird(const T* from)
{
    constexpr int group = kGroupLanes<T>;
    Vec<T> around = {};
    for (int third = 0; third < 3; ++third) {
        Vec<T> period;
        for (int i = 0; i < kLanes<T>; ++i) period[i] = (group * third + i % group) % 3 == 0 ? T(-1) : T(0);
        around |= loadGroups(from + group * third, 3 * group) & period;
    }
    return unwindThirds(around);
}

// to[i] = from[3 * i]
template <class T>
void copyEveryThird(T* to, const T* from, int count)
{
    using Bits = std::conditional_t<sizeof(T) == 4, Zel32u, std::conditional_t<sizeof(T) == 2, Zel16u, Zel8u>>;
    constexpr int block = kLanes<T>;
    const auto third = [](const T* at) { return everyThird(reinterpret_cast<const Bits*>(at)); };
    const auto put = [=](int i, Vec<Bits> v) { store(reinterpret_cast<Bits*>(to + i), v); };
    if (count < block) {
        for (int i = 0; i < count; ++i) to[i] = from[std::ptrdiff_t(3) * i];
        return;
    }
    int i = 0;
    for (; i < count - block; i += block) put(i, third(from + std::ptrdiff_t(3) * i));
    T last[3 * block]; // what follows the last element may be nobody's
    std::memcpy(last, from + std::ptrdiff_t(3) * (count - block), sizeof(T) * (3 * block - 2));
    put(count - block, third(last));
}

} // namespace zelcv
