// The operations of portable.h on AVX2.
#pragma once

#include "vector/shuffle.h"

#include <immintrin.h>

namespace zelcv::avx2 {

// ---- arithmetic

ZELCV_INLINE inline Vec<Zel8u> subtractSaturating(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(_mm256_subs_epu8(__m256i(a), __m256i(b)));
}
ZELCV_INLINE inline Vec<Zel16u> subtractSaturating(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return Vec<Zel16u>(_mm256_subs_epu16(__m256i(a), __m256i(b)));
}

ZELCV_INLINE inline Vec<Zel8u> addSaturating(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(_mm256_adds_epu8(__m256i(a), __m256i(b)));
}

ZELCV_INLINE inline Vec<Zel32f> minimum(Vec<Zel32f> a, Vec<Zel32f> b) { return _mm256_min_ps(a, b); }
ZELCV_INLINE inline Vec<Zel64f> minimum(Vec<Zel64f> a, Vec<Zel64f> b) { return _mm256_min_pd(a, b); }
ZELCV_INLINE inline Vec<Zel32f> maximum(Vec<Zel32f> a, Vec<Zel32f> b) { return _mm256_max_ps(a, b); }
ZELCV_INLINE inline Vec<Zel64f> maximum(Vec<Zel64f> a, Vec<Zel64f> b) { return _mm256_max_pd(a, b); }

ZELCV_INLINE inline Vec<Zel32u> multiplyAddPairs(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return Vec<Zel32u>(_mm256_madd_epi16(__m256i(a), __m256i(b)));
}

ZELCV_INLINE inline Vec<Zel16s> multiplyHigh(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return Vec<Zel16s>(_mm256_mulhi_epi16(__m256i(a), __m256i(b)));
}
ZELCV_INLINE inline Vec<Zel16u> multiplyHigh(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return Vec<Zel16u>(_mm256_mulhi_epu16(__m256i(a), __m256i(b)));
}

ZELCV_INLINE inline Vec<Zel16u> addBytePairs(Vec<Zel8u> v)
{
    return Vec<Zel16u>(_mm256_maddubs_epi16(__m256i(v), _mm256_set1_epi8(1)));
}
ZELCV_INLINE inline Vec<std::uint64_t> sumBytes(Vec<Zel8u> v)
{
    return Vec<std::uint64_t>(_mm256_sad_epu8(__m256i(v), __m256i{}));
}

ZELCV_INLINE inline Vec<Zel32f> squareRoot(Vec<Zel32f> v) { return _mm256_sqrt_ps(v); }
ZELCV_INLINE inline Vec<Zel64f> squareRoot(Vec<Zel64f> v) { return _mm256_sqrt_pd(v); }

ZELCV_INLINE inline Vec<std::uint64_t> shiftLeft(Vec<std::uint64_t> v, std::int64_t count)
{
    return Vec<std::uint64_t>(_mm256_sll_epi64(__m256i(v), _mm_cvtsi64_si128(count)));
}

// ---- widening and narrowing

ZELCV_INLINE inline __m128i lowHalf(__m256i v) { return _mm256_castsi256_si128(v); }
ZELCV_INLINE inline __m128i highHalf(__m256i v) { return _mm256_extracti128_si256(v, 1); }

// The first elements of a register, widened to fill a vector.
template <class To>
ZELCV_INLINE inline Vec<To> widenFirst(__m128i v, Zel8u)
{
    return Vec<To>(sizeof(To) == 2 ? _mm256_cvtepu8_epi16(v) : _mm256_cvtepu8_epi32(v));
}
template <class To>
ZELCV_INLINE inline Vec<To> widenFirst(__m128i v, Zel8s)
{
    return Vec<To>(sizeof(To) == 2 ? _mm256_cvtepi8_epi16(v) : _mm256_cvtepi8_epi32(v));
}
template <class To>
ZELCV_INLINE inline Vec<To> widenFirst(__m128i v, Zel16u)
{
    return Vec<To>(_mm256_cvtepu16_epi32(v));
}
template <class To>
ZELCV_INLINE inline Vec<To> widenFirst(__m128i v, Zel16s)
{
    return Vec<To>(_mm256_cvtepi16_epi32(v));
}
template <class To>
ZELCV_INLINE inline Vec<To> widenFirst(__m128i v, Zel32s)
{
    if constexpr (std::is_floating_point_v<To>)
        return _mm256_cvtepi32_pd(v);
    else
        return Vec<To>(_mm256_cvtepi32_epi64(v));
}
template <class To>
ZELCV_INLINE inline Vec<To> widenFirst(__m128i v, Zel32f)
{
    return _mm256_cvtps_pd(_mm_castsi128_ps(v));
}

template <class To, class V>
ZELCV_INLINE inline auto widen(V v)
{
    using From = LaneOf<V>;
    const __m128i low = lowHalf(__m256i(v)), high = highHalf(__m256i(v));
    if constexpr (sizeof(To) == 2 * sizeof(From))
        return Group<Vec<To>, 2>{widenFirst<To>(low, From()), widenFirst<To>(high, From())};
    else
        return Group<Vec<To>, 4>{widenFirst<To>(low, From()), widenFirst<To>(_mm_srli_si128(low, 8), From()),
                                 widenFirst<To>(high, From()), widenFirst<To>(_mm_srli_si128(high, 8), From())};
}

template <class To, class T>
ZELCV_INLINE inline auto loadWidened(const T* from)
{
    constexpr int n = int(sizeof(To) / sizeof(T));
    Group<Vec<To>, n> wide;
    for (int i = 0; i < n; ++i) {
        const auto* part = reinterpret_cast<const __m128i*>(from + i * kLanes<To>);
        wide.part[i] = widenFirst<To>(n == 2 ? _mm_loadu_si128(part) : _mm_loadl_epi64(part), T());
    }
    return wide;
}

ZELCV_INLINE inline Vec<Zel32s> truncate(Vec<Zel32f> v) { return Vec<Zel32s>(_mm256_cvttps_epi32(v)); }
ZELCV_INLINE inline Vec<Zel32s> truncate(const Doubles& v)
{
    return Vec<Zel32s>(_mm256_set_m128i(_mm256_cvttpd_epi32(v.part[1]), _mm256_cvttpd_epi32(v.part[0])));
}
ZELCV_INLINE inline Vec<Zel32f> toFloat(const Doubles& v)
{
    return _mm256_set_m128(_mm256_cvtpd_ps(v.part[1]), _mm256_cvtpd_ps(v.part[0]));
}

template <class To>
ZELCV_INLINE inline Vec<To> narrowPairs(Vec<Zel32s> a, Vec<Zel32s> b)
{
    return Vec<To>(_mm256_packs_epi32(__m256i(a), __m256i(b)));
}
template <class To>
ZELCV_INLINE inline Vec<To> narrowPairs(Vec<Zel16s> a, Vec<Zel16s> b)
{
    if constexpr (std::is_signed_v<To>)
        return Vec<To>(_mm256_packs_epi16(__m256i(a), __m256i(b)));
    else
        return Vec<To>(_mm256_packus_epi16(__m256i(a), __m256i(b)));
}

// ---- masks

ZELCV_INLINE inline Zel32u laneBits(Vec<Zel8s> mask) { return Zel32u(_mm256_movemask_epi8(__m256i(mask))); }
ZELCV_INLINE inline Zel32u laneBits(Vec<Zel16s> mask)
{
    const auto bits = Zel32u(_mm256_movemask_epi8(_mm256_packs_epi16(__m256i(mask), __m256i{})));
    return (bits | bits >> 8) & 0xffff; // the packed halves come 16 bits apart
}
ZELCV_INLINE inline Zel32u laneBits(Vec<Zel32s> mask) { return Zel32u(_mm256_movemask_ps(__m256(mask))); }

// ---- shuffles

template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftBytesUp(Vec<Zel8u> v)
{
    return Vec<Zel8u>(_mm256_slli_si256(__m256i(v), count));
}
template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftBytesDown(Vec<Zel8u> v)
{
    return Vec<Zel8u>(_mm256_srli_si256(__m256i(v), count));
}

// Each half is shifted together with the half it takes bytes from, or with zeros.
template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftAllUp(Vec<Zel8u> v)
{
    const __m256i below = _mm256_permute2x128_si256(__m256i(v), __m256i(v), 0x08);
    return Vec<Zel8u>(_mm256_alignr_epi8(__m256i(v), below, 16 - count));
}
template <int count>
ZELCV_INLINE inline Vec<Zel8u> shiftAllDown(Vec<Zel8u> v)
{
    const __m256i above = _mm256_permute2x128_si256(__m256i(v), __m256i(v), 0x81);
    return Vec<Zel8u>(_mm256_alignr_epi8(above, __m256i(v), count));
}

} // namespace zelcv::avx2
