// The operations of portable.h on SSE2.
#pragma once

#include "vector/shuffle.h"

#include <emmintrin.h>

namespace zelcv::sse2 {

// ---- arithmetic

ZELCV_INLINE inline Vec<Zel8u> subtractSaturating(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(_mm_subs_epu8(__m128i(a), __m128i(b)));
}
ZELCV_INLINE inline Vec<Zel16u> subtractSaturating(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return Vec<Zel16u>(_mm_subs_epu16(__m128i(a), __m128i(b)));
}

ZELCV_INLINE inline Vec<Zel8u> addSaturating(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(_mm_adds_epu8(__m128i(a), __m128i(b)));
}

ZELCV_INLINE inline Vec<Zel32f> minimum(Vec<Zel32f> a, Vec<Zel32f> b) { return _mm_min_ps(a, b); }
ZELCV_INLINE inline Vec<Zel64f> minimum(Vec<Zel64f> a, Vec<Zel64f> b) { return _mm_min_pd(a, b); }
ZELCV_INLINE inline Vec<Zel32f> maximum(Vec<Zel32f> a, Vec<Zel32f> b) { return _mm_max_ps(a, b); }
ZELCV_INLINE inline Vec<Zel64f> maximum(Vec<Zel64f> a, Vec<Zel64f> b) { return _mm_max_pd(a, b); }

ZELCV_INLINE inline Vec<Zel32u> multiplyAddPairs(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return Vec<Zel32u>(_mm_madd_epi16(__m128i(a), __m128i(b)));
}

ZELCV_INLINE inline Vec<Zel16s> multiplyHigh(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return Vec<Zel16s>(_mm_mulhi_epi16(__m128i(a), __m128i(b)));
}
ZELCV_INLINE inline Vec<Zel16u> multiplyHigh(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return Vec<Zel16u>(_mm_mulhi_epu16(__m128i(a), __m128i(b)));
}

ZELCV_INLINE inline Vec<Zel16u> addBytePairs(Vec<Zel8u> v) { return (Vec<Zel16u>(v) & 0xff) + (Vec<Zel16u>(v) >> 8); }
ZELCV_INLINE inline Vec<std::uint64_t> sumBytes(Vec<Zel8u> v)
{
    return Vec<std::uint64_t>(_mm_sad_epu8(__m128i(v), __m128i{}));
}

ZELCV_INLINE inline Vec<Zel32f> squareRoot(Vec<Zel32f> v) { return _mm_sqrt_ps(v); }
ZELCV_INLINE inline Vec<Zel64f> squareRoot(Vec<Zel64f> v) { return _mm_sqrt_pd(v); }

ZELCV_INLINE inline Vec<std::uint64_t> shiftLeft(Vec<std::uint64_t> v, std::int64_t count)
{
    return Vec<std::uint64_t>(_mm_sll_epi64(__m128i(v), _mm_cvtsi64_si128(count)));
}

// ---- widening and narrowing

// Lanes twice as wide: those of `v` below those of `upper`.
template <class To, class V>
ZELCV_INLINE inline Group<Vec<To>, 2> below(V v, V upper)
{
    return {Vec<To>(interleaveLow(v, upper)), Vec<To>(interleaveHigh(v, upper))};
}
template <class V>
ZELCV_INLINE inline Group<V, 4> join(const Group<V, 2>& a, const Group<V, 2>& b)
{
    return {a.part[0], a.part[1], b.part[0], b.part[1]};
}

template <class To>
ZELCV_INLINE inline auto widen(Vec<Zel16u> v)
{
    return below<To>(v, Vec<Zel16u>{});
}
template <class To>
ZELCV_INLINE inline auto widen(Vec<Zel16s> v)
{
    const auto doubled = below<To>(v, v);
    return Group<Vec<To>, 2>{doubled.part[0] >> 16, doubled.part[1] >> 16};
}
template <class To>
ZELCV_INLINE inline auto widen(Vec<Zel8u> v)
{
    const auto words = below<Zel16u>(v, Vec<Zel8u>{});
    if constexpr (sizeof(To) == 2)
        return Group<Vec<To>, 2>{Vec<To>(words.part[0]), Vec<To>(words.part[1])};
    else
        return join(widen<To>(words.part[0]), widen<To>(words.part[1]));
}
template <class To>
ZELCV_INLINE inline auto widen(Vec<Zel8s> v)
{
    const auto doubled = below<Zel16s>(v, v);
    if constexpr (sizeof(To) == 2) {
        return Group<Vec<To>, 2>{doubled.part[0] >> 8, doubled.part[1] >> 8};
    } else {
        const auto wide = join(below<To>(doubled.part[0], doubled.part[0]), below<To>(doubled.part[1], doubled.part[1]));
        return Group<Vec<To>, 4>{wide.part[0] >> 24, wide.part[1] >> 24, wide.part[2] >> 24, wide.part[3] >> 24};
    }
}
template <class To>
ZELCV_INLINE inline auto widen(Vec<Zel32s> v)
{
    if constexpr (std::is_floating_point_v<To>)
        return Doubles{_mm_cvtepi32_pd(__m128i(v)), _mm_cvtepi32_pd(__m128i(shuffle<[](int i) { return i | 2; }>(v, v)))};
    else
        return below<To>(v, v < 0);
}
template <class To>
ZELCV_INLINE inline auto widen(Vec<Zel32f> v)
{
    return Doubles{_mm_cvtps_pd(v), _mm_cvtps_pd(_mm_movehl_ps(v, v))};
}

template <class To, class T>
ZELCV_INLINE inline auto loadWidened(const T* from)
{
    return widen<To>(load(from));
}

ZELCV_INLINE inline Vec<Zel32s> truncate(Vec<Zel32f> v) { return Vec<Zel32s>(_mm_cvttps_epi32(v)); }
ZELCV_INLINE inline Vec<Zel32s> truncate(const Doubles& v)
{
    return Vec<Zel32s>(_mm_unpacklo_epi64(_mm_cvttpd_epi32(v.part[0]), _mm_cvttpd_epi32(v.part[1])));
}
ZELCV_INLINE inline Vec<Zel32f> toFloat(const Doubles& v)
{
    return _mm_movelh_ps(_mm_cvtpd_ps(v.part[0]), _mm_cvtpd_ps(v.part[1]));
}

template <class To>
ZELCV_INLINE inline Vec<To> narrowPairs(Vec<Zel32s> a, Vec<Zel32s> b)
{
    return Vec<To>(_mm_packs_epi32(__m128i(a), __m128i(b)));
}
template <class To>
ZELCV_INLINE inline Vec<To> narrowPairs(Vec<Zel16s> a, Vec<Zel16s> b)
{
    if constexpr (std::is_signed_v<To>)
        return Vec<To>(_mm_packs_epi16(__m128i(a), __m128i(b)));
    else
        return Vec<To>(_mm_packus_epi16(__m128i(a), __m128i(b)));
}

// ---- masks

ZELCV_INLINE inline Zel32u laneBits(Vec<Zel8s> mask) { return Zel32u(_mm_movemask_epi8(__m128i(mask))); }
ZELCV_INLINE inline Zel32u laneBits(Vec<Zel16s> mask)
{
    return Zel32u(_mm_movemask_epi8(_mm_packs_epi16(__m128i(mask), __m128i{})));
}
ZELCV_INLINE inline Zel32u laneBits(Vec<Zel32s> mask) { return Zel32u(_mm_movemask_ps(__m128(mask))); }

// ---- shuffles

template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftBytesUp(Vec<Zel8u> v)
{
    return Vec<Zel8u>(_mm_slli_si128(__m128i(v), count));
}
template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftBytesDown(Vec<Zel8u> v)
{
    return Vec<Zel8u>(_mm_srli_si128(__m128i(v), count));
}

template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftAllUp(Vec<Zel8u> v)
{
    return shiftBytesUp<count>(v);
}
template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftAllDown(Vec<Zel8u> v)
{
    return shiftBytesDown<count>(v);
}

} // namespace zelcv::sse2
