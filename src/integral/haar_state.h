// The record of a stage of Haar classifiers. One block holds it, the classifiers behind it, and all their rectangles behind
// those.
#pragma once

#include "zelcv.h"

#include <cstdint>

namespace zelcv {

// The sum over its box is I[a] - I[b] - I[c] + I[d].
template <class Number>
struct HaarRect {
    ZeliPoint a, b, c, d;
    Number weight;
};

template <class Number>
struct HaarClassifier {
    static constexpr Zel32s kTilted = 1;  // in `flags`: reads the tilted image
    static constexpr int kIndexShift = 8;  // in `flags`, from this bit on: the place in the caller's order

    Zel32s rectCount;
    HaarRect<Number>* rects;
    Number threshold, value1, value2;
    Zel32s flags;
};

} // namespace zelcv

struct ZeliHaarClassifier_32f {
    using Number = Zel32f;

    Zel32s classifierCount;
    Zel32s rectTotal;
    zelcv::HaarClassifier<Number>* classifiers;
    ZeliRect bounds;
    Zel32u tiltFlags;      // bit 0: tilted, or made so
    Zel32s twoRectCount;   // classifiers of two rectangles; they come first
    Zel32s shortRectCount; // those and the ones of three, which follow
    Zel32s rectTotal2;
    Zel32u firstWeightsAreMinusOne;
};

struct ZeliHaarClassifier_32s {
    using Number = Zel32s;

    Zel32s classifierCount;
    Zel32s rectTotal;
    zelcv::HaarClassifier<Number>* classifiers;
    ZeliRect bounds;
    Zel32u tiltFlags;
    Zel32s rectTotal2;
    Zel32s twoRectCount;
    Zel32s shortRectCount;
};

namespace zelcv {

constexpr std::int64_t kStageBytes = 56, kClassifierBytes = 32, kRectBytes = 36;

static_assert(sizeof(ZeliHaarClassifier_32f) == kStageBytes && sizeof(ZeliHaarClassifier_32s) <= kStageBytes);
static_assert(sizeof(HaarClassifier<Zel32f>) == kClassifierBytes && sizeof(HaarClassifier<Zel32s>) == kClassifierBytes);
static_assert(sizeof(HaarRect<Zel32f>) == kRectBytes && sizeof(HaarRect<Zel32s>) == kRectBytes);

} // namespace zelcv
