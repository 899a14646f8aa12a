// Pointwise work: a row computed block by block from other rows, and regions computed row by row.
#pragma once

#include "bands.h"
#include "plane.h"
#include "vector/vector.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zelcv {

// ---- readers: what a block of a row is to an operation

// The elements, as numbers of type To.
template <class To, class T>
struct As {
    const T* from;

    // `count` elements from element `i` on.
    template <int count>
    ZELCV_INLINE Group<Vec<To>, count / kLanes<To>> block(std::ptrdiff_t i) const
    {
        constexpr int each = int(sizeof(To) / sizeof(T));
        Group<Vec<To>, count / kLanes<To>> all;
        for (int k = 0; k < count / kLanes<T>; ++k) {
            const auto some = loadConverted<To>(from + i + k * kLanes<T>);
            for (int p = 0; p < each; ++p) all.part[k * each + p] = some.part[p];
        }
        return all;
    }
};
// The elements as they are.
template <class T>
As<T, T> elements(const T* from)
{
    return {from};
}

// Doubles, as many to a part as there are floats in a vector.
struct AsDoubles {
    const Zel64f* from;

    template <int count>
    ZELCV_INLINE Group<Doubles, count / kLanes<Zel32f>> block(std::ptrdiff_t i) const
    {
        Group<Doubles, count / kLanes<Zel32f>> all;
        for (int k = 0; k < count / kLanes<Zel32f>; ++k) all.part[k] = loadDoubles(from + i + k * kLanes<Zel32f>);
        return all;
    }
};

// ---- a row

// Readers that take many instructions for a block say so (kTakesLong).
template <class Source>
constexpr bool kTakesLong = requires { requires Source::kTakesLong; };

// Vectors that a step of the inner loop makes where its operation is a simple one: the loop's own instructions count then.
constexpr int kVectorsAtOnce = 16;
// Blocks that a step makes of what is left behind that.
constexpr int kBlocksAtEnd = 4;

// dst = operation(sources...) for `count` elements. An operation makes a group of vectors from those of its sources: a block,
// which is a whole vector of the narrowest element. Where a row is no multiple of that, its last block overlaps the one before
// and is computed first; a row shorter than a block goes through padded copies. dst may be a source, element for element, or
// lie in front of one.
template <class D, class Operation, class... Sources>
ZELCV_INLINE inline void mapRow(D* dst, int count, const Operation& operation, Sources... sources)
{
    constexpr int narrowest = int(std::min({sizeof(D), sizeof(*sources.from)...})), kBlock = kVectorBytes / narrowest;
    constexpr bool simple = sizeof...(Sources) <= 4 && !(kTakesLong<Sources> || ...);
    constexpr int kVectors = int(sizeof(D)) / narrowest, kBlocks = simple ? std::max(1, kVectorsAtOnce / kVectors) : 1;
    const auto blockAt = [&](std::ptrdiff_t i) ZELCV_INLINE { return operation(sources.template block<kBlock>(i)...); };

    if (count < kBlock) {
        const auto padded = [&](auto source) {
            std::remove_cvref_t<decltype(*source.from)> copy[kBlock] = {};
            std::memcpy(copy, source.from, sizeof(*copy) * std::size_t(count));
            source.from = copy;
            return source.template block<kBlock>(0);
        };
        const auto block = operation(padded(sources)...);
        std::memcpy(dst, &block, sizeof(D) * std::size_t(count));
        return;
    }
    const std::ptrdiff_t last = count - kBlock;
    const auto lastBlock = blockAt(last);
    std::ptrdiff_t i = 0;
    const auto some = [&]<int... k>(std::integer_sequence<int, k...>) ZELCV_INLINE {
        (store(dst + i + k * kBlock, blockAt(i + k * kBlock)), ...);
        i += std::ptrdiff_t(sizeof...(k)) * kBlock;
    };
    while (i <= last - kBlocks * kBlock) some(std::make_integer_sequence<int, kBlocks>());
    if constexpr (kBlocks > kBlocksAtEnd)
        while (i <= last - kBlocksAtEnd * kBlock) some(std::make_integer_sequence<int, kBlocksAtEnd>());
    while (i < last) some(std::make_integer_sequence<int, 1>());
    store(dst + last, lastBlock);
}

// ---- regions

// Whether the rows of a plane follow each other without gaps. `elements` in a row.
template <class T>
bool isGapless(Plane<T> plane, int elements)
{
    return plane.step == std::int64_t(elements) * std::int64_t(sizeof(T));
}

// Calls row(y, count) for the rows of a band: the row that starts at row `y` of the planes and has `count` pixels. Where rows
// follow each other without gaps, up to `atOnce` of them are one long row.
template <class Row>
void forLongRows(Band band, int width, bool gapless, int atOnce, const Row& row)
{
    atOnce = gapless ? std::min(atOnce, std::numeric_limits<int>::max() / width) : 1;
    for (int y = band.first; y < band.last;) {
        const int rows = std::min(atOnce, band.last - y);
        row(y, width * rows);
        y += rows;
    }
}

// The same for all rows of a region, in bands, as many at once as there are.
template <class Row, class... Planes>
void forRows(ZeliSize roi, Gate gate, const Row& row, Planes... planes)
{
    const bool gapless = (isGapless(planes, roi.width) && ...);
    forBands(roi, gate, [&](Band band) __attribute__((noinline)) { forLongRows(band, roi.width, gapless, roi.height, row); });
}

} // namespace zelcv
