// What the two halves of a separable filter share: scratch sizes, the sums over taps, and what becomes of a sum.
//
// Both halves are one computation, dst[i] = f(sum over j of kernel[j] * tap(j)[i]): in the row half tap(j) is the row itself,
// j pixels on, in the column half it is row j of a list. A block of kBlock elements is computed at a time.
#pragma once

#include "machine.h"
#include "quotients.h"
#include "scratch.h"
#include "vector/vector.h"
#include "wrapping.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <type_traits>
#include <utility>

namespace zelcv {

// ---- scratch

// What one thread needs besides its share of the row list: perTap bytes for each tap, and some.
struct WorkingArea {
    int perTap, fixed;

    template <class Number>
    constexpr Number share(int height, int kernelSize) const
    {
        return Number(32) + Number(8) * (Number(height) + Number(kernelSize)) + Number(perTap) * Number(kernelSize) +
               Number(fixed);
    }
};

inline ZelStatus checkPipelineSize(ZeliSize roi, int kernelSize)
{
    return roi.width < 1 || roi.height < 1 || kernelSize < 1 ? zelStatusBadSize : zelStatusOk;
}

inline ZelStatus pipelineBufferSize(WorkingArea area, ZeliSize roi, int kernelSize, int* bufferSize)
{
    if (!bufferSize) return zelStatusNullPointer;
    if (auto status = checkPipelineSize(roi, kernelSize)) return status;
    *bufferSize = (Wrapped(ownGetThreadCount()) * area.share<Wrapped>(roi.height, kernelSize)).value();
    return zelStatusOk;
}

// The part of the caller's buffer that belongs to one thread.
inline Carver threadScratch(WorkingArea area, ZeliSize roi, int kernelSize, Zel8u* buffer, int thread)
{
    return Carver(buffer + area.share<std::int64_t>(roi.height, kernelSize) * thread);
}

// ---- sources

constexpr int kBlock = kVectorBytes;

template <class T>
struct Block {
    Vec<T> part[sizeof(T)];
};

template <class T, int Channels>
struct AlongRow {
    using Element = T;
    const T* row;
    const T* tap(int j) const { return row + std::ptrdiff_t(Channels) * j; }
};

// N rows, or any number where that is 0.
template <class T, int N>
class AcrossRows {
public:
    using Element = T;
    explicit AcrossRows(const T* const* rows) { std::copy_n(rows, N, rows_); } // where no store can change them
    const T* tap(int j) const { return rows_[j]; }

private:
    const T* rows_[N];
};
template <class T>
class AcrossRows<T, 0> {
public:
    using Element = T;
    explicit AcrossRows(const T* const* rows) : rows_(rows) {}
    const T* tap(int j) const { return rows_[j]; }

private:
    const T* const* rows_;
};

// Fewer than kBlock elements of a source, followed by zeros. What tap() returns holds until the next call but one.
template <class Source>
class PaddedSource {
public:
    using Element = typename Source::Element;
    PaddedSource(const Source& source, int count) : source_(source), bytes_(sizeof(Element) * std::size_t(count)) {}
    const Element* tap(int j)
    {
        std::memcpy(copies_[j & 1], source_.tap(j), bytes_);
        return copies_[j & 1];
    }

private:
    Source source_;
    std::size_t bytes_;
    Element copies_[2][kBlock] = {};
};

// The sizes of the taps added up, or any number above the limit.
inline int weight(const Zel16s* kernel, int taps, int limit)
{
    int sum = 0;
    for (int j = 0; j < taps && sum <= limit; ++j) sum += std::abs(int(kernel[j]));
    return sum;
}

// What a kernel makes of its N taps, or of pairs of them. Copied one by one, so that a copy may live in registers.
template <class V, int N>
struct TapVectors {
    V v[N];

    TapVectors() = default;
    ZELCV_INLINE TapVectors(const TapVectors& other)
    {
        [&]<int... j>(std::integer_sequence<int, j...>) ZELCV_INLINE {
            ((v[j] = other.v[j]), ...);
        }(std::make_integer_sequence<int, N>());
    }
    V& operator[](int j) { return v[j]; }
    const V& operator[](int j) const { return v[j]; }
};
template <class V>
struct TapVectors<V, 0> {};

// ---- sums over taps. N is the number of taps where it is known to the compiler, or 0.

// 32-bit integers that wrap, of two taps at a time.
template <class S, int N>
class IntegerSums {
public:
    static constexpr int kTaps = N;
    IntegerSums(const Zel16s* kernel, int taps) : kernel_(kernel), taps_(taps)
    {
        if constexpr (N > 0)
            for (int j = 0; j < N; j += 2) pairs_[j / 2] = j + 1 < N ? loadPair(j) : loadSingle(j);
    }

    template <class Source>
    ZELCV_INLINE Block<Zel32u> operator()(Source& source, std::ptrdiff_t i) const
    {
        const int taps = N > 0 ? N : taps_;
        Block<Zel32u> sums = {};
        for (int j = 0; j < taps - 1; j += 2)
            addPair(sums, [&](int at) { return load(source.tap(j) + i + at); },
                    [&](int at) { return load(source.tap(j + 1) + i + at); }, pair(j));
        if (taps % 2 != 0)
            addPair(sums, [&](int at) { return load(source.tap(taps - 1) + i + at); }, [](int) { return Vec<S>{}; },
                    single(taps - 1));
        return sums;
    }

    // Puts 16-bit results in the order of the row.
    static void arrange(Vec<Zel16s>& a, Vec<Zel16s>& b)
    {
        if constexpr (sizeof(S) == 1) {
            const auto sorted = sortGroups(a, b);
            a = sorted.part[0];
            b = sorted.part[1];
        }
    }

private:
    Vec<Zel16s> pair(int j) const
    {
        if constexpr (N > 0) return pairs_[j / 2];
        else return loadPair(j);
    }
    Vec<Zel16s> single(int j) const
    {
        if constexpr (N > 0) return pairs_[j / 2];
        else return loadSingle(j);
    }
    Vec<Zel16s> loadPair(int j) const { return splatPair(kernel_ + j); }
    Vec<Zel16s> loadSingle(int j) const
    {
        Zel16u tap;
        std::memcpy(&tap, kernel_ + j, sizeof tap);
        return Vec<Zel16s>(splat(Zel32u(tap)));
    }

    template <class First, class Second>
    ZELCV_INLINE static void addPair(Block<Zel32u>& sums, const First& first, const Second& second, Vec<Zel16s> taps)
    {
        if constexpr (sizeof(S) == 1) {
            const Vec<Zel8u> a = first(0), b = second(0), zero = {};
            const Vec<Zel8u> halves[] = {interleaveLow(a, b), interleaveHigh(a, b)};
            for (int h = 0; h < 2; ++h) {
                sums.part[2 * h] += multiplyAddPairs(Vec<Zel16s>(interleaveLow(halves[h], zero)), taps);
                sums.part[2 * h + 1] += multiplyAddPairs(Vec<Zel16s>(interleaveHigh(halves[h], zero)), taps);
            }
        } else {
            for (int h = 0; h < 2; ++h) {
                const Vec<Zel16s> a = first(h * kLanes<Zel16s>), b = second(h * kLanes<Zel16s>);
                sums.part[2 * h] += multiplyAddPairs(interleaveLow(a, b), taps);
                sums.part[2 * h + 1] += multiplyAddPairs(interleaveHigh(a, b), taps);
            }
        }
    }

    const Zel16s* kernel_;
    int taps_;
    TapVectors<Vec<Zel16s>, (N + 1) / 2> pairs_;
};

// 16-bit integers, of bytes under taps that no sum leaves them with.
template <int N>
class ShortSums {
public:
    static constexpr int kTaps = N;

    ShortSums(const Zel16s* kernel, int taps) : kernel_(kernel), taps_(taps)
    {
        if constexpr (N > 0)
            for (int j = 0; j < N; ++j) splats_[j] = loadTap(j);
    }

    static bool hold(const Zel16s* kernel, int taps) { return weight(kernel, taps, kLimit) <= kLimit; }

    template <class Source>
    ZELCV_INLINE Block<Zel16s> operator()(Source& source, std::ptrdiff_t i) const
    {
        const int taps = N > 0 ? N : taps_;
        Block<Zel16s> sums = {};
        for (int j = 0; j < taps; ++j) {
            const auto pixels = loadWidened<Zel16s>(source.tap(j) + i);
            const Vec<Zel16s> factor = tap(j);
            for (int p = 0; p < 2; ++p) sums.part[p] += pixels.part[p] * factor;
        }
        return sums;
    }

private:
    static constexpr int kLimit = 32767 / 255;

    Vec<Zel16s> tap(int j) const
    {
        if constexpr (N > 0) return splats_[j];
        else return loadTap(j);
    }
    Vec<Zel16s> loadTap(int j) const
    {
        Zel16s value;
        std::memcpy(&value, kernel_ + j, sizeof value);
        return splat(value);
    }

    const Zel16s* kernel_;
    int taps_;
    TapVectors<Vec<Zel16s>, N> splats_;
};

// Single precision, from 0 by rising tap.
template <class S, int N>
class FloatSums {
public:
    static constexpr int kTaps = N;
    // 16-bit elements enter as 65536 times their value; the taps of their kernel are to be smaller by this factor.
    static constexpr Zel32f kTapScale = std::is_same_v<S, Zel16s> ? 0x1p-16f : 1.0f;

    FloatSums(const Zel32f* kernel, int taps) : kernel_(kernel), taps_(taps)
    {
        if constexpr (N > 0)
            for (int j = 0; j < N; ++j) splats_[j] = loadTap(j);
    }

    template <class Source>
    ZELCV_INLINE Block<Zel32f> operator()(Source& source, std::ptrdiff_t i) const
    {
        const int taps = N > 0 ? N : taps_;
        Block<Zel32f> sums = {};
        for (int j = 0; j < taps; ++j) {
            const S* from = source.tap(j) + i;
            const Vec<Zel32f> factor = tap(j);
            if constexpr (std::is_same_v<S, Zel16s>) {
                for (int h = 0; h < 2; ++h) {
                    const Vec<Zel16s> a = load(from + h * kLanes<Zel16s>), zero = {};
                    sums.part[2 * h] += toFloat(Vec<Zel32s>(interleaveLow(zero, a))) * factor;
                    sums.part[2 * h + 1] += toFloat(Vec<Zel32s>(interleaveHigh(zero, a))) * factor;
                }
            } else {
                for (int p = 0; p < 4; ++p) sums.part[p] += load(from + p * kLanes<S>) * factor;
            }
        }
        return sums;
    }

    static void arrange(Vec<Zel16s>&, Vec<Zel16s>&) {}

private:
    Vec<Zel32f> tap(int j) const
    {
        if constexpr (N > 0) return splats_[j];
        else return loadTap(j);
    }
    Vec<Zel32f> loadTap(int j) const
    {
        Zel32f value;
        std::memcpy(&value, kernel_ + j, sizeof value);
        return splat(value);
    }

    const Zel32f* kernel_;
    int taps_;
    TapVectors<Vec<Zel32f>, N> splats_;
};

// Single-precision sums of 16-bit elements equal the integer sums while no partial sum can exceed 24 bits.
inline bool integerSumsAreExact(const Zel16s* kernel, int taps)
{
    constexpr int kLimit = (1 << 24) / 32768;
    return weight(kernel, taps, kLimit) <= kLimit;
}

// (float)tap * scale for FloatSums over 16-bit elements.
inline const Zel32f* floatTaps(const Zel16s* kernel, int taps, Zel32f scale, Carver& scratch)
{
    Zel32f* values = scratch.take<Zel32f>(taps);
    for (int j = 0; j < taps; ++j) values[j] = Zel32f(kernel[j]) * scale * FloatSums<Zel16s, 0>::kTapScale;
    return values;
}

// ---- from sums to elements

// Sums of four vectors, made 16 bits each by narrow(Vec) and the limits of Out.
template <class Out, class Sums, class Accumulator, class Narrow>
ZELCV_INLINE inline Block<Out> narrowSums(const Block<Accumulator>& sums, const Narrow& narrow)
{
    Vec<Zel16s> a = narrowPairs<Zel16s>(narrow(sums.part[0]), narrow(sums.part[1]));
    Vec<Zel16s> b = narrowPairs<Zel16s>(narrow(sums.part[2]), narrow(sums.part[3]));
    Sums::arrange(a, b);
    if constexpr (sizeof(Out) == 2)
        return {{a, b}};
    else
        return {{narrowInOrder<Out>(a, b)}};
}

inline Vec<Zel32f> asFloat(Vec<Zel32u> sums) { return toFloat(Vec<Zel32s>(sums)); }
inline Vec<Zel32f> asFloat(Vec<Zel32f> sums) { return sums; }
inline Vec<Zel32s> lowHalf(Vec<Zel32u> v) { return Vec<Zel32s>(v << 16) >> 16; }

// trunc(clip(sum * factor)) to the range of Out.
template <class D>
class Scaled {
public:
    using Out = D;
    explicit Scaled(Zel32f factor) : factor_(factor), isOne_(factor == 1.0f), isMinusOne_(factor == -1.0f) {}

    template <class Sums>
    ZELCV_INLINE Block<Out> finish(const Block<Zel32u>& sums) const
    {
        if (isOne_) // what rounding to 24 bits would change lies outside the range of Out
            return narrowSums<Out, Sums>(sums, [](Vec<Zel32u> v) { return Vec<Zel32s>(v); });
        if (isMinusOne_) // the one that can make 2^31
            return narrowSums<Out, Sums>(sums, [](Vec<Zel32u> v) { return truncate(limited(-asFloat(v))); });
        return narrowSums<Out, Sums>(sums, [&](Vec<Zel32u> v) { return truncate(asFloat(v) * splat(factor_)); });
    }

    template <class Sums>
    ZELCV_INLINE Block<Out> finish(const Block<Zel32f>& sums) const
    {
        return narrowSums<Out, Sums>(sums, [&](Vec<Zel32f> v) { return truncate(limited(v * splat(factor_))); });
    }

    template <class Sums>
    ZELCV_INLINE Block<Out> finish(const Block<Zel16s>& sums) const
    {
        if (isOne_) return sums;
        return {{truncatedProducts(sums.part[0], factor_), truncatedProducts(sums.part[1], factor_)}};
    }

private:
    // Narrowing limits; only what truncation would send from far above to the minimum must be caught before.
    static Vec<Zel32f> limited(Vec<Zel32f> v) { return minimum(v, splat(32767.0f)); }

    Zel32f factor_;
    bool isOne_, isMinusOne_;
};

// The low 16 bits of trunc((float)sum * factor). The factor is at most 1, so that only 2^31 itself can be out of range, and
// the minimum that stands for it has the same low bits.
struct LowScaled {
    using Out = Zel16s;
    Zel32f factor;

    template <class Sums>
    ZELCV_INLINE Block<Out> finish(const Block<Zel32u>& sums) const
    {
        return narrowSums<Out, Sums>(sums, [&](Vec<Zel32u> v) {
            return lowHalf(Vec<Zel32u>(truncate(asFloat(v) * splat(factor))));
        });
    }
};

// The low 16 bits of (sum * factor) >> 14.
struct FixedPoint {
    using Out = Zel16s;
    Zel32s factor;

    template <class Sums>
    ZELCV_INLINE Block<Out> finish(const Block<Zel32u>& sums) const
    {
        return narrowSums<Out, Sums>(sums, [&](Vec<Zel32u> v) {
            return Vec<Zel32s>((v * splat(Zel32u(factor))) << 2) >> 16;
        });
    }
};

struct AsIs {
    using Out = Zel32f;

    template <class Sums>
    ZELCV_INLINE Block<Out> finish(const Block<Zel32f>& sums) const
    {
        return sums;
    }
};

// ---- one line

template <class T>
void storeBlock(T* dst, const Block<T>& block)
{
    for (int p = 0; p < int(sizeof(T)); ++p) store(dst + p * kLanes<T>, block.part[p]);
}

// Fewer elements than a block, of a source from which a whole one may not be read.
template <class Source, class Sums, class Finish>
[[gnu::noinline]] void filterShortLine(const Source& source, typename Finish::Out* dst, int count, const Sums& sums,
                                       const Finish& finish)
{
    PaddedSource<Source> padded(source, count);
    const auto block = finish.template finish<Sums>(sums(padded, 0));
    std::memcpy(dst, &block, sizeof(*dst) * std::size_t(count));
}

// dst may be one of the rows of the source: no element is read after it was written.
template <class Source, class Sums, class Finish>
[[gnu::noinline]] void filterLine(Source source, typename Finish::Out* dst, int count, const Sums& sharedSums, Finish finish)
{
    if (count < kBlock) return filterShortLine(source, dst, count, sharedSums, finish);
    const Sums sums = sharedSums; // a copy that no store can change
    const auto blockAt = [&](std::ptrdiff_t i) ZELCV_INLINE { return finish.template finish<Sums>(sums(source, i)); };
    const std::ptrdiff_t last = count - kBlock;
    const auto lastBlock = blockAt(last);
    for (std::ptrdiff_t i = 0; i < last; i += kBlock) storeBlock(dst + i, blockAt(i));
    storeBlock(dst + last, lastBlock);
}

template <int N>
using TapCount = std::integral_constant<int, N>;

// Calls run(TapCount<N>) with the kernel size where there are kernels of their own for it, and with 0 otherwise.
template <class Run>
void withTapCount(int kernelSize, const Run& run)
{
    switch (kernelSize) {
    case 3: return run(TapCount<3>{});
    case 5: return run(TapCount<5>{});
    case 7: return run(TapCount<7>{});
    case 9: return run(TapCount<9>{});
    default: return run(TapCount<0>{});
    }
}

} // namespace zelcv
