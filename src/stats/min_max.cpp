// Minimum and maximum with position. Rows are scanned for their extremes; a row that improves on the rows above it is noted.
// Then the two rows noted are searched for the leftmost pixel that has the value. Where rows follow each other without gaps,
// some of them are scanned and noted as one.
//
// Each lane of a vector keeps the extremes of its own columns from row to row; whether a row improved on the rows above it is
// one comparison of all lanes with the values so far.
//
// NaN takes no part: it is neither smaller nor larger, and as a masked pixel it does not count.
#include "checks.h"
#include "map.h"
#include "stats/channel.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <type_traits>

using namespace zelcv;

namespace {

constexpr Gate kGate = Gate::area(0x4000);

// ---- keys: elements as the vectors compare them

template <class T>
struct Keys {
    using Key = T;
    static Vec<Key> of(Vec<T> v) { return v; }
    static T element(Key key) { return key; }
};
template <>
struct Keys<Zel8s> {
    using Key = Zel8u;
    static Vec<Key> of(Vec<Zel8s> v) { return Vec<Key>(v) ^ Key(0x80); }
    static Zel8s element(Key key) { return Zel8s(key ^ 0x80); }
};

// Values that no pixel passes: those that all pixels are compared with, and those that a masked scan begins with.
template <class Key>
struct Start {
    Key low, high;
};
template <class Key>
constexpr Start<Key> unmaskedStart()
{
    return {std::numeric_limits<Key>::max(), std::numeric_limits<Key>::lowest()};
}
template <class Key>
constexpr Start<Key> maskedStart()
{
    if constexpr (std::is_same_v<Key, Zel32f>)
        return {std::numeric_limits<Key>::infinity(), -std::numeric_limits<Key>::infinity()};
    else
        return unmaskedStart<Key>();
}

// ---- phase 1

template <class T, bool kMasked>
class Scan {
public:
    using Key = typename Keys<T>::Key;

    Scan() { std::fill_n(lanes_, kChains, Lanes{splat(now_.low), splat(now_.high), {}}); }

    void pixels(const T* x, const Zel8u* mask, int count)
    {
        if (count < kBlock) {
            T sameAgain[kBlock];
            Zel8u sameMask[kBlock];
            std::fill(std::copy_n(x, count, sameAgain), sameAgain + kBlock, *x);
            if constexpr (kMasked) std::fill(std::copy_n(mask, count, sameMask), sameMask + kBlock, *mask);
            take(lanes_, sameAgain, sameMask);
            return;
        }
        Lanes lanes[kChains];
        std::copy_n(lanes_, kChains, lanes);
        std::ptrdiff_t i = 0;
        for (; i <= count - kBlock; i += kBlock) take(lanes, x + i, mask + i);
        if (i < count) take(lanes, x + count - kBlock, mask + count - kBlock); // some pixels twice
        std::copy_n(lanes, kChains, lanes_);
    }

    // A masked pixel has been seen.
    bool found() const
    {
        return anyLane(lanes_[0].seen | lanes_[1].seen | lanes_[2].seen | lanes_[3].seen);
    }
    Key low() const { return now_.low; }
    Key high() const { return now_.high; }

    // Whether the pixels since the last call have improved the value.
    bool lowered()
    {
        const auto smaller = [](auto a, auto b) { return minimum(a, b); };
        return improved(smaller(smaller(lanes_[0].low, lanes_[1].low), smaller(lanes_[2].low, lanes_[3].low)), now_.low,
                        std::less<>());
    }
    bool raised()
    {
        const auto larger = [](auto a, auto b) { return maximum(a, b); };
        return improved(larger(larger(lanes_[0].high, lanes_[1].high), larger(lanes_[2].high, lanes_[3].high)), now_.high,
                        std::greater<>());
    }

private:
    static constexpr int kChains = 4; // chains of operations that do not wait for each other
    static constexpr int kVectors = std::max(kChains, int(sizeof(T))), kBlock = kVectors * kLanes<T>;
    using Bits = Vec<std::conditional_t<std::is_same_v<Key, Zel32f>, Zel32s, Key>>;

    struct Lanes {
        Vec<Key> low, high;
        Bits seen;

        // `selected` is read in masked scans.
        void take(Vec<Key> forLow, [[maybe_unused]] Bits selected)
        {
            Vec<Key> forHigh = forLow;
            if constexpr (kMasked) {
                forLow = Vec<Key>(Bits(forLow) | ~selected); // the largest number, or NaN
                if constexpr (std::is_same_v<Key, Zel32f>) {
                    forHigh = forLow;
                    seen |= Bits(forLow == forLow);
                } else {
                    forHigh = forHigh & selected;
                    seen |= selected;
                }
            }
            low = minimum(forLow, low);
            high = maximum(forHigh, high);
        }
    };

    // A block, in whole vectors of mask bytes.
    ZELCV_INLINE static void take(Lanes (&lanes)[kChains], const T* x, [[maybe_unused]] const Zel8u* mask)
    {
        constexpr int parts = int(sizeof(T)); // that a vector of mask bytes is for
        for (int first = 0; first < kVectors; first += parts) {
            Group<Bits, parts> selected = {};
            if constexpr (kMasked) {
                const auto wide = loadMask<T>(mask + first * kLanes<T>);
                for (int i = 0; i < parts; ++i) selected.part[i] = Bits(wide.part[i]);
            }
            for (int i = 0; i < parts; ++i)
                lanes[(first + i) % kChains].take(Keys<T>::of(load(x + (first + i) * kLanes<T>)), selected.part[i]);
        }
    }

    template <class Better>
    static bool improved(Vec<Key> lanes, Key& now, const Better& better)
    {
        if (!anyLane(better(lanes, splat(now)))) return false;
        for (int i = 0; i < kLanes<T>; ++i) {
            const Key lane = lanes[i];
            if (better(lane, now)) now = lane;
        }
        return true;
    }

    Start<Key> now_ = kMasked ? maskedStart<Key>() : unmaskedStart<Key>();
    Lanes lanes_[kChains];
};

// ---- partial results

// Some rows that were scanned as one: the first of them, and the pixels of all.
struct LongRow {
    int first, pixels;
};

template <class T>
struct Extremes {
    T min, max;
    LongRow minAt, maxAt;
    bool found;

    friend Extremes fold(Extremes all, const Extremes& next)
    {
        if (next.min < all.min) {
            all.min = next.min;
            all.minAt = next.minAt;
        }
        if (next.max > all.max) {
            all.max = next.max;
            all.maxAt = next.maxAt;
        }
        all.found |= next.found;
        return all;
    }
};

// ---- driver

template <class T, int kChannels, bool kMasked>
struct Region {
    Plane<const T> src; // from the channel of interest on
    Plane<const Zel8u> mask;
    int width;

    // Calls use(x, pixels, mask, count) for the parts of row `y`, which has `width` pixels: those of the channel, side by side.
    // Ends where it returns true.
    template <class Use>
    void forParts(int y, int pixels, const Use& use) const
    {
        const T* const row = src.row(y);
        const Zel8u* const m = kMasked ? mask.row(y) : nullptr;
        if constexpr (kChannels == 1) {
            use(0, row, m, pixels);
        } else {
            constexpr int kPart = 1024;
            T channel[kPart];
            for (int x = 0; x < pixels; x += kPart) {
                const int count = std::min(kPart, pixels - x);
                copyEveryThird(channel, row + std::ptrdiff_t(x) * 3, count);
                if (use(x, channel, kMasked ? m + x : nullptr, count)) return;
            }
        }
    }

    Extremes<T> scanBand(Band band) const
    {
        constexpr int kPixelsAtOnce = 1024; // so many are searched for a position later
        const bool gapless = isGapless(src, wrappingProduct(width, kChannels)) && (!kMasked || isGapless(mask, width));
        Scan<T, kMasked> scan;
        Extremes<T> found = {0, 0, {band.first, width}, {band.first, width}, !kMasked};
        forLongRows(band, width, gapless, std::max(1, kPixelsAtOnce / width), [&](int y, int count) {
            forParts(y, count, [&](int, const T* pixels, const Zel8u* m, int n) {
                scan.pixels(pixels, m, n);
                return false;
            });
            const bool first = !found.found && scan.found();
            if (scan.lowered() || first) found.minAt = {y, count};
            if (scan.raised() || first) found.maxAt = {y, count};
            found.found |= first;
        });
        if (found.found) {
            found.min = Keys<T>::element(scan.low());
            found.max = Keys<T>::element(scan.high());
        }
        return found;
    }

    // Phase 2: the leftmost pixel that has the value, of the first row that has one; the first pixel where there is none. The
    // value becomes the pixel's own, which makes a difference for zeros.
    ZeliPoint locate(LongRow where, T& value) const
    {
        int at = 0;
        const Vec<T> wanted = splat(value);
        forParts(where.first, where.pixels, [&](int x, const T* pixels, const Zel8u* m, int n) {
            constexpr int lanes = kLanes<T>;
            for (int i = 0; i < n; i += lanes) {
                const int end = std::min(i + lanes, n);
                if (end - i == lanes && !anyLane(load(pixels + i) == wanted)) continue;
                for (int k = i; k < end; ++k) {
                    if (pixels[k] != value || (kMasked && m[k] == 0)) continue;
                    value = pixels[k];
                    at = x + k;
                    return true;
                }
            }
            return false;
        });
        return {at % width, where.first + at / width};
    }
};

template <class T, int kChannels, bool kMasked>
ZelStatus minMax(Plane<const T> src, Plane<const Zel8u> mask, ZeliSize roi, int coi, Zel32f* minVal, Zel32f* maxVal,
                 ZeliPoint* minIndex, ZeliPoint* maxIndex)
{
    if (auto status = checkPointers(src.data)) return status;
    if (kMasked && !mask.data) return zelStatusNullPointer;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(wrappingProduct(roi.width, kChannels), src)) return status;
    if (kMasked && mask.step < roi.width) return zelStatusBadStep;
    if (auto status = checkStepAlignment(src)) return status;
    if (coi < 1 || coi > kChannels) return zelStatusBadChannelIndex;

    const Region<T, kChannels, kMasked> region = {{src.data + coi - 1, src.step}, mask, roi.width};
    Extremes<T> found = reduceBands<Extremes<T>>(
        roi, kGate, [&](Band band) { return region.scanBand(band); },
        [](const Extremes<T>& all, const Extremes<T>& next) { return fold(all, next); });
    ZeliPoint minAt = {0, 0}, maxAt = {0, 0};
    if (found.found) {
        minAt = region.locate(found.minAt, found.min);
        maxAt = region.locate(found.maxAt, found.max);
    }
    if (minVal) *minVal = Zel32f(found.min);
    if (maxVal) *maxVal = Zel32f(found.max);
    if (minIndex) *minIndex = minAt;
    if (maxIndex) *maxIndex = maxAt;
    return zelStatusOk;
}

} // namespace

// ---- exports: the members by type and form

#define RESULTS Zel32f *minVal, Zel32f *maxVal, ZeliPoint *minIndex, ZeliPoint *maxIndex
#define C1(T, name)                                                                                                        \
    ZelStatus name(const T* src, int srcStep, ZeliSize roiSize, RESULTS)                                                   \
    {                                                                                                                      \
        return minMax<T, 1, false>({src, srcStep}, {}, roiSize, 1, minVal, maxVal, minIndex, maxIndex);                    \
    }
#define C1_MASKED(T, name)                                                                                                 \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, RESULTS)                  \
    {                                                                                                                      \
        return minMax<T, 1, true>({src, srcStep}, {mask, maskStep}, roiSize, 1, minVal, maxVal, minIndex, maxIndex);       \
    }
#define C3(T, name)                                                                                                        \
    ZelStatus name(const T* src, int srcStep, ZeliSize roiSize, int coi, RESULTS)                                          \
    {                                                                                                                      \
        return minMax<T, 3, false>({src, srcStep}, {}, roiSize, coi, minVal, maxVal, minIndex, maxIndex);                  \
    }
#define C3_MASKED(T, name)                                                                                                 \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, RESULTS)         \
    {                                                                                                                      \
        return minMax<T, 3, true>({src, srcStep}, {mask, maskStep}, roiSize, coi, minVal, maxVal, minIndex, maxIndex);     \
    }

C1(Zel8u, zeliMinMaxIndx_8u_C1R)
C1(Zel8s, zeliMinMaxIndx_8s_C1R)
C1(Zel16u, zeliMinMaxIndx_16u_C1R)
C1(Zel32f, zeliMinMaxIndx_32f_C1R)
C1_MASKED(Zel8u, zeliMinMaxIndx_8u_C1MR)
C1_MASKED(Zel8s, zeliMinMaxIndx_8s_C1MR)
C1_MASKED(Zel16u, zeliMinMaxIndx_16u_C1MR)
C1_MASKED(Zel32f, zeliMinMaxIndx_32f_C1MR)
C3(Zel8u, zeliMinMaxIndx_8u_C3CR)
C3(Zel8s, zeliMinMaxIndx_8s_C3CR)
C3(Zel16u, zeliMinMaxIndx_16u_C3CR)
C3(Zel32f, zeliMinMaxIndx_32f_C3CR)
C3_MASKED(Zel8u, zeliMinMaxIndx_8u_C3CMR)
C3_MASKED(Zel8s, zeliMinMaxIndx_8s_C3CMR)
C3_MASKED(Zel16u, zeliMinMaxIndx_16u_C3CMR)
C3_MASKED(Zel32f, zeliMinMaxIndx_32f_C3CMR)
