// The vector layer: Vec<T> is a register full of T, as wide as the build allows; a kernel asks kLanes<T> and knows nothing
// else of the width. Arithmetic, comparison and selection (mask ? a : b) are the compiler's own on vector types; here stand
// the operations that the language lacks. Each is one or a few instructions.
#pragma once

#include "zelcv.h"

#include <cstddef>
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
    Vec<T> v;
    std::memcpy(&v, from, sizeof v);
    return v;
}

template <class T>
void store(T* to, Vec<T> v)
{
    std::memcpy(to, &v, sizeof v);
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

// ---- rows

// How mapRow reads a source: whatever has a pointer `from` and gives the vector of its elements from i on.
template <class T>
struct Elements {
    const T* from;
    Vec<T> at(int i) const { return load(from + i); }
};
// dst[i] = operation(source.at(i)...) for `count` elements. The tail goes through the same operation on padded copies. Exact
// overlap of dst with a source is allowed: each element is read before it is written.
template <class D, class Operation, class... Sources>
void mapRow(D* dst, int count, const Operation& operation, Sources... sources)
{
    int i = 0;
    for (; i <= count - kLanes<D>; i += kLanes<D>) store(dst + i, operation(sources.at(i)...));
    if (i == count) return;
    const auto tail = [i, rest = count - i](auto source) {
        std::remove_cvref_t<decltype(*source.from)> padded[kLanes<D>] = {};
        std::memcpy(padded, source.from + i, sizeof(*padded) * std::size_t(rest));
        return decltype(source){padded}.at(0);
    };
    storePartial(dst + i, operation(tail(sources)...), count - i);
}

} // namespace zelcv
