// What the statistics share: rows read in runs, whole or under a mask, one channel alone or one of three.
#pragma once

#include "checks.h"
#include "map.h"
#include "stats/channel.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace zelcv {

// ---- which pixels of a block count, as bytes of all ones and zeros

// Pixels in a block: a whole vector of mask bytes.
constexpr int kBlock = kLanes<Zel8u>;

struct MaskBytes {
    static constexpr bool kMasked = true;
    const Zel8u* from;

    MaskBytes at(std::ptrdiff_t x) const { return {from + x}; }
    Vec<Zel8s> lanes() const { return Vec<Zel8s>(load(from) != 0); }
    void copyTo(Zel8u* mask, int count) const { std::memcpy(mask, from, std::size_t(count)); }
};

struct EveryPixel {
    static constexpr bool kMasked = false;

    EveryPixel at(std::ptrdiff_t) const { return {}; }
    Vec<Zel8s> lanes() const { return ~Vec<Zel8s>{}; }
    void copyTo(Zel8u* mask, int count) const { std::memset(mask, 1, std::size_t(count)); }
};

inline MaskBytes selectionOfRow(Plane<const Zel8u> mask, int y) { return {mask.row(y)}; }
inline EveryPixel selectionOfRow(EveryPixel, int) { return {}; }

inline bool isGapless(EveryPixel, int) { return true; }

// ---- runs

// Where a member finds its elements. `coi` is 1 to `channels`.
template <class T, int channels, std::size_t sources>
struct Channel {
    std::array<Plane<const T>, sources> planes;
    int coi;
};

template <class T, int channels, std::size_t sources, class Selected>
bool isGapless(const Channel<T, channels, sources>& channel, Selected selected, int width)
{
    for (const auto plane : channel.planes)
        if (!isGapless(plane, wrappingProduct(width, channels))) return false;
    return isGapless(selected, width);
}

// Pixels in a run at most: few enough for counters of 8 bits and sums of squared bytes in 32. Gathered elements stay in
// cache.
template <int channels>
constexpr int kRunPixels = channels == 1 ? 240 * kBlock : 1024;

// A piece of a row, its elements side by side.
template <class T, std::size_t sources, class Selection>
struct Run {
    static constexpr bool kMasked = Selection::kMasked;
    std::array<const T*, sources> from;
    Selection selection;
    int count;
};

// Room for the gathered elements of a run.
template <class T, int channels, std::size_t sources>
using Gathered = std::array<std::array<T, channels == 1 ? 1 : kRunPixels<channels>>, sources>;

template <class T, int channels, std::size_t sources, class Selection>
Run<T, sources, Selection> runAt(const Channel<T, channels, sources>& channel, Selection selection, int y, std::ptrdiff_t x,
                                 int count, Gathered<T, channels, sources>& gathered)
{
    Run<T, sources, Selection> run{{}, selection.at(x), count};
    for (std::size_t s = 0; s < sources; ++s) {
        const T* from = channel.planes[s].row(y) + x * channels + (channel.coi - 1);
        if constexpr (channels == 1) {
            run.from[s] = from;
        } else {
            static_assert(channels == 3);
            copyEveryThird(gathered[s].data(), from, count);
            run.from[s] = gathered[s].data();
        }
    }
    return run;
}

// Calls use(x, count) for the runs of a row.
template <int channels, class Use>
void cutRuns(int width, const Use& use)
{
    for (std::ptrdiff_t x = 0; x < width; x += kRunPixels<channels>)
        use(x, int(std::min<std::ptrdiff_t>(kRunPixels<channels>, width - x)));
}

// Calls use(run) for the runs of row `y`.
template <class T, int channels, std::size_t sources, class Selected, class Use>
void forRuns(int y, int width, const Channel<T, channels, sources>& channel, Selected selected, const Use& use)
{
    Gathered<T, channels, sources> gathered;
    cutRuns<channels>(width, [&](std::ptrdiff_t x, int count) {
        use(runAt(channel, selectionOfRow(selected, y), y, x, count, gathered));
    });
}

// Adds the runs of a band to an accumulator, and calls its endRow() behind each row. `longRows` tells that it does not matter
// to it where rows end.
template <class T, int channels, std::size_t sources, class Selected, class Use, class EndRow>
void forRunsOfBand(Band band, int width, bool longRows, const Channel<T, channels, sources>& channel, Selected selected,
                   const Use& use, const EndRow& endRow)
{
    const bool gapless = longRows && isGapless(channel, selected, width);
    forLongRows(band, width, gapless, band.rows(), [&](int y, int count) {
        forRuns(y, count, channel, selected, use);
        endRow();
    });
}

// A row of elements up to 2^bits - 1 whose 32-bit sum, which wraps, cannot do so.
constexpr bool rowSumFits(int width, int bits) { return width <= std::int64_t(1) << (31 - bits); }

// ---- blocks

// Vectors of T in a block.
template <class T>
constexpr int kParts = kBlock / kLanes<T>;

// Of a block the last `count` pixels.
inline Vec<Zel8s> lastPixels(int count)
{
    static constexpr std::array<Zel8s, 2 * kBlock> kZerosAndOnes = [] {
        std::array<Zel8s, 2 * kBlock> bytes = {};
        for (int i = kBlock; i < 2 * kBlock; ++i) bytes[std::size_t(i)] = -1;
        return bytes;
    }();
    return load(kZerosAndOnes.data() + count);
}

// Calls step(count, selection, from) for the blocks of a run. The last one of bytes and words may overlap the one before, whose
// pixels are masked off then; a short one, and that of 32f, is a copy, whose pixels behind `count` are zero and masked off.
template <class T, std::size_t sources, class Selection, class Step>
ZELCV_INLINE inline void forBlocks(const Run<T, sources, Selection>& run, const Step& step)
{
    const auto blockAt = [&](std::ptrdiff_t i) ZELCV_INLINE {
        auto from = run.from;
        for (auto& elements : from) elements += i;
        step(kBlock, run.selection.at(i), from);
    };
    std::ptrdiff_t i = 0;
    if constexpr (sizeof(T) == 1) // a block is little work beside the loop's own
        for (; i <= run.count - 4 * kBlock; i += 4 * kBlock)
            for (int k = 0; k < 4; ++k) blockAt(i + k * kBlock);
    for (; i <= run.count - kBlock; i += kBlock) blockAt(i);
    const auto rest = int(run.count - i);
    if (rest == 0) return;

    Zel8u mask[kBlock] = {};
    T padded[sources][kBlock] = {};
    auto from = run.from;
    if (sizeof(T) < 4 && i > 0) {
        for (auto& elements : from) elements += run.count - kBlock;
        store(mask, Vec<Zel8u>(run.selection.at(run.count - kBlock).lanes() & lastPixels(rest)));
    } else {
        for (std::size_t s = 0; s < sources; ++s) {
            std::memcpy(padded[s], run.from[s] + i, sizeof(T) * std::size_t(rest));
            from[s] = padded[s];
        }
        run.selection.at(i).copyTo(mask, rest);
    }
    step(rest, MaskBytes{mask}, from);
}

// ---- sums

// The sum of a row in double: pixel x goes to lane x mod 8; the lanes fold ((0+4)+(2+6)) + ((1+5)+(3+7)).
class DoubleLanes {
public:
    // Vector `part` of a block.
    void add(int part, const Doubles& x) { lanes_[part % kCount] = lanes_[part % kCount] + x; }
    double fold() const
    {
        Doubles sum = lanes_[0];
        for (int i = 1; i < kCount; ++i) sum = sum + lanes_[i];
        return foldPairs(sum.part[0] + sum.part[1]);
    }

private:
    // Of what was folded by halves: in each way here lanes 4, then lanes 2 apart have met.
    template <class V>
    static double foldPairs(V v)
    {
        if constexpr (kLanes<Zel64f> == 2)
            return v[0] + v[1];
        else
            return (v[0] + v[2]) + (v[1] + v[3]);
    }

    static constexpr int kCount = 8 / kLanes<Zel32f>;
    Doubles lanes_[kCount] = {};
};

// ---- checks

inline ZelStatus checkChannel(int coi, int channels)
{
    return coi > channels || coi < 1 ? zelStatusBadChannelIndex : zelStatusOk;
}

} // namespace zelcv
