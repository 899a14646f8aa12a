// Borders: which pixel stands in for one outside, and rows extended by such pixels.
#pragma once

#include "scratch.h"
#include "vector/vec.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>

namespace zelcv {

constexpr ZeliBorderType kBorderKindMask = 15;
constexpr int kConstantPixel = std::numeric_limits<int>::min();

// The index that stands in for position `i` of a line of `length` pixels under a plain border kind; kConstantPixel where that
// is the border value.
inline int borderIndex(int i, int length, ZeliBorderType kind)
{
    if (i >= 0 && i < length) return i;
    const auto bounce = [&](std::int64_t period, int mirrorOffset) {
        const std::int64_t phase = ((i % period) + period) % period;
        return int(phase < length ? phase : period - mirrorOffset - phase);
    };
    switch (kind) {
    case zeliBorderReplicate: return i < 0 ? 0 : length - 1;
    case zeliBorderWrap: return ((i % length) + length) % length;
    case zeliBorderReflect: return length == 1 ? 0 : bounce(2 * (std::int64_t(length) - 1), 0);
    case zeliBorderReflectEdge: return bounce(2 * std::int64_t(length), 1);
    default: return kConstantPixel;
    }
}

// `count` rounded up to whole blocks, whose size is a power of two.
constexpr int wholeBlocks(int count, int block)
{
    return (count + block - 1) & -block;
}

// Feeds rows and their outside pixels to a row filter of `taps` taps that makes `block` elements at a time, without copying
// whole rows. The filter runs over three stretches: the middle on the row itself, the first blocks on a copy of the row's
// start with the left border in front, the last blocks on a copy of the row's end with the right border behind. A row too
// narrow for that is copied whole.
template <class T, int Channels>
class ExtendedRow {
public:
    // `anchor` is the tap on the output pixel; `border` a kind, with the InMemory flags for left and right; `value` points to
    // one element a channel and is read for zeliBorderConstant only; a block is at least a vector. Takes (taps - 1) 32-bit
    // numbers and at most 3 * (taps - 1) pixels and 2 * (block - 1) elements of T from `scratch`.
    // Inlined with all that it does, so that members that a caller has as constants cost nothing.
    ZELCV_INLINE ExtendedRow(int width, int taps, int anchor, ZeliBorderType border, const T* value, Carver& scratch,
                             int block)
        : elements_(Channels * width), left_(Channels * anchor), right_(Channels * (taps - 1 - anchor)),
          first_(wholeBlocks(left_, block)), last_(wholeBlocks(right_, block)),
          wide_(elements_ >= std::max(first_ + right_, last_ + left_))
    {
        const int leftPixels = anchor, rightPixels = taps - 1 - anchor;
        source_ = scratch.take<int>(leftPixels + rightPixels);
        if (wide_) {
            head_ = scratch.take<T>(left_ > 0 ? left_ + first_ + right_ : 0);
            tail_ = scratch.take<T>(right_ > 0 ? left_ + last_ + right_ : 0);
            rightBorder_ = tail_ + left_ + last_;
        } else {
            const int count = left_ + wholeBlocks(elements_, block) + right_;
            head_ = tail_ = scratch.take<T>(count);
            std::fill_n(head_, count, T()); // not what happens to be there, which may be numbers that take long to add
            rightBorder_ = head_ + left_ + elements_;
        }

        const int kind = border & kBorderKindMask;
        const auto locate = [&](int i, bool inMemory) { return inMemory ? i : borderIndex(i, width, kind); };
        for (int i = 0; i < leftPixels; ++i) source_[i] = locate(i - leftPixels, border & zeliBorderInMemoryLeft);
        for (int i = 0; i < rightPixels; ++i)
            source_[leftPixels + i] = locate(width + i, border & zeliBorderInMemoryRight);
        forBorderPixels([&](T* pixel, int source) ZELCV_INLINE {
            if (source == kConstantPixel) copyPixel(pixel, value);
        });
    }

    // Calls filter(src, dst, count, isCopy) for the stretches of one row: dst[i] is to be made of src[i] and the taps - 1
    // pixels behind it. From a copy whole blocks may be read, also where the last one is longer than the row.
    template <class Out, class Filter>
    ZELCV_INLINE void apply(const T* row, Out* dst, const Filter& filter) const
    {
        forBorderPixels([&](T* pixel, int source) ZELCV_INLINE {
            if (source != kConstantPixel) copyPixel(pixel, row + std::ptrdiff_t(Channels) * source);
        });
        if (!wide_) {
            std::memcpy(head_ + left_, row, sizeof(T) * std::size_t(elements_));
            filter(head_, dst, elements_, true);
            return;
        }
        if (left_ > 0) copyVectors(head_ + left_, row, first_ + right_);
        if (right_ > 0) copyVectors(tail_, row + (elements_ - last_ - left_), left_ + last_);
        // The middle first: a load from a copy waits for the stores that made it.
        const int inner = elements_ - first_ - last_;
        if (inner > 0) filter(row + (first_ - left_), dst + first_, inner, false);
        if (left_ > 0) filter(head_, dst, first_, true);
        if (right_ > 0) filter(tail_, dst + (elements_ - last_), last_, true);
    }

private:
    static void copyPixel(T* dst, const T* src)
    {
        for (int i = 0; i < Channels; ++i) std::memcpy(dst + i, src + i, sizeof(T)); // the row may stand anywhere
    }

    // At least a vector of elements: the last one overlaps the one before.
    static void copyVectors(T* dst, const T* src, int count)
    {
        const int last = count - kLanes<T>;
        for (int i = 0; i < last; i += kLanes<T>) store(dst + i, load(src + i));
        store(dst + last, load(src + last));
    }

    // use(pixel, source) for the pixels of both borders, left to right.
    template <class Use>
    ZELCV_INLINE void forBorderPixels(const Use& use) const
    {
        const int* source = source_;
        for (int i = 0; i < left_; i += Channels) use(head_ + i, *source++);
        for (int i = 0; i < right_; i += Channels) use(rightBorder_ + i, *source++);
    }

    int elements_;      // of a row
    int left_, right_;  // elements of border
    int first_, last_;  // elements that are made from the copies
    bool wide_;         // each copy takes what it needs from the row
    int* source_;       // for each border pixel the pixel of the row that stands there, or kConstantPixel
    T* head_;           // left border and start of the row; a narrow row with both borders
    T* tail_;           // end of the row and right border
    T* rightBorder_;
};

} // namespace zelcv
