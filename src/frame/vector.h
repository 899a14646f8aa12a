// The vector layer: Vec<T> is a register full of T, as wide as the build allows; a kernel asks kLanes<T> and knows nothing
// else of the width. Arithmetic, comparison and selection (mask ? a : b) are the compiler's own on vector types; here stand
// the operations that the language lacks. Each is one or a few instructions.
#pragma once

#include "zelcv.h"

#include <cstring>
#include <immintrin.h>

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

// The first `count` lanes; the others are 0.
template <class T>
Vec<T> loadPartial(const T* from, int count)
{
    Vec<T> v = {};
    std::memcpy(&v, from, sizeof(T) * std::size_t(count));
    return v;
}

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

// ---- rows

// dst[i] = operation(src[i]...) for `count` elements, all of one size. Exact overlap of dst with a source is allowed: each
// element is read before it is written.
template <class D, class Operation, class... S>
void mapRow(D* dst, int count, const Operation& operation, const S*... src)
{
    int i = 0;
    for (; i <= count - kLanes<D>; i += kLanes<D>) store(dst + i, operation(load(src + i)...));
    if (i < count) storePartial(dst + i, operation(loadPartial(src + i, count - i)...), count - i);
}

} // namespace zelcv
