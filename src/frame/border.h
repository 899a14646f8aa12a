// Borders: which pixel stands in for one outside, and rows extended by such pixels.
#pragma once

#include "scratch.h"

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

// Feeds rows and their outside pixels to a row filter of `taps` taps without copying whole rows. The filter runs over three
// stretches: the first pixels on a copy of the row's start with the left border in front, the middle on the row itself, the
// last pixels on a copy of the row's end with the right border behind. A row narrower than the filter is copied whole.
template <class T, int Channels>
class ExtendedRow {
public:
    // `anchor` is the tap on the output pixel; `border` a kind, with the InMemory flags for left and right; `value` points to
    // one element a channel and is read for zeliBorderConstant only. Takes (taps - 1) 32-bit numbers, 3 * (taps - 1) pixels
    // of T, and `slack` elements that a filter may read behind either copy, from `scratch`.
    ExtendedRow(int width, int taps, int anchor, ZeliBorderType border, const T* value, Carver& scratch, int slack = 0)
        : width_(width), left_(anchor), right_(taps - 1 - anchor), inner_(std::min(width, taps - 1)), wide_(width >= taps)
    {
        source_ = scratch.take<int>(left_ + right_);
        head_ = scratch.take<T>(std::int64_t(Channels) * (left_ + inner_ + (wide_ ? 0 : right_)));
        tail_ = wide_ ? scratch.take<T>(std::int64_t(Channels) * (inner_ + right_)) : head_ + Channels * left_;
        scratch.take<T>(slack);

        const int kind = border & kBorderKindMask;
        const auto locate = [&](int i, bool inMemory) { return inMemory ? i : borderIndex(i, width, kind); };
        for (int i = 0; i < left_; ++i) source_[i] = locate(i - left_, border & zeliBorderInMemoryLeft);
        for (int i = 0; i < right_; ++i) source_[left_ + i] = locate(width + i, border & zeliBorderInMemoryRight);
        for (int i = 0; i < left_ + right_; ++i)
            if (source_[i] == kConstantPixel) copyPixels(borderPixel(i), value, 1);
    }

    // Calls filter(src, dst, elements) for the stretches of one row: dst[i] is to be made of src[i] and the taps - 1 pixels
    // behind it.
    template <class Out, class Filter>
    void apply(const T* row, Out* dst, const Filter& filter)
    {
        ownExtendRow(row);
        if (!wide_) {
            filter(head_, dst, Channels * width_);
            return;
        }
        if (left_ > 0) filter(head_, dst, Channels * left_);
        filter(row, dst + Channels * left_, Channels * (width_ - left_ - right_));
        if (right_ > 0) filter(tail_, dst + Channels * (width_ - right_), Channels * right_);
    }

    // Whether a stretch reads one of the copies and not the row itself.
    bool isCopy(const T* src) const { return src == head_ || src == tail_; }

private:
    static void copyPixels(T* dst, const T* src, int pixels)
    {
        for (int i = 0; i < Channels * pixels; ++i) std::memcpy(dst + i, src + i, sizeof(T)); // the row may stand anywhere
    }

    // Where border pixel `i` stands, counted from the left through both borders.
    T* borderPixel(int i) const { return i < left_ ? head_ + Channels * i : tail_ + Channels * (inner_ + i - left_); }

    // Fills the copies from one row. Border pixels of a constant stay as they are.
    void ownExtendRow(const T* row)
    {
        for (int i = 0; i < left_ + right_; ++i)
            if (source_[i] != kConstantPixel) copyPixels(borderPixel(i), row + std::ptrdiff_t(Channels) * source_[i], 1);
        copyPixels(head_ + Channels * left_, row, inner_);
        if (wide_) copyPixels(tail_, row + std::ptrdiff_t(Channels) * (width_ - inner_), inner_);
    }

    int width_;
    int left_, right_; // pixels of border
    int inner_;        // pixels of the row that are copied next to them
    bool wide_;        // the row is at least as wide as the filter
    int* source_;      // for each border pixel the pixel of the row that stands there, or kConstantPixel
    T* head_;          // left border and start of the row; the whole row with both borders when it is narrow
    T* tail_;          // end of the row and right border; the row inside head_ when it is narrow
};

} // namespace zelcv
