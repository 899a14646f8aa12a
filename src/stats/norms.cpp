// Norms of the masked pixels of an image (Norm), of a difference src1 - src2 (NormDiff), and of the difference over the
// norm of src2 (NormRel).
//
// Integers are masked by bits; 32f is multiplied by 0 where the mask is, so that a masked-off NaN or infinity gives NaN. L1
// of integers adds a row in 32 bits, which wrap. L2 of integers squares and adds a row in single precision, in four lanes,
// and rows in double; that of 32f adds in double, pixel by pixel.
#include "masked.h"

#include <bit>
#include <cmath>
#include <limits>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- what the norm is taken of: |x| of integers, x of 32f. loaded(s) is an element, or a vector of them, of source s

template <int source>
struct Source {
    template <class Load>
    static auto size(const Load& loaded)
    {
        const auto x = loaded(source);
        if constexpr (std::is_same_v<decltype(x), const Vec<Zel8s>>)
            return absolute(x);
        else
            return x;
    }
    template <class Load>
    static int scalar(const Load& loaded)
    {
        return loaded(source);
    }
};
using First = Source<0>;
using Second = Source<1>;

struct Difference {
    template <class Load>
    static auto size(const Load& loaded)
    {
        const auto x = loaded(0), y = loaded(1);
        if constexpr (std::is_same_v<decltype(x), const Vec<Zel32f>>)
            return x - y;
        else
            return absoluteDifference(x, y);
    }
    template <class Load>
    static int scalar(const Load& loaded)
    {
        return loaded(0) - loaded(1);
    }
};

// Calls step(part, count, x) for the vectors of a run, in their order: the numbers to take the norm of, masked, as `Of` gives
// them. x is vector `part` of a block; of its lanes the first `count` are pixels, all where it is more than there are.
template <class Of, class T, std::size_t sources, class Step>
ZELCV_INLINE inline void forMasked(const Run<T, sources, MaskBytes>& run, const Step& step)
{
    forBlocks(run, [&](int count, MaskBytes mask, const auto& from) ZELCV_INLINE {
        const auto lanes = widenMask<T>(mask.lanes());
        for (int part = 0; part < kParts<T>; ++part) {
            const auto x = Of::size([&](int s) { return load(from[std::size_t(s)] + part * kLanes<T>); });
            if constexpr (sizeof(T) == 4)
                step(part, count - part * kLanes<T>, x * keep(lanes.part[part], splat(1.0f)));
            else
                step(part, count, x & std::remove_const_t<decltype(x)>(lanes.part[part]));
        }
    });
}

// ---- norms of a band
//
// Each of these adds the runs of rows, tells whether it matters to it where rows end, and has the result of the band at last.

// A number as it counts in its norm, and the vectors of it.
template <class T>
using Size = std::conditional_t<sizeof(T) == 1, Zel8u, T>;

template <class T>
class Largest {
public:
    static bool takesLongRows(int) { return true; }

    template <class Of, class Run>
    void add(const Run& run)
    {
        Vec<Size<T>> largest = largest_;
        forMasked<Of>(run, [&](int, int, Vec<Size<T>> x) ZELCV_INLINE { largest = maximum(largest, x); });
        largest_ = largest;
    }
    void endRow(int) {}
    double result() const
    {
        Size<T> largest = 0;
        for (int i = 0; i < kLanes<Size<T>>; ++i) largest = std::max(largest, Size<T>(largest_[i]));
        return largest;
    }

private:
    Vec<Size<T>> largest_ = {};
};

// The order matters where there is a NaN: the number behind it takes its place.
template <>
class Largest<Zel32f> {
public:
    static bool takesLongRows(int) { return true; }

    template <class Of, class Run>
    void add(const Run& run)
    {
        Vec<Zel32f> largest = {};
        Vec<Zel32s> nans = {};
        forMasked<Of>(run, [&](int, int, Vec<Zel32f> x) ZELCV_INLINE {
            largest = maximum(largest, absolute(x));
            nans |= x != x;
        });
        if (laneBits(nans) != 0) {
            forMasked<Of>(run, [&](int, int count, Vec<Zel32f> x) ZELCV_INLINE {
                for (int i = 0; i < std::min(count, kLanes<Zel32f>); ++i) take(std::abs(x[i]));
            });
            return;
        }
        for (int i = 0; i < kLanes<Zel32f>; ++i) take(largest[i]);
    }
    void endRow(int) {}
    double result() const { return running_; }

private:
    void take(float x) { running_ = running_ > x ? running_ : x; }

    float running_ = 0;
};

template <class T>
class Sum {
public:
    static constexpr int kBits = 8 * int(sizeof(T));
    static bool takesLongRows(int width) { return rowSumFits(width, kBits); }

    template <class Of, class Run>
    void add(const Run& run)
    {
        Vec<std::conditional_t<sizeof(T) == 1, std::uint64_t, Zel32u>> sum = {};
        forMasked<Of>(run, [&](int, int, Vec<Size<T>> x) ZELCV_INLINE {
            if constexpr (sizeof(T) == 1)
                sum += sumBytes(x);
            else
                sum += Vec<Zel32u>(interleaveLow(x, Vec<Zel16u>{})) + Vec<Zel32u>(interleaveHigh(x, Vec<Zel16u>{}));
        });
        row_ += sumOfLanes(sum);
    }
    void endRow(int width)
    {
        total_ += rowSumFits(width, kBits) ? std::int64_t(row_) : wrap(Zel32u(row_));
        row_ = 0;
    }
    double result() const { return double(total_); }

private:
    std::uint64_t row_ = 0;
    std::int64_t total_ = 0;
};

template <>
class Sum<Zel32f> {
public:
    static bool takesLongRows(int) { return false; }

    template <class Of, class Run>
    void add(const Run& run)
    {
        DoubleLanes row = row_;
        forMasked<Of>(run, [&](int part, int, Vec<Zel32f> x) ZELCV_INLINE { row.add(part, toDoubles(absolute(x))); });
        row_ = row;
    }
    void endRow(int)
    {
        total_ += row_.fold();
        row_ = {};
    }
    double result() const { return total_; }

private:
    DoubleLanes row_;
    double total_ = 0;
};

// The sum of squares of 32f, in the order of the pixels.
class SquaresInOrder {
public:
    static bool takesLongRows(int) { return true; }

    template <class Of, class Run>
    void add(const Run& run)
    {
        double total = total_;
        forMasked<Of>(run, [&](int, int, Vec<Zel32f> x) ZELCV_INLINE {
            const Vec<Zel32f> square = x * x;
            for (const Vec<Zel64f> half : toDoubles(square).part)
                for (int i = 0; i < kLanes<Zel64f>; ++i) total += half[i];
        });
        total_ = total;
    }
    void endRow(int) {}
    double result() const { return total_; }

private:
    double total_ = 0;
};

constexpr int kRowsInVector = kVectorBytes / 16;

// Of several rows side by side in a vector, the next 16 bytes of each.
template <class T>
Vec<T> loadRows(const T* const* rows)
{
    return loadGroups(rows[0], rows[kRowsInVector - 1] - rows[0]);
}

// The next 8 mask bytes of each row, as lanes of 16 bits that are all ones where the byte is not zero.
inline Vec<Zel16u> loadWordMaskRows(const Zel8u* const* rows)
{
    Vec<std::uint64_t> eight = {};
    for (int i = 0; i < kRowsInVector; ++i) {
        std::uint64_t bytes;
        std::memcpy(&bytes, rows[i], sizeof bytes);
        eight[2 * i] = bytes;
    }
    const auto bytes = Vec<Zel8u>(eight);
    return Vec<Zel16u>(Vec<Zel16s>(interleaveLow(bytes, bytes)) != 0);
}

// The sums of squares of several rows of integers side by side. Each 16 bytes of a vector belong to a row; a row adds its
// four lanes in single precision.
template <class T>
class SquaresOfRows {
public:
    static constexpr int kVectors = 4, kRows = kVectors * kRowsInVector;
    static constexpr int kStep = 16 / int(sizeof(T)); // pixels

    template <class Of, int channels, std::size_t sources>
    static double ofBand(const Channel<T, channels, sources>& channel, Plane<const Zel8u> mask, int width, Band band)
    {
        double total = 0;
        for (int y = band.first; y < band.last; y += kRows) {
            const int rows = std::min(kRows, band.last - y);
            const auto group = ofGroup<Of>(channel, mask, width, y, rows);
            for (int row = 0; row < rows; ++row) total += double(group[std::size_t(row)]);
        }
        return total;
    }

private:
    template <std::size_t sources>
    struct Cursor {
        const T* from[sources][kRows];
        const Zel8u* mask[kRows];

        void advance(int pixels)
        {
            for (auto& source : from)
                for (auto& row : source) row += pixels;
            for (auto& row : mask) row += pixels;
        }
    };
    using Lanes = std::array<Vec<Zel32f>, kVectors>;

    // In place of rows that are missing the last one is read.
    template <class Of, int channels, std::size_t sources>
    static std::array<float, kRows> ofGroup(const Channel<T, channels, sources>& channel, Plane<const Zel8u> mask, int width,
                                            int y, int rows)
    {
        Lanes lanes = {};
        std::array<float, kRows> totals = {};
        Gathered<T, channels, sources> gathered[kRows];
        cutRuns<channels>(width, [&](std::ptrdiff_t x, int count) {
            Cursor<sources> at;
            for (int row = 0; row < kRows; ++row) {
                const int line = y + std::min(row, rows - 1);
                const auto run = runAt(channel, selectionOfRow(mask, line), line, x, count, gathered[row]);
                for (std::size_t s = 0; s < sources; ++s) at.from[s][row] = run.from[s];
                at.mask[row] = run.selection.from;
            }
            int i = 0;
            for (; i <= count - kStep; i += kStep, at.advance(kStep)) addStep<Of>(at, lanes);
            if (x + count == width) totals = finish<Of>(at, count - i, lanes);
        });
        return totals;
    }

    template <class Of, std::size_t sources>
    static void addStep(const Cursor<sources>& at, Lanes& lanes)
    {
        for (int v = 0; v < kVectors; ++v) {
            const auto x = Of::size([&](int s) { return loadRows(at.from[s] + v * kRowsInVector); });
            const Zel8u* const* mask = at.mask + v * kRowsInVector;
            if constexpr (sizeof(T) == 1)
                addSquares(x & Vec<Zel8u>(loadRows(mask) != 0), lanes[std::size_t(v)]);
            else
                addSquares(x & loadWordMaskRows(mask), lanes[std::size_t(v)]);
        }
    }

    static void addSquares(Vec<Zel8u> x, Vec<Zel32f>& lanes)
    {
        for (const Vec<Zel8u> half : {interleaveLow(x, Vec<Zel8u>{}), interleaveHigh(x, Vec<Zel8u>{})}) {
            const Vec<Zel16u> square = Vec<Zel16u>(half) * Vec<Zel16u>(half); // exact, as it is in single precision
            lanes += toFloat(Vec<Zel32s>(interleaveLow(square, Vec<Zel16u>{})));
            lanes += toFloat(Vec<Zel32s>(interleaveHigh(square, Vec<Zel16u>{})));
        }
    }

    static void addSquares(Vec<Zel16u> x, Vec<Zel32f>& lanes)
    {
        for (const Vec<Zel16u> half : {interleaveLow(x, Vec<Zel16u>{}), interleaveHigh(x, Vec<Zel16u>{})}) {
            const Vec<Zel32f> wide = toFloat(Vec<Zel32s>(half));
            lanes += wide * wide;
        }
    }

    // The last `count` pixels of the rows: what is left of the four lanes, their fold, and the rest one by one.
    template <class Of, std::size_t sources>
    static std::array<float, kRows> finish(const Cursor<sources>& at, int count, Lanes lanes)
    {
        const int inLanes = count & ~3;
        if (inLanes > 0) {
            T padded[sources][kRows][kStep] = {};
            Zel8u mask[kRows][kStep] = {};
            Cursor<sources> copies;
            for (int row = 0; row < kRows; ++row) {
                for (std::size_t s = 0; s < sources; ++s) {
                    std::memcpy(padded[s][row], at.from[s][row], sizeof(T) * std::size_t(inLanes));
                    copies.from[s][row] = padded[s][row];
                }
                std::memcpy(mask[row], at.mask[row], std::size_t(inLanes));
                copies.mask[row] = mask[row];
            }
            addStep<Of>(copies, lanes);
        }
        std::array<float, kRows> totals;
        for (int row = 0; row < kRows; ++row) {
            const Vec<Zel32f>& vector = lanes[std::size_t(row / kRowsInVector)];
            const int lane = row % kRowsInVector * 4;
            float total = (vector[lane] + vector[lane + 2]) + (vector[lane + 1] + vector[lane + 3]);
            for (int i = inLanes; i < count; ++i) {
                const float x = at.mask[row][i] != 0 ? float(Of::scalar([&](int s) { return int(at.from[s][row][i]); })) : 0;
                total += x * x;
            }
            totals[std::size_t(row)] = total;
        }
        return totals;
    }
};

// ---- the members' policies

struct Inf {
    template <class T>
    using Accumulator = Largest<T>;
    static double combine(double running, double next) { return running > next ? running : next; }
    static double root(double value) { return value; }
};
struct L1 {
    template <class T>
    using Accumulator = Sum<T>;
    static double combine(double running, double next) { return running + next; }
    static double root(double value) { return value; }
};
struct L2 {
    template <class T>
    using Accumulator = std::conditional_t<std::is_same_v<T, Zel32f>, SquaresInOrder, SquaresOfRows<T>>;
    static double combine(double running, double next) { return running + next; }
    static double root(double value) { return std::sqrt(value); }
};

template <class Norm, class T>
constexpr bool kRowGroups = std::is_same_v<Norm, L2> && !std::is_same_v<T, Zel32f>;

// The norms of everything in `Of` over one region, before the root.
template <class Norm, class... Of, class T, int channels, std::size_t sources>
std::array<double, sizeof...(Of)> reduce(const Channel<T, channels, sources>& channel, Plane<const Zel8u> mask, ZeliSize roi,
                                         Gate gate)
{
    using Values = std::array<double, sizeof...(Of)>;
    const auto ofBand = [=](Band band) -> Values {
        using Accumulator = typename Norm::template Accumulator<T>;
        if constexpr (kRowGroups<Norm, T>) {
            return {Accumulator::template ofBand<Of>(channel, mask, roi.width, band)...};
        } else {
            std::array<Accumulator, sizeof...(Of)> accumulators;
            const auto add = [&](const auto& run) {
                auto* accumulator = accumulators.data();
                (accumulator++->template add<Of>(run), ...);
            };
            forRunsOfBand(band, roi.width, Accumulator::takesLongRows(roi.width), channel, mask, add, [&] {
                for (auto& accumulator : accumulators) accumulator.endRow(roi.width);
            });
            Values values;
            for (std::size_t i = 0; i < values.size(); ++i) values[i] = accumulators[i].result();
            return values;
        }
    };
    return reduceBands<Values>(roi, gate, ofBand, [](Values running, const Values& next) {
        for (std::size_t i = 0; i < running.size(); ++i) running[i] = Norm::combine(running[i], next[i]);
        return running;
    });
}

// ---- drivers

template <int channels, class T>
ZelStatus checkCommon(ZeliSize roi, int coi, Plane<const Zel8u> mask, Plane<const T> src)
{
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(wrappingProduct(roi.width, channels), src)) return status;
    if (auto status = checkStepSizes(roi.width, mask)) return status;
    return checkChannel(coi, channels);
}

// All sizes of steps before their alignment.
template <int channels, class T>
ZelStatus checkCommon(ZeliSize roi, int coi, Plane<const Zel8u> mask, Plane<const T> src1, Plane<const T> src2)
{
    const int elements = wrappingProduct(roi.width, channels);
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(elements, src1, src2)) return status;
    if (auto status = checkStepSizes(roi.width, mask)) return status;
    if (auto status = checkStepAlignment(src1, src2)) return status;
    return checkChannel(coi, channels);
}

template <class Norm, int channels, class T>
ZelStatus norm(Plane<const T> src, Plane<const Zel8u> mask, ZeliSize roi, int coi, Zel64f* value, Gate gate)
{
    if (auto status = checkPointers(src.data, mask.data, value)) return status;
    if (auto status = checkCommon<channels>(roi, coi, mask, src)) return status;
    *value = Norm::root(reduce<Norm, First>(Channel<T, channels, 1>{{{src}}, coi}, mask, roi, gate)[0]);
    return zelStatusOk;
}

template <class Norm, int channels, class T>
ZelStatus normDiff(Plane<const T> src1, Plane<const T> src2, Plane<const Zel8u> mask, ZeliSize roi, int coi, Zel64f* value,
                   Gate gate)
{
    if (auto status = checkPointers(src1.data, src2.data, mask.data, value)) return status;
    if (auto status = checkCommon<channels>(roi, coi, mask, src1, src2)) return status;
    *value = Norm::root(reduce<Norm, Difference>(Channel<T, channels, 2>{{{src1, src2}}, coi}, mask, roi, gate)[0]);
    return zelStatusOk;
}

template <class Norm, int channels, class T>
ZelStatus normRel(Plane<const T> src1, Plane<const T> src2, Plane<const Zel8u> mask, ZeliSize roi, int coi, Zel64f* value,
                  Gate gate)
{
    if (auto status = checkPointers(src1.data, src2.data, mask.data, value)) return status;
    if (auto status = checkCommon<channels>(roi, coi, mask, src1, src2)) return status;
    const auto [numerator, denominator] =
        reduce<Norm, Difference, Second>(Channel<T, channels, 2>{{{src1, src2}}, coi}, mask, roi, gate);
    if (denominator != 0) {
        *value = Norm::root(numerator / denominator);
        return zelStatusOk;
    }
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    if (numerator == 0)
        *value = std::bit_cast<double>(0xfff8000000000000u);
    else
        *value = numerator > 0 ? kInfinity : -kInfinity; // NaN counts as negative
    return zelStatusZeroDivisor;
}

// ---- gates

constexpr Gate kSerial = Gate::serial(), kFrom15 = Gate::areaPerThread(15), kFrom17 = Gate::areaPerThread(17),
               kFrom19 = Gate::areaPerThread(19), kFrom15Cores = Gate::areaPerThread(15, Gate::Cores::Several),
               kFrom17Cores = Gate::areaPerThread(17, Gate::Cores::Several), kTwoLevel = Gate::twoLevel();

} // namespace

// ---- exports: the members by family, norm and type, with the gate of each

#define NORM_C1MR(Norm, T, gate, name)                                                                                    \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* value)           \
    {                                                                                                                     \
        return norm<Norm, 1, T>({src, srcStep}, {mask, maskStep}, roiSize, 1, value, gate);                               \
    }
#define NORM_C3CMR(Norm, T, gate, name)                                                                                   \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* value)  \
    {                                                                                                                     \
        return norm<Norm, 3, T>({src, srcStep}, {mask, maskStep}, roiSize, coi, value, gate);                             \
    }
#define PAIR_C1MR(family, Norm, T, gate, name)                                                                            \
    ZelStatus name(const T* src1, int src1Step, const T* src2, int src2Step, const Zel8u* mask, int maskStep,             \
                   ZeliSize roiSize, Zel64f* value)                                                                       \
    {                                                                                                                     \
        return family<Norm, 1, T>({src1, src1Step}, {src2, src2Step}, {mask, maskStep}, roiSize, 1, value, gate);         \
    }
#define PAIR_C3CMR(family, Norm, T, gate, name)                                                                           \
    ZelStatus name(const T* src1, int src1Step, const T* src2, int src2Step, const Zel8u* mask, int maskStep,             \
                   ZeliSize roiSize, int coi, Zel64f* value)                                                              \
    {                                                                                                                     \
        return family<Norm, 3, T>({src1, src1Step}, {src2, src2Step}, {mask, maskStep}, roiSize, coi, value, gate);       \
    }

NORM_C1MR(Inf, Zel8u, kFrom19, zeliNorm_Inf_8u_C1MR)
NORM_C1MR(Inf, Zel8s, kFrom19, zeliNorm_Inf_8s_C1MR)
NORM_C1MR(Inf, Zel16u, kFrom19, zeliNorm_Inf_16u_C1MR)
NORM_C1MR(Inf, Zel32f, kFrom17, zeliNorm_Inf_32f_C1MR)
NORM_C3CMR(Inf, Zel8u, kFrom17, zeliNorm_Inf_8u_C3CMR)
NORM_C3CMR(Inf, Zel8s, kFrom17, zeliNorm_Inf_8s_C3CMR)
NORM_C3CMR(Inf, Zel16u, kFrom17, zeliNorm_Inf_16u_C3CMR)
NORM_C3CMR(Inf, Zel32f, kFrom15, zeliNorm_Inf_32f_C3CMR)
NORM_C1MR(L1, Zel8u, kFrom17Cores, zeliNorm_L1_8u_C1MR)
NORM_C1MR(L1, Zel8s, kFrom17Cores, zeliNorm_L1_8s_C1MR)
NORM_C1MR(L1, Zel16u, kFrom17, zeliNorm_L1_16u_C1MR)
NORM_C1MR(L1, Zel32f, kFrom17, zeliNorm_L1_32f_C1MR)
NORM_C3CMR(L1, Zel8u, kFrom17, zeliNorm_L1_8u_C3CMR)
NORM_C3CMR(L1, Zel8s, kFrom17, zeliNorm_L1_8s_C3CMR)
NORM_C3CMR(L1, Zel16u, kFrom17, zeliNorm_L1_16u_C3CMR)
NORM_C3CMR(L1, Zel32f, kFrom17, zeliNorm_L1_32f_C3CMR)
NORM_C1MR(L2, Zel8u, kFrom17Cores, zeliNorm_L2_8u_C1MR)
NORM_C1MR(L2, Zel8s, kFrom17Cores, zeliNorm_L2_8s_C1MR)
NORM_C1MR(L2, Zel16u, kFrom17, zeliNorm_L2_16u_C1MR)
NORM_C1MR(L2, Zel32f, kFrom17, zeliNorm_L2_32f_C1MR)
NORM_C3CMR(L2, Zel8u, kTwoLevel, zeliNorm_L2_8u_C3CMR)
NORM_C3CMR(L2, Zel8s, kTwoLevel, zeliNorm_L2_8s_C3CMR)
NORM_C3CMR(L2, Zel16u, kTwoLevel, zeliNorm_L2_16u_C3CMR)
NORM_C3CMR(L2, Zel32f, kTwoLevel, zeliNorm_L2_32f_C3CMR)

PAIR_C1MR(normDiff, Inf, Zel8u, kSerial, zeliNormDiff_Inf_8u_C1MR)
PAIR_C1MR(normDiff, Inf, Zel8s, kSerial, zeliNormDiff_Inf_8s_C1MR)
PAIR_C1MR(normDiff, Inf, Zel16u, kSerial, zeliNormDiff_Inf_16u_C1MR)
PAIR_C1MR(normDiff, Inf, Zel32f, kSerial, zeliNormDiff_Inf_32f_C1MR)
PAIR_C3CMR(normDiff, Inf, Zel8u, kSerial, zeliNormDiff_Inf_8u_C3CMR)
PAIR_C3CMR(normDiff, Inf, Zel8s, kSerial, zeliNormDiff_Inf_8s_C3CMR)
PAIR_C3CMR(normDiff, Inf, Zel16u, kSerial, zeliNormDiff_Inf_16u_C3CMR)
PAIR_C3CMR(normDiff, Inf, Zel32f, kSerial, zeliNormDiff_Inf_32f_C3CMR)
PAIR_C1MR(normDiff, L1, Zel8u, kFrom17Cores, zeliNormDiff_L1_8u_C1MR)
PAIR_C1MR(normDiff, L1, Zel8s, kFrom17Cores, zeliNormDiff_L1_8s_C1MR)
PAIR_C1MR(normDiff, L1, Zel16u, kFrom17, zeliNormDiff_L1_16u_C1MR)
PAIR_C1MR(normDiff, L1, Zel32f, kSerial, zeliNormDiff_L1_32f_C1MR)
PAIR_C3CMR(normDiff, L1, Zel8u, kFrom17, zeliNormDiff_L1_8u_C3CMR)
PAIR_C3CMR(normDiff, L1, Zel8s, kFrom15Cores, zeliNormDiff_L1_8s_C3CMR)
PAIR_C3CMR(normDiff, L1, Zel16u, kFrom15Cores, zeliNormDiff_L1_16u_C3CMR)
PAIR_C3CMR(normDiff, L1, Zel32f, kSerial, zeliNormDiff_L1_32f_C3CMR)
PAIR_C1MR(normDiff, L2, Zel8u, kFrom17Cores, zeliNormDiff_L2_8u_C1MR)
PAIR_C1MR(normDiff, L2, Zel8s, kFrom17Cores, zeliNormDiff_L2_8s_C1MR)
PAIR_C1MR(normDiff, L2, Zel16u, kFrom17, zeliNormDiff_L2_16u_C1MR)
PAIR_C1MR(normDiff, L2, Zel32f, kSerial, zeliNormDiff_L2_32f_C1MR)
PAIR_C3CMR(normDiff, L2, Zel8u, kFrom17, zeliNormDiff_L2_8u_C3CMR)
PAIR_C3CMR(normDiff, L2, Zel8s, kFrom17, zeliNormDiff_L2_8s_C3CMR)
PAIR_C3CMR(normDiff, L2, Zel16u, kTwoLevel, zeliNormDiff_L2_16u_C3CMR)
PAIR_C3CMR(normDiff, L2, Zel32f, kSerial, zeliNormDiff_L2_32f_C3CMR)

PAIR_C1MR(normRel, Inf, Zel8u, kFrom17Cores, zeliNormRel_Inf_8u_C1MR)
PAIR_C1MR(normRel, Inf, Zel8s, kFrom17Cores, zeliNormRel_Inf_8s_C1MR)
PAIR_C1MR(normRel, Inf, Zel16u, kFrom17Cores, zeliNormRel_Inf_16u_C1MR)
PAIR_C1MR(normRel, Inf, Zel32f, kFrom15, zeliNormRel_Inf_32f_C1MR)
PAIR_C3CMR(normRel, Inf, Zel8u, kTwoLevel, zeliNormRel_Inf_8u_C3CMR)
PAIR_C3CMR(normRel, Inf, Zel8s, kTwoLevel, zeliNormRel_Inf_8s_C3CMR)
PAIR_C3CMR(normRel, Inf, Zel16u, kFrom15, zeliNormRel_Inf_16u_C3CMR)
PAIR_C3CMR(normRel, Inf, Zel32f, kFrom15, zeliNormRel_Inf_32f_C3CMR)
PAIR_C1MR(normRel, L1, Zel8u, kSerial, zeliNormRel_L1_8u_C1MR)
PAIR_C1MR(normRel, L1, Zel8s, kFrom17Cores, zeliNormRel_L1_8s_C1MR)
PAIR_C1MR(normRel, L1, Zel16u, kTwoLevel, zeliNormRel_L1_16u_C1MR)
PAIR_C1MR(normRel, L1, Zel32f, kSerial, zeliNormRel_L1_32f_C1MR)
PAIR_C3CMR(normRel, L1, Zel8u, kTwoLevel, zeliNormRel_L1_8u_C3CMR)
PAIR_C3CMR(normRel, L1, Zel8s, kTwoLevel, zeliNormRel_L1_8s_C3CMR)
PAIR_C3CMR(normRel, L1, Zel16u, kFrom15, zeliNormRel_L1_16u_C3CMR)
PAIR_C3CMR(normRel, L1, Zel32f, kSerial, zeliNormRel_L1_32f_C3CMR)
PAIR_C1MR(normRel, L2, Zel8u, kFrom17, zeliNormRel_L2_8u_C1MR)
PAIR_C1MR(normRel, L2, Zel8s, kFrom17, zeliNormRel_L2_8s_C1MR)
PAIR_C1MR(normRel, L2, Zel16u, kTwoLevel, zeliNormRel_L2_16u_C1MR)
PAIR_C1MR(normRel, L2, Zel32f, kSerial, zeliNormRel_L2_32f_C1MR)
PAIR_C3CMR(normRel, L2, Zel8u, kTwoLevel, zeliNormRel_L2_8u_C3CMR)
PAIR_C3CMR(normRel, L2, Zel8s, kTwoLevel, zeliNormRel_L2_8s_C3CMR)
PAIR_C3CMR(normRel, L2, Zel16u, kFrom15, zeliNormRel_L2_16u_C3CMR)
PAIR_C3CMR(normRel, L2, Zel32f, kSerial, zeliNormRel_L2_32f_C3CMR)
