// Canny edges from two derivative planes.
//
// The strength of a pixel is |dx| + |dy|, or 0 where that does not exceed the low threshold. A pixel survives when it is the
// strongest of itself and its two neighbours across the edge; survivors above the high threshold are edges, and so is each
// survivor that is linked to an edge through survivors. It takes three steps:
//   1. down the rows, strengths into a ring of three rows, and suppression one row behind;
//   2. linking, from the edges that border on other survivors;
//   3. the bits of the edges, written to dst as bytes.
// What is known of a pixel is a bit in one of two planes: an edge, or a candidate that may become one. Most words of such a
// plane are zero and passed over at once.
#include "checks.h"
#include "scratch.h"
#include "vector/vector.h"

#include <algorithm>
#include <bit>
#include <cmath>

using namespace zelcv;

namespace {

constexpr double kSteep = 2.414213562373095, kFlat = 0.41421356237309503; // tangents of 67.5 and 22.5 degrees

// ---- strength and direction of a block of pixels

// The direction across the edge: down the column, along the row, otherwise a diagonal: where `falling`, the one that goes
// down to the right.
template <class Mask>
struct Direction {
    Mask column, row, falling;
};

// The elements of a 16-bit row as single precision, as many as fill a vector; of the last ones of a row `count`, then zeros.
inline Vec<Zel32f> loadFloatsUpTo(const Zel16s* from, int count)
{
    typedef Zel16s Half __attribute__((vector_size(kVectorBytes / 2)));
    Half half = {};
    if (count >= kLanes<Zel32f>)
        std::memcpy(&half, from, sizeof half);
    else
        std::memcpy(&half, from, sizeof(Zel16s) * std::size_t(count));
    return __builtin_convertvector(half, Vec<Zel32f>);
}

// Products in double precision, rounded to single.
inline Vec<Zel32f> timesInDouble(Vec<Zel32f> v, double factor) { return toFloat(toDoubles(v) * splatDoubles(factor)); }

// Derivatives of either type in single precision, where 16-bit ones and their sums are exact.
template <class Source>
struct FloatGradient {
    using Strength = Zel32f;
    using Derivative = Vec<Zel32f>;
    Zel32f low, high;

    static Derivative read(const Source* from, int count)
    {
        if constexpr (std::is_same_v<Source, Zel32f>)
            return loadUpTo(from, count);
        else
            return loadFloatsUpTo(from, count);
    }
    // Comparisons with a NaN, in the data or as a threshold, come out as they are written.
    Vec<Zel32f> strength(Derivative dx, Derivative dy) const
    {
        const Vec<Zel32f> sum = absolute(dx) + absolute(dy);
        return sum <= low ? Vec<Zel32f>{} : sum;
    }
    Vec<Zel32s> isStrong(Vec<Zel32f> strength) const { return strength > high; }
    static Direction<Vec<Zel32s>> direction(Derivative dx, Derivative dy)
    {
        const Vec<Zel32f> ax = absolute(dx), ay = absolute(dy);
        const Vec<Zel32s> signs = Vec<Zel32s>(dx) ^ Vec<Zel32s>(dy);
        return {ay > timesInDouble(ax, kSteep), ay < timesInDouble(ax, kFlat), signs >= 0};
    }
};

// The bounds between the directions, |dx| * kSteep and |dx| * kFlat in double rounded to single, part the pairs of 16-bit
// derivatives as two fractions do, but for one pair each: the rounding puts it on the other side of its bound.
struct Pair {
    int dx, dy;
};
constexpr Pair kSteepFraction{2378, 5741}, kNotSteep{8527, 20586};
constexpr Pair kFlatFraction{20586, 8527}, kFlatToo{32068, 13283};

constexpr bool fractionsAreExact()
{
    constexpr int largest = 32768; // |dx| and |dy|
    for (int ax = 0; ax <= largest; ++ax) {
        // |dy| exceeds a bound when it exceeds its integer part, and lies below it when it lies below the next integer.
        const auto steep = Zel32f(double(ax) * kSteep), flat = Zel32f(double(ax) * kFlat);
        const int lastNotSteep = int(steep), firstNotFlat = int(flat) + (Zel32f(int(flat)) < flat);
        const int bySteep = ax * kSteepFraction.dy / kSteepFraction.dx + (ax == kNotSteep.dx);
        const int byFlat = (ax * kFlatFraction.dy + kFlatFraction.dx - 1) / kFlatFraction.dx + (ax == kFlatToo.dx);
        if (std::min(lastNotSteep, largest) != std::min(bySteep, largest) || firstNotFlat != byFlat) return false;
    }
    return true;
}
static_assert(fractionsAreExact());

// 16-bit derivatives under a low threshold of 1 or more. Strengths count from that threshold: only differences matter to the
// suppression, and |dx| + |dy| - low fits 16 bits, which the largest sum, 65536, does not.
struct ShortGradient {
    using Strength = Zel16u;
    using Derivative = Vec<Zel16s>;
    Zel16u low, high; // `high` counts from `low` too

    ShortGradient(Zel32f lowThreshold, Zel32f highThreshold)
        : low(Zel16u(std::min(lowThreshold, 65535.f))),
          high(highThreshold < 65536.f ? Zel16u(int(highThreshold) - low) : 65535) // a NaN exceeds nothing
    {
    }

    static Derivative read(const Zel16s* from, int count) { return loadUpTo(from, count); }
    Vec<Zel16u> strength(Derivative dx, Derivative dy) const
    {
        const Vec<Zel16u> ax = absolute(dx), ay = absolute(dy), threshold = splat(low);
        return subtractSaturating(ax, subtractSaturating(threshold, ay)) + subtractSaturating(ay, threshold);
    }
    Vec<Zel16s> isStrong(Vec<Zel16u> strength) const { return strength > high; }
    static Direction<Vec<Zel16s>> direction(Derivative dx, Derivative dy)
    {
        // Negative absolute values always fit.
        const Vec<Zel16s> nx = negativeAbsolute(dx), ny = negativeAbsolute(dy);
        const Vec<Zel16s> low = interleaveLow(nx, ny), high = interleaveHigh(nx, ny);
        const auto isPositive = [=](int x, int y) { // nx * x + ny * y > 0
            const Zel16s pair[] = {Zel16s(x), Zel16s(y)};
            const Vec<Zel16s> weights = splatPair(pair);
            return narrowPairs<Zel16s>(Vec<Zel32s>(multiplyAddPairs(low, weights)) > 0,
                                       Vec<Zel32s>(multiplyAddPairs(high, weights)) > 0);
        };
        const auto is = [=](Pair pair) { return (nx == Zel16s(-pair.dx)) & (ny == Zel16s(-pair.dy)); };
        return {isPositive(kSteepFraction.dy, -kSteepFraction.dx) & ~is(kNotSteep),
                isPositive(-kFlatFraction.dy, kFlatFraction.dx) | is(kFlatToo),
                (dx ^ dy) >= 0};
    }
};

// ---- scratch memory

constexpr int kWordBits = 32;

// A bit for each of a word's elements that is not zero, the first element's lowest.
inline Zel32u nonZeroBits(const Vec<Zel16u> (&blocks)[kWordBits / kLanes<Zel16u>])
{
    Zel32u zeros = 0;
    for (int i = 0; i < kWordBits; i += kLanes<Zel8u>) {
        const Vec<Zel16u>* pair = blocks + i / kLanes<Zel16u>;
        const Vec<Zel8s> bytes = narrowInOrder<Zel8s>(Vec<Zel16s>(pair[0]), Vec<Zel16s>(pair[1])); // never to 0
        zeros |= laneBits(Vec<Zel8s>(bytes == 0)) << i;
    }
    return ~zeros;
}
inline Zel32u nonZeroBits(const Vec<Zel32f> (&blocks)[kWordBits / kLanes<Zel32f>])
{
    Zel32u bits = 0;
    for (int i = 0; i < kWordBits; i += kLanes<Zel32f>) bits |= laneBits(Vec<Zel32s>(blocks[i / kLanes<Zel32f>] != 0)) << i;
    return bits;
}

// A bit for each pixel, the first in the lowest bit of a word, with frame rows above and below and at least one spare bit at
// the end of each row; all that surrounds the image is 0. A pixel's index counts the bits from the start of the plane.
struct BitPlane {
    Zel32u* words;
    std::ptrdiff_t pitch; // words from row to row

    static std::ptrdiff_t pitchOf(int width) { return width / kWordBits + 1; }
    // One word before the frame row above and one behind the frame row below make room for any look around a pixel.
    BitPlane(Carver& carver, ZeliSize roi) : pitch(pitchOf(roi.width))
    {
        const std::ptrdiff_t frame = pitch + 1, inside = pitch * roi.height;
        words = carver.take<Zel32u>(frame + inside + frame);
        std::fill_n(words, frame, 0);
        std::fill_n(words + frame + inside, frame, 0);
    }

    Zel32u* row(int y) const { return words + 1 + (y + 1) * pitch; }
    // The bits at `index` and the next two.
    Zel32u three(Zel32u index) const
    {
        Zel32u bits; // the processor stores low bytes first, so a word may start at any byte
        std::memcpy(&bits, reinterpret_cast<const char*>(words) + index / 8, sizeof bits);
        return bits >> index % 8 & 7;
    }
    void flip(Zel32u index) const { words[index / kWordBits] ^= 1u << index % kWordBits; }
};

// Strengths of three neighbouring rows. Before the first and behind the last element of each stand zeros.
template <class Strength>
class Ring {
public:
    Ring(Carver& carver, int width)
        : pitch_(roundedUp(width) + kMargin), rows_(carver.take<Strength>(kMargin + 3 * pitch_, 16) + kMargin)
    {
        std::fill_n(rows_ - kMargin, kMargin + 3 * pitch_, Strength(0));
    }
    static constexpr int roundedUp(int width) { return (width + kLanes<Strength> - 1) / kLanes<Strength> * kLanes<Strength>; }

    Strength* row(int y) const { return rows_ + (y + 3) % 3 * pitch_; } // from -1 on

private:
    static constexpr int kMargin = 16 / sizeof(Strength);
    std::ptrdiff_t pitch_;
    Strength* rows_;
};

// ---- the three steps

// One row of strengths, and in `active` a bit for each that is not zero.
template <class Gradient, class Source>
void computeStrengths(const Gradient& gradient, const Source* dx, const Source* dy, int width,
                      typename Gradient::Strength* strengths, Zel32u* active)
{
    using Strength = typename Gradient::Strength;
    constexpr int lanes = kLanes<Strength>;
    const auto word = [&](int first, int count) __attribute__((always_inline)) {
        Vec<Strength> blocks[kWordBits / lanes] = {};
        for (int i = 0; i < count; i += lanes) {
            const int x = first + i;
            blocks[i / lanes] = gradient.strength(gradient.read(dx + x, count - i), gradient.read(dy + x, count - i));
            store(strengths + x, blocks[i / lanes]);
        }
        return nonZeroBits(blocks);
    };
    int x = 0;
    for (; x <= width - kWordBits; x += kWordBits) *active++ = word(x, kWordBits); // a constant count, which unrolls the loop
    *active = word(x, width - x);
}

// Non-maximum suppression of one row. `candidates` comes in with the bits of the active pixels and keeps the survivors that
// are not strong; the strong ones become `edges`. A block begins at the next active pixel, wherever that is.
template <class Gradient, class Source>
void suppress(const Gradient& gradient, const Source* dx, const Source* dy, int width,
              const typename Gradient::Strength* above, const typename Gradient::Strength* here,
              const typename Gradient::Strength* below, Zel32u* candidates, Zel32u* edges)
{
    using Strength = typename Gradient::Strength;
    constexpr int lanes = kLanes<Strength>;
    for (int first = 0; first <= width; first += kWordBits) {
        Zel32u active = *candidates, survivors = 0, strong = 0;
        const int lastBlock = std::min(kWordBits, Ring<Strength>::roundedUp(width) - first) - lanes;
        while (active) {
            const int i = std::min(std::countr_zero(active), lastBlock), x = first + i;
            const auto blockDx = gradient.read(dx + x, width - x), blockDy = gradient.read(dy + x, width - x);
            const auto across = gradient.direction(blockDx, blockDy);
            const auto strength = load(here + x);
            const auto neighbour = [&](const Strength* next, int way) { // `next`: the row on that side
                const auto diagonal = across.falling ? load(next + x + way) : load(next + x - way);
                return across.column ? load(next + x) : across.row ? load(here + x + way) : diagonal;
            };
            const auto before = neighbour(above, -1), after = neighbour(below, 1);
            // Of two equals along a row or column the first one survives, on a diagonal neither.
            const auto survives =
                (before < strength) & ((after < strength) | ((after == strength) & (across.column | across.row)));
            survivors |= laneBits(survives) << i;
            strong |= laneBits(survives & gradient.isStrong(strength)) << i;
            active &= Zel32u(~std::uint64_t(0) << (i + lanes));
        }
        *candidates++ = survivors & ~strong;
        *edges++ = strong;
    }
}

// Turns candidates into edges until none has an edge among its eight neighbours. The candidates beside an edge are found by
// words and kept on a stack, which gives the growth its further starting points. A pixel goes on the stack once at most.
void link(BitPlane candidates, BitPlane edges, int height, Zel32u* stack)
{
    Zel32u* top = stack;
    const std::ptrdiff_t pitch = candidates.pitch;
    for (std::ptrdiff_t i = 1 + pitch; i < 1 + pitch + pitch * height; ++i) {
        if (!candidates.words[i]) continue;
        const Zel32u* edge = edges.words + i;
        const auto column = [=](int at) { return edge[at - pitch] | edge[at] | edge[at + pitch]; };
        const Zel32u middle = column(0);
        Zel32u linked = candidates.words[i] &
                        (middle | middle << 1 | middle >> 1 | column(-1) >> (kWordBits - 1) | column(1) << (kWordBits - 1));
        candidates.words[i] ^= linked;
        edges.words[i] ^= linked;
        for (; linked; linked &= linked - 1) *top++ = Zel32u(i * kWordBits + std::countr_zero(linked));
    }
    const auto row = Zel32u(pitch * kWordBits);
    const Zel32u neighbours[] = {0 - row - 1, 0 - row, 1 - row, 0u - 1, 0, 1, row - 1, row, row + 1}; // steps that wrap
    while (top != stack) {
        const Zel32u index = *--top;
        Zel32u linked = candidates.three(index - row - 1) | candidates.three(index - 1) << 3 |
                        candidates.three(index + row - 1) << 6;
        for (; linked; linked &= linked - 1) {
            const Zel32u neighbour = index + neighbours[std::countr_zero(linked)];
            candidates.flip(neighbour);
            edges.flip(neighbour);
            *top++ = neighbour;
        }
    }
}

// The bits of a row as bytes of 0 and 255.
void writeRow(const Zel32u* bits, Zel8u* dst, int width)
{
    constexpr int lanes = kLanes<Zel8u>;
    const auto bytes = [=](int x) { return bytesFromBits(bits[x / kWordBits] >> x % kWordBits); };
    int x = 0;
    for (; x <= width - lanes; x += lanes) store(dst + x, bytes(x));
    const Vec<Zel8u> last = bytes(x);
    std::memcpy(dst + x, &last, std::size_t(width - x));
}

// The scratch memory holds the two planes and behind them the ring in step 1, the stack in step 2. With P for (width + 2) *
// (height + 2), they take at most P/4 + 8 * (height + 2) + 16, 12 * width + 148 and 4 * P - 8 * (height + 2) bytes, and 18
// to align them: never more than zeliCannyGetSize tells. An index of 32 bits reaches all of a plane whose size fits 31 bits.
template <class Gradient, class Source>
void findEdges(const Gradient& gradient, Plane<const Source> srcDx, Plane<const Source> srcDy, Plane<Zel8u> dst, ZeliSize roi,
               Zel8u* buffer)
{
    Carver carver(buffer);
    const BitPlane candidates(carver, roi), edges(carver, roi);
    Zel32u* const stack = Carver(carver).take<Zel32u>(0);
    const Ring<typename Gradient::Strength> ring(carver, roi.width);
    for (int y = 0; y <= roi.height; ++y) {
        if (y < roi.height)
            computeStrengths(gradient, srcDx.row(y), srcDy.row(y), roi.width, ring.row(y), candidates.row(y));
        else
            std::fill_n(ring.row(y), roi.width, typename Gradient::Strength(0));
        if (const int up = y - 1; up >= 0)
            suppress(gradient, srcDx.row(up), srcDy.row(up), roi.width, ring.row(up - 1), ring.row(up), ring.row(y),
                     candidates.row(up), edges.row(up));
    }
    link(candidates, edges, roi.height, stack);
    for (int y = 0; y < roi.height; ++y) writeRow(edges.row(y), dst.row(y), roi.width);
}

template <class Source>
ZelStatus canny(Plane<const Source> srcDx, Plane<const Source> srcDy, Plane<Zel8u> dst, ZeliSize roi, Zel32f low, Zel32f high,
                Zel8u* buffer)
{
    if (auto status = checkPointers(srcDx.data, srcDy.data, dst.data, buffer)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(roi.width, srcDx, srcDy, dst)) return status;
    if (auto status = checkStepAlignment(srcDx, srcDy)) return status;
    if (low < 0 || high < low) return zelStatusBadArgument;
    if constexpr (std::is_integral_v<Source>) {
        if (low >= 1) {
            findEdges(ShortGradient(low, high), srcDx, srcDy, dst, roi, buffer);
            return zelStatusOk;
        }
        low = 0; // cut to an integer; a NaN too lets every strength pass
    }
    findEdges(FloatGradient<Source>{low, high}, srcDx, srcDy, dst, roi, buffer);
    return zelStatusOk;
}

} // namespace

ZelStatus zeliCannyGetSize(ZeliSize roiSize, int* bufferSize)
{
    if (auto status = checkPointers(bufferSize)) return status;
    if (auto status = checkSize(roiSize)) return status;
    const Wrapped width = roiSize.width, height = roiSize.height;
    const int bytesPerPixel = roiSize.width < 65533 && roiSize.height < 65533 ? 5 : 9;
    *bufferSize = ((width + 2) * (height + 2) * bytesPerPixel + width * 16 + 160).value();
    return zelStatusOk;
}

ZelStatus zeliCanny_16s8u_C1R(const Zel16s* srcDx, int srcDxStep, const Zel16s* srcDy, int srcDyStep, Zel8u* dst,
                              int dstStep, ZeliSize roiSize, Zel32f lowThreshold, Zel32f highThreshold, Zel8u* buffer)
{
    return canny<Zel16s>({srcDx, srcDxStep}, {srcDy, srcDyStep}, {dst, dstStep}, roiSize, lowThreshold, highThreshold,
                         buffer);
}

ZelStatus zeliCanny_32f8u_C1R(const Zel32f* srcDx, int srcDxStep, const Zel32f* srcDy, int srcDyStep, Zel8u* dst,
                              int dstStep, ZeliSize roiSize, Zel32f lowThreshold, Zel32f highThreshold, Zel8u* buffer)
{
    return canny<Zel32f>({srcDx, srcDxStep}, {srcDy, srcDyStep}, {dst, dstStep}, roiSize, lowThreshold, highThreshold,
                         buffer);
}
