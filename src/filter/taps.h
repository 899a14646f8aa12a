// Stages of fixed taps, for the filters with border: weighted sums of 3 or 5 neighbours along a row or down the columns.
#pragma once

#include "border_filter.h"
#include "map.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

namespace zelcv {

// A weighted sum of neighbours with fixed taps, symmetric or antisymmetric. The order of the additions, which decides the
// last bit of 32f: each pair of equally distant neighbours is added or subtracted, then weighted; the pairs follow each
// other from the outside in; the centre comes last.
template <int... taps>
struct Taps {
    static constexpr int kCount = sizeof...(taps);
    static constexpr int kSum = (taps + ...);

    // T is a vector; at(i) is the neighbours under tap i.
    template <class T, class At>
    static T sum(const At& at)
    {
        return addPairs<T, 0>(at);
    }

private:
    static constexpr std::array<int, kCount> kTaps = {taps...};

    template <class T, int i>
    static T weighted(T value)
    {
        constexpr int weight = kTaps[i] < 0 ? -kTaps[i] : kTaps[i];
        return weight == 1 ? value : value * splat(LaneOf<T>(weight));
    }

    // Pair i and all that follows it, behind `pairs`, the sum so far.
    template <class T, int i, class At, class... Sum>
    static T addPairs(const At& at, Sum... pairs)
    {
        constexpr int mirror = kCount - 1 - i, left = kTaps[i], right = kTaps[mirror];
        static_assert(left == right || left == -right);
        if constexpr (i == mirror) {
            if constexpr (left == 0) return (pairs + ...);
            else if constexpr (left < 0) return (pairs + ...) - weighted<T, i>(at(i));
            else return (pairs + ... + weighted<T, i>(at(i)));
        } else if constexpr (left == 0) {
            return addPairs<T, i + 1>(at, pairs...);
        } else {
            const T pair = left == right ? at(i) + at(mirror) : left > 0 ? at(i) - at(mirror) : at(mirror) - at(i);
            return addPairs<T, i + 1>(at, (pairs + ... + weighted<T, i>(pair)));
        }
    }
};

using Smooth3 = Taps<1, 2, 1>;
using Smooth5 = Taps<1, 4, 6, 4, 1>;
using Second5 = Taps<1, 0, -2, 0, 1>;

// 0 minus the sum: a sum of zero stays +0.
template <class Positive>
struct Negated {
    static constexpr int kCount = Positive::kCount;
    template <class T, class At>
    static T sum(const At& at)
    {
        return T{} - Positive::template sum<T>(at);
    }
};

// The sums of a block; tap[i] is the block under tap i.
template <class Stage, class Mid>
ZELCV_INLINE inline FilterBlock<Mid> sumBlocks(const FilterBlock<Mid>* tap)
{
    FilterBlock<Mid> sums;
    for (int p = 0; p < 2; ++p)
        sums.part[p] = Stage::template sum<Vec<Mid>>([&](int i) ZELCV_INLINE { return tap[i].part[p]; });
    return sums;
}

// Several stages with as many taps make a plane of the intermediate row each, `apart` elements from one to the next.
template <class... Stages>
struct RowStages {
    static constexpr int kPlanes = sizeof...(Stages);
    static constexpr int kCount = std::max({Stages::kCount...});

    // What a stage of that sum makes of a row of `value`: limited for integers, a product in single precision for 32f.
    template <class Mid, class Src>
    static Mid ofConstant(Src value, int sum)
    {
        if constexpr (std::is_floating_point_v<Mid>)
            return value * Mid(sum);
        else
            return Mid(std::clamp(int(value) * sum, -32768, 32767));
    }
    template <class Mid, class Src>
    static void fillConstant(Mid* row, int apart, Src value)
    {
        (std::fill_n(std::exchange(row, row + apart), apart, ofConstant<Mid>(value, Stages::kSum)), ...);
    }

    template <class Src, class Mid>
    [[gnu::noinline]] static void run(const Src* src, Mid* mid, int n, [[maybe_unused]] int apart)
    {
        forRowBlocks<kFilterBlock<Mid>, kCount / 2>(n, [=](std::ptrdiff_t at) ZELCV_INLINE {
            FilterBlock<Mid> tap[kCount];
            for (int i = 0; i < kCount; ++i) tap[i] = As<Mid, Src>{src + at + i}.template block<kFilterBlock<Mid>>(0);
            const FilterBlock<Mid> sums[] = {sumBlocks<Stages, Mid>(tap)...};
            for (int plane = 0; plane < kPlanes; ++plane) store(mid + at + std::ptrdiff_t(plane) * apart, sums[plane]);
        });
    }
};

// `finish` makes a block of the output of a block of sums. The sums are those of `Stage`, whose at(i) is tap i of the first
// plane, and at(i, plane) of another one.
template <class Stage, class Mid, class Dst, class Finish>
void columnStage(const Mid* const* rows, Dst* dst, int n, [[maybe_unused]] int apart, Finish finish)
{
    std::array<const Mid*, Stage::kCount> row;
    std::copy_n(rows, Stage::kCount, row.begin());
    forColumnBlocks<Mid>(dst, n, [&](const auto& blockOf) ZELCV_INLINE {
        FilterBlock<Mid> sums;
        for (int p = 0; p < 2; ++p)
            sums.part[p] = Stage::template sum<Vec<Mid>>([&](int i, int plane = 0) ZELCV_INLINE {
                return blockOf(row[std::size_t(i)] + std::ptrdiff_t(plane) * apart).part[p];
            });
        return finish(sums);
    });
}

} // namespace zelcv
