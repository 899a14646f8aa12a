// One channel of three, gathered into a row of its own.
#pragma once

#include "vector/vector.h"

#include <array>

namespace zelcv {

// Elements among which lanes move: double words in all of a vector, smaller ones within 16 bytes.
template <class T>
constexpr int kReach = sizeof(T) == 4 ? kLanes<T> : kGroupLanes<T>;

// All ones at every third element of three times so many, for each such group of a vector.
template <class T>
constexpr std::array<std::array<T, kLanes<T>>, 3> kEveryThird = [] {
    std::array<std::array<T, kLanes<T>>, 3> period = {};
    for (int third = 0; third < 3; ++third)
        for (int i = 0; i < kLanes<T>; ++i)
            if ((kReach<T> * third + i % kReach<T>) % 3 == 0) period[std::size_t(third)][std::size_t(i)] = T(-1);
    return period;
}();

// Elements 0, 3, 6, ... of as many as three vectors hold. T is unsigned.
template <class T>
ZELCV_INLINE inline Vec<T> everyThird(const T* from)
{
    constexpr int reach = kReach<T>;
    const auto next = [=](int third) {
        return reach == kLanes<T> ? load(from + reach * third) : loadGroups(from + reach * third, 3 * reach);
    };
    if constexpr (kLanes<T> == 4) { // two shuffles do: a0 . . a3 and b2 . c1 .
        const Vec<T> last = shuffle<[](int i) { return i < 2 ? 2 : 4 + 1; }>(next(1), next(2));
        return shuffle<[](int i) { return i < 2 ? 3 * i : 4 + 2 * (i - 2); }>(next(0), last);
    } else {
        // Vectors that keep every third element have, laid over each other, all of the wanted ones: element i stands at place
        // 3i, counted around.
        Vec<T> around = next(0) & load(kEveryThird<T>[0].data());
        for (int third = 1; third < 3; ++third) around |= next(third) & load(kEveryThird<T>[std::size_t(third)].data());
        return unwindThirds(around);
    }
}

// to[i] = from[3 * i]
template <class T>
void copyEveryThird(T* to, const T* from, int count)
{
    using Bits = std::conditional_t<sizeof(T) == 4, Zel32u, std::conditional_t<sizeof(T) == 2, Zel16u, Zel8u>>;
    constexpr int block = kLanes<T>;
    const auto third = [](const T* at) { return everyThird(reinterpret_cast<const Bits*>(at)); };
    const auto put = [=](std::ptrdiff_t i, Vec<Bits> v) { store(reinterpret_cast<Bits*>(to + i), v); };
    if (count < block) {
        for (int i = 0; i < count; ++i) to[i] = from[std::ptrdiff_t(3) * i];
        return;
    }
    for (std::ptrdiff_t i = 0; i < count - block; i += block) put(i, third(from + 3 * i));
    T last[3 * block]; // what follows the last element may be nobody's
    std::memcpy(last, from + std::ptrdiff_t(3) * (count - block), sizeof(T) * (3 * block - 2));
    put(count - block, third(last));
}

} // namespace zelcv
