// Applying stages of Haar classifiers to integral images.
//
//   t = sum of weight * (I[a] - I[b] - I[c] + I[d]) over the rectangles of a classifier
//   stage sum += threshold * norm > t ? value1 : value2
//
// and a pixel survives unless the stage's threshold exceeds the sum. The members differ in their numbers and in the order in
// which single-precision products are added.
#include "checks.h"
#include "integral/haar_state.h"
#include "scratch.h"
#include "vector/vector.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- numbers of the Apply functions
//
// A stage is computed for one pixel or for a vector of neighbours, in the same steps. Integers are unsigned while they are
// summed, so that they wrap.

struct OnePixel {
    template <class T>
    using Of = T;
    static constexpr int kPixels = 1;
};
struct Neighbours {
    template <class T>
    using Of = Vec<T>;
    static constexpr int kPixels = kLanes<Zel32f>;
};

inline Zel32s asSigned(Zel32u v) { return wrap(v); }
inline Vec<Zel32s> asSigned(Vec<Zel32u> v) { return Vec<Zel32s>(v); }
inline Zel32f asSigned(Zel32f v) { return v; }
inline Vec<Zel32f> asSigned(Vec<Zel32f> v) { return v; }
inline Zel32f toFloat(Zel32s v) { return Zel32f(v); }
using zelcv::toFloat;

// Images and norms may stand anywhere.
template <class Lanes, class T>
Lanes loadLanes(const T* from)
{
    Lanes lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

// Without a branch, which would be guessed wrongly half of the time.
template <class Number>
Number select(bool first, Number value1, Number value2)
{
    const Zel32u bits1 = std::bit_cast<Zel32u>(value1), bits2 = std::bit_cast<Zel32u>(value2);
    return std::bit_cast<Number>(bits2 ^ ((bits1 ^ bits2) & (0u - first)));
}
template <class Number>
Vec<Number> select(Vec<Zel32s> first, Number value1, Number value2)
{
    return first ? value1 : value2;
}

struct FloatSums {
    using State = ZeliHaarClassifier_32f;
    using Element = Zel32f;
    using BoxNumber = Zel32f;
    using StageNumber = Zel32f; // of norms and stage sums
    static constexpr bool kFirstOfThreeLast = false;
    static constexpr int kOthersWorthAVector = 1;
    template <class Pixels>
    using Total = typename Pixels::template Of<Zel32f>;

    static ZelStatus check() { return zelStatusOk; }
    template <class Lanes>
    static void add(Lanes& total, Lanes box, Zel32f weight) { total += box * weight; }
    template <class Lanes>
    static auto isBelow(Lanes total, Zel32f threshold, Lanes norm) { return threshold * norm > total; }
};

// In the group of three rectangles the first one's product is added last.
struct GroupedFloatSums : FloatSums {
    static constexpr bool kFirstOfThreeLast = true;
};

struct MixedSums : FloatSums {
    using Element = Zel32s;
    using BoxNumber = Zel32u;

    template <class Lanes, class Box>
    static void add(Lanes& total, Box box, Zel32f weight) { total += toFloat(asSigned(box)) * weight; }
};

struct IntegerSums {
    using State = ZeliHaarClassifier_32s;
    using Element = Zel32s;
    using BoxNumber = Zel32u;
    using StageNumber = Zel32u;
    static constexpr bool kFirstOfThreeLast = false;
    static constexpr int kOthersWorthAVector = 1;
    template <class Pixels>
    using Total = typename Pixels::template Of<Zel32u>;

    template <class Lanes>
    static void add(Lanes& total, Lanes box, Zel32s weight) { total += box * Zel32u(weight); }
    template <class Lanes>
    static auto isBelow(Lanes total, Zel32s threshold, Lanes norm)
    {
        return asSigned(total) < asSigned(norm * Zel32u(threshold));
    }
};

// Signed 32-bit lanes, widened: of each 16 bytes the first half in `low`, the second half in `high`.
struct WideLanes {
    Vec<std::uint64_t> low = {}, high = {};

    static WideLanes from(Vec<Zel32u> v)
    {
        const Vec<Zel32u> signs = Vec<Zel32u>(Vec<Zel32s>(v) < 0);
        return {Vec<std::uint64_t>(interleaveLow(v, signs)), Vec<std::uint64_t>(interleaveHigh(v, signs))};
    }
};

// 32-bit products, which wrap, in 64-bit totals, which are shifted left before they are compared.
class WideIntegerSums : public IntegerSums {
public:
    static constexpr int kOthersWorthAVector = kLanes<Zel32f> / 4; // a vector costs much more than a pixel here

    template <class Pixels>
    using Total = std::conditional_t<Pixels::kPixels == 1, std::uint64_t, WideLanes>;

    // A shift by 64 and more leaves nothing.
    explicit WideIntegerSums(int scaleFactor)
        : shift_(-std::int64_t(scaleFactor)), factor_(scaleFactor <= 0 && scaleFactor > -64 ? std::uint64_t(1) << shift_ : 0)
    {
    }

    ZelStatus check() const { return shift_ < 0 ? zelStatusBadArgument : zelStatusOk; }

    static void add(std::uint64_t& total, Zel32u box, Zel32s weight)
    {
        total += std::uint64_t(std::int64_t(wrap(box * Zel32u(weight))));
    }
    static void add(WideLanes& total, Vec<Zel32u> box, Zel32s weight)
    {
        const WideLanes product = WideLanes::from(box * Zel32u(weight));
        total.low += product.low;
        total.high += product.high;
    }

    bool isBelow(std::uint64_t total, Zel32s threshold, Zel32u norm) const
    {
        return std::int64_t(total * factor_) < std::int64_t(threshold) * wrap(norm);
    }
    Vec<Zel32s> isBelow(const WideLanes& total, Zel32s threshold, Vec<Zel32u> norm) const
    {
        const WideLanes norms = WideLanes::from(norm);
        // Negative where a < b, without a comparison of 64-bit numbers, which SSE2 has not.
        const auto compare = [&](Vec<std::uint64_t> sum, Vec<std::uint64_t> n) {
            const Vec<std::uint64_t> a = shiftLeft(sum, shift_), b = n * std::uint64_t(std::int64_t(threshold));
            return (a - b) ^ ((a ^ b) & ((a - b) ^ a));
        };
        const auto low = Vec<Zel32s>(compare(total.low, norms.low)), high = Vec<Zel32s>(compare(total.high, norms.high));
        return upperHalvesInGroups(low, high) < 0;
    }

private:
    std::int64_t shift_;
    std::uint64_t factor_; // the same as a factor
};

// ---- where the corners of boxes are

using Offsets = std::array<std::ptrdiff_t, 4>;

// In elements, as 32-bit numbers that wrap; `stride` is the step in elements.
template <class Number>
Offsets cornerOffsets(const HaarRect<Number>& rect, int stride)
{
    const auto offset = [=](ZeliPoint p) { return wrappingSum(wrappingProduct(p.y, stride), p.x); };
    return {offset(rect.a), offset(rect.b), offset(rect.c), offset(rect.d)};
}

// A few lone pixels in a row are too far apart for the processor to foresee.
template <class T>
void prefetchElements(const T* row, int begin, int end)
{
    constexpr int kLine = 64 / int(sizeof(T));
    for (int x = begin; x < end; x += kLine) __builtin_prefetch(row + x);
}

// The integral images of a call. Upright functions have one; mixed functions read tilted classifiers in a second one, from
// one row below and one element to the right. Corner offsets come from a list, or are computed at each use where there is
// none.
template <class Element, class State, bool Mixed, bool Listed>
class Images {
public:
    using Number = typename State::Number;

    // The list has four entries for each rectangle of `state`.
    Images(Plane<const Element> src, Plane<const Element> tilt, const State& state, Zel32s* list)
        : src_(src), tilt_(tilt), list_(list)
    {
        if (!Listed) return;
        for (Zel32s i = 0; i < state.classifierCount; ++i) {
            const auto& classifier = state.classifiers[i];
            const bool tilted = isTilted(classifier);
            const int stride = (tilted ? tilt.step : src.step) / 4;
            for (Zel32s j = 0; j < classifier.rectCount; ++j) {
                for (const auto offset : cornerOffsets(classifier.rects[j], stride)) *list++ = Zel32s(offset);
                lowest_[tilted] = std::max(lowest_[tilted], classifier.rects[j].a.y);
            }
        }
    }

    // Fetches the lowest rows that pixels `begin` to `end` of row `y` read: the rows above them have been read before.
    void prefetch(int y, int begin, int end) const
    {
        if (lowest_[false] > 0) prefetchElements(src_.row(wrappingSum(y, lowest_[false])), begin, end);
        if (lowest_[true] > 0) prefetchElements(tilt_.row(wrappingSum(y, 1, lowest_[true])), begin, end);
    }

    // One way through all classifiers of the stage, as seen from one pixel.
    class Walk {
    public:
        Walk(const Images& images, int x, int y)
            : pixels_{images.src_.row(y) + x, Mixed ? images.tilt_.row(y + 1) + x + 1 : nullptr},
              strides_{images.src_.step / 4, images.tilt_.step / 4}, next_(images.list_)
        {
        }
        // Goes on to `classifier` and returns the pixel in its image.
        const Element* enter(const HaarClassifier<Number>& classifier, Zel32s rectCount)
        {
            const bool tilted = isTilted(classifier);
            if (Listed) {
                list_ = next_;
                next_ += 4 * std::ptrdiff_t(rectCount);
            } else {
                rects_ = classifier.rects;
                stride_ = strides_[tilted];
            }
            return pixels_[tilted];
        }
        // Of rectangle `j` of that classifier.
        Offsets offsets(Zel32s j) const
        {
            if (!Listed) return cornerOffsets(rects_[j], stride_);
            const Zel32s* four = list_ + 4 * std::ptrdiff_t(j);
            return {four[0], four[1], four[2], four[3]};
        }

    private:
        const Element* pixels_[2]; // in the upright image, in the tilted one
        int strides_[2];
        const Zel32s *next_, *list_ = nullptr;
        const HaarRect<Number>* rects_ = nullptr;
        int stride_ = 0;
    };
    Walk walk(int x, int y) const { return Walk(*this, x, y); }

private:
    static bool isTilted(const HaarClassifier<Number>& classifier)
    {
        return Mixed && (classifier.flags & HaarClassifier<Number>::kTilted);
    }

    Plane<const Element> src_, tilt_;
    const Zel32s* list_;
    // How many rows below the pixel are read, in the upright image and in the tilted one; 0 where that is not known.
    Zel32s lowest_[2] = {};
};

// ---- application

// What all Apply functions are given besides their images.
template <class State>
struct Detection {
    using Number = typename State::Number;

    Plane<const Number> norm;
    Plane<Zel8u> mask;
    ZeliSize roi;
    Zel32s* positive;
    Number threshold;
    const State* state;

    template <class... Planes>
    ZelStatus check(Planes... images) const
    {
        if (auto status = checkPointers(images.data..., norm.data, mask.data, positive, state)) return status;
        if (auto status = checkSize(roi)) return status;
        return checkSteps(roi.width, images..., norm, mask);
    }
};

// The stage sums of `Vectors` times as many pixels as `Pixels` says.
template <class Pixels, int Vectors, class Sums, class Walk, class State>
auto stageSums(const Sums& sums, Walk walk, const State& state, const typename State::Number* norm)
{
    using Boxes = typename Pixels::template Of<typename Sums::BoxNumber>;
    using Value = typename Sums::StageNumber;
    using Stage = typename Pixels::template Of<Value>;
    std::array<Stage, Vectors> norms, stage = {};
    for (std::size_t v = 0; v < Vectors; ++v) norms[v] = loadLanes<Stage>(norm + v * Pixels::kPixels);

    // Adds a classifier of `count` rectangles; of as many as it has, where that is 0.
    const auto addClassifier = [&](auto count, const auto& classifier, bool firstLast) {
        const Zel32s rectCount = count() != 0 ? count() : classifier.rectCount;
        const auto* image = walk.enter(classifier, rectCount);
        typename Sums::template Total<Pixels> totals[Vectors] = {};
        const auto addRect = [&](Zel32s j) {
            const Offsets at = walk.offsets(j);
            const auto weight = classifier.rects[j].weight;
            for (std::size_t v = 0; v < Vectors; ++v) {
                const auto corner = [&](std::size_t k) { return loadLanes<Boxes>(image + at[k] + v * Pixels::kPixels); };
                sums.add(totals[v], Boxes(corner(0) - corner(1) - corner(2) + corner(3)), weight);
            }
        };
        for (Zel32s j = firstLast ? 1 : 0; j < rectCount; ++j) addRect(j);
        if (firstLast) addRect(0);
        for (std::size_t v = 0; v < Vectors; ++v)
            stage[v] += select(sums.isBelow(totals[v], classifier.threshold, norms[v]), Value(classifier.value1),
                               Value(classifier.value2));
    };
    for (Zel32s i = 0; i < state.classifierCount; ++i) {
        const auto& classifier = state.classifiers[i];
        if (classifier.rectCount == 2)
            addClassifier(std::integral_constant<Zel32s, 2>(), classifier, false); // in any order two products have one sum
        else if (classifier.rectCount != 3)
            addClassifier(std::integral_constant<Zel32s, 0>(), classifier, false);
        else if (Sums::kFirstOfThreeLast && i < state.shortRectCount)
            addClassifier(std::integral_constant<Zel32s, 3>(), classifier, true);
        else
            addClassifier(std::integral_constant<Zel32s, 3>(), classifier, false);
    }
    return stage;
}

// ---- masks

inline std::uint64_t eightBytes(const Zel8u* from)
{
    std::uint64_t bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

// The first pixel from `x` on that is marked; `end` where there is none.
inline int nextMarked(const Zel8u* mask, int x, int end)
{
    for (; end - x >= 8; x += 8)
        if (const std::uint64_t bytes = eightBytes(mask + x)) return x + std::countr_zero(bytes) / 8;
    while (x < end && mask[x] == 0) ++x;
    return x;
}

// The pixel behind the last one that is marked; 0 where there is none.
inline int endOfMarked(const Zel8u* mask, int end)
{
    for (; end >= 8; end -= 8)
        if (const std::uint64_t bytes = eightBytes(mask + end - 8)) return end - std::countl_zero(bytes) / 8;
    while (end > 0 && mask[end - 1] == 0) --end;
    return end;
}

// A bit for each of `Pixels` pixels that is marked, the first one's lowest.
template <int Pixels>
Zel32u markedBits(const Zel8u* mask)
{
    if constexpr (Pixels == 1)
        return mask[0] != 0;
    else
        return laneBits(Vec<Zel8s>(loadFirst<Pixels>(mask) != 0)) & ((1u << Pixels) - 1);
}

// Runs a stage over the marked pixels of a region. Between the first and the last marked pixel of a row others are computed
// beside them, as far as vectors need, but neither counted nor changed; none outside of those is even read.
template <class Sums, class Sources>
class Detector {
public:
    using State = typename Sums::State;
    using Number = typename State::Number;

    Detector(const Sums& sums, const Sources& sources, const Detection<State>& call)
        : sums_(sums), sources_(sources), call_(call)
    {
    }

    void run()
    {
        for (int y = 0; y < call_.roi.height; ++y) runRow(y);
        *call_.positive = wrap(survivors_);
    }

private:
    static constexpr int kNarrow = Neighbours::kPixels, kWide = 16;

    void runRow(int y)
    {
        const Zel8u* mask = call_.mask.row(y);
        const int end = endOfMarked(mask, call_.roi.width), begin = nextMarked(mask, 0, end);
        if (begin == end) return;
        sources_.prefetch(y, begin, end);
        prefetchElements(call_.norm.row(y), begin, end);
        for (int x = begin; x < end;) {
            if (end - x >= kWide && needsWide(markedBits<kWide>(mask + x)))
                x = runBlock<Neighbours, kWide / kNarrow>(x, x, y);
            else if (end - begin >= kNarrow && isWorthAVector(mask, x, end))
                x = runBlock<Neighbours, 1>(std::min(x, end - kNarrow), x, y);
            else
                x = runBlock<OnePixel, 1>(x, x, y);
            x = nextMarked(mask, x, end);
        }
    }

    // Whether a vector from this marked pixel on holds enough others.
    static bool isWorthAVector(const Zel8u* mask, int x, int end)
    {
        const int vectorEnd = std::min(x + kNarrow, end);
        for (int others = 0; others < Sums::kOthersWorthAVector; ++others) {
            x = nextMarked(mask, x + 1, vectorEnd);
            if (x == vectorEnd) return false;
        }
        return true;
    }

    // Whether most vectors of a wide block hold a marked pixel.
    static bool needsWide(Zel32u marked)
    {
        int vectors = 0;
        for (int first = 0; first < kWide; first += kNarrow) vectors += (marked >> first & ((1u << kNarrow) - 1)) != 0;
        return 2 * vectors > kWide / kNarrow;
    }

    // The pixels from `start` on, of which those before `x` are done already. Returns the pixel behind them.
    template <class Pixels, int Vectors>
    int runBlock(int start, int x, int y)
    {
        constexpr int kPixels = Vectors * Pixels::kPixels;
        const Number* norm = call_.norm.row(y) + start;
        const auto stage = stageSums<Pixels, Vectors>(sums_, sources_.walk(start, y), *call_.state, norm);
        Zel32u failed = 0;
        for (int v = 0; v < Vectors; ++v) {
            const auto fails = call_.threshold > asSigned(stage[std::size_t(v)]);
            if constexpr (Pixels::kPixels == 1)
                failed = fails;
            else
                failed |= laneBits(Vec<Zel32s>(fails)) << v * Pixels::kPixels;
        }
        Zel8u* mask = call_.mask.row(y) + start;
        const Zel32u marked = markedBits<kPixels>(mask) >> (x - start) << (x - start);
        survivors_ += Zel32u(std::popcount(marked & ~failed));
        for (Zel32u bits = marked & failed; bits != 0; bits &= bits - 1) mask[std::countr_zero(bits)] = 0;
        return start + kPixels;
    }

    const Sums& sums_;
    const Sources& sources_;
    const Detection<State>& call_;
    Zel32u survivors_ = 0;
};

// Without memory for the offsets nothing happens, and the call still succeeds.
template <class Sums>
ZelStatus applyUpright(Plane<const typename Sums::Element> src, const Detection<typename Sums::State>& call)
{
    if (auto status = call.check(src)) return status;
    const auto& state = *call.state;
    OwnedBlock list(ownMalloc_32s(4 * std::int64_t(state.rectTotal)));
    if (!list && state.rectTotal > 0) return zelStatusOk;
    using Sources = Images<typename Sums::Element, typename Sums::State, false, true>;
    Detector(Sums(), Sources(src, src, state, static_cast<Zel32s*>(list.get())), call).run();
    return zelStatusOk;
}

// Takes no memory: the offsets of a stage of usual size stand on the stack.
template <class Sums>
ZelStatus applyMixed(Plane<const typename Sums::Element> src, Plane<const typename Sums::Element> tilt,
                     const Detection<typename Sums::State>& call, const Sums& sums = Sums())
{
    if (auto status = call.check(src, tilt)) return status;
    if (auto status = sums.check()) return status;
    constexpr Zel32s kListedRects = 256;
    const auto& state = *call.state;
    if (state.rectTotal <= kListedRects) {
        using Sources = Images<typename Sums::Element, typename Sums::State, true, true>;
        Zel32s list[4 * kListedRects];
        Detector(sums, Sources(src, tilt, state, list), call).run();
    } else {
        using Sources = Images<typename Sums::Element, typename Sums::State, true, false>;
        Detector(sums, Sources(src, tilt, state, nullptr), call).run();
    }
    return zelStatusOk;
}

} // namespace

ZelStatus zeliApplyHaarClassifier_32f_C1R(const Zel32f* src, int srcStep, const Zel32f* norm, int normStep, Zel8u* mask,
                                          int maskStep, ZeliSize roiSize, Zel32s* positive, Zel32f threshold,
                                          const ZeliHaarClassifier_32f* state)
{
    return applyUpright<GroupedFloatSums>({src, srcStep},
                                          {{norm, normStep}, {mask, maskStep}, roiSize, positive, threshold, state});
}

ZelStatus zeliApplyHaarClassifier_32s32f_C1R(const Zel32s* src, int srcStep, const Zel32f* norm, int normStep, Zel8u* mask,
                                             int maskStep, ZeliSize roiSize, Zel32s* positive, Zel32f threshold,
                                             const ZeliHaarClassifier_32f* state)
{
    return applyUpright<MixedSums>({src, srcStep}, {{norm, normStep}, {mask, maskStep}, roiSize, positive, threshold, state});
}

// Applies no scale.
ZelStatus zeliApplyHaarClassifier_32s_C1RSfs(const Zel32s* src, int srcStep, const Zel32s* norm, int normStep, Zel8u* mask,
                                             int maskStep, ZeliSize roiSize, Zel32s* positive, Zel32s threshold,
                                             const ZeliHaarClassifier_32s* state, int)
{
    return applyUpright<IntegerSums>({src, srcStep},
                                     {{norm, normStep}, {mask, maskStep}, roiSize, positive, threshold, state});
}

ZelStatus zeliApplyMixedHaarClassifier_32f_C1R(const Zel32f* src, int srcStep, const Zel32f* tilt, int tiltStep,
                                               const Zel32f* norm, int normStep, Zel8u* mask, int maskStep, ZeliSize roiSize,
                                               Zel32s* positive, Zel32f threshold, const ZeliHaarClassifier_32f* state)
{
    return applyMixed<FloatSums>({src, srcStep}, {tilt, tiltStep},
                                 {{norm, normStep}, {mask, maskStep}, roiSize, positive, threshold, state});
}

ZelStatus zeliApplyMixedHaarClassifier_32s32f_C1R(const Zel32s* src, int srcStep, const Zel32s* tilt, int tiltStep,
                                                  const Zel32f* norm, int normStep, Zel8u* mask, int maskStep,
                                                  ZeliSize roiSize, Zel32s* positive, Zel32f threshold,
                                                  const ZeliHaarClassifier_32f* state)
{
    return applyMixed<MixedSums>({src, srcStep}, {tilt, tiltStep},
                                 {{norm, normStep}, {mask, maskStep}, roiSize, positive, threshold, state});
}

ZelStatus zeliApplyMixedHaarClassifier_32s_C1RSfs(const Zel32s* src, int srcStep, const Zel32s* tilt, int tiltStep,
                                                  const Zel32s* norm, int normStep, Zel8u* mask, int maskStep,
                                                  ZeliSize roiSize, Zel32s* positive, Zel32s threshold,
                                                  const ZeliHaarClassifier_32s* state, int scaleFactor)
{
    return applyMixed<WideIntegerSums>({src, srcStep}, {tilt, tiltStep},
                                       {{norm, normStep}, {mask, maskStep}, roiSize, positive, threshold, state},
                                       WideIntegerSums(scaleFactor));
}
