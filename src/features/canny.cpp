// Canny edges from two derivative planes: strength |dx| + |dy|, non-maximum suppression across the edge, hysteresis.
#include "checks.h"
#include "scratch.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

using namespace zelcv;

namespace {

constexpr int kWideFrom = 65533;

template <class T>
struct Strength {
    T low;
    T operator()(Zel32f dx, Zel32f dy) const
    {
        const Zel32f strength = std::fabs(dx) + std::fabs(dy);
        return strength <= low ? 0 : strength;
    }
};

template <class T>
ZelStatus canny(Plane<const T> srcDx, Plane<const T> srcDy, Plane<Zel8u> dst, ZeliSize roi, Zel32f low, Zel32f high,
                Zel8u* buffer)
{
    if (auto status = checkPointers(srcDx.data, srcDy.data, dst.data, buffer)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(roi.width, srcDx, srcDy, dst)) return status;
    if (auto status = checkStepAlignment(srcDx, srcDy)) return status;
    if (low < 0 || high < low) return zelStatusBadArgument;
    if (std::numeric_limits<T>::is_integer) low = std::trunc(low);
    const auto strength = [&](int x, int y) {
        if (x < 0 || y < 0 || x >= roi.width || y >= roi.height) return 0.f;
        const Zel32f sum = std::fabs(Zel32f(srcDx.row(y)[x])) + std::fabs(Zel32f(srcDy.row(y)[x]));
        return sum <= low ? 0.f : sum;
    };
    const std::ptrdiff_t pitch = roi.width + 2;
    Zel8u* const map = buffer + pitch + 1;
    std::fill_n(buffer, pitch * (roi.height + 2), 0);
    Zel32u* const stack = Carver(buffer + pitch * (roi.height + 2)).take<Zel32u>(0);
    Zel32u* top = stack;
    for (int y = 0; y < roi.height; ++y)
        for (int x = 0; x < roi.width; ++x) {
            dst.row(y)[x] = 0;
            const Zel32f m = strength(x, y), dx = srcDx.row(y)[x], dy = srcDy.row(y)[x];
            if (m == 0) continue;
            const Zel32f ay = std::fabs(dy);
            const bool vertical = ay > Zel32f(std::fabs(dx) * 2.414213562373095);
            const bool horizontal = !vertical && Zel32f(std::fabs(dx) * 0.41421356237309503) > ay;
            const int stepY = horizontal ? 0 : 1;
            const int stepX = horizontal ? 1 : vertical ? 0 : std::signbit(dx) == std::signbit(dy) ? 1 : -1;
            const Zel32f before = strength(x - stepX, y - stepY), after = strength(x + stepX, y + stepY);
            if (!(before < m && (after < m || (after == m && (vertical || horizontal))))) continue;
            map[y * pitch + x] = 0x80;
            if (high < m) {
                dst.row(y)[x] = 255;
                *top++ = Zel32u(y * pitch + x);
            }
        }
    while (top != stack) {
        const Zel32u pixel = *--top;
        for (std::ptrdiff_t dy : {-1, 0, 1})
            for (std::ptrdiff_t dx : {-1, 0, 1}) {
                const std::ptrdiff_t next = pixel + dy * pitch + dx;
                if (!map[next]) continue;
                Zel8u& target = dst.row(int(next / pitch))[next % pitch];
                if (target) continue;
                target = 255;
                *top++ = Zel32u(next);
            }
    }
    return zelStatusOk;
}

} // namespace

ZelStatus zeliCannyGetSize(ZeliSize roiSize, int* bufferSize)
{
    if (auto status = checkPointers(bufferSize)) return status;
    if (auto status = checkSize(roiSize)) return status;
    const bool wide = roiSize.width >= kWideFrom || roiSize.height >= kWideFrom;
    const Zel32s framed = wrappingProduct(wrappingSum(roiSize.width, 2), wrappingSum(roiSize.height, 2));
    *bufferSize = wrappingSum(wrappingProduct(wide ? 9 : 5, framed), wrappingProduct(16, roiSize.width), 160);
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
