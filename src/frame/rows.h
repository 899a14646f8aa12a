// Small helpers on rows of numbers. Each returns zelStatusNullPointer for a null pointer, zelStatusBadSize for a length below
// 1, and does its work otherwise.
#pragma once

#include "zelcv.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zelcv {

template <class T>
ZelStatus checkRow(const T* row, int len)
{
    return !row ? zelStatusNullPointer : len < 1 ? zelStatusBadSize : zelStatusOk;
}

template <class T>
ZelStatus zeroRow(T* dst, int len)
{
    if (auto status = checkRow(dst, len)) return status;
    std::memset(dst, 0, sizeof(T) * std::size_t(len));
    return zelStatusOk;
}

inline ZelStatus ownZero_8u(Zel8u* dst, int len) { return zeroRow(dst, len); }
inline ZelStatus ownZero_16s(Zel16s* dst, int len) { return zeroRow(dst, len); }
inline ZelStatus ownZero_32f(Zel32f* dst, int len) { return zeroRow(dst, len); }
inline ZelStatus ownZero_32s(Zel32s* dst, int len) { return zeroRow(dst, len); }

inline ZelStatus ownSet_8u(Zel8u value, Zel8u* dst, int len)
{
    if (auto status = checkRow(dst, len)) return status;
    std::memset(dst, value, std::size_t(len));
    return zelStatusOk;
}

inline ZelStatus ownSet_32f(Zel32f value, Zel32f* dst, int len)
{
    if (auto status = checkRow(dst, len)) return status;
    std::fill_n(dst, len, value);
    return zelStatusOk;
}

inline ZelStatus ownCopy_32f(const Zel32f* src, Zel32f* dst, int len)
{
    if (!src) return zelStatusNullPointer;
    if (auto status = checkRow(dst, len)) return status;
    std::memcpy(dst, src, sizeof(Zel32f) * std::size_t(len));
    return zelStatusOk;
}

// Sorts ascending, in place, without recursion: quicksort with the middle of three as pivot, selection for short segments.
ZelStatus ownSort_64f(Zel64f* values, int len);

} // namespace zelcv
