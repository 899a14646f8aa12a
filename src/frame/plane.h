// An image plane in the caller's memory: its first pixel and the bytes from row to row. It owns nothing.
#pragma once

#include "zelcv.h"

#include <cstddef>
#include <type_traits>

namespace zelcv {

template <class T>
struct Plane {
    T* data;
    int step;

    // Start of row `y`; negative rows lie above the region.
    T* row(int y) const
    {
        using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
        return reinterpret_cast<T*>(reinterpret_cast<Byte*>(data) + std::ptrdiff_t(y) * step);
    }
};

} // namespace zelcv
