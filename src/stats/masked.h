// What the statistics share: rows read in runs, whole or under a mask, one channel alone or one of three.
#pragma once

#include "bands.h"
#include "checks.h"
#include "stats/channel.h"
#include "vector/vector.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace zelcv {

// ---- which pixels of a block count, as vectors of all ones and zeros

struct MaskBytes {
    static constexpr bool kMasked = true;
    const Zel8u* from;

    MaskBytes at(std::ptrdiff_t x) const { return {from + x}; }
    void copyTo(Zel8u* mask, int count) const { std::memcpy(mask, from, std::size_t(count)); }
    Vec<Zel8u> bytes() const { return Vec<Zel8u>(load(from) != 0); }
    Vec<Zel16u> words() const { return Vec<Zel16u>(loadLaneMask<Zel16u>(from)); }
    Vec<Zel32s> lanes(int part) const { return loadLaneMask<Zel32s>(from + part * kLanes<Zel32s>); }
};

struct EveryPixel {
    static constexpr bool kMasked = false;

    EveryPixel at(std::ptrdiff_t) const { return {}; }
    void copyTo(Zel8u* mask, int count) const { std::memset(mask, 1, std::size_t(count)); }
    Vec<Zel8u> bytes() const { return ~Vec<Zel8u>{}; }
    Vec<Zel16u> words() const { return ~Vec<Zel16u>{}; }
    Vec<Zel32s> lanes(int) const { return ~Vec<Zel32s>{}; }
};

inline MaskBytes selectionOfRow(Plane<const Zel8u> mask, int y) { return {mask.row(y)}; }
inline EveryPixel selectionOfRow(EveryPixel, int) { return {}; }

// ---- runs

// Where a member finds its elements. `coi` is 1 to `channels`.
template <class T, int channels, std::size_t sources>
struct Channel {
    std::array<Plane<const T>, sources> planes;
    int coi;
};

// Pixels in a run at most: few enough for counters of 8 bits and sums of squared bytes in 32. Gathered elements stay in
// cache.
template <int channels>
constexpr int kRunPixels = channels == 1 ? 2048 : 512;

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

// ---- blocks

// Pixels in a block: a vector, and eight of 32f, which sums in double share among eight lanes.
constexpr int kFloatBlock = 8, kFloatParts = kFloatBlock / kLanes<Zel32f>;
template <class T>
constexpr int kBlock = sizeof(T) == 4 ? kFloatBlock : kLanes<T>;

// Inlined always, with the steps that it calls: their sums stay in registers.
#define ZELCV_INLINE __attribute__((always_inline))

// Calls step(count, selection, from) for the blocks of a run. The last one may be short: then it is a copy, whose pixels
// behind `count` are zero and masked off.
template <class T, std::size_t sources, class Selection, class Step>
ZELCV_INLINE inline void forBlocks(const Run<T, sources, Selection>& run, const Step& step)
{
    int i = 0;
    for (; i <= run.count - kBlock<T>; i += kBlock<T>) {
        auto from = run.from;
        for (auto& elements : from) elements += i;
        step(kBlock<T>, run.selection.at(i), from);
    }
    const int rest = run.count - i;
    if (rest == 0) return;
    T padded[sources][kBlock<T>] = {};
    Zel8u mask[kBlock<T>] = {};
    std::array<const T*, sources> from;
    for (std::size_t s = 0; s < sources; ++s) {
        std::memcpy(padded[s], run.from[s] + i, sizeof(T) * std::size_t(rest));
        from[s] = padded[s];
    }
    run.selection.at(i).copyTo(mask, rest);
    step(rest, MaskBytes{mask}, from);
}

// ---- sums

// The sum of a row in double: pixel x goes to lane x mod 8; the lanes fold ((0+4)+(2+6)) + ((1+5)+(3+7)).
class DoubleLanes {
public:
    void add(int part, const Doubles& x) { lanes_[part] = lanes_[part] + x; }
    double fold() const
    {
        double lane[kFloatBlock];
        std::memcpy(lane, lanes_, sizeof lane);
        return ((lane[0] + lane[4]) + (lane[2] + lane[6])) + ((lane[1] + lane[5]) + (lane[3] + lane[7]));
    }

private:
    Doubles lanes_[kFloatParts] = {};
};

// ---- checks

inline ZelStatus checkChannel(int coi, int channels)
{
    return coi > channels || coi < 1 ? zelStatusBadChannelIndex : zelStatusOk;
}

} // namespace zelcv
