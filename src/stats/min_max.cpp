// Minimum and maximum with position. Rows are scanned for their extremes; a row that improves on the rows above it is noted.
// Then the two rows noted are searched for the leftmost pixel that has the value.
//
// Each lane of a vector keeps the extremes of its own columns from row to row; whether a row improved on the rows above it is
// one comparison of all lanes with the values so far.
//
// NaN takes no part: it is neither smaller nor larger, and as a masked pixel it does not count.
#include "bands.h"
#include "checks.h"
#include "stats/channel.h"
#include "vector/vector.h"

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
            lanes_[0].take(sameAgain, sameMask, 0);
            return;
        }
        Lanes lanes[kChains];
        std::copy_n(lanes_, kChains, lanes);
        int i = 0;
        for (; i <= count - kChains * kBlock; i += kChains * kBlock)
            for (int chain = 0; chain < kChains; ++chain) lanes[chain].take(x, mask, i + chain * kBlock);
        for (; i <= count - kBlock; i += kBlock) lanes[0].take(x, mask, i);
        if (i < count) lanes[0].take(x, mask, count - kBlock); // some pixels twice
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
    static constexpr int kBlock = kLanes<T>, kChains = 4; // chains of operations that do not wait for each other
    using Bits = Vec<std::conditional_t<std::is_same_v<Key, Zel32f>, Zel32s, Key>>;

    struct Lanes {
        Vec<Key> low, high;
        Bits seen;

        void take(const T* x, const Zel8u* mask, int i)
        {
            Vec<Key> forLow = Keys<T>::of(load(x + i)), forHigh = forLow;
            if constexpr (kMasked) {
                const Bits selected = Bits(loadLaneMask<T>(mask + i));
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

    template <class Better>
    static bool improved(Vec<Key> lanes, Key& now, const Better& better)
    {
        if (!anyLane(better(lanes, splat(now)))) return false;
        for (int i = 0; i < kBlock; ++i) {
            const Key lane = lanes[i];
            if (better(lane, now)) now = lane;
        }
        return true;
    }

    Start<Key> now_ = kMasked ? maskedStart<Key>() : unmaskedStart<Key>();
    Lanes lanes_[kChains];
};

// ---- partial results

template <class T>
struct Extremes {
    T min, max;
    int minRow, maxRow;
    bool found;

    friend Extremes fold(Extremes all, const Extremes& next)
    {
        if (next.min < all.min) {
            all.min = next.min;
            all.minRow = next.minRow;
        }
        if (next.max > all.max) {
            all.max = next.max;
            all.maxRow = next.maxRow;
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

    const Zel8u* maskRow(int y) const { return kMasked ? mask.row(y) : nullptr; }

    void scanRow(Scan<T, kMasked>& scan, int y) const
    {
        const T* const row = src.row(y);
        const Zel8u* const m = maskRow(y);
        if constexpr (kChannels == 1) {
            scan.pixels(row, m, width);
        } else {
            constexpr int kPart = 512;
            T channel[kPart];
            for (int x = 0; x < width; x += kPart) {
                const int count = std::min(kPart, width - x);
                copyEveryThird(channel, row + std::ptrdiff_t(x) * 3, count);
                scan.pixels(channel, kMasked ? m + x : nullptr, count);
            }
        }
    }

    Extremes<T> scanBand(Band band) const
    {
        Scan<T, kMasked> scan;
        Extremes<T> found = {0, 0, band.first, band.first, !kMasked};
        for (int y = band.first; y < band.last; ++y) {
            scanRow(scan, y);
            const bool first = !found.found && scan.found();
            if (scan.lowered() || first) found.minRow = y;
            if (scan.raised() || first) found.maxRow = y;
            found.found |= first;
        }
        if (found.found) {
            found.min = Keys<T>::element(scan.low());
            found.max = Keys<T>::element(scan.high());
        }
        return found;
    }

    // Phase 2: the leftmost pixel of row `y` that has the value; column 0 where there is none. The value becomes the pixel's
    // own, which makes a difference for zeros.
    int locate(int y, T& value) const
    {
        const T* const row = src.row(y);
        const Zel8u* const m = maskRow(y);
        for (int x = 0; x < width; ++x) {
            const T pixel = row[std::ptrdiff_t(x) * kChannels];
            if (pixel != value || (kMasked && m[x] == 0)) continue;
            value = pixel;
            return x;
        }
        return 0;
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
        minAt = {region.locate(found.minRow, found.min), found.minRow};
        maxAt = {region.locate(found.maxRow, found.max), found.maxRow};
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
