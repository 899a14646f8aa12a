// Sums under fixed taps, for the filters with border: the order of additions, and the border rule in both directions.
#pragma once

#include "support/borders.h"
#include "support/images.h"

#include <cstdlib>
#include <vector>

namespace zeltest {

using TapList = std::vector<int>;

// Pairs from the outside in, the centre last; a negating stage is 0 minus the sum of its positive taps.
template <class Real, class At>
Real weightedSum(const TapList& taps, const At& at)
{
    const int count = int(taps.size());
    if (taps[0] < 0 && taps[0] == taps[std::size_t(count - 1)]) {
        TapList positive = taps;
        for (int& tap : positive) tap = -tap;
        return Real(0) - weightedSum<Real>(positive, at);
    }
    Real sum = 0;
    for (int i = 0; i <= count / 2; ++i) {
        const int tap = taps[std::size_t(i)], mirror = taps[std::size_t(count - 1 - i)];
        if (tap == 0) continue;
        const Real a = at(i), b = at(count - 1 - i);
        const Real pair = i == count / 2 ? a : tap == mirror ? a + b : tap > 0 ? a - b : b - a;
        const Real weight = Real(tap == mirror ? tap : std::abs(tap));
        sum = i == 0 ? pair * weight : sum + pair * weight;
    }
    return sum;
}

// The taps on row `line`, which may lie outside the region, around column x: in int for 8u sources and in float for 32f.
template <class Real, class T>
Real rowSum(const Image<T>& src, const TapList& taps, ZeliBorderType border, T value, int x, int line)
{
    if ((border & 15) == zeliBorderInMemory) border = 0xf0;
    const int reach = int(taps.size()) / 2, kind = border & 15;
    const bool top = border & zeliBorderInMemoryTop, bottom = border & zeliBorderInMemoryBottom;
    const bool left = border & zeliBorderInMemoryLeft, right = border & zeliBorderInMemoryRight;
    line = standIn(line, src.height(), kind, top, bottom, !top, !bottom);
    if (line == kConstant) {
        int sum = 0;
        for (int tap : taps) sum += tap;
        return Real(value) * Real(sum);
    }
    return weightedSum<Real>(taps, [&](int i) -> Real {
        const int pixel = standIn(x - reach + i, src.width(), kind, left, right);
        return Real(pixel == kConstant ? value : src.at(pixel, line));
    });
}

// The margins of real pixels that filters of that reach may read under a border.
inline Margin realPixels(ZeliBorderType border, int reach)
{
    if ((border & 15) == zeliBorderInMemory) border = 0xf0;
    const auto behind = [=](int flag) { return border & flag ? reach : 0; };
    return {behind(zeliBorderInMemoryLeft), behind(zeliBorderInMemoryTop), behind(zeliBorderInMemoryRight),
            behind(zeliBorderInMemoryBottom)};
}

} // namespace zeltest
