// The operations that a compiler's vectors lack, lane by lane: what each of them means. The files of the instruction sets give
// the same bits in fewer instructions.
#pragma once

#include "vector/vec.h"

#include <cmath>
#include <limits>

namespace zelcv::portable {

// lane(i) for each lane of a vector of T.
template <class T, class Lane>
inline Vec<T> lanes(const Lane& lane)
{
    Vec<T> v = {};
    for (int i = 0; i < kLanes<T>; ++i) v[i] = lane(i);
    return v;
}

// The element i of a group of vectors.
template <class V, int n>
inline auto elementOf(const Group<V, n>& group, int i)
{
    constexpr int count = kLanes<LaneOf<V>>;
    return group.part[i / count][i % count];
}

// ---- arithmetic

// a - b, or 0 where that is negative.
template <class V>
inline V subtractSaturating(V a, V b)
{
    using T = LaneOf<V>;
    return lanes<T>([=](int i) { return a[i] > b[i] ? T(a[i] - b[i]) : T(0); });
}

// a + b, or 255 where that is more.
inline Vec<Zel8u> addSaturating(Vec<Zel8u> a, Vec<Zel8u> b)
{
    return lanes<Zel8u>([=](int i) { return Zel8u(a[i] + b[i] < 255 ? a[i] + b[i] : 255); });
}

// The smaller of each, and the larger; b where either is NaN, and of zeros.
template <class V>
inline V minimum(V a, V b)
{
    return a < b ? a : b;
}
template <class V>
inline V maximum(V a, V b)
{
    return a > b ? a : b;
}

// a[2i] * b[2i] + a[2i + 1] * b[2i + 1], wrapping at 32 bits.
inline Vec<Zel32u> multiplyAddPairs(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return lanes<Zel32u>([=](int i) {
        return Zel32u(Zel32s(a[2 * i]) * b[2 * i]) + Zel32u(Zel32s(a[2 * i + 1]) * b[2 * i + 1]);
    });
}

// The upper 16 bits of the products.
inline Vec<Zel16s> multiplyHigh(Vec<Zel16s> a, Vec<Zel16s> b)
{
    return lanes<Zel16s>([=](int i) { return Zel16s(Zel32s(a[i]) * b[i] >> 16); });
}
inline Vec<Zel16u> multiplyHigh(Vec<Zel16u> a, Vec<Zel16u> b)
{
    return lanes<Zel16u>([=](int i) { return Zel16u(Zel32u(a[i]) * b[i] >> 16); });
}

// The sums of each two bytes.
inline Vec<Zel16u> addBytePairs(Vec<Zel8u> v)
{
    return lanes<Zel16u>([=](int i) { return Zel16u(v[2 * i] + v[2 * i + 1]); });
}

// The sums of each eight bytes.
inline Vec<std::uint64_t> sumBytes(Vec<Zel8u> v)
{
    return lanes<std::uint64_t>([=](int i) {
        std::uint64_t sum = 0;
        for (int k = 0; k < 8; ++k) sum += v[8 * i + k];
        return sum;
    });
}

template <class V>
inline V squareRoot(V v)
{
    return lanes<LaneOf<V>>([=](int i) { return std::sqrt(v[i]); });
}

// By 64 and more: 0. Not below 0.
inline Vec<std::uint64_t> shiftLeft(Vec<std::uint64_t> v, std::int64_t count)
{
    return count < 64 ? v << splat(std::uint64_t(count)) : Vec<std::uint64_t>{};
}

// ---- widening and narrowing

// All elements in order, as numbers of a type To that holds them exactly.
template <class To, class V>
inline auto widen(V v)
{
    constexpr int n = int(sizeof(To) / sizeof(v[0]));
    Group<Vec<To>, n> wide;
    for (int i = 0; i < n; ++i) wide.part[i] = lanes<To>([=](int lane) { return To(v[i * kLanes<To> + lane]); });
    return wide;
}
template <class To, class T>
inline auto loadWidened(const T* from)
{
    return widen<To>(load(from));
}

// Cut toward zero. Numbers outside the range of 32 bits, and NaN, become its minimum.
template <class Real>
inline Zel32s truncated(Real x)
{
    return x > Real(-2147483649.0) && x < Real(2147483648.0) ? Zel32s(x) : std::numeric_limits<Zel32s>::min();
}
inline Vec<Zel32s> truncate(Vec<Zel32f> v)
{
    return lanes<Zel32s>([=](int i) { return truncated(v[i]); });
}
inline Vec<Zel32s> truncate(const Doubles& v)
{
    return lanes<Zel32s>([=](int i) { return truncated(elementOf(v, i)); });
}

// Rounded to single precision. The result goes through memory, out of the compiler's sight: GCC 12 makes one conversion of
// vectors of these, and leaves it out with the one back to double that follows.
inline Vec<Zel32f> toFloat(const Doubles& v)
{
    Vec<Zel32f> rounded = lanes<Zel32f>([=](int i) { return Zel32f(elementOf(v, i)); });
    asm("" : "+m"(rounded));
    return rounded;
}

// The elements of a, then those of b, limited to the range of To: within each 16 bytes of the vectors.
template <class To, class V>
inline Vec<To> narrowPairs(V a, V b)
{
    using Limits = std::numeric_limits<To>;
    using From = LaneOf<V>;
    constexpr int group = 16 / int(sizeof(To)), half = group / 2;
    return lanes<To>([=](int i) {
        const int at = i / group * half + i % half;
        const From x = i % group < half ? a[at] : b[at];
        return To(x < From(Limits::min()) ? From(Limits::min()) : x > From(Limits::max()) ? From(Limits::max()) : x);
    });
}

// ---- masks

// A bit for each lane, the first one's lowest: its highest bit.
template <class V>
inline Zel32u laneBits(V mask)
{
    Zel32u bits = 0;
    for (int i = 0; i < int(sizeof(V) / sizeof(mask[0])); ++i) bits |= Zel32u(mask[i] < 0) << i;
    return bits;
}

// ---- shuffles

// The bytes of each 16 moved `count` places up; zeros come in below.
template <int count>
inline Vec<Zel8u> shiftBytesUp(Vec<Zel8u> v)
{
    return lanes<Zel8u>([=](int i) { return i % 16 < count ? Zel8u(0) : v[i - count]; });
}
// The same down; zeros come in above.
template <int count>
inline Vec<Zel8u> shiftBytesDown(Vec<Zel8u> v)
{
    return lanes<Zel8u>([=](int i) { return i % 16 + count < 16 ? v[i + count] : Zel8u(0); });
}

// The bytes of the whole vector moved `count` places up, 16 at the most; zeros come in below.
template <int count>
inline Vec<Zel8u> shiftAllUp(Vec<Zel8u> v)
{
    return lanes<Zel8u>([=](int i) { return i < count ? Zel8u(0) : v[i - count]; });
}
template <int count>
inline Vec<Zel8u> shiftAllDown(Vec<Zel8u> v)
{
    return lanes<Zel8u>([=](int i) { return i + count < kVectorBytes ? v[i + count] : Zel8u(0); });
}

} // namespace zelcv::portable
