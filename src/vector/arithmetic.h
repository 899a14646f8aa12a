// Arithmetic that the language lacks. What comes from `isa` is told in portable.h.
#pragma once

#include "vector/isa.h"

namespace zelcv {

using isa::addBytePairs;
using isa::addSaturating;
using isa::multiplyAddPairs;
using isa::multiplyHigh;
using isa::shiftLeft;
using isa::squareRoot;
using isa::subtractSaturating;

ZELCV_INLINE inline Doubles squareRoot(const Doubles& v) { return {squareRoot(v.part[0]), squareRoot(v.part[1])}; }

// The smaller of each, and the larger; b where either is NaN.
template <class V>
ZELCV_INLINE inline V minimum(V a, V b)
{
    return a < b ? a : b;
}
template <class V>
ZELCV_INLINE inline V maximum(V a, V b)
{
    return a > b ? a : b;
}
// Compilers find these only here and there.
ZELCV_INLINE inline Vec<Zel32f> minimum(Vec<Zel32f> a, Vec<Zel32f> b) { return isa::minimum(a, b); }
ZELCV_INLINE inline Vec<Zel64f> minimum(Vec<Zel64f> a, Vec<Zel64f> b) { return isa::minimum(a, b); }
ZELCV_INLINE inline Vec<Zel32f> maximum(Vec<Zel32f> a, Vec<Zel32f> b) { return isa::maximum(a, b); }
ZELCV_INLINE inline Vec<Zel64f> maximum(Vec<Zel64f> a, Vec<Zel64f> b) { return isa::maximum(a, b); }
// And these not at all for SSE2.
ZELCV_INLINE inline Vec<Zel16u> minimum(Vec<Zel16u> a, Vec<Zel16u> b) { return a - subtractSaturating(a, b); }
ZELCV_INLINE inline Vec<Zel16u> maximum(Vec<Zel16u> a, Vec<Zel16u> b) { return b + subtractSaturating(a, b); }
ZELCV_INLINE inline Doubles maximum(const Doubles& a, const Doubles& b)
{
    return {maximum(a.part[0], b.part[0]), maximum(a.part[1], b.part[1])};
}

// ---- absolute values: those of the smallest integers come out as they should, since the results are unsigned

ZELCV_INLINE inline Vec<Zel32f> absolute(Vec<Zel32f> v) { return Vec<Zel32f>(Vec<Zel32u>(v) & 0x7fffffffu); }
ZELCV_INLINE inline Vec<Zel16s> negativeAbsolute(Vec<Zel16s> v) { return minimum(v, Vec<Zel16s>(-Vec<Zel16u>(v))); }
ZELCV_INLINE inline Vec<Zel16u> absolute(Vec<Zel16s> v) { return -Vec<Zel16u>(negativeAbsolute(v)); }
ZELCV_INLINE inline Vec<Zel8u> absolute(Vec<Zel8s> v) { return minimum(Vec<Zel8u>(v), -Vec<Zel8u>(v)); }

ZELCV_INLINE inline Vec<Zel8u> absoluteDifference(Vec<Zel8u> a, Vec<Zel8u> b) { return maximum(a, b) - minimum(a, b); }
ZELCV_INLINE inline Vec<Zel8u> absoluteDifference(Vec<Zel8s> a, Vec<Zel8s> b)
{
    return absoluteDifference(Vec<Zel8u>(a) ^ 0x80, Vec<Zel8u>(b) ^ 0x80);
}
ZELCV_INLINE inline Vec<Zel16u> absoluteDifference(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return subtractSaturating(a, b) | subtractSaturating(b, a);
}
ZELCV_INLINE inline Vec<Zel32f> absoluteDifference(Vec<Zel32f> a, Vec<Zel32f> b) { return absolute(a - b); }

} // namespace zelcv
