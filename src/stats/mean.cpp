// Mean and standard deviation of the n selected pixels: S / n and sqrt(|Q / n - mean * mean|), where S is the sum and Q the
// sum of squares; both 0 when n is 0.
//
// Masked-off elements are replaced by zero bits, so that a NaN there has no effect. Integer sums are exact, except that a
// row of 16u adds in 32 bits, which wrap, and that the squares of 16u rows add in double. The 8s and 16u kernels sum
// numbers that are moved by half of the range, which keeps bytes unsigned and 16-bit squares within 31 bits.
#include "masked.h"

#include <cmath>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- the sums of a band

template <class Sum, class Squares>
struct Totals {
    Sum sum;
    Squares squares;
    std::int64_t count;

    friend Totals operator+(const Totals& a, const Totals& b)
    {
        return {a.sum + b.sum, a.squares + b.squares, a.count + b.count};
    }
};

template <class T, bool squared>
class Sums;

// Each of these adds runs, tells whether it matters to it where rows end, and has the sums of the band at last.

// Bytes; those of 8s with 128 added.
template <class T, bool squared>
    requires(sizeof(T) == 1)
class Sums<T, squared> {
public:
    using Result = Totals<std::int64_t, std::int64_t>;

    static bool takesLongRows(int, std::int64_t) { return true; }

    template <class Run>
    void add(const Run& run)
    {
        Vec<std::uint64_t> sum = sum_;
        Vec<Zel32u> squares = {};
        Vec<Zel8u> counts = {};
        forBlocks(run, [&](int, auto selection, auto from) ZELCV_INLINE {
            const Vec<Zel8u> mask = Vec<Zel8u>(selection.lanes()), x = (Vec<Zel8u>(load(from[0])) ^ kMove) & mask;
            sum += sumBytes(x);
            if constexpr (squared)
                for (const Vec<Zel16u> half : {Vec<Zel16u>(x) & 0xff, Vec<Zel16u>(x) >> 8})
                    squares += multiplyAddPairs(Vec<Zel16s>(half), Vec<Zel16s>(half));
            if constexpr (Run::kMasked) counts -= mask;
        });
        sum_ = sum;
        squares_ += sumHalves(squares);
        count_ += sumBytes(counts);
        if constexpr (!Run::kMasked) plainCount_ += run.count;
    }
    void endRow(int) {}
    Result result() const
    {
        const auto n = std::int64_t(sumOfLanes(count_)) + plainCount_, sum = std::int64_t(sumOfLanes(sum_));
        const auto squares = std::int64_t(sumOfLanes(squares_));
        return {sum - kMove * n, squares - 2 * kMove * sum + kMove * kMove * n, n};
    }

private:
    static constexpr Zel8u kMove = std::is_signed_v<T> ? 0x80 : 0;

    Vec<std::uint64_t> sum_ = {}, squares_ = {}, count_ = {};
    std::int64_t plainCount_ = 0;
};

// 16u, with 32768 taken off; the squares stay those of the numbers so moved.
template <bool squared>
class Sums<Zel16u, squared> {
public:
    using Result = Totals<std::int64_t, double>;

    // As long as no row wraps and doubles hold all sums of squares.
    static bool takesLongRows(int width, std::int64_t area) { return rowSumFits(width, 16) && area < 1 << (53 - 30); }

    template <class Run>
    void add(const Run& run)
    {
        const Vec<Zel16s> ones = Vec<Zel16s>{} + Zel16s(1);
        Vec<Zel32u> sum = {};
        Vec<std::uint64_t> squares = squares_;
        Vec<Zel8u> counts = {};
        forBlocks(run, [&](int, auto selection, auto from) ZELCV_INLINE {
            const Vec<Zel8s> mask = selection.lanes();
            const auto words = widenMask<Zel16u>(mask);
            for (int part = 0; part < kParts<Zel16u>; ++part) {
                const Vec<Zel16u> moved = load(from[0] + part * kLanes<Zel16u>) ^ 0x8000;
                const Vec<Zel16s> x = Vec<Zel16s>(moved) & words.part[part];
                sum += multiplyAddPairs(x, ones);
                if constexpr (squared) squares += sumHalves(multiplyAddPairs(x, x));
            }
            if constexpr (Run::kMasked) counts -= Vec<Zel8u>(mask);
        });
        const auto count = Run::kMasked ? std::int64_t(sumOfLanes(sumBytes(counts))) : run.count;
        sum_ += wrap(sumOfLanes(sum)) + (count << 15);
        squares_ = squares;
        total_.count += count;
    }
    void endRow(int width)
    {
        total_.sum += rowSumFits(width, 16) ? sum_ : wrap(Zel32u(sum_));
        total_.squares += double(std::int64_t(sumOfLanes(squares_)));
        sum_ = 0;
        squares_ = Vec<std::uint64_t>{};
    }
    Result result() const { return total_; }

private:
    std::int64_t sum_ = 0; // of the row
    Vec<std::uint64_t> squares_ = {};
    Result total_ = {};
};

template <bool squared>
class Sums<Zel32f, squared> {
public:
    using Result = Totals<double, double>;

    static bool takesLongRows(int, std::int64_t) { return false; }

    template <class Run>
    void add(const Run& run)
    {
        DoubleLanes sum = sum_, squares = squares_;
        Vec<Zel8u> counts = {};
        forBlocks(run, [&](int, auto selection, auto from) ZELCV_INLINE {
            const Vec<Zel8s> mask = selection.lanes();
            const auto lanes = widenMask<Zel32f>(mask);
            for (int part = 0; part < kParts<Zel32f>; ++part) {
                const Doubles x = toDoubles(keep(lanes.part[part], load(from[0] + part * kLanes<Zel32f>)));
                sum.add(part, x);
                if constexpr (squared) squares.add(part, x * x);
            }
            if constexpr (Run::kMasked) counts -= Vec<Zel8u>(mask);
        });
        sum_ = sum;
        squares_ = squares;
        total_.count += Run::kMasked ? std::int64_t(sumOfLanes(sumBytes(counts))) : run.count;
    }
    void endRow(int)
    {
        total_.sum += sum_.fold();
        if constexpr (squared) total_.squares += squares_.fold();
        sum_ = squares_ = {};
    }
    Result result() const { return total_; }

private:
    DoubleLanes sum_, squares_;
    Result total_ = {};
};

// ---- drivers

struct Moments {
    double mean, deviation;
};

template <class T, bool squared, int channels, class Selected>
auto sumUp(const Channel<T, channels, 1>& channel, Selected selected, ZeliSize roi, Gate gate)
{
    using Result = typename Sums<T, squared>::Result;
    return reduceBands<Result>(roi, gate, [=](Band band) {
        Sums<T, squared> sums;
        const bool longRows = sums.takesLongRows(roi.width, std::int64_t(roi.width) * band.rows());
        forRunsOfBand(band, roi.width, longRows, channel, selected, [&](const auto& run) { sums.add(run); },
                      [&] { sums.endRow(roi.width); });
        return sums.result();
    }, [](const Result& a, const Result& b) { return a + b; });
}

template <class Result>
double meanOf(const Result& totals)
{
    const Zel32s n = wrap(Zel32u(totals.count));
    return n == 0 ? 0 : double(totals.sum) / n;
}

// Sum of the squared differences to the mean.
template <int channels, class Selected>
double spread(const Channel<Zel32f, channels, 1>& channel, Selected selected, ZeliSize roi, double mean)
{
    double sum = 0;
    const auto square = [mean](Vec<std::int64_t> mask, Vec<Zel64f> x) {
        const Vec<Zel64f> difference = Vec<Zel64f>(mask & Vec<std::int64_t>(x - mean));
        return difference * difference;
    };
    for (int y = 0; y < roi.height; ++y) {
        DoubleLanes lanes;
        forRuns(y, roi.width, channel, selected, [&](const auto& run) {
            forBlocks(run, [&](int, auto selection, auto from) ZELCV_INLINE {
                const auto selected32 = widenMask<Zel32f>(selection.lanes());
                for (int part = 0; part < kParts<Zel32f>; ++part) {
                    const Doubles x = toDoubles(load(from[0] + part * kLanes<Zel32f>));
                    lanes.add(part, forParts(square, widen<std::int64_t>(selected32.part[part]), x));
                }
            });
        });
        sum += lanes.fold();
    }
    return sum;
}

template <class T, int channels, class Selected>
Moments computeMoments(const Channel<T, channels, 1>& channel, Selected selected, ZeliSize roi, Gate gate)
{
    const auto totals = sumUp<T, true>(channel, selected, roi, gate);
    const Zel32s n = wrap(Zel32u(totals.count));
    if (n == 0) return {0, 0};
    const double mean = meanOf(totals);
    double squares = double(totals.squares);
    // x * x = (x - 32768)^2 + 65536 * x - 2^30
    if constexpr (std::is_same_v<T, Zel16u>) squares += double(totals.sum * 65536 - std::int64_t(n) * (1 << 30));
    const double deviation = std::sqrt(std::abs(squares / n - mean * mean));
    if constexpr (std::is_same_v<T, Zel32f>)
        if (0.05 * mean * mean > deviation * deviation)
            return {mean, std::sqrt(spread(channel, selected, roi, mean) / n)};
    return {mean, deviation};
}

// Steps of 16u: all about the source comes before the mask.
template <class T, int channels>
ZelStatus checkPlanes(ZeliSize roi, const Channel<T, channels, 1>& channel, Plane<const Zel8u> mask)
{
    const Plane<const T> src = channel.planes[0];
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(wrappingProduct(roi.width, channels), src)) return status;
    if constexpr (std::is_same_v<T, Zel16u>)
        if (auto status = checkStepAlignment(src)) return status;
    if (auto status = checkStepSizes(roi.width, mask)) return status;
    if (auto status = checkStepAlignment(src)) return status;
    return checkChannel(channel.coi, channels);
}

template <class T, int channels>
ZelStatus checkPlanes(ZeliSize roi, const Channel<T, channels, 1>& channel, EveryPixel)
{
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(wrappingProduct(roi.width, channels), channel.planes[0])) return status;
    return checkChannel(channel.coi, channels);
}

ZelStatus checkMask(Plane<const Zel8u> mask) { return checkPointers(mask.data); }
ZelStatus checkMask(EveryPixel) { return zelStatusOk; }

template <int channels, class T>
ZelStatus storeMean(Plane<const T> src, int coi, Plane<const Zel8u> mask, ZeliSize roi, Zel64f* mean, Gate gate)
{
    const Channel<T, channels, 1> channel{{{src}}, coi};
    if (auto status = checkPointers(src.data, mask.data, mean)) return status;
    if (auto status = checkPlanes(roi, channel, mask)) return status;
    *mean = meanOf(sumUp<T, false>(channel, mask, roi, gate));
    return zelStatusOk;
}

template <int channels, class T, class Selected>
ZelStatus storeMoments(Plane<const T> src, int coi, Selected selected, ZeliSize roi, Zel64f* mean, Zel64f* deviation,
                       Gate gate)
{
    const Channel<T, channels, 1> channel{{{src}}, coi};
    if (auto status = checkPointers(src.data)) return status;
    if (auto status = checkMask(selected)) return status;
    if (auto status = checkPlanes(roi, channel, selected)) return status;
    const Moments moments = computeMoments(channel, selected, roi, gate);
    if (mean) *mean = moments.mean;
    if (deviation) *deviation = moments.deviation;
    return zelStatusOk;
}

} // namespace

// ---- exports: the members by type, with the gate of each

#define MEAN_C1MR(T, name, gate)                                                                                          \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* mean)            \
    {                                                                                                                     \
        return storeMean<1, T>({src, srcStep}, 1, {mask, maskStep}, roiSize, mean, gate);                                 \
    }
#define MEAN_C3CMR(T, name, gate)                                                                                         \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* mean)   \
    {                                                                                                                     \
        return storeMean<3, T>({src, srcStep}, coi, {mask, maskStep}, roiSize, mean, gate);                               \
    }
#define STDDEV_C1R(T, name, gate)                                                                                         \
    ZelStatus name(const T* src, int srcStep, ZeliSize roiSize, Zel64f* mean, Zel64f* stdDev)                             \
    {                                                                                                                     \
        return storeMoments<1, T>({src, srcStep}, 1, EveryPixel{}, roiSize, mean, stdDev, gate);                          \
    }
#define STDDEV_C3CR(T, name, gate)                                                                                        \
    ZelStatus name(const T* src, int srcStep, ZeliSize roiSize, int coi, Zel64f* mean, Zel64f* stdDev)                    \
    {                                                                                                                     \
        return storeMoments<3, T>({src, srcStep}, coi, EveryPixel{}, roiSize, mean, stdDev, gate);                        \
    }
#define STDDEV_C1MR(T, name, gate)                                                                                        \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, Zel64f* mean,            \
                   Zel64f* stdDev)                                                                                        \
    {                                                                                                                     \
        return storeMoments<1, T>({src, srcStep}, 1, Plane<const Zel8u>{mask, maskStep}, roiSize, mean, stdDev, gate);    \
    }
#define STDDEV_C3CMR(T, name, gate)                                                                                       \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, ZeliSize roiSize, int coi, Zel64f* mean,   \
                   Zel64f* stdDev)                                                                                        \
    {                                                                                                                     \
        return storeMoments<3, T>({src, srcStep}, coi, Plane<const Zel8u>{mask, maskStep}, roiSize, mean, stdDev, gate);  \
    }

MEAN_C1MR(Zel8u, zeliMean_8u_C1MR, Gate::serial())
MEAN_C1MR(Zel8s, zeliMean_8s_C1MR, Gate::areaPerThread(17))
MEAN_C1MR(Zel16u, zeliMean_16u_C1MR, Gate::areaPerThread(17))
MEAN_C1MR(Zel32f, zeliMean_32f_C1MR, Gate::areaPerThread(17))
MEAN_C3CMR(Zel8u, zeliMean_8u_C3CMR, Gate::areaPerThread(17))
MEAN_C3CMR(Zel8s, zeliMean_8s_C3CMR, Gate::areaPerThread(17))
MEAN_C3CMR(Zel16u, zeliMean_16u_C3CMR, Gate::areaPerThread(17))
MEAN_C3CMR(Zel32f, zeliMean_32f_C3CMR, Gate::areaPerThread(17))
STDDEV_C1R(Zel8u, zeliMean_StdDev_8u_C1R, Gate::areaPerThread(17, Gate::Cores::Several))
STDDEV_C1R(Zel8s, zeliMean_StdDev_8s_C1R, Gate::areaPerThread(17))
STDDEV_C1R(Zel16u, zeliMean_StdDev_16u_C1R, Gate::areaPerThread(17))
STDDEV_C1R(Zel32f, zeliMean_StdDev_32f_C1R, Gate::areaPerThread(16))
STDDEV_C3CR(Zel8u, zeliMean_StdDev_8u_C3CR, Gate::areaPerThread(17))
STDDEV_C3CR(Zel8s, zeliMean_StdDev_8s_C3CR, Gate::areaPerThread(17))
STDDEV_C3CR(Zel16u, zeliMean_StdDev_16u_C3CR, Gate::areaPerThread(17))
STDDEV_C3CR(Zel32f, zeliMean_StdDev_32f_C3CR, Gate::serial())
STDDEV_C1MR(Zel8u, zeliMean_StdDev_8u_C1MR, Gate::areaPerThread(17))
STDDEV_C1MR(Zel8s, zeliMean_StdDev_8s_C1MR, Gate::areaPerThread(17))
STDDEV_C1MR(Zel16u, zeliMean_StdDev_16u_C1MR, Gate::areaPerThread(17))
STDDEV_C1MR(Zel32f, zeliMean_StdDev_32f_C1MR, Gate::areaPerThread(17))
STDDEV_C3CMR(Zel8u, zeliMean_StdDev_8u_C3CMR, Gate::areaPerThread(17))
STDDEV_C3CMR(Zel8s, zeliMean_StdDev_8s_C3CMR, Gate::areaPerThread(17))
STDDEV_C3CMR(Zel16u, zeliMean_StdDev_16u_C3CMR, Gate::areaPerThread(17))
STDDEV_C3CMR(Zel32f, zeliMean_StdDev_32f_C3CMR, Gate::areaPerThread(17))
