// The row half of separable filters: dstRows[y][x] = f(sum over j of kernel[j] * e(x - xAnchor + j)), e being row y of the
// source continued on both sides by the border rule.
//
// With recip = 1.0f / (float)divisor, S the integer sum, which wraps, and s the single-precision sum by rising tap:
//   8u16s      trunc(clip((float)S * recip))
//   16s        3 and 5 taps: trunc(clip(s * recip)). Others with one channel: taps (float)tap * recip, then trunc(clip(s));
//              with three channels as 8u16s
//   Low_16s    the low 16 bits of (S * m) >> 14, m = trunc(16384.0f / (float)divisor). 5 taps with one channel: the low 16
//              bits of trunc((float)S * recip)
//   32f        s
#include "bands.h"
#include "border.h"
#include "checks.h"
#include "pipeline.h"

#include <bit>

using namespace zelcv;

namespace {

constexpr WorkingArea kArea_8u16s_C1R = {4, 32}, kArea_8u16s_C3R = {12, 32};
constexpr WorkingArea kArea_16s_C1R = {48, 80}, kArea_16s_C3R = {28, 32};
constexpr WorkingArea kArea_Low_16s_C1R = {24, 64}, kArea_Low_16s_C3R = {208, 64};
constexpr WorkingArea kArea_32f_C1R = {128, 64 + 16}, kArea_32f_C3R = {192, 32};

template <class S, class D, class Tap, int Channels>
struct RowCall {
    Plane<const S> src;
    D* const* dstRows;
    ZeliSize roi;
    const Tap* kernel;
    int kernelSize, xAnchor;
    ZeliBorderType borderType;
    const S* borderValue;
    Zel8u* buffer;
    WorkingArea area;

    ZelStatus check(int divisor) const
    {
        if (auto status = checkPointers(src.data, dstRows, kernel, buffer)) return status;
        if (auto status = checkPipelineSize(roi, kernelSize)) return status;
        if (xAnchor < 0 || xAnchor >= kernelSize) return zelStatusBadAnchor;
        if (auto status = checkSteps(wrappingProduct(roi.width, Channels), src)) return status;
        if (borderType < zeliBorderConstant || borderType > zeliBorderReflectEdge) return zelStatusBadArgument;
        if (borderType == zeliBorderConstant && !borderValue) return zelStatusNullPointer;
        return divisor == 0 ? zelStatusBadArgument : zelStatusOk;
    }

    // Runs filterBand(band, scratch) for all bands.
    template <class FilterBand>
    ZelStatus filter(Gate gate, const FilterBand& filterBand) const
    {
        forBands(roi, gate, [&](Band band) {
            filterBand(band, threadScratch(area, roi, kernelSize, buffer, band.index));
        });
        return std::find(dstRows, dstRows + roi.height, nullptr) != dstRows + roi.height ? zelStatusNullPointer : zelStatusOk;
    }

    // A band ends at a null row.
    template <class Sums, class Finish>
    [[gnu::noinline]] void filterRows(Band band, Carver scratch, const Sums& sums, Finish finish) const
    {
        ExtendedRow<S, Channels> extended(roi.width, kernelSize, xAnchor, borderType, borderValue, scratch, kBlock);
        using Line = AlongRow<S, Channels>;
        D narrow[kBlock]; // made from a copy, from which whole blocks may be read
        for (int y = band.first; y < band.last && dstRows[y]; ++y)
            extended.apply(src.row(y), dstRows[y], [&](const S* from, D* to, int count, bool isCopy) ZELCV_INLINE {
                if (count >= kBlock || !isCopy) return filterLine(Line{from}, to, count, sums, finish);
                filterLine(Line{from}, narrow, kBlock, sums, finish);
                std::memcpy(to, narrow, sizeof(D) * std::size_t(count));
            });
    }

    // Runs filterRows with the sums that makeSums(tap count, scratch) makes.
    template <class MakeSums, class Finish>
    ZelStatus filterBySums(Gate gate, const MakeSums& makeSums, Finish finish) const
    {
        return filter(gate, [&](Band band, Carver scratch) {
            withTapCount(kernelSize, [&](auto taps) {
                Carver rest = scratch;
                const auto sums = makeSums(taps, rest);
                filterRows(band, rest, sums, finish);
            });
        });
    }

    template <class Finish>
    ZelStatus filterByIntegers(Gate gate, Finish finish) const
    {
        return filterBySums(gate, [&](auto taps, Carver&) { return IntegerSums<S, taps>(kernel, kernelSize); }, finish);
    }

    // The single-precision sum of taps that are multiplied by `tapScale` before, and the clipped sum by `factor` after.
    ZelStatus filterByFloats(Gate gate, Zel32f tapScale, Zel32f factor) const
    {
        return filterBySums(gate, [&](auto taps, Carver& scratch) {
            return FloatSums<S, taps>(floatTaps(kernel, kernelSize, tapScale, scratch), kernelSize);
        }, Scaled<D>(factor));
    }
};

template <int Channels>
ZelStatus filter_8u16s(const RowCall<Zel8u, Zel16s, Zel16s, Channels>& call, int divisor)
{
    if (auto status = call.check(divisor)) return status;
    const Scaled<Zel16s> finish(1.0f / Zel32f(divisor));
    if (!ShortSums<0>::hold(call.kernel, call.kernelSize)) return call.filterByIntegers(Gate::pipeline(), finish);
    return call.filterBySums(Gate::pipeline(), [&](auto taps, Carver&) {
        return ShortSums<taps>(call.kernel, call.kernelSize);
    }, finish);
}

template <int Channels>
ZelStatus filter_16s(const RowCall<Zel16s, Zel16s, Zel16s, Channels>& call, int divisor)
{
    if (auto status = call.check(divisor)) return status;
    const int taps = call.kernelSize;
    const bool scalesSum = taps == 3 || taps == 5, integer = Channels == 3 && !scalesSum;
    const bool exactTaps = std::has_single_bit(divisor < 0 ? 0u - Zel32u(divisor) : Zel32u(divisor));
    const Gate gate = Channels == 1 && taps <= 3 ? Gate::serial() : Gate::pipeline();
    const Zel32f recip = 1.0f / Zel32f(divisor);
    if (integer || (integerSumsAreExact(call.kernel, taps) && (scalesSum || exactTaps)))
        return call.filterByIntegers(gate, Scaled<Zel16s>(recip));
    return scalesSum ? call.filterByFloats(gate, 1.0f, recip) : call.filterByFloats(gate, recip, 1.0f);
}

template <int Channels>
ZelStatus filterLow_16s(const RowCall<Zel16s, Zel16s, Zel16s, Channels>& call, int divisor)
{
    if (auto status = call.check(divisor)) return status;
    if (Channels == 1 && call.kernelSize == 5)
        return call.filterByIntegers(Gate::pipeline(), LowScaled{1.0f / Zel32f(divisor)});
    return call.filterByIntegers(Gate::pipeline(), FixedPoint{Zel32s(16384.0f / Zel32f(divisor))});
}

template <int Channels>
ZelStatus filter_32f(const RowCall<Zel32f, Zel32f, Zel32f, Channels>& call)
{
    if (auto status = call.check(1)) return status;
    const Gate gate = Channels == 1 ? Gate::pipeline(call.kernelSize) : Gate::pipeline();
    return call.filterBySums(gate, [&](auto taps, Carver&) {
        return FloatSums<Zel32f, taps>(call.kernel, call.kernelSize);
    }, AsIs{});
}

} // namespace

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_8u16s_C1R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_8u16s_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_8u16s_C3R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_16s_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_16s_C1R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_16s_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_16s_C3R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_Low_16s_C1R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_Low_16s_C3R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_32f_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_32f_C1R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipelineGetBufferSize_32f_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kArea_32f_C3R, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterRowBorderPipeline_8u16s_C1R(const Zel8u* src, int srcStep, Zel16s* const* dstRows, ZeliSize roiSize,
                                                const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
                                                Zel8u borderValue, int divisor, Zel8u* buffer)
{
    return filter_8u16s<1>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, &borderValue, buffer,
                            kArea_8u16s_C1R}, divisor);
}

ZelStatus zeliFilterRowBorderPipeline_8u16s_C3R(const Zel8u* src, int srcStep, Zel16s* const* dstRows, ZeliSize roiSize,
                                                const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
                                                const Zel8u* borderValue, int divisor, Zel8u* buffer)
{
    return filter_8u16s<3>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, borderValue, buffer,
                            kArea_8u16s_C3R}, divisor);
}

ZelStatus zeliFilterRowBorderPipeline_16s_C1R(const Zel16s* src, int srcStep, Zel16s* const* dstRows, ZeliSize roiSize,
                                              const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
                                              Zel16s borderValue, int divisor, Zel8u* buffer)
{
    return filter_16s<1>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, &borderValue, buffer,
                          kArea_16s_C1R}, divisor);
}

ZelStatus zeliFilterRowBorderPipeline_16s_C3R(const Zel16s* src, int srcStep, Zel16s* const* dstRows, ZeliSize roiSize,
                                              const Zel16s* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
                                              const Zel16s* borderValue, int divisor, Zel8u* buffer)
{
    return filter_16s<3>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, borderValue, buffer,
                          kArea_16s_C3R}, divisor);
}

ZelStatus zeliFilterRowBorderPipeline_Low_16s_C1R(const Zel16s* src, int srcStep, Zel16s* const* dstRows, ZeliSize roiSize,
                                                  const Zel16s* kernel, int kernelSize, int xAnchor,
                                                  ZeliBorderType borderType, Zel16s borderValue, int divisor, Zel8u* buffer)
{
    return filterLow_16s<1>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, &borderValue, buffer,
                             kArea_Low_16s_C1R}, divisor);
}

ZelStatus zeliFilterRowBorderPipeline_Low_16s_C3R(const Zel16s* src, int srcStep, Zel16s* const* dstRows, ZeliSize roiSize,
                                                  const Zel16s* kernel, int kernelSize, int xAnchor,
                                                  ZeliBorderType borderType, const Zel16s* borderValue, int divisor,
                                                  Zel8u* buffer)
{
    return filterLow_16s<3>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, borderValue, buffer,
                             kArea_Low_16s_C3R}, divisor);
}

ZelStatus zeliFilterRowBorderPipeline_32f_C1R(const Zel32f* src, int srcStep, Zel32f* const* dstRows, ZeliSize roiSize,
                                              const Zel32f* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
                                              Zel32f borderValue, Zel8u* buffer)
{
    return filter_32f<1>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, &borderValue, buffer,
                          kArea_32f_C1R});
}

ZelStatus zeliFilterRowBorderPipeline_32f_C3R(const Zel32f* src, int srcStep, Zel32f* const* dstRows, ZeliSize roiSize,
                                              const Zel32f* kernel, int kernelSize, int xAnchor, ZeliBorderType borderType,
                                              const Zel32f* borderValue, Zel8u* buffer)
{
    return filter_32f<3>({{src, srcStep}, dstRows, roiSize, kernel, kernelSize, xAnchor, borderType, borderValue, buffer,
                          kArea_32f_C3R});
}
