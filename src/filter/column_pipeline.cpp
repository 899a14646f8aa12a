// The column half of separable filters: dst[y][x] = f(sum over j of kernel[j] * srcRows[y + j][x]).
//
// 16s8s, 16s8u and 16s: trunc(clip(s * (1.0f / (float)divisor))) of the single-precision sum s; Low_16s: the low 16 bits of
// trunc((float)S * (1.0f / (float)divisor)) of the integer sum S, which wraps; 32f: the single-precision sum. Channels do not
// matter: a row of three is a row of three times as many elements.
#include "bands.h"
#include "checks.h"
#include "pipeline.h"

using namespace zelcv;

namespace {

constexpr WorkingArea kClippedArea = {4, 32}, kLowArea = {0, 32};
constexpr int kFloatBufferSize = 32;

template <class S, class D, class Tap>
struct ColumnCall {
    const S* const* srcRows;
    Plane<D> dst;
    ZeliSize roi;
    int channels;
    const Tap* kernel;
    int kernelSize;
    Zel8u* buffer;

    int elements() const { return wrappingProduct(roi.width, channels); }

    ZelStatus check(int divisor) const
    {
        if (auto status = checkPointers(srcRows, dst.data, kernel)) return status;
        if (auto status = checkPipelineSize(roi, kernelSize)) return status;
        if (auto status = checkSteps(elements(), dst)) return status;
        if (!buffer) return zelStatusNullPointer;
        if (divisor == 0) return zelStatusBadArgument;
        const std::int64_t rows = std::int64_t(roi.height) + kernelSize - 1;
        return std::find(srcRows, srcRows + rows, nullptr) != srcRows + rows ? zelStatusNullPointer : zelStatusOk;
    }

    template <class Sums, class Finish>
    [[gnu::noinline]] void filterRows(Band band, const Sums& sums, Finish finish) const
    {
        for (int y = band.first; y < band.last; ++y)
            filterLine(AcrossRows<S, Sums::kTaps>(srcRows + y), dst.row(y), elements(), sums, finish);
    }

    template <class Finish>
    void filterByIntegers(Finish finish) const
    {
        forBands(roi, Gate::pipeline(kernelSize), [&](Band band) {
            withTapCount(kernelSize, [&](auto taps) {
                filterRows(band, IntegerSums<S, taps>(kernel, kernelSize), finish);
            });
        });
    }
};

template <class D>
ZelStatus filterClipped(const ColumnCall<Zel16s, D, Zel16s>& call, int divisor)
{
    if (auto status = call.check(divisor)) return status;
    const Scaled<D> finish(1.0f / Zel32f(divisor));
    if (integerSumsAreExact(call.kernel, call.kernelSize)) {
        call.filterByIntegers(finish);
        return zelStatusOk;
    }
    forBands(call.roi, Gate::pipeline(call.kernelSize), [&](Band band) {
        Carver scratch = threadScratch(kClippedArea, call.roi, call.kernelSize, call.buffer, band.index);
        const Zel32f* kernel = floatTaps(call.kernel, call.kernelSize, 1.0f, scratch);
        withTapCount(call.kernelSize, [&](auto taps) {
            call.filterRows(band, FloatSums<Zel16s, taps>(kernel, call.kernelSize), finish);
        });
    });
    return zelStatusOk;
}

ZelStatus filterLow(const ColumnCall<Zel16s, Zel16s, Zel16s>& call, int divisor)
{
    if (auto status = call.check(divisor)) return status;
    call.filterByIntegers(LowScaled{1.0f / Zel32f(divisor)});
    return zelStatusOk;
}

ZelStatus filterFloat(const ColumnCall<Zel32f, Zel32f, Zel32f>& call)
{
    if (auto status = call.check(1)) return status;
    const Band all = cutBand(call.roi.height, 1, 0);
    withTapCount(call.kernelSize, [&](auto taps) {
        call.filterRows(all, FloatSums<Zel32f, taps>(call.kernel, call.kernelSize), AsIs{});
    });
    return zelStatusOk;
}

} // namespace

ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8s_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kClippedArea, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8s_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kClippedArea, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8u_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kClippedArea, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterColumnPipelineGetBufferSize_16s8u_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kClippedArea, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterColumnPipelineGetBufferSize_16s_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kClippedArea, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterColumnPipelineGetBufferSize_16s_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kClippedArea, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterColumnPipelineGetBufferSize_Low_16s_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kLowArea, roiSize, kernelSize, bufferSize);
}

ZelStatus zeliFilterColumnPipelineGetBufferSize_Low_16s_C3R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    return pipelineBufferSize(kLowArea, roiSize, kernelSize, bufferSize);
}

// Shared with the three channels.
ZelStatus zeliFilterColumnPipelineGetBufferSize_32f_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    if (!bufferSize) return zelStatusNullPointer;
    if (auto status = checkPipelineSize(roiSize, kernelSize)) return status;
    *bufferSize = kFloatBufferSize;
    return zelStatusOk;
}

ZelStatus zeliFilterColumnPipeline_16s8s_C1R(const Zel16s* const* srcRows, Zel8s* dst, int dstStep, ZeliSize roiSize,
                                             const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterClipped<Zel8s>({srcRows, {dst, dstStep}, roiSize, 1, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_16s8s_C3R(const Zel16s* const* srcRows, Zel8s* dst, int dstStep, ZeliSize roiSize,
                                             const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterClipped<Zel8s>({srcRows, {dst, dstStep}, roiSize, 3, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_16s8u_C1R(const Zel16s* const* srcRows, Zel8u* dst, int dstStep, ZeliSize roiSize,
                                             const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterClipped<Zel8u>({srcRows, {dst, dstStep}, roiSize, 1, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_16s8u_C3R(const Zel16s* const* srcRows, Zel8u* dst, int dstStep, ZeliSize roiSize,
                                             const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterClipped<Zel8u>({srcRows, {dst, dstStep}, roiSize, 3, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_16s_C1R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep, ZeliSize roiSize,
                                           const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterClipped<Zel16s>({srcRows, {dst, dstStep}, roiSize, 1, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_16s_C3R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep, ZeliSize roiSize,
                                           const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterClipped<Zel16s>({srcRows, {dst, dstStep}, roiSize, 3, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_Low_16s_C1R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep, ZeliSize roiSize,
                                               const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterLow({srcRows, {dst, dstStep}, roiSize, 1, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_Low_16s_C3R(const Zel16s* const* srcRows, Zel16s* dst, int dstStep, ZeliSize roiSize,
                                               const Zel16s* kernel, int kernelSize, int divisor, Zel8u* buffer)
{
    return filterLow({srcRows, {dst, dstStep}, roiSize, 3, kernel, kernelSize, buffer}, divisor);
}

ZelStatus zeliFilterColumnPipeline_32f_C1R(const Zel32f* const* srcRows, Zel32f* dst, int dstStep, ZeliSize roiSize,
                                           const Zel32f* kernel, int kernelSize, Zel8u* buffer)
{
    return filterFloat({srcRows, {dst, dstStep}, roiSize, 1, kernel, kernelSize, buffer});
}

ZelStatus zeliFilterColumnPipeline_32f_C3R(const Zel32f* const* srcRows, Zel32f* dst, int dstStep, ZeliSize roiSize,
                                           const Zel32f* kernel, int kernelSize, Zel8u* buffer)
{
    return filterFloat({srcRows, {dst, dstStep}, roiSize, 3, kernel, kernelSize, buffer});
}
