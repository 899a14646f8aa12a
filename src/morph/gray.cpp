// Gray dilation and erosion: the largest or smallest sum of a pixel and the mask element over it.
//
// The mask is taken in tiles of a few dozen elements. What an output row needs of a tile are pointers: where in which source
// row each element reads. Elements of one value are neighbours in the list; the extreme of their pixels is found first and the
// value added once, which comes to the same since additions keep the order. Blocks that reach over an end of the row read
// copies with the border in place.
#include "checks.h"
#include "extremes.h"
#include "plane.h"
#include "scratch.h"
#include "vector/vector.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

using namespace zelcv;

// The mask stands behind the head, in rows without gaps.
struct ZeliMorphGrayState {
    void* grayMask;
    Zel32s maskWidth, maskHeight;
    Zel32s anchorX, anchorY;
    Zel32s roiWidth, roiHeight; // the largest region
};
static_assert(sizeof(ZeliMorphGrayState) == 32);

namespace {

// ---- sums of pixels and an element, by kinds of elements that rise with their value

// 8u. Sums are 32-bit integers, which wrap, and the result is limited to 0..255: so can each sum be, since that keeps the
// order.
struct ByteSum {
    using Pixel = Zel8u;
    using Element = Zel32s;

    enum Kind { subtract, add, wrap, kKinds };
    static Kind kindOf(Element element) { return element < 0 ? subtract : element > kLargest - 255 ? wrap : add; }
    static Pixel valueOf(Element element)
    {
        return Pixel(kindOf(element) == wrap ? kLargest - element : std::abs(std::clamp(element, -255, 255)));
    }
    template <int kind>
    ZELCV_INLINE static Vec<Pixel> of(Vec<Pixel> pixels, Vec<Pixel> value)
    {
        if constexpr (kind == subtract)
            return subtractSaturating(pixels, value);
        else if constexpr (kind == add)
            return addSaturating(pixels, value);
        else
            return Vec<Pixel>(subtractSaturating(pixels, value) == 0); // pixels above make the sum negative
    }

    // Whether the sum of the largest pixel is the largest sum.
    static bool keepsOrder(Element element) { return kindOf(element) != wrap; }
    static bool takesPart(Element) { return true; }
    static bool dependsOnOrder(Element) { return false; }

    template <class Extreme>
    ZELCV_INLINE static Vec<Pixel> pixels(const Pixel* from)
    {
        return load(from);
    }

private:
    static constexpr Element kLargest = std::numeric_limits<Element>::max();
};

// 32f. A sum that is not a number takes no part, and of zeros of both signs the first one is taken.
struct FloatSum {
    using Pixel = Zel32f;
    using Element = Zel32f;

    enum Kind { any, kKinds };
    static Kind kindOf(Element) { return any; }
    static Pixel valueOf(Element element) { return element; }
    template <int>
    ZELCV_INLINE static Vec<Pixel> of(Vec<Pixel> pixels, Vec<Pixel> value)
    {
        return pixels + value;
    }

    static bool keepsOrder(Element) { return true; }
    static bool takesPart(Element element) { return element == element; }
    // A sum is a negative zero only with a negative zero in the mask.
    static bool dependsOnOrder(Element element) { return element == 0 && std::signbit(element); }

    // What is not a number gives way to the infinity that every number replaces.
    template <class Extreme>
    ZELCV_INLINE static Vec<Pixel> pixels(const Pixel* from)
    {
        return Extreme::of(load(from), splat(kNeutral<Extreme, Pixel>));
    }
};

// ---- tiles

// A part of a mask with at most kElements elements: rows of it, or a part of one row.
template <class Sum>
struct Tile {
    static constexpr int kElements = 64;
    using Element = typename Sum::Element;

    // The next `count` elements of the list, which have one value.
    struct Run {
        Vec<typename Sum::Pixel> value;
        int count;
    };

    int firstRow, rows;       // offsets from the output row
    int firstColumn, columns; // from the output pixel
    int elements = 0, runs = 0;
    std::array<std::array<int, 2>, kElements> place; // of each element, from the first row and column
    std::array<Run, kElements> run;
    std::array<int, Sum::kKinds> runsOf = {}; // of each kind: they follow each other

    Tile(const ZeliMorphGrayState& state, int maskRow, int maskRows, int maskColumn, int maskColumns)
        : firstRow(maskRow - state.anchorY), rows(maskRows), firstColumn(maskColumn - state.anchorX), columns(maskColumns)
    {
        struct Entry {
            Element value;
            int y, x;
        };
        std::array<Entry, kElements> list;
        bool sort = true;
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < columns; ++x) {
                const auto* const mask = static_cast<const Element*>(state.grayMask);
                const Element value = mask[std::ptrdiff_t(maskRow + y) * state.maskWidth + maskColumn + x];
                if (!Sum::takesPart(value)) continue;
                if (Sum::dependsOnOrder(value)) sort = false;
                list[std::size_t(elements++)] = {value, y, x};
            }
        const auto end = list.begin() + elements;
        if (sort) std::sort(list.begin(), end, [](const Entry& a, const Entry& b) { return a.value < b.value; });
        for (int i = 0; i < elements; ++i) {
            const Entry& entry = list[std::size_t(i)];
            place[std::size_t(i)] = {entry.y, entry.x};
            if (i > 0 && sort && Sum::keepsOrder(entry.value) && entry.value == list[std::size_t(i - 1)].value) {
                ++run[std::size_t(runs - 1)].count;
            } else {
                run[std::size_t(runs++)] = {splat(Sum::valueOf(entry.value)), 1};
                ++runsOf[std::size_t(Sum::kindOf(entry.value))];
            }
        }
    }
};

// Where each element of a tile reads the first pixel of a block.
template <class T>
using Sources = std::array<const T*, 64>;

// Makes the extreme of what stands at dst and of the sums of one tile, for `kVectors` vectors of pixels that lie `x` pixels
// behind the sources.
template <class Extreme, class Sum, int kVectors, class T>
ZELCV_INLINE inline void extremesOfBlock(const Tile<Sum>& tile, const Sources<T>& sources, std::ptrdiff_t x, T* dst)
{
    constexpr int lanes = kLanes<T>;
    Vec<T> result[kVectors], best[kVectors];
    for (int k = 0; k < kVectors; ++k) result[k] = load(dst + k * lanes);
    const T* const* source = sources.data();
    const auto* run = tile.run.data();
    [&]<int... kind>(std::integer_sequence<int, kind...>) ZELCV_INLINE {
        const auto addRuns = [&]<int thisKind>(std::integral_constant<int, thisKind>) ZELCV_INLINE {
            for (const auto* const last = run + tile.runsOf[thisKind]; run != last; ++run) {
                const T* const* const end = source + run->count;
                for (int k = 0; k < kVectors; ++k) best[k] = Sum::template pixels<Extreme>(*source + x + k * lanes);
                while (++source != end)
                    for (int k = 0; k < kVectors; ++k) best[k] = Extreme::of(load(*source + x + k * lanes), best[k]);
                const Vec<T> value = run->value;
                for (int k = 0; k < kVectors; ++k)
                    result[k] = Extreme::of(Sum::template of<thisKind>(best[k], value), result[k]);
            }
        };
        (addRuns(std::integral_constant<int, kind>()), ...);
    }(std::make_integer_sequence<int, Sum::kKinds>());
    for (int k = 0; k < kVectors; ++k) store(dst + k * lanes, result[k]);
}

// The rows of one tile under an output row, and blocks of that which read beyond an end of them.
template <class Sum, int kVectors>
class TileRows {
public:
    using T = typename Sum::Pixel;
    static constexpr int kBlock = kVectors * kLanes<T>;

    TileRows(const Tile<Sum>& tile, Plane<const T> src, ZeliSize roi)
        : tile_(tile), src_(src), roi_(roi), stretch_(kBlock + tile.columns - 1)
    {
        for (int i = 0; i < tile.elements; ++i) {
            const auto [row, column] = tile.place[std::size_t(i)];
            copies_[std::size_t(i)] = extended_ + row * stretch_ + column;
        }
    }

    void moveTo(int y)
    {
        for (int row = 0; row < tile_.rows; ++row)
            rows_[row] = src_.row(int(std::clamp<std::int64_t>(std::int64_t(y) + tile_.firstRow + row, 0, roi_.height - 1)));
        for (int i = 0; i < tile_.elements; ++i) {
            const auto [row, column] = tile_.place[std::size_t(i)];
            sources_[std::size_t(i)] = rows_[row] + (std::ptrdiff_t(tile_.firstColumn) + column);
        }
    }

    // Pointers for blocks that read within the rows.
    bool isInside(int x) const
    {
        const std::int64_t start = std::int64_t(x) + tile_.firstColumn;
        return start >= 0 && start + stretch_ <= roi_.width;
    }
    const Sources<T>& sources() const { return sources_; }

    // Pointers for the block at `x`, into copies with what stands outside.
    const Sources<T>& extendedAt(int x)
    {
        const std::int64_t start = std::int64_t(x) + tile_.firstColumn;
        const int before = int(std::clamp<std::int64_t>(-start, 0, stretch_));
        const int inside = int(std::clamp<std::int64_t>(roi_.width - start - before, 0, stretch_ - before));
        for (int row = 0; row < tile_.rows; ++row) {
            T* const to = extended_ + row * stretch_;
            fill(to, before, rows_[row][0]);
            if (inside > 0) copyPixels(to + before, rows_[row] + (start + before), inside);
            fill(to + before + inside, stretch_ - before - inside, rows_[row][roi_.width - 1]);
        }
        return copies_;
    }

private:
    // Whole vectors: what comes behind is written later.
    static void fill(T* to, int count, T value)
    {
        for (int i = 0; i < count; i += kLanes<T>) store(to + i, splat(value));
    }

    // The last vector overlaps the one before.
    static void copyPixels(T* to, const T* from, int count)
    {
        const int last = count - kLanes<T>;
        if (last < 0) {
            std::memcpy(to, from, sizeof(T) * std::size_t(count));
            return;
        }
        for (int i = 0; i < last; i += kLanes<T>) store(to + i, load(from + i));
        store(to + last, load(from + last));
    }

    const Tile<Sum>& tile_;
    Plane<const T> src_;
    ZeliSize roi_;
    int stretch_; // a block, and the columns that follow its first pixel
    Sources<T> sources_, copies_;
    const T* rows_[Tile<Sum>::kElements];
    T extended_[Tile<Sum>::kElements * (kBlock + 1) + kLanes<T>];
};

// dst = the extreme of dst and of the sums of one tile.
template <class Extreme, class Sum, int kVectors, class T>
void extremesOfTile(const Tile<Sum>& tile, Plane<const T> src, Plane<T> dst, ZeliSize roi)
{
    constexpr int kBlock = kVectors * kLanes<T>;
    TileRows<Sum, kVectors> rows(tile, src, roi);
    for (int y = 0; y < roi.height; ++y) {
        rows.moveTo(y);
        if (roi.width < kBlock) {
            T narrow[kBlock] = {};
            std::memcpy(narrow, dst.row(y), sizeof(T) * std::size_t(roi.width));
            extremesOfBlock<Extreme, Sum, kVectors>(tile, rows.extendedAt(0), 0, narrow);
            std::memcpy(dst.row(y), narrow, sizeof(T) * std::size_t(roi.width));
            continue;
        }
        // The last block overlaps the one before: what has been taken into account changes nothing.
        for (int next = 0; next < roi.width; next += kBlock) {
            const int x = std::min(next, roi.width - kBlock);
            const bool inside = rows.isInside(x);
            extremesOfBlock<Extreme, Sum, kVectors>(tile, inside ? rows.sources() : rows.extendedAt(x), inside ? x : 0,
                                                    dst.row(y) + x);
        }
    }
}

// Vectors of a block: as many as registers hold twice.
constexpr int kByteVectors = kVectorBytes == 16 ? 6 : 4;

template <class Extreme, class Sum>
void extremesOfSums(Plane<const typename Sum::Pixel> src, Plane<typename Sum::Pixel> dst, ZeliSize roi,
                    const ZeliMorphGrayState& state)
{
    using T = typename Sum::Pixel;
    constexpr int kVectors = sizeof(T) == 1 ? kByteVectors : 4, kElements = Tile<Sum>::kElements;
    for (int y = 0; y < roi.height; ++y) std::fill_n(dst.row(y), roi.width, Extreme::template kStart<T>);
    const int columns = std::min(state.maskWidth, kElements), rows = kElements / columns;
    for (int y = 0; y < state.maskHeight; y += std::min(rows, state.maskHeight - y))
        for (int x = 0; x < state.maskWidth; x += std::min(columns, state.maskWidth - x)) {
            const Tile<Sum> tile(state, y, std::min(rows, state.maskHeight - y), x, std::min(columns, state.maskWidth - x));
            if (roi.width >= kVectors * kLanes<T>)
                extremesOfTile<Extreme, Sum, kVectors>(tile, src, dst, roi);
            else
                extremesOfTile<Extreme, Sum, 1>(tile, src, dst, roi);
        }
}

// ---- drivers

template <class Extreme, class Sum>
ZelStatus grayMorphology(Plane<const typename Sum::Pixel> src, Plane<typename Sum::Pixel> dst, ZeliSize roi,
                         ZeliBorderType border, const ZeliMorphGrayState* state)
{
    if (auto status = checkPointers(src.data, dst.data, state)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(roi.width, src, dst)) return status;
    if (border != zeliBorderReplicate) return zelStatusBadArgument;
    if (roi.width > state->roiWidth || roi.height > state->roiHeight) return zelStatusBadSize;
    extremesOfSums<Extreme, Sum>(src, dst, roi, *state);
    return zelStatusOk;
}

template <class Element, class State>
ZelStatus checkMask(const State* state, ZeliSize roi, const Element* mask, ZeliSize maskSize, ZeliPoint anchor)
{
    if (auto status = checkPointers(mask, state)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSize(maskSize)) return status;
    const bool inside = anchor.x >= 0 && anchor.x < maskSize.width && anchor.y >= 0 && anchor.y < maskSize.height;
    return inside ? zelStatusOk : zelStatusBadAnchor;
}

template <class Element>
void fillState(ZeliMorphGrayState* state, ZeliSize roi, const Element* mask, ZeliSize maskSize, ZeliPoint anchor)
{
    *state = {state + 1, maskSize.width, maskSize.height, anchor.x, anchor.y, roi.width, roi.height};
    std::memcpy(state->grayMask, mask, sizeof(Element) * std::size_t(maskSize.width) * std::size_t(maskSize.height));
}

template <class Element>
ZelStatus initGray(ZeliMorphGrayState* state, ZeliSize roi, const Element* mask, ZeliSize maskSize, ZeliPoint anchor)
{
    if (auto status = checkMask(state, roi, mask, maskSize, anchor)) return status;
    fillState(state, roi, mask, maskSize, anchor);
    return zelStatusOk;
}

template <class Element>
ZelStatus initAllocGray(ZeliMorphGrayState** state, ZeliSize roi, const Element* mask, ZeliSize maskSize, ZeliPoint anchor)
{
    if (auto status = checkMask(state, roi, mask, maskSize, anchor)) return status;
    constexpr std::int64_t kHead = sizeof(ZeliMorphGrayState) / sizeof(Element);
    auto* const block = ownMalloc<Element>(std::int64_t(maskSize.width) * maskSize.height + kHead);
    if (!block) return zelStatusNoMemory;
    *state = reinterpret_cast<ZeliMorphGrayState*>(block);
    fillState(*state, roi, mask, maskSize, anchor);
    return zelStatusOk;
}

ZelStatus freeGray(ZeliMorphGrayState* state)
{
    if (auto status = checkPointers(state)) return status;
    zelFree(state);
    return zelStatusOk;
}

} // namespace

// Elements of 4 bytes, whatever their type: this is the 8u function too.
ZelStatus zeliMorphGrayGetSize_32f_C1R(ZeliSize roiSize, const Zel32f* mask, ZeliSize maskSize, Zel32s* size)
{
    if (auto status = checkPointers(mask, size)) return status;
    if (auto status = checkSize(roiSize)) return status;
    if (auto status = checkSize(maskSize)) return status;
    *size = (Wrapped(4) * maskSize.width * maskSize.height + int(sizeof(ZeliMorphGrayState))).value();
    return zelStatusOk;
}

#define GRAY_STATE(Sum, init, initAlloc, freeState)                                                                       \
    ZelStatus init(ZeliMorphGrayState* state, ZeliSize roiSize, const Sum::Element* mask, ZeliSize maskSize,              \
                   ZeliPoint anchor)                                                                                      \
    {                                                                                                                     \
        return initGray(state, roiSize, mask, maskSize, anchor);                                                          \
    }                                                                                                                     \
    ZelStatus initAlloc(ZeliMorphGrayState** state, ZeliSize roiSize, const Sum::Element* mask, ZeliSize maskSize,        \
                        ZeliPoint anchor)                                                                                 \
    {                                                                                                                     \
        return initAllocGray(state, roiSize, mask, maskSize, anchor);                                                     \
    }                                                                                                                     \
    ZelStatus freeState(ZeliMorphGrayState* state) { return freeGray(state); }
#define GRAY(Extreme, Sum, name)                                                                                          \
    ZelStatus name(const Sum::Pixel* src, int srcStep, Sum::Pixel* dst, int dstStep, ZeliSize roiSize,                    \
                   ZeliBorderType border, const ZeliMorphGrayState* state)                                                \
    {                                                                                                                     \
        return grayMorphology<Extreme, Sum>({src, srcStep}, {dst, dstStep}, roiSize, border, state);                      \
    }

GRAY_STATE(ByteSum, zeliMorphGrayInit_8u_C1R, zeliMorphGrayInitAlloc_8u_C1R, zeliMorphGrayFree_8u_C1R)
GRAY_STATE(FloatSum, zeliMorphGrayInit_32f_C1R, zeliMorphGrayInitAlloc_32f_C1R, zeliMorphGrayFree_32f_C1R)

GRAY(Largest, ByteSum, zeliGrayDilateBorder_8u_C1R)
GRAY(Largest, FloatSum, zeliGrayDilateBorder_32f_C1R)
GRAY(Smallest, ByteSum, zeliGrayErodeBorder_8u_C1R)
GRAY(Smallest, FloatSum, zeliGrayErodeBorder_32f_C1R)
