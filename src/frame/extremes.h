// Largest and smallest as one idea: what maximum and minimum filters, dilation and erosion, and their like differ in.
#pragma once

#include "vector/vector.h"

#include <limits>

namespace zelcv {

struct Largest {
    // For numbers and vectors: a where it is strictly greater, else b. So a NaN in b comes through and one in a does not.
    template <class V>
    ZELCV_INLINE static V of(V a, V b) { return maximum(a, b); }

    // The finite number that every other one replaces.
    template <class T>
    static constexpr T kStart = std::numeric_limits<T>::lowest();
};

struct Smallest {
    template <class V>
    ZELCV_INLINE static V of(V a, V b) { return minimum(a, b); }

    template <class T>
    static constexpr T kStart = std::numeric_limits<T>::max();
};

// What every other number replaces, infinities too, and a NaN.
template <class Pick, class T>
constexpr T kNeutral = std::numeric_limits<T>::is_integer ? Pick::template kStart<T>
                       : Pick::template kStart<T> < 0     ? -std::numeric_limits<T>::infinity()
                                                          : std::numeric_limits<T>::infinity();

} // namespace zelcv
