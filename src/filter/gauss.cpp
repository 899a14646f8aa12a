// Gauss filter with border, of any odd size, in single precision: the sums of the row and the column pipeline, with the same
// taps in both directions, on the engine of border_filter.h.
//
// With h = kernelSize / 2 the tap at distance i from the centre is the weight exp(-(i * i) / ((sigma + sigma) * sigma)),
// divided by the sum of all weights.
#include "border_filter.h"
#include "pipeline.h"

#include <cmath>

using namespace zelcv;

namespace {

// Flags that a caller may add to a plain border kind.
constexpr ZeliBorderType kRowFlags = zeliBorderInMemoryTop | zeliBorderInMemoryBottom;

bool isKernelSize(int size) { return size >= 3 && size % 2 != 0; }

// Weights are the nearest single to the exponential; they are added and divided in double, from the left.
const Zel32f* makeTaps(int kernelSize, Zel32f sigma, Carver& scratch)
{
    Zel32f* const taps = scratch.take<Zel32f>(kernelSize);
    const int centre = kernelSize / 2;
    const Zel32f denominator = (sigma + sigma) * sigma;
    for (int i = 0; i <= centre; ++i) {
        const Zel32f distance = Zel32f(i), exponent = -(distance * distance) / denominator;
        taps[centre - i] = taps[centre + i] = Zel32f(std::exp(Zel64f(exponent)));
    }
    Zel64f sum = 0;
    for (int j = 0; j < kernelSize; ++j) sum += taps[j];
    for (int j = 0; j < kernelSize; ++j) taps[j] = Zel32f(taps[j] / sum);
    return taps;
}

// The row stage: sums that begin with their first product. Where that differs from beginning with 0 it is in the sign of a
// zero, which the column stage, beginning with 0, does not see.
template <int N>
class GaussRow {
public:
    explicit GaussRow(const Zel32f* taps)
    {
        for (int j = 0; j < N; ++j) splats_[j] = splat(taps[j]);
    }

    // As forRowBlocks does it, where n is a vector or more.
    [[gnu::noinline]] void operator()(const Zel32f* row, Zel32f* mid, int n) const
    {
        const TapVectors<Vec<Zel32f>, N> taps = splats_; // a copy that no store can change
        const auto make = [&](std::ptrdiff_t i) ZELCV_INLINE {
            Vec<Zel32f> sum = load(row + i) * taps[0];
            for (int j = 1; j < N; ++j) sum += load(row + i + j) * taps[j];
            store(mid + i, sum);
        };
        const std::ptrdiff_t last = n - kLanes<Zel32f>;
        if (forBlocks<kLanes<Zel32f>>(last, make) < n) make(last);
    }

private:
    TapVectors<Vec<Zel32f>, N> splats_;
};

ZelStatus check(Plane<const Zel32f> src, Plane<Zel32f> dst, ZeliSize roi, int kernelSize, ZeliBorderType border,
                const Zel8u* buffer)
{
    if (auto status = checkPointers(src.data, dst.data, buffer)) return status;
    if (auto status = checkSize(roi)) return status;
    if (src.step < roi.width || dst.step < roi.width) return zelStatusBadStep; // bytes against pixels: rows may overlap
    const ZeliBorderType kind = border & ~kRowFlags;
    if (!isKernelSize(kernelSize) || kind < zeliBorderConstant || kind > zeliBorderReflectEdge) return zelStatusBadArgument;
    return zelStatusOk;
}

} // namespace

ZelStatus zeliFilterGaussGetBufferSize_32f_C1R(ZeliSize roiSize, int kernelSize, int* bufferSize)
{
    if (auto status = checkPointers(bufferSize)) return status;
    if (auto status = checkSize(roiSize)) return status;
    if (!isKernelSize(kernelSize)) return zelStatusBadArgument;
    int rowBytes = 0, columnBytes = 0;
    zeliFilterRowBorderPipelineGetBufferSize_32f_C1R({roiSize.width, kernelSize}, kernelSize, &rowBytes);
    zeliFilterColumnPipelineGetBufferSize_32f_C1R(roiSize, kernelSize, &columnBytes);
    // Rows and taps in fours, pointers and what the pipelines take; callers know the size.
    const auto quads = [](Wrapped count) { return Wrapped((count + 3).value() >> 2) * 16; };
    const auto octets = [](Wrapped count) { return Wrapped((count + 7).value() >> 3) * 32; };
    const Wrapped taps = kernelSize, extended = Wrapped(roiSize.width) + kernelSize;
    const Wrapped bytes = quads(extended) * 2 * taps + quads(taps) + octets(extended) * taps + 32 + 64 + rowBytes + 32 +
                          columnBytes + 32 + taps * 2 * 8 + 32;
    *bufferSize = bytes.value();
    return zelStatusOk;
}

ZelStatus zeliFilterGaussBorder_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize,
                                        int kernelSize, Zel32f sigma, ZeliBorderType borderType, Zel32f borderValue,
                                        Zel8u* buffer)
{
    const Plane<const Zel32f> from{src, srcStep};
    const Plane<Zel32f> to{dst, dstStep};
    if (auto status = check(from, to, roiSize, kernelSize, borderType, buffer)) return status;

    Carver scratch(buffer);
    const Zel32f* taps = makeTaps(kernelSize, sigma, scratch);
    const auto fillConstant = [=](Zel32f* row, int n) {
        Zel32f sum = 0;
        for (int j = 0; j < kernelSize; ++j) sum += borderValue * taps[j];
        std::fill_n(row, n, sum);
    };
    withTapCount(kernelSize, [&](auto count) {
        using Sums = FloatSums<Zel32f, count>;
        const Sums sums(taps, kernelSize);
        filterBand<Zel32f, 1, kBlock>(
            kernelSize, BorderedSource<Zel32f>{from, roiSize, borderType, borderValue}, to, cutBand(roiSize.height, 1, 0),
            scratch, fillConstant,
            [&](const Zel32f* row, Zel32f* mid, int n, int) {
                if constexpr (count > 0)
                    if (n >= kLanes<Zel32f>) return GaussRow<count>(taps)(row, mid, n);
                filterLine(AlongRow<Zel32f, 1>{row}, mid, n, sums, AsIs{});
            },
            [&](const Zel32f* const* rows, Zel32f* out, int n, int) {
                filterLine(AcrossRows<Zel32f, count>(rows), out, n, sums, AsIs{});
            });
    });
    return zelStatusOk;
}
