// The vector layer: Vec<T> is a register full of T, as wide as the build allows; a kernel asks kLanes<T> and knows nothing
// else of the width. Arithmetic, comparison and selection (mask ? a : b) are the compiler's own on vector types; here stand
// the operations that the language lacks. Each is one or a few instructions.
#pragma once

#include "zelcv.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <immintrin.h>
#include <type_traits>

namespace zelcv {

#if defined(__AVX2__)
constexpr int kVectorBytes = 32;
#else
constexpr int kVectorBytes = 16;
#endif

template <class T>
constexpr int kLanes = kVectorBytes / int(sizeof(T));

template <class T>
struct VecOf {
    typedef T type __attribute__((vector_size(kVectorBytes)));
    typedef T InMemory __attribute__((vector_size(kVectorBytes), aligned(1), may_alias));
};
template <class T>
using Vec = typename VecOf<T>::type;

#if defined(__AVX2__)
using IntRegister = __m256i;
#define ZELCV_REGISTER(operation) _mm256_##operation
#define ZELCV_WHOLE(operation) _mm256_##operation##_si256
#else
using IntRegister = __m128i;
#define ZELCV_REGISTER(operation) _mm_##operation
#define ZELCV_WHOLE(operation) _mm_##operation##_si128
#endif

// ---- memory: no alignment needed

template <class T>
Vec<T> load(const T* from)
{
    return *reinterpret_cast<const typename VecOf<T>::InMemory*>(from);
}

template <class T>
void store(T* to, Vec<T> v)
{
    *reinterpret_cast<typename VecOf<T>::InMemory*>(to) = v;
}

// The first `count` lanes.
template <class T>
void storePartial(T* to, Vec<T> v, int count)
{
    std::memcpy(to, &v, sizeof(T) * std::size_t(count));
}

template <class T>
Vec<T> splat(T value)
{
    return value - Vec<T>{}; // the compiler's broadcast; x - 0 is x also for a negative zero
}

// ---- absolute difference

inline Vec<Zel8u> absoluteDifference(Vec<Zel8u> a, Vec<Zel8u> b)
{
    const IntRegister x = IntRegister(a), y = IntRegister(b);
    return Vec<Zel8u>(ZELCV_WHOLE(or)(ZELCV_REGISTER(subs_epu8)(x, y), ZELCV_REGISTER(subs_epu8)(y, x)));
}

inline Vec<Zel16u> absoluteDifference(Vec<Zel16u> a, Vec<Zel16u> b)
{
    const IntRegister x = IntRegister(a), y = IntRegister(b);
    return Vec<Zel16u>(ZELCV_WHOLE(or)(ZELCV_REGISTER(subs_epu16)(x, y), ZELCV_REGISTER(subs_epu16)(y, x)));
}

inline Vec<Zel32f> absoluteDifference(Vec<Zel32f> a, Vec<Zel32f> b)
{
    return Vec<Zel32f>(Vec<Zel32u>(a - b) & 0x7fffffffu);
}

// ---- filters: products, sums, widening and narrowing
//
// interleaveLow and interleaveHigh, and narrowPairs as their inverse, work within each 16 bytes of a register.

inline Vec<Zel8u> interleaveLow(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(ZELCV_REGISTER(unpacklo_epi8)(IntRegister(a), IntRegister(b)));
}

inline Vec<Zel8u> interleaveHigh(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(ZELCV_REGISTER(unpackhi_epi8)(IntRegister(a), IntRegister(b)));
}

inline Vec<Zel16s> interleaveLow(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return Vec<Zel16s>(ZELCV_REGISTER(unpacklo_epi16)(IntRegister(a), IntRegister(b)));
}

inline Vec<Zel16s> interleaveHigh(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return Vec<Zel16s>(ZELCV_REGISTER(unpackhi_epi16)(IntRegister(a), IntRegister(b)));
}

// a[2i] * b[2i] + a[2i + 1] * b[2i + 1], wrapping at 32 bits.
inline Vec<Zel32u> multiplyAddPairs(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return Vec<Zel32u>(ZELCV_REGISTER(madd_epi16)(IntRegister(a), IntRegister(b)));
}

// Two 16-bit numbers in memory, in all pairs of lanes.
inline Vec<Zel16s> splatPair(const Zel16s* from)
{
    Zel32s both;
    std::memcpy(&both, from, sizeof both);
    return Vec<Zel16s>(splat(both));
}

inline Vec<Zel32f> toFloat(Vec<Zel32s> v) { return Vec<Zel32f>(ZELCV_REGISTER(cvtepi32_ps)(IntRegister(v))); }

// Cuts toward zero. Numbers outside the range of 32 bits, and NaN, become its minimum.
inline Vec<Zel32s> truncate(Vec<Zel32f> v) { return Vec<Zel32s>(ZELCV_REGISTER(cvttps_epi32)(v)); }

// The smaller of each; b where either is NaN.
inline Vec<Zel32f> minimum(Vec<Zel32f> a, Vec<Zel32f> b) { return ZELCV_REGISTER(min_ps)(a, b); }

// Limited to 16 bits.
inline Vec<Zel16s> narrowPairs(Vec<Zel32s> a, Vec<Zel32s> b)
{
    return Vec<Zel16s>(ZELCV_REGISTER(packs_epi32)(IntRegister(a), IntRegister(b)));
}

// The elements of a, then those of b, limited to the 8 bits of T.
template <class T>
Vec<T> narrowInOrder(Vec<Zel16s> a, Vec<Zel16s> b)
{
    const IntRegister x = IntRegister(a), y = IntRegister(b);
    IntRegister packed;
    if constexpr (T(-1) < 0)
        packed = ZELCV_REGISTER(packs_epi16)(x, y);
    else
        packed = ZELCV_REGISTER(packus_epi16)(x, y);
#if defined(__AVX2__)
    packed = _mm256_permute4x64_epi64(packed, 0xd8);
#endif
    return Vec<T>(packed);
}

// From (low 16 bytes of each half, high 16 bytes of each half) of 64 bytes to (first half, second half).
inline void sortHalves([[maybe_unused]] Vec<Zel16s>& a, [[maybe_unused]] Vec<Zel16s>& b)
{
#if defined(__AVX2__)
    const IntRegister x = IntRegister(a), y = IntRegister(b);
    a = Vec<Zel16s>(_mm256_permute2x128_si256(x, y, 0x20));
    b = Vec<Zel16s>(_mm256_permute2x128_si256(x, y, 0x31));
#endif
}

// ---- blocks that end early, absolute values, lanes as bits

// Full blocks by one load; of the last block of a row the `count` elements that are left, then zeros.
template <class T>
Vec<T> loadUpTo(const T* from, int count)
{
    Vec<T> v = {};
    if (count >= kLanes<T>)
        v = load(from);
    else
        std::memcpy(&v, from, sizeof(T) * std::size_t(count));
    return v;
}

inline Vec<Zel32f> loadFloats(const Zel32f* from, int count) { return loadUpTo(from, count); }

inline Vec<Zel32f> loadFloats(const Zel16s* from, int count)
{
    typedef Zel16s Half __attribute__((vector_size(kVectorBytes / 2)));
    Half half = {};
    if (count >= kLanes<Zel32f>)
        std::memcpy(&half, from, sizeof half);
    else
        std::memcpy(&half, from, sizeof(Zel16s) * std::size_t(count));
    return __builtin_convertvector(half, Vec<Zel32f>);
}

inline Vec<Zel32f> absolute(Vec<Zel32f> v) { return Vec<Zel32f>(Vec<Zel32u>(v) & 0x7fffffffu); }

inline Vec<Zel16s> negativeAbsolute(Vec<Zel16s> v)
{
    const IntRegister x = IntRegister(v);
    return Vec<Zel16s>(ZELCV_REGISTER(min_epi16)(x, ZELCV_REGISTER(sub_epi16)(IntRegister{}, x)));
}

inline Vec<Zel16u> absolute(Vec<Zel16s> v) { return -Vec<Zel16u>(negativeAbsolute(v)); }

// a - b, or 0 where that is negative.
inline Vec<Zel16u> subtractSaturating(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return Vec<Zel16u>(ZELCV_REGISTER(subs_epu16)(IntRegister(a), IntRegister(b)));
}

// Products in double precision, rounded to single.
inline Vec<Zel32f> multiplyInDouble(Vec<Zel32f> v, double factor)
{
#if defined(__AVX2__)
    const __m256d factors = _mm256_set1_pd(factor);
    const auto half = [=](__m128 x) { return _mm256_cvtpd_ps(_mm256_mul_pd(_mm256_cvtps_pd(x), factors)); };
    return Vec<Zel32f>(_mm256_set_m128(half(_mm256_extractf128_ps(v, 1)), half(_mm256_castps256_ps128(v))));
#else
    const __m128d factors = _mm_set1_pd(factor);
    const auto half = [=](__m128 x) { return _mm_cvtpd_ps(_mm_mul_pd(_mm_cvtps_pd(x), factors)); };
    return Vec<Zel32f>(_mm_movelh_ps(half(v), half(_mm_movehl_ps(v, v))));
#endif
}

// A bit for each lane of a mask, the first lane's lowest.
#if defined(__AVX2__)
inline Zel32u laneBits(Vec<Zel16s> mask)
{
    const auto bits = Zel32u(_mm256_movemask_epi8(_mm256_packs_epi16(__m256i(mask), __m256i{})));
    return (bits | bits >> 8) & 0xffff; // the packed halves come 16 bits apart
}
inline Zel32u laneBits(Vec<Zel32s> mask) { return Zel32u(_mm256_movemask_ps(__m256(mask))); }
#else
inline Zel32u laneBits(Vec<Zel16s> mask) { return Zel32u(_mm_movemask_epi8(_mm_packs_epi16(__m128i(mask), __m128i{}))); }
inline Zel32u laneBits(Vec<Zel32s> mask) { return Zel32u(_mm_movemask_ps(__m128(mask))); }
#endif

// A bit for each of 32 elements that is not zero, the first element's lowest.
inline Zel32u nonZeroBits(const Vec<Zel16u> (&blocks)[32 / kLanes<Zel16u>])
{
    Zel32u zeros = 0;
    for (int i = 0; i < 32; i += kLanes<Zel8u>) {
        const Vec<Zel16u>* pair = blocks + i / kLanes<Zel16u>;
        const Vec<Zel8s> bytes = narrowInOrder<Zel8s>(Vec<Zel16s>(pair[0]), Vec<Zel16s>(pair[1])); // never to 0
        zeros |= Zel32u(ZELCV_REGISTER(movemask_epi8)(ZELCV_REGISTER(cmpeq_epi8)(IntRegister(bytes), IntRegister{}))) << i;
    }
    return ~zeros;
}
inline Zel32u nonZeroBits(const Vec<Zel32f> (&blocks)[32 / kLanes<Zel32f>])
{
    Zel32u bits = 0;
    for (int i = 0; i < 32; i += kLanes<Zel32f>) bits |= laneBits(blocks[i / kLanes<Zel32f>] != 0) << i;
    return bits;
}

// 255 for each bit that is set, the lowest first, 0 for the others.
inline Vec<Zel8u> bytesFromBits(Zel32u bits)
{
    const IntRegister ownBit = IntRegister(splat(std::uint64_t(0x8040201008040201)));
#if defined(__AVX2__)
    const IntRegister byteOf = _mm256_set_epi64x(0x0303030303030303, 0x0202020202020202, 0x0101010101010101, 0);
    const IntRegister spread = _mm256_shuffle_epi8(_mm256_set1_epi32(int(bits)), byteOf);
#else
    const __m128i twice = _mm_cvtsi32_si128(int(bits)), pairs = _mm_unpacklo_epi8(twice, twice);
    const __m128i spread = _mm_shuffle_epi32(_mm_shufflelo_epi16(pairs, _MM_SHUFFLE(1, 1, 0, 0)), _MM_SHUFFLE(1, 1, 0, 0));
#endif
    return Vec<Zel8u>(ZELCV_REGISTER(cmpeq_epi8)(ZELCV_WHOLE(and)(spread, ownBit), ownBit));
}

// ---- as many elements of any type as there are floats in a vector, widened to float (exact for 8 and 16 bits)

// As many bytes as there are 32-bit lanes, widened.
inline Vec<Zel32u> loadWords(const Zel8u* from)
{
#if defined(__AVX2__)
    return Vec<Zel32u>(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from))));
#else
    std::int32_t four;
    std::memcpy(&four, from, sizeof four);
    return Vec<Zel32u>(_mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(four), __m128i{}), __m128i{}));
#endif
}

inline Vec<Zel32f> loadFloats(const Zel8u* from) { return toFloat(Vec<Zel32s>(loadWords(from))); }
#if defined(__AVX2__)
inline Vec<Zel32f> loadFloats(const Zel8s* from)
{
    return _mm256_cvtepi32_ps(_mm256_cvtepi8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from))));
}
inline Vec<Zel32f> loadFloats(const Zel16u* from)
{
    return _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))));
}
#else
inline Vec<Zel32f> loadFloats(const Zel8s* from)
{
    std::int32_t four;
    std::memcpy(&four, from, sizeof four);
    const __m128i bytes = _mm_cvtsi32_si128(four), pairs = _mm_unpacklo_epi8(bytes, bytes);
    return _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(pairs, pairs), 24));
}
inline Vec<Zel32f> loadFloats(const Zel16u* from)
{
    const __m128i words = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
    return _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, _mm_setzero_si128()));
}
#endif
inline Vec<Zel32f> loadFloats(const Zel32f* from) { return load(from); }

// As many mask bytes, each as a lane of all ones where it is not zero.
inline Vec<Zel32s> loadMask(const Zel8u* from)
{
    return Vec<Zel32s>(loadWords(from)) != 0;
}

// `value` where the mask is set, +0 elsewhere.
inline Vec<Zel32f> keep(Vec<Zel32s> mask, Vec<Zel32f> value) { return Vec<Zel32f>(mask & Vec<Zel32s>(value)); }

// ---- running sums, double precision

// Two vectors, one behind the other.
template <class V>
struct Pair {
    V low, high;
};
template <class T, class V>
void store(T* to, Pair<V> v)
{
    store(to, v.low);
    store(to + sizeof(V) / sizeof(T), v.high);
}
template <class T, class V>
void storePartial(T* to, Pair<V> v, int count)
{
    std::memcpy(to, &v, sizeof(T) * std::size_t(count));
}

// As many bytes as there are 16-bit lanes, widened.
inline Vec<Zel16u> loadShorts(const Zel8u* from)
{
#if defined(__AVX2__)
    return Vec<Zel16u>(_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))));
#else
    return Vec<Zel16u>(_mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from)), __m128i{}));
#endif
}

// Each lane plus all lanes before it.
inline Vec<Zel32u> prefixSums(Vec<Zel32u> v)
{
    v += Vec<Zel32u>(ZELCV_WHOLE(slli)(IntRegister(v), 4)); // these two work within each 16 bytes
    v += Vec<Zel32u>(ZELCV_WHOLE(slli)(IntRegister(v), 8));
#if defined(__AVX2__)
    const __m256i low = _mm256_permute2x128_si256(__m256i(v), __m256i(v), 0x08); // beside zeros
    v += Vec<Zel32u>(_mm256_shuffle_epi32(low, 0xff));
#endif
    return v;
}

// The same for bytes in 16-bit lanes, widened.
inline Pair<Vec<Zel32u>> prefixSums(Vec<Zel16u> bytes)
{
    Vec<Zel16u> v = bytes;
    v += Vec<Zel16u>(ZELCV_WHOLE(slli)(IntRegister(v), 2)); // within each 16 bytes
    v += Vec<Zel16u>(ZELCV_WHOLE(slli)(IntRegister(v), 4));
    v += Vec<Zel16u>(ZELCV_WHOLE(slli)(IntRegister(v), 8));
#if defined(__AVX2__)
    const __m256i low = _mm256_permute2x128_si256(__m256i(v), __m256i(v), 0x08); // beside zeros
    v += Vec<Zel16u>(_mm256_shuffle_epi8(low, _mm256_set1_epi16(0x0f0e)));
    return {Vec<Zel32u>(_mm256_cvtepu16_epi32(_mm256_castsi256_si128(__m256i(v)))),
            Vec<Zel32u>(_mm256_cvtepu16_epi32(_mm256_extracti128_si256(__m256i(v), 1)))};
#else
    return {Vec<Zel32u>(_mm_unpacklo_epi16(__m128i(v), __m128i{})), Vec<Zel32u>(_mm_unpackhi_epi16(__m128i(v), __m128i{}))};
#endif
}

// The same for the squares of bytes in 16-bit lanes: the sums of whole pairs, and those less the second of each pair.
inline Pair<Vec<Zel32u>> squarePrefixSums(Vec<Zel16u> bytes)
{
    const Vec<Zel16s> second = Vec<Zel16s>(Vec<Zel32u>(bytes) >> 16), all = Vec<Zel16s>(bytes);
    const IntRegister odd = IntRegister(prefixSums(multiplyAddPairs(all, all)));
    const IntRegister even = IntRegister(Vec<Zel32u>(odd) - multiplyAddPairs(second, second));
    const IntRegister low = ZELCV_REGISTER(unpacklo_epi32)(even, odd), high = ZELCV_REGISTER(unpackhi_epi32)(even, odd);
#if defined(__AVX2__)
    return {Vec<Zel32u>(_mm256_permute2x128_si256(low, high, 0x20)), Vec<Zel32u>(_mm256_permute2x128_si256(low, high, 0x31))};
#else
    return {Vec<Zel32u>(low), Vec<Zel32u>(high)};
#endif
}

// The last lane in all lanes.
inline Vec<Zel32u> splatLast(Vec<Zel32u> v)
{
#if defined(__AVX2__)
    return Vec<Zel32u>(_mm256_permutevar8x32_epi32(__m256i(v), _mm256_set1_epi32(7)));
#else
    return Vec<Zel32u>(_mm_shuffle_epi32(__m128i(v), 0xff));
#endif
}

// The first and the second half of the elements, widened.
#if defined(__AVX2__)
inline Vec<Zel64f> widenLow(Vec<Zel32f> v) { return _mm256_cvtps_pd(_mm256_castps256_ps128(v)); }
inline Vec<Zel64f> widenHigh(Vec<Zel32f> v) { return _mm256_cvtps_pd(_mm256_extractf128_ps(v, 1)); }
#else
inline Vec<Zel64f> widenLow(Vec<Zel32f> v) { return _mm_cvtps_pd(v); }
inline Vec<Zel64f> widenHigh(Vec<Zel32f> v) { return _mm_cvtps_pd(_mm_movehl_ps(v, v)); }
#endif

// As many doubles as there are floats in a vector.
struct Doubles {
    Vec<Zel64f> low, high;

    friend Doubles operator+(Doubles a, Doubles b) { return {a.low + b.low, a.high + b.high}; }
    friend Doubles operator-(Doubles a, Doubles b) { return {a.low - b.low, a.high - b.high}; }
    friend Doubles operator*(Doubles a, Doubles b) { return {a.low * b.low, a.high * b.high}; }
    friend Doubles operator/(Doubles a, Doubles b) { return {a.low / b.low, a.high / b.high}; }
};

inline Doubles loadDoubles(const Zel64f* from) { return {load(from), load(from + kLanes<Zel64f>)}; }
inline void store(Zel64f* to, Doubles v)
{
    store(to, v.low);
    store(to + kLanes<Zel64f>, v.high);
}
inline void storePartial(Zel64f* to, Doubles v, int count) { std::memcpy(to, &v, sizeof(*to) * std::size_t(count)); }
inline Doubles toDoubles(Doubles v) { return v; }
inline Doubles toDoubles(Vec<Zel32f> v) { return {widenLow(v), widenHigh(v)}; }
inline Doubles splatDoubles(Zel64f value) { return {splat(value), splat(value)}; }

#if defined(__AVX2__)
inline Doubles toDoubles(Vec<Zel32s> v)
{
    return {_mm256_cvtepi32_pd(_mm256_castsi256_si128(__m256i(v))),
            _mm256_cvtepi32_pd(_mm256_extracti128_si256(__m256i(v), 1))};
}
inline Vec<Zel32f> toFloat(Doubles v) { return _mm256_set_m128(_mm256_cvtpd_ps(v.high), _mm256_cvtpd_ps(v.low)); }
#else
inline Doubles toDoubles(Vec<Zel32s> v)
{
    return {_mm_cvtepi32_pd(__m128i(v)), _mm_cvtepi32_pd(_mm_unpackhi_epi64(__m128i(v), __m128i(v)))};
}
inline Vec<Zel32f> toFloat(Doubles v) { return _mm_movelh_ps(_mm_cvtpd_ps(v.low), _mm_cvtpd_ps(v.high)); }
#endif

inline Vec<Zel32f> squareRoot(Vec<Zel32f> v) { return ZELCV_REGISTER(sqrt_ps)(v); }
inline Doubles squareRoot(Doubles v) { return {ZELCV_REGISTER(sqrt_pd)(v.low), ZELCV_REGISTER(sqrt_pd)(v.high)}; }

// The larger of each; b where either is NaN.
inline Vec<Zel32f> maximum(Vec<Zel32f> a, Vec<Zel32f> b) { return ZELCV_REGISTER(max_ps)(a, b); }
inline Doubles maximum(Doubles a, Doubles b)
{
    return {ZELCV_REGISTER(max_pd)(a.low, b.low), ZELCV_REGISTER(max_pd)(a.high, b.high)};
}

// Cuts toward zero. Numbers outside the range of 32 bits, and NaN, become its minimum.
inline Vec<Zel32s> truncate(Doubles v)
{
#if defined(__AVX2__)
    return Vec<Zel32s>(_mm256_set_m128i(_mm256_cvttpd_epi32(v.high), _mm256_cvttpd_epi32(v.low)));
#else
    return Vec<Zel32s>(_mm_unpacklo_epi64(_mm_cvttpd_epi32(v.low), _mm_cvttpd_epi32(v.high)));
#endif
}

// ---- extremes, lanes under masks

inline Vec<Zel8u> minimum(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(ZELCV_REGISTER(min_epu8)(IntRegister(a), IntRegister(b)));
}
inline Vec<Zel8u> maximum(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return Vec<Zel8u>(ZELCV_REGISTER(max_epu8)(IntRegister(a), IntRegister(b)));
}
#if defined(__AVX2__)
inline Vec<Zel16u> minimum(Vec<Zel16u> a, Vec<Zel16u> b) { return Vec<Zel16u>(_mm256_min_epu16(__m256i(a), __m256i(b))); }
inline Vec<Zel16u> maximum(Vec<Zel16u> a, Vec<Zel16u> b) { return Vec<Zel16u>(_mm256_max_epu16(__m256i(a), __m256i(b))); }
#else
inline Vec<Zel16u> minimum(Vec<Zel16u> a, Vec<Zel16u> b) { return a - subtractSaturating(a, b); }
inline Vec<Zel16u> maximum(Vec<Zel16u> a, Vec<Zel16u> b) { return b + subtractSaturating(a, b); }
#endif

// As many mask bytes as a vector of T has lanes, each as a lane of all ones where it is not zero.
template <class T>
auto loadLaneMask(const Zel8u* from)
{
    if constexpr (sizeof(T) == 1) {
        return load(from) != 0;
    } else if constexpr (sizeof(T) == 2) {
#if defined(__AVX2__)
        return Vec<Zel16s>(_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)))) != 0;
#else
        const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
        return Vec<Zel16s>(_mm_unpacklo_epi8(bytes, bytes)) != 0;
#endif
    } else {
        return loadMask(from);
    }
}

template <class Mask>
bool anyLane(Mask mask)
{
    return ZELCV_REGISTER(movemask_epi8)(IntRegister(mask)) != 0;
}

// ---- statistics: sums over lanes, masks

// The sums of each eight bytes.
inline Vec<std::uint64_t> sumBytes(Vec<Zel8u> v)
{
    return Vec<std::uint64_t>(ZELCV_REGISTER(sad_epu8)(IntRegister(v), IntRegister{}));
}

// By 64 and more: 0.
inline Vec<std::uint64_t> shiftLeft(Vec<std::uint64_t> v, std::int64_t count)
{
    return Vec<std::uint64_t>(ZELCV_REGISTER(sll_epi64)(IntRegister(v), _mm_cvtsi64_si128(count)));
}

// The sums of the two 32-bit halves of each 64-bit lane.
inline Vec<std::uint64_t> sumHalves(Vec<Zel32u> v)
{
    return (Vec<std::uint64_t>(v) & 0xffffffffu) + (Vec<std::uint64_t>(v) >> 32);
}

// The first and the second half of the lanes of a mask, widened.
#if defined(__AVX2__)
inline Vec<std::int64_t> widenLow(Vec<Zel32s> mask)
{
    return Vec<std::int64_t>(_mm256_cvtepi32_epi64(_mm256_castsi256_si128(__m256i(mask))));
}
inline Vec<std::int64_t> widenHigh(Vec<Zel32s> mask)
{
    return Vec<std::int64_t>(_mm256_cvtepi32_epi64(_mm256_extracti128_si256(__m256i(mask), 1)));
}
#else
inline Vec<std::int64_t> widenLow(Vec<Zel32s> mask)
{
    return Vec<std::int64_t>(_mm_unpacklo_epi32(__m128i(mask), __m128i(mask)));
}
inline Vec<std::int64_t> widenHigh(Vec<Zel32s> mask)
{
    return Vec<std::int64_t>(_mm_unpackhi_epi32(__m128i(mask), __m128i(mask)));
}
#endif

// -128 becomes 128.
inline Vec<Zel8u> absolute(Vec<Zel8s> v)
{
    return Vec<Zel8u>(ZELCV_REGISTER(min_epu8)(IntRegister(v), ZELCV_REGISTER(sub_epi8)(IntRegister{}, IntRegister(v))));
}

inline Vec<Zel8u> absoluteDifference(Vec<Zel8s> a, Vec<Zel8s> b)
{
    return absoluteDifference(Vec<Zel8u>(a) ^ 0x80, Vec<Zel8u>(b) ^ 0x80);
}

inline Vec<Zel32u> interleaveLow(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return Vec<Zel32u>(interleaveLow(Vec<Zel16s>(a), Vec<Zel16s>(b)));
}
inline Vec<Zel32u> interleaveHigh(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return Vec<Zel32u>(interleaveHigh(Vec<Zel16s>(a), Vec<Zel16s>(b)));
}

// ---- one channel of three

#if !defined(__AVX2__)
// Of 48 bytes those at 0, 3, 6, ... To interleave the first half with the second one moves byte i to 2i mod 47. Done four
// times, that is 16i mod 47, which takes 3i to i.
inline Vec<Zel8u> everyThird(const Zel8u* from)
{
    IntRegister a = IntRegister(load(from)), b = IntRegister(load(from + 16)), c = IntRegister(load(from + 32));
    for (int time = 0; time < 4; ++time) {
        const IntRegister secondOfB = _mm_unpackhi_epi64(b, b), around = _mm_unpacklo_epi64(secondOfB, c);
        const IntRegister lowest = _mm_unpacklo_epi8(a, around), middle = _mm_unpackhi_epi8(a, around);
        c = _mm_unpacklo_epi8(b, _mm_unpackhi_epi64(c, c));
        a = lowest;
        b = middle;
    }
    return Vec<Zel8u>(a);
}
#endif

// to[i] = from[3 * i]
template <class T>
void copyEveryThird(T* to, const T* from, int count)
{
    int i = 0;
#if !defined(__AVX2__) // in the wide build the compiler does as well
    if constexpr (sizeof(T) == 1)
        for (; i < count - 16; i += 16)
            store(reinterpret_cast<Zel8u*>(to + i), everyThird(reinterpret_cast<const Zel8u*>(from + std::ptrdiff_t(3) * i)));
#endif
    for (; i < count; ++i) to[i] = from[std::ptrdiff_t(3) * i];
}

// ---- rows side by side: what works within each 16 bytes keeps them apart

constexpr int kRowsInVector = kVectorBytes / 16;

// The next 16 bytes of each row.
template <class T>
Vec<T> loadRows(const T* const* rows)
{
#if defined(__AVX2__)
    return Vec<T>(_mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(rows[1]), reinterpret_cast<const __m128i*>(rows[0])));
#else
    return load(rows[0]);
#endif
}

// The next 8 mask bytes of each row, as lanes of 16 bits that are all ones where the byte is not zero.
inline Vec<Zel16u> loadWordMaskRows(const Zel8u* const* rows)
{
    const auto eight = [=](int row) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(rows[row])); };
#if defined(__AVX2__)
    const Vec<Zel8u> bytes = Vec<Zel8u>(_mm256_set_m128i(eight(1), eight(0)));
#else
    const Vec<Zel8u> bytes = Vec<Zel8u>(eight(0));
#endif
    return Vec<Zel16u>(Vec<Zel16s>(interleaveLow(bytes, bytes)) != 0);
}

} // namespace zelcv
