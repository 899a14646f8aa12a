// Absolute difference of two images, dst = |src1 - src2|, or of an image and a constant, dst = |src - value|.
//
// 8- and 16-bit results always fit. 32f clears the sign bit of the rounded difference, so that a NaN stays one and zero is
// +0.
#include "checks.h"
#include "map.h"

#include <algorithm>
#include <limits>

using namespace zelcv;

namespace {

constexpr Gate kGate = Gate::area(0x40000);

template <class T>
ZelStatus absDiff(Plane<const T> src1, Plane<const T> src2, Plane<T> dst, ZeliSize roi)
{
    if (auto status = checkPointers(src1.data, src2.data, dst.data)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(roi.width, src1, src2, dst)) return status;
    const auto difference = [](auto a, auto b) {
        return forParts([](Vec<T> x, Vec<T> y) { return absoluteDifference(x, y); }, a, b);
    };
    forRows(roi, kGate, [=](int y, int n) {
        mapRow(dst.row(y), n, difference, elements(src1.row(y)), elements(src2.row(y)));
    }, src1, src2, dst);
    return zelStatusOk;
}

// `Constant` is the type of the argument: wider than an integer element, which it is limited to.
template <class T, class Constant>
ZelStatus absDiffC(Plane<const T> src, Plane<T> dst, ZeliSize roi, Constant value)
{
    if (auto status = checkPointers(src.data, dst.data)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkSteps(roi.width, src, dst)) return status;
    if constexpr (std::numeric_limits<T>::is_integer)
        value = std::clamp<Constant>(value, 0, std::numeric_limits<T>::max());
    const auto difference = [constant = splat(T(value))](auto a) {
        return forParts([=](Vec<T> x) { return absoluteDifference(x, constant); }, a);
    };
    forRows(roi, kGate, [=](int y, int n) { mapRow(dst.row(y), n, difference, elements(src.row(y))); }, src, dst);
    return zelStatusOk;
}

} // namespace

ZelStatus zeliAbsDiff_8u_C1R(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step, Zel8u* dst, int dstStep,
                             ZeliSize roiSize)
{
    return absDiff<Zel8u>({src1, src1Step}, {src2, src2Step}, {dst, dstStep}, roiSize);
}

ZelStatus zeliAbsDiff_16u_C1R(const Zel16u* src1, int src1Step, const Zel16u* src2, int src2Step, Zel16u* dst, int dstStep,
                              ZeliSize roiSize)
{
    return absDiff<Zel16u>({src1, src1Step}, {src2, src2Step}, {dst, dstStep}, roiSize);
}

ZelStatus zeliAbsDiff_32f_C1R(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step, Zel32f* dst, int dstStep,
                              ZeliSize roiSize)
{
    return absDiff<Zel32f>({src1, src1Step}, {src2, src2Step}, {dst, dstStep}, roiSize);
}

// Three channels are one flat run of bytes: checks and gate see three times the width.
ZelStatus zeliAbsDiff_8u_C3R(const Zel8u* src1, int src1Step, const Zel8u* src2, int src2Step, Zel8u* dst, int dstStep,
                             ZeliSize roiSize)
{
    roiSize.width = wrappingProduct(roiSize.width, 3);
    return zeliAbsDiff_8u_C1R(src1, src1Step, src2, src2Step, dst, dstStep, roiSize);
}

ZelStatus zeliAbsDiffC_8u_C1R(const Zel8u* src, int srcStep, Zel8u* dst, int dstStep, ZeliSize roiSize, int value)
{
    return absDiffC<Zel8u>({src, srcStep}, {dst, dstStep}, roiSize, value);
}

ZelStatus zeliAbsDiffC_16u_C1R(const Zel16u* src, int srcStep, Zel16u* dst, int dstStep, ZeliSize roiSize, int value)
{
    return absDiffC<Zel16u>({src, srcStep}, {dst, dstStep}, roiSize, value);
}

ZelStatus zeliAbsDiffC_32f_C1R(const Zel32f* src, int srcStep, Zel32f* dst, int dstStep, ZeliSize roiSize, Zel32f value)
{
    return absDiffC<Zel32f>({src, srcStep}, {dst, dstStep}, roiSize, value);
}
