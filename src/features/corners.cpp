// Corner measures: the structure tensor of each pixel, [a c; c b], and what is read out of it.
//
// It takes four steps, in planes of the caller's scratch: derivatives dx and dy, by the exported Sobel or Scharr filters;
// the products dx * dx, dx * dy and dy * dy; their averages, by the exported box filter; the read-out. They are taken in strips
// of rows whose planes stay in the caches. To a filter the rows above and below a strip are real ones.
#include "bands.h"
#include "checks.h"
#include "machine.h"
#include "map.h"
#include "scratch.h"

#include <algorithm>

using namespace zelcv;

namespace {

enum KernelKind { kSobel = 0, kScharr = 1 };

constexpr int kPlaneAlignment = 32;

bool isMaskLength(int length) { return length == 3 || length == 5; }
ZeliMaskSize maskOf(int length) { return 11 * length; }

// Elements from row to row of a plane.
Wrapped planePitch(int width) { return Wrapped(width).roundedUp(16); }

// ---- sources: the derivative filters of a type, and the scratch for a pixel of all planes

struct From8u {
    using Src = Zel8u;
    using Derivative = Zel16s;
    static constexpr int kPixelBytes = 2 * 2 + 3 * 4;
    static constexpr auto sobelVertSize = zeliFilterSobelVertGetBufferSize_8u16s_C1R;
    static constexpr auto sobelHorizSize = zeliFilterSobelHorizGetBufferSize_8u16s_C1R;
    static constexpr auto scharrVertSize = zeliFilterScharrVertGetBufferSize_8u16s_C1R;
    static constexpr auto scharrHorizSize = zeliFilterScharrHorizGetBufferSize_8u16s_C1R;
    static constexpr auto sobelVert = zeliFilterSobelVertBorder_8u16s_C1R;
    static constexpr auto sobelHoriz = zeliFilterSobelHorizBorder_8u16s_C1R;
    static constexpr auto scharrVert = zeliFilterScharrVertBorder_8u16s_C1R;
    static constexpr auto scharrHoriz = zeliFilterScharrHorizBorder_8u16s_C1R;
};
struct From32f {
    using Src = Zel32f;
    using Derivative = Zel32f;
    static constexpr int kPixelBytes = 2 * 4 + 3 * 4;
    static constexpr auto sobelVertSize = zeliFilterSobelVertGetBufferSize_32f_C1R;
    static constexpr auto sobelHorizSize = zeliFilterSobelHorizGetBufferSize_32f_C1R;
    static constexpr auto scharrVertSize = zeliFilterScharrVertGetBufferSize_32f_C1R;
    static constexpr auto scharrHorizSize = zeliFilterScharrHorizGetBufferSize_32f_C1R;
    static constexpr auto sobelVert = zeliFilterSobelVertBorder_32f_C1R;
    static constexpr auto sobelHoriz = zeliFilterSobelHorizBorder_32f_C1R;
    static constexpr auto scharrVert = zeliFilterScharrVertBorder_32f_C1R;
    static constexpr auto scharrHoriz = zeliFilterScharrHorizBorder_32f_C1R;
};

// What the filters need at most, for all threads.
template <class From>
int largestFilterSize(ZeliSize roi, int apertureSize, int avgWindow)
{
    int largest = 0;
    const auto include = [&](auto sizeFunction, auto... mask) {
        int bytes = 0;
        sizeFunction(roi, mask..., &bytes);
        largest = std::max(largest, bytes);
    };
    include(From::sobelVertSize, maskOf(apertureSize));
    include(From::sobelHorizSize, maskOf(apertureSize));
    if (apertureSize == 3) {
        include(From::scharrVertSize);
        include(From::scharrHorizSize);
    }
    include(zeliFilterLowpassGetBufferSize_32f_C1R, maskOf(avgWindow));
    return largest;
}

template <class From>
ZelStatus getBufferSize(ZeliSize roi, int apertureSize, int avgWindow, int* bufferSize)
{
    if (auto status = checkPointers(bufferSize)) return status;
    if (auto status = checkSize(roi)) return status;
    if (!isMaskLength(apertureSize) || !isMaskLength(avgWindow)) return zelStatusBadSize;
    const int filters = largestFilterSize<From>(roi, apertureSize, avgWindow);
    *bufferSize = (planePitch(roi.width) * roi.height * From::kPixelBytes + 224 + filters).value();
    return zelStatusOk;
}

// ---- the tensor

struct Tensor {
    Plane<Zel32f> a, b, c; // averages of dx * dx, dy * dy, dx * dy, from the first row of a strip on
};

// Rows from `first` to `last` - 1.
struct Strip {
    int first, last;

    int rows() const { return last - first; }
    ZeliBorderType border(int height) const
    {
        return zeliBorderReplicate | (first > 0 ? zeliBorderInMemoryTop : 0) | (last < height ? zeliBorderInMemoryBottom : 0);
    }
};

// xx = dx * dx, xy = dx * dy, yy = dy * dy, for `count` pixels, a block or more. Blocks are whole vectors of derivatives; the
// last one overlaps the one before.
template <class T>
[[gnu::noinline]] void multiplyRow(const T* dx, const T* dy, Zel32f* xx, Zel32f* xy, Zel32f* yy, int count)
{
    const std::ptrdiff_t last = count - kLanes<T>;
    const auto make = [&](std::ptrdiff_t i) ZELCV_INLINE {
        const auto x = loadConverted<Zel32f>(dx + i), y = loadConverted<Zel32f>(dy + i);
        store(xx + i, x * x);
        store(xy + i, x * y);
        store(yy + i, y * y);
    };
    std::ptrdiff_t i = 0;
    for (; i <= last; i += kLanes<T>) make(i);
    if (i < count) make(last);
}

template <class From>
struct TensorFilter {
    using T = typename From::Derivative;

    Plane<const typename From::Src> src;
    ZeliSize roi;
    KernelKind kind;
    int apertureSize, avgWindow;

    // No strip is shorter, or ends so close in front of the last row that filters would read beyond that.
    static constexpr int kFewestRows = 16, kRowsBehind = 4, kMostRows = 64;
    static constexpr int kCachedBytes = 1 << 19;

    int pitch() const { return planePitch(roi.width).value(); }
    std::int64_t planeBytes(int rows) const { return std::int64_t(pitch()) * From::kPixelBytes * rows; }

    // The strip of `rows` from row `first` on; the last one takes what would be left.
    Strip strip(int first, int rows) const
    {
        const bool isLast = roi.height - first < std::int64_t(rows) + kRowsBehind;
        return {first, isLast ? roi.height : first + rows};
    }
    int rowsOfStrips() const { return int(std::clamp<std::int64_t>(kCachedBytes / planeBytes(1), kFewestRows, kMostRows)); }

    // The tensor of a strip. The filters take what they are given, so that none of them fails.
    Tensor make(Strip strip, Zel8u* planes, Zel8u* filterScratch) const
    {
        const int reach = avgWindow / 2;
        const Strip around{std::max(0, strip.first - reach), std::min(roi.height, strip.last + reach)};
        const auto area = std::int64_t(pitch()) * around.rows();
        Carver scratch(planes);
        // One float plane holds both derivatives of 16 bits, or the second one of 32. It is free again when products are
        // averaged.
        const auto takePlane = [&]<class E>(E) {
            return Plane<E>{scratch.take<E>(area, kPlaneAlignment), wrappingProduct(pitch(), sizeof(E))};
        };
        const Plane<T> dx = takePlane(T()), dy = takePlane(T());
        const Plane<Zel32f> free = {reinterpret_cast<Zel32f*>(sizeof(T) == sizeof(Zel32f) ? dy.data : dx.data),
                                    wrappingProduct(pitch(), sizeof(Zel32f))};
        const Plane<Zel32f> xx = takePlane(Zel32f()), xy = takePlane(Zel32f()), yy = takePlane(Zel32f());

        const ZeliSize size{roi.width, around.rows()};
        const auto derive = [&](auto sobel, auto scharr, Plane<T> dst) {
            const auto* const from = src.row(around.first);
            const ZeliBorderType border = around.border(roi.height);
            if (kind == kScharr)
                scharr(from, src.step, dst.data, dst.step, size, border, 0, filterScratch);
            else
                sobel(from, src.step, dst.data, dst.step, size, maskOf(apertureSize), border, 0, filterScratch);
        };
        derive(From::sobelVert, From::scharrVert, dx);
        derive(From::sobelHoriz, From::scharrHoriz, dy);

        // Narrow rows take part with what is behind them, up to a block.
        const int count = std::max(roi.width, kLanes<T>);
        for (int y = 0; y < around.rows(); ++y) {
            std::fill(dx.row(y) + roi.width, dx.row(y) + count, T(0));
            std::fill(dy.row(y) + roi.width, dy.row(y) + count, T(0));
            multiplyRow(dx.row(y), dy.row(y), xx.row(y), xy.row(y), yy.row(y), count);
        }

        const int above = strip.first - around.first;
        const auto average = [&](Plane<Zel32f> from, Plane<Zel32f> to) {
            zeliFilterLowpassBorder_32f_C1R(from.row(above), from.step, to.data, to.step, {roi.width, strip.rows()},
                                            maskOf(avgWindow), strip.border(roi.height), 0, filterScratch);
        };
        average(xx, free);
        average(xy, xx);
        average(yy, xy);
        return {.a = free, .b = xy, .c = xx};
    }
};

Zel32f scaleOf(KernelKind kind, int apertureSize)
{
    const Zel32f scale = 1.0f / Zel32f(255 << (2 * apertureSize - 2));
    return kind == kScharr ? scale * 0.6125f : scale;
}

// ---- the read-out

struct SmallerEigenvalue {
    double factor;

    SmallerEigenvalue(KernelKind, Zel32f scale) : factor(0.5f * scale) {}

    void operator()(const Zel32f* as, const Zel32f* bs, const Zel32f* cs, Zel32f* dst, int width) const
    {
        const auto eigenvalues = [k = factor](Vec<Zel32f> a, Vec<Zel32f> b, Vec<Zel32f> c) ZELCV_INLINE {
            const Vec<Zel32f> difference = a - b;
            const Doubles root = squareRoot(toDoubles(4.0f * c * c + difference * difference));
            return toFloat((toDoubles(a + b) - root) * splatDoubles(k));
        };
        mapRow(dst, width, [=](auto a, auto b, auto c) ZELCV_INLINE { return forParts(eigenvalues, a, b, c); },
               elements(as), elements(bs), elements(cs));
    }
};

// Six vectors, of which lane i makes the numbers of pixel i, in the order of memory.
ZELCV_INLINE inline Group<Vec<Zel32f>, 6> interleaveSix(const Group<Vec<Zel32f>, 6>& v)
{
    using Pairs = Vec<Zel64f>;
    const auto pixels = [](Pairs first, Pairs second, Pairs third, Vec<Zel32f>* to) ZELCV_INLINE { // each two neighbours
        to[0] = Vec<Zel32f>(interleaveLow(first, second));
        to[1] = Vec<Zel32f>(shuffle<[](int i) { return i % 2 == 0 ? i : i + kLanes<Zel64f>; }>(third, first));
        to[2] = Vec<Zel32f>(interleaveHigh(second, third));
    };
    Group<Vec<Zel32f>, 6> r;
    pixels(Pairs(interleaveLow(v.part[0], v.part[1])), Pairs(interleaveLow(v.part[2], v.part[3])),
           Pairs(interleaveLow(v.part[4], v.part[5])), r.part);
    pixels(Pairs(interleaveHigh(v.part[0], v.part[1])), Pairs(interleaveHigh(v.part[2], v.part[3])),
           Pairs(interleaveHigh(v.part[4], v.part[5])), r.part + 3);
    if constexpr (kVectorBytes == 16) {
        return r;
    } else {
        Group<Vec<Zel32f>, 6> sorted;
        for (int i = 0; i < 3; ++i) {
            sorted.part[i] = firstHalves(r.part[2 * i], r.part[2 * i + 1]);
            sorted.part[i + 3] = secondHalves(r.part[2 * i], r.part[2 * i + 1]);
        }
        return sorted;
    }
}

struct EigenvaluesAndVectors {
    static constexpr int kNumbers = 6;
    Zel32f scale, sign; // the sign of dx to the right

    EigenvaluesAndVectors(KernelKind kind, Zel32f scaleOfTensor) : scale(scaleOfTensor), sign(kind == kScharr ? 1.0f : -1.0f)
    {
    }

    void operator()(const Zel32f* as, const Zel32f* bs, const Zel32f* cs, Zel32f* dst, int width) const
    {
        constexpr int lanes = kLanes<Zel32f>;
        if (width < lanes) {
            const auto numbers = block(loadUpTo(as, width), loadUpTo(bs, width), loadUpTo(cs, width));
            std::memcpy(dst, &numbers, sizeof(Zel32f) * std::size_t(kNumbers * width));
            return;
        }
        const std::ptrdiff_t last = width - lanes;
        const auto make = [&, self = *this](std::ptrdiff_t i) ZELCV_INLINE { // a copy that no store can change
            fetchForWriting(dst + kNumbers * i + 2048 / sizeof(Zel32f));
            store(dst + kNumbers * i, self.block(load(as + i), load(bs + i), load(cs + i)));
        };
        std::ptrdiff_t i = 0;
        for (; i <= last; i += lanes) make(i);
        if (i < width) make(last);
    }

private:
    ZELCV_INLINE Group<Vec<Zel32f>, 6> block(Vec<Zel32f> a, Vec<Zel32f> b, Vec<Zel32f> c) const
    {
        using V = Vec<Zel32f>;
        a *= scale, b *= scale, c *= scale;
        const V difference = a - b, sum = a + b;
        const V root = squareRoot(4.0f * c * c + difference * difference);
        const V larger = (sum + root) * 0.5f, smaller = (sum - root) * 0.5f;

        // All bits or none: the numbers are not all 0, and the vectors are computed and not the axes.
        const V threshold = 0.01f * maximum(a, b);
        const auto isThere = ~((threshold > minimum(a, b)) | (threshold > a * b - c * c));
        const auto isDiagonal = threshold > absolute(c);
        const auto isComputed = isThere & ~isDiagonal;
        const auto one = isThere & isDiagonal & Vec<Zel32s>(splat(1.0f));
        const auto where = [](Vec<Zel32s> mask, V number) ZELCV_INLINE { return mask & Vec<Zel32s>(number); };

        const V x = c * sign, y1 = larger - a, y2 = smaller - a, xSquare = x * x;
        const auto perLength = [=](V y) ZELCV_INLINE {
            return 1.0f / maximum(squareRoot(y * y + xSquare), splat(1.1920929e-7f));
        };
        const V n1 = perLength(y1), n2 = perLength(y2);
        return interleaveSix({V(where(isThere, larger)), V(where(isThere, smaller)), V(where(isComputed, x * n1) | one),
                              V(where(isComputed, y1 * n1)), V(where(isComputed, x * n2)),
                              V(where(isComputed, y2 * n2) | one)});
    }
};

// ---- drivers

template <class From, class ReadOut>
ZelStatus measureCorners(Plane<const typename From::Src> src, Plane<Zel32f> dst, ZeliSize roi, int kernelKind,
                         int apertureSize, int avgWindow, Zel8u* buffer)
{
    if (auto status = checkPointers(src.data, dst.data, buffer)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(roi.width, src, dst)) return status; // for one number a pixel, also where six are written
    if (kernelKind != kSobel && kernelKind != kScharr) return zelStatusBadArgument;
    if (apertureSize != 3 && (kernelKind == kScharr || apertureSize != 5)) return zelStatusBadSize;
    if (!isMaskLength(avgWindow)) return zelStatusBadSize;

    const auto kind = KernelKind(kernelKind);
    const ReadOut readOut(kind, scaleOf(kind, apertureSize));
    const TensorFilter<From> filter{src, roi, kind, apertureSize, avgWindow};
    const int stripRows = filter.rowsOfStrips(), filterBytes = largestFilterSize<From>(roi, apertureSize, avgWindow);
    Zel8u* const planes = Carver(buffer).take<Zel8u>(0, kPlaneAlignment);
    forBands(roi, Gate::borderFilter(), [&](Band band) {
        Zel8u* const filterScratch =
            planes + filter.planeBytes(roi.height) + std::ptrdiff_t(filterBytes / band.count) * band.index;
        for (int y = band.first; y < band.last;) {
            Strip strip = filter.strip(y, stripRows);
            strip.last = std::min(strip.last, band.last);
            const Tensor tensor = filter.make(strip, planes + filter.planeBytes(band.first), filterScratch);
            for (int i = 0; i < strip.rows(); ++i, ++y)
                readOut(tensor.a.row(i), tensor.b.row(i), tensor.c.row(i), dst.row(y), roi.width);
        }
    });
    return zelStatusOk;
}

} // namespace

// ---- exports

#define CORNER_MEASURE(From, ReadOut, sizeName, name)                                                              \
    ZelStatus sizeName(ZeliSize roiSize, int apertureSize, int avgWindow, int* bufferSize)                         \
    {                                                                                                              \
        return getBufferSize<From>(roiSize, apertureSize, avgWindow, bufferSize);                                  \
    }                                                                                                              \
    ZelStatus name(const From::Src* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize, int kernelKind,  \
                   int apertureSize, int avgWindow, Zel8u* buffer)                                                 \
    {                                                                                                              \
        return measureCorners<From, ReadOut>({src, srcStep}, {dst, dstStep}, roiSize, kernelKind, apertureSize,    \
                                             avgWindow, buffer);                                                   \
    }

CORNER_MEASURE(From8u, SmallerEigenvalue, zeliMinEigenValGetBufferSize_8u32f_C1R, zeliMinEigenVal_8u32f_C1R)
CORNER_MEASURE(From32f, SmallerEigenvalue, zeliMinEigenValGetBufferSize_32f_C1R, zeliMinEigenVal_32f_C1R)
CORNER_MEASURE(From8u, EigenvaluesAndVectors, zeliEigenValsVecsGetBufferSize_8u32f_C1R, zeliEigenValsVecs_8u32f_C1R)
CORNER_MEASURE(From32f, EigenvaluesAndVectors, zeliEigenValsVecsGetBufferSize_32f_C1R, zeliEigenValsVecs_32f_C1R)
