// The vector itself: Vec<T> is a register full of T, as wide as the build allows. A kernel asks kLanes<T> and knows nothing
// else of the width. Arithmetic, comparison and selection (mask ? a : b) are the compiler's own on vector types; a comparison
// gives lanes of all ones and zeros, of signed integers as wide as what was compared.
#pragma once

#include "zelcv.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

// The instruction set of the build. SSE2 and AVX2 are the only ones that are known by name; without them, or where told, all
// operations are those of plain compiler vectors.
#if !defined(ZELCV_PORTABLE) && defined(__AVX2__)
#  define ZELCV_AVX2 1
#elif !defined(ZELCV_PORTABLE) && defined(__SSE2__)
#  define ZELCV_SSE2 1
#endif

// Inlined always: small functions whose arguments and results are to stay in registers.
#define ZELCV_INLINE __attribute__((always_inline))

namespace zelcv {

#if defined(ZELCV_AVX2)
constexpr int kVectorBytes = 32;
constexpr bool kLoadsWiden = true; // a load that widens (loadWidened) costs what a load costs
#else
constexpr int kVectorBytes = 16;
constexpr bool kLoadsWiden = false;
#endif

template <class T>
constexpr int kLanes = kVectorBytes / int(sizeof(T));

template <class T>
struct VecOf {
    typedef T type __attribute__((vector_size(kVectorBytes)));
    typedef T InMemory __attribute__((vector_size(kVectorBytes), aligned(1), may_alias));
    typedef T Aligned __attribute__((vector_size(kVectorBytes), aligned(kVectorBytes), may_alias));
};
template <class T>
using Vec = typename VecOf<T>::type;

template <class V>
using LaneOf = std::remove_cvref_t<decltype(std::declval<V>()[0])>;

// ---- memory: no alignment needed

template <class T>
Vec<T> load(const T* from)
{
    return *reinterpret_cast<const typename VecOf<T>::InMemory*>(from);
}

// From an address that is a multiple of kVectorBytes: SSE2 can take it as an operand, and then a load costs nothing.
template <class T>
Vec<T> loadAligned(const T* from)
{
    return *reinterpret_cast<const typename VecOf<T>::Aligned*>(from);
}

template <class T>
void store(T* to, Vec<T> v)
{
    *reinterpret_cast<typename VecOf<T>::InMemory*>(to) = v;
}

// Full vectors by one load; of the last one of a row the `count` elements that are left, then zeros.
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

// Each 16 bytes of the vector from their own place: `from`, `from` + `apart`, ...
template <class T>
Vec<T> loadGroups(const T* from, [[maybe_unused]] std::ptrdiff_t apart)
{
    if constexpr (kVectorBytes == 16) {
        return load(from);
    } else {
        typedef T Half __attribute__((vector_size(16)));
        Half first, second;
        std::memcpy(&first, from, sizeof first);
        std::memcpy(&second, from + apart, sizeof second);
        return [&]<int... i>(std::integer_sequence<int, i...>) {
            return __builtin_shufflevector(first, second, i...);
        }(std::make_integer_sequence<int, kLanes<T>>());
    }
}

// The first `bytes` bytes: 4, 8, 16 or all; zeros behind.
template <int bytes>
Vec<Zel8u> loadFirst(const Zel8u* from)
{
    if constexpr (bytes == kVectorBytes) {
        return load(from);
    } else if constexpr (bytes == 4) {
        Zel32u word;
        std::memcpy(&word, from, sizeof word);
        return Vec<Zel8u>(Vec<Zel32u>{word});
    } else {
        std::uint64_t words[2] = {};
        std::memcpy(words, from, bytes);
        return Vec<Zel8u>(Vec<std::uint64_t>{words[0], words[1]});
    }
}

template <class T>
Vec<T> splat(T value)
{
    return value - Vec<T>{}; // the compiler's broadcast; x - 0 is x also for a negative zero
}

// The same, computed here and now: compilers regroup long chains of comparisons, and then load what they could compare with
// in memory.
template <class V>
ZELCV_INLINE inline V inThisOrder(V v)
{
#if defined(ZELCV_AVX2) || defined(ZELCV_SSE2)
    asm("" : "+x"(v));
#endif
    return v;
}

// Two 16-bit numbers in memory, in all pairs of lanes.
ZELCV_INLINE inline Vec<Zel16s> splatPair(const Zel16s* from)
{
    Zel32s both;
    std::memcpy(&both, from, sizeof both);
    return Vec<Zel16s>(splat(both));
}

// ---- several vectors one behind the other, with arithmetic part by part

template <class V, int n>
struct Group {
    V part[n];
};
// As many doubles as there are floats in a vector.
using Doubles = Group<Vec<Zel64f>, 2>;

// operation(x, ...) of the parts x, ... of groups.
template <class Operation, class V, int n, class... Others>
ZELCV_INLINE inline auto forParts(const Operation& operation, const Group<V, n>& first, const Group<Others, n>&... others)
{
    Group<decltype(operation(first.part[0], others.part[0]...)), n> result;
    for (int i = 0; i < n; ++i) result.part[i] = operation(first.part[i], others.part[i]...);
    return result;
}
template <class V, int n>
ZELCV_INLINE inline Group<V, n> operator+(const Group<V, n>& a, const Group<V, n>& b)
{
    return forParts([](V x, V y) { return x + y; }, a, b);
}
template <class V, int n>
ZELCV_INLINE inline Group<V, n> operator-(const Group<V, n>& a, const Group<V, n>& b)
{
    return forParts([](V x, V y) { return x - y; }, a, b);
}
template <class V, int n>
ZELCV_INLINE inline Group<V, n> operator*(const Group<V, n>& a, const Group<V, n>& b)
{
    return forParts([](V x, V y) { return x * y; }, a, b);
}
template <class V, int n>
ZELCV_INLINE inline Group<V, n> operator/(const Group<V, n>& a, const Group<V, n>& b)
{
    return forParts([](V x, V y) { return x / y; }, a, b);
}
template <class V, int n>
ZELCV_INLINE inline Group<V, n> operator&(const Group<V, n>& a, const Group<V, n>& b)
{
    return forParts([](V x, V y) { return x & y; }, a, b);
}

template <class V, int n, class T>
ZELCV_INLINE inline void store(T* to, const Group<V, n>& group)
{
    for (int i = 0; i < n; ++i) store(to + i * int(sizeof(V) / sizeof(T)), group.part[i]);
}

ZELCV_INLINE inline Doubles loadDoubles(const Zel64f* from) { return {load(from), load(from + kLanes<Zel64f>)}; }
ZELCV_INLINE inline Doubles splatDoubles(Zel64f value) { return {splat(value), splat(value)}; }

} // namespace zelcv
