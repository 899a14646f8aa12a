// Making stages of Haar classifiers: their records, their size, tilting their rectangles, and their end.
//
// A rectangle becomes the four corners of an integral image that give the sum over it. What is laid down is what the Apply
// functions read; haar_state.h has the layout.
#include "checks.h"
#include "integral/haar_state.h"
#include "scratch.h"

#include <algorithm>
#include <limits>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- creation

struct Upright {
    static constexpr Zel32u kTiltFlags = 0;

    static bool valid(ZeliRect r) { return r.x >= 0 && r.y >= 0 && r.width >= 1 && r.height >= 1; }
    static ZeliRect startOfBounds(ZeliRect r) { return r; }
    template <class Number>
    static void setCorners(HaarRect<Number>& rect, ZeliRect r)
    {
        const Zel32s right = wrappingSum(r.x, r.width), bottom = wrappingSum(r.y, r.height);
        rect.a = {right, bottom};
        rect.b = {r.x, bottom};
        rect.c = {right, r.y};
        rect.d = {r.x, r.y};
    }
};

// The sides run down to the right, over `width` columns, and down to the left, over `height` columns.
struct Tilted {
    static constexpr Zel32u kTiltFlags = 1;

    static bool valid(ZeliRect r) { return Upright::valid(r) && r.height - 1 <= r.x; }
    static ZeliRect startOfBounds(ZeliRect r)
    {
        return {r.x, r.y, (Wrapped(r.width) - r.height).value(), wrappingSum(r.width, r.height)};
    }
    template <class Number>
    static void setCorners(HaarRect<Number>& rect, ZeliRect r)
    {
        const Wrapped x = r.x, y = r.y, w = r.width, h = r.height;
        rect.a = {(x + w - h).value(), (y + w + h).value()};
        rect.b = {(x - h).value(), (y + h).value()};
        rect.c = {(x + w).value(), (y + w).value()};
        rect.d = {r.x, r.y};
    }
};

template <class Number>
struct CallersClassifiers {
    const ZeliRect* rects;
    const Number *weights, *thresholds, *values1, *values2;
    const Zel32s* rectCounts;
    Zel32s count;
};

// Writes the records of a stage one behind the other.
template <class Shape, class State>
class StageWriter {
public:
    using Number = typename State::Number;

    StageWriter(State* state, HaarRect<Number>* rects, const CallersClassifiers<Number>& from)
        : state_(state), next_(state->classifiers), nextRect_(rects), from_(from)
    {
        state_->bounds = Shape::startOfBounds(from.rects[0]);
    }

    // Classifier `index`, whose rectangles start at `first` in the caller's list. False when one of them is not valid.
    bool write(Zel32s index, std::int64_t first)
    {
        const Zel32s rectCount = from_.rectCounts[index];
        *next_++ = {rectCount, nextRect_, from_.thresholds[index], from_.values1[index], from_.values2[index],
                    wrappingSum(Shape::kTiltFlags, wrappingShift(index, HaarClassifier<Number>::kIndexShift))};
        for (std::int64_t i = first; i < first + rectCount; ++i) {
            if (!Shape::valid(from_.rects[i])) return false;
            Shape::setCorners(*nextRect_, from_.rects[i]);
            nextRect_->weight = from_.weights[i];
            enlargeBounds(*nextRect_++);
        }
        state_->rectTotal2 += rectCount;
        return true;
    }

    void finish()
    {
        ZeliRect& bounds = state_->bounds;
        bounds.width = (Wrapped(bounds.width) - bounds.x).value();
        bounds.height = (Wrapped(bounds.height) - bounds.y).value();
    }

private:
    // While they grow, width and height hold the right and the bottom edge, but are compared as what they are called.
    void enlargeBounds(const HaarRect<Number>& rect)
    {
        ZeliRect& bounds = state_->bounds;
        bounds.x = std::min(bounds.x, rect.d.x);
        bounds.y = std::min(bounds.y, rect.d.y);
        if (rect.a.x > wrappingSum(bounds.width, bounds.x)) bounds.width = rect.a.x;
        if (rect.a.y > wrappingSum(bounds.height, bounds.y)) bounds.height = rect.a.y;
    }

    State* state_;
    HaarClassifier<Number>* next_;
    HaarRect<Number>* nextRect_;
    const CallersClassifiers<Number>& from_;
};

// Upright classifiers stand in three groups, those of two rectangles first, then those of three, then all others, each group
// in the caller's order; tilted ones stand in the caller's order. False when a rectangle is not valid.
template <class Shape, class State>
bool writeStage(State* state, HaarRect<typename State::Number>* rects, const CallersClassifiers<typename State::Number>& from)
{
    StageWriter<Shape, State> writer(state, rects, from);
    const auto writeThose = [&](auto belongs) {
        std::int64_t first = 0;
        Zel32s written = 0;
        for (Zel32s i = 0; i < from.count; first += from.rectCounts[i++]) {
            if (!belongs(from.rectCounts[i])) continue;
            if (!writer.write(i, first)) return -1;
            ++written;
        }
        return written;
    };
    if constexpr (std::is_same_v<Shape, Tilted>) {
        if (writeThose([](Zel32s) { return true; }) < 0) return false;
    } else {
        const Zel32s pairs = writeThose([](Zel32s rectCount) { return rectCount == 2; });
        if (pairs < 0) return false;
        const Zel32s triples = writeThose([](Zel32s rectCount) { return rectCount == 3; });
        if (triples < 0 || writeThose([](Zel32s rectCount) { return rectCount != 2 && rectCount != 3; }) < 0) return false;
        state->twoRectCount = pairs;
        state->shortRectCount = pairs + triples;
    }
    writer.finish();
    return true;
}

bool firstWeightsAreMinusOne(const CallersClassifiers<Zel32f>& from)
{
    std::int64_t first = 0;
    for (Zel32s i = 0; i < from.count; first += from.rectCounts[i++])
        if (!(from.weights[first] > -2 && from.weights[first] <= -1)) return false;
    return true;
}

template <class Shape, class State>
ZelStatus create(State** state, const CallersClassifiers<typename State::Number>& from)
{
    using Number = typename State::Number;
    constexpr bool kUprightFloats = std::is_same_v<Shape, Upright> && std::is_same_v<Number, Zel32f>;

    if (auto status = checkPointers(state, from.rects, from.weights, from.thresholds, from.values1, from.values2,
                                    from.rectCounts))
        return status;
    if (from.count < 0) return zelStatusBadSize;
    std::int64_t rectTotal = 0;
    for (Zel32s i = 0; i < from.count; ++i) {
        if (from.rectCounts[i] < 1) return zelStatusBadSize;
        rectTotal += from.rectCounts[i];
    }
    if constexpr (kUprightFloats)
        if (!std::all_of(from.rects, from.rects + rectTotal, Shape::valid)) return zelStatusBadArgument;

    if (rectTotal > std::numeric_limits<Zel32s>::max()) return zelStatusNoMemory; // the record cannot count them
    OwnedBlock block(ownMalloc_8u(kStageBytes + kClassifierBytes * from.count + kRectBytes * rectTotal));
    if (!block) return zelStatusNoMemory;
    Carver pieces(static_cast<Zel8u*>(block.get()));
    State* made = new (pieces.take<State>(1)) State{};
    made->classifierCount = from.count;
    made->rectTotal = Zel32s(rectTotal);
    made->classifiers = pieces.take<HaarClassifier<Number>>(from.count);
    made->tiltFlags = Shape::kTiltFlags;
    if (!writeStage<Shape>(made, pieces.take<HaarRect<Number>>(rectTotal), from)) {
        *state = nullptr;
        return zelStatusBadArgument;
    }
    if constexpr (kUprightFloats) made->firstWeightsAreMinusOne = firstWeightsAreMinusOne(from);
    *state = made;
    block.release();
    return zelStatusOk;
}

template <class State>
ZelStatus destroy(State* state)
{
    if (auto status = checkPointers(state)) return status;
    ownFree(state);
    return zelStatusOk;
}

// ---- size and tilt

template <class State>
ZelStatus getSize(const State* state, ZeliSize* size)
{
    if (auto status = checkPointers(state, size)) return status;
    *size = {0, 0};
    for (Zel32s i = 0; i < state->classifierCount; ++i) {
        const auto& classifier = state->classifiers[i];
        for (Zel32s j = 0; j < classifier.rectCount; ++j) {
            size->width = std::max(size->width, classifier.rects[j].c.x);
            size->height = std::max(size->height, classifier.rects[j].a.y);
        }
    }
    return zelStatusOk;
}

// The tilted rectangle that takes the place of an upright one. With `keepTop` its top corner stands where the upright one had
// its top left corner; without, its bottom corner stands where that one had its bottom left corner. Stages of 32s make
// squares.
template <class Number>
ZeliRect tilted(const HaarRect<Number>& rect, bool keepTop)
{
    const Wrapped x = rect.d.x, y = rect.d.y, width = Wrapped(rect.c.x) - x, height = Wrapped(rect.b.y) - y;
    const Wrapped side = std::is_same_v<Number, Zel32s> ? width : height;
    if (keepTop) return {x.value(), y.value(), width.value(), side.value()};
    return {(x + width - side).value(), (y + height - side - width).value(), side.value(), width.value()};
}

template <class State>
ZelStatus tilt(const Zel8u* mask, int flag, State* state)
{
    using Classifier = HaarClassifier<typename State::Number>;
    if (auto status = checkPointers(mask, state)) return status;
    if (state->tiltFlags & 1) return zelStatusBadArgument;
    Classifier* const first = state->classifiers;
    Classifier* const last = first + state->classifierCount;
    for (Zel32s i = 0; i < state->classifierCount; ++i) {
        if (mask[i] == 0) continue;
        state->tiltFlags |= 1;
        Classifier* const found =
            std::find_if(first, last, [=](const Classifier& c) { return c.flags >> Classifier::kIndexShift == i; });
        if (found == last) continue;
        found->flags = Classifier::kTilted;
        for (Zel32s j = 0; j < found->rectCount; ++j)
            Tilted::setCorners(found->rects[j], tilted(found->rects[j], flag != 0));
    }
    return zelStatusOk;
}

} // namespace

ZelStatus zeliHaarClassifierInitAlloc_32f(ZeliHaarClassifier_32f** state, const ZeliRect* rects, const Zel32f* weights,
                                          const Zel32f* thresholds, const Zel32f* values1, const Zel32f* values2,
                                          const Zel32s* rectCounts, int classifierCount)
{
    return create<Upright>(state, {rects, weights, thresholds, values1, values2, rectCounts, classifierCount});
}

ZelStatus zeliHaarClassifierInitAlloc_32s(ZeliHaarClassifier_32s** state, const ZeliRect* rects, const Zel32s* weights,
                                          const Zel32s* thresholds, const Zel32s* values1, const Zel32s* values2,
                                          const Zel32s* rectCounts, int classifierCount)
{
    return create<Upright>(state, {rects, weights, thresholds, values1, values2, rectCounts, classifierCount});
}

ZelStatus zeliTiltedHaarClassifierInitAlloc_32f(ZeliHaarClassifier_32f** state, const ZeliRect* rects, const Zel32f* weights,
                                                const Zel32f* thresholds, const Zel32f* values1, const Zel32f* values2,
                                                const Zel32s* rectCounts, int classifierCount)
{
    return create<Tilted>(state, {rects, weights, thresholds, values1, values2, rectCounts, classifierCount});
}

ZelStatus zeliTiltedHaarClassifierInitAlloc_32s(ZeliHaarClassifier_32s** state, const ZeliRect* rects, const Zel32s* weights,
                                                const Zel32s* thresholds, const Zel32s* values1, const Zel32s* values2,
                                                const Zel32s* rectCounts, int classifierCount)
{
    return create<Tilted>(state, {rects, weights, thresholds, values1, values2, rectCounts, classifierCount});
}

ZelStatus zeliHaarClassifierFree_32f(ZeliHaarClassifier_32f* state) { return destroy(state); }
ZelStatus zeliHaarClassifierFree_32s(ZeliHaarClassifier_32s* state) { return destroy(state); }

ZelStatus zeliGetHaarClassifierSize_32f(const ZeliHaarClassifier_32f* state, ZeliSize* size) { return getSize(state, size); }
ZelStatus zeliGetHaarClassifierSize_32s(const ZeliHaarClassifier_32s* state, ZeliSize* size) { return getSize(state, size); }

ZelStatus zeliTiltHaarFeatures_32f(const Zel8u* mask, int flag, ZeliHaarClassifier_32f* state)
{
    return tilt(mask, flag, state);
}

ZelStatus zeliTiltHaarFeatures_32s(const Zel8u* mask, int flag, ZeliHaarClassifier_32s* state)
{
    return tilt(mask, flag, state);
}
