// Angles of vectors in degrees, 0 to 360, by a polynomial on the smaller component over the larger one.
//
// Elements are taken four at a time, and each four share one division in double: with the denominators d0..d3,
//   r = 1 / ((d0 * d2) * (d1 * d3)),   n0 / d0 = (n0 * d2) * (r * (d1 * d3)),   and so on for its like.
// A four that is cut short by the end of the vectors is filled up with ones.
#include "checks.h"
#include "vector/vector.h"

#include <algorithm>
#include <limits>

using namespace zelcv;

namespace {

constexpr double kCubic = -15.813189506530762, kLinear = 61.09419631958008;
constexpr float kOffset = 0.1405029296875f;  // balances the polynomial's error between the octants
constexpr float kOffsetOfFirst = 0.14050041f; // what it is in the first octant

// The offsets are told by three bits: the components swapped, x negative, y negative. All sums are exact.
constexpr float offsetOf(int k)
{
    const int swapped = k & 1, left = k >> 1 & 1, below = k >> 2;
    const float upper = swapped ? 90.f : left ? 180.f : 0.f, degrees = below ? 360.f - upper : upper;
    return degrees + (k == 0 ? -kOffsetOfFirst : (swapped ^ left ^ below) ? kOffset : -kOffset);
}
static_assert(offsetOf(0) == -0.14050041f && offsetOf(1) == 90.14050293f && offsetOf(2) == 180.14050293f &&
              offsetOf(3) == 89.85949707f && offsetOf(4) == 360.14050293f && offsetOf(5) == 269.85949707f &&
              offsetOf(6) == 179.85949707f && offsetOf(7) == 270.14050293f);

// Each four of a vector as two pairs: elements 0 and 1, then 2 and 3, of each. Pairing twice gives the vector again.
ZELCV_INLINE inline Vec<Zel32f> pairFours(Vec<Zel32f> v)
{
    if constexpr (kVectorBytes == 16) {
        return v;
    } else {
        const auto pairs = Vec<std::uint64_t>(v);
        return Vec<Zel32f>(shuffle<[](int i) { return i % 2 * 2 + i / 2; }>(pairs, pairs));
    }
}

// n / d by fours.
ZELCV_INLINE inline Vec<Zel32f> divideFours(Vec<Zel32f> n, Vec<Zel32f> d)
{
    const Doubles top = toDoubles(n), bottom = toDoubles(d);
    const Vec<Zel64f> products = bottom.part[0] * bottom.part[1]; // d0 * d2 and d1 * d3
    const Vec<Zel64f> others = shuffle<[](int i) { return i ^ 1; }>(products, products);
    const Vec<Zel64f> reciprocals = 1.0 / (products * others) * others;
    return toFloat(Doubles{top.part[0] * bottom.part[1] * reciprocals, top.part[1] * bottom.part[0] * reciprocals});
}

ZELCV_INLINE inline Vec<Zel32f> angles(Vec<Zel32f> y, Vec<Zel32f> x)
{
    const Vec<Zel32f> ay = absolute(y), ax = absolute(x);
    const Vec<Zel32s> swapped = ay > ax;
    const Vec<Zel32f> larger = maximum(ay, ax), smaller = minimum(ax, ay);
    const Vec<Zel32s> zero = larger == 0;
    const Vec<Zel32s> left = (Vec<Zel32s>(x) < 0) & ~zero, below = (Vec<Zel32s>(y) < 0) & ~zero;
    const Vec<Zel32s> sign = splat(std::numeric_limits<Zel32s>::min());
    const Vec<Zel32s> falling = (swapped ^ left ^ below) & sign; // with growing |t| the angle becomes smaller

    const Vec<Zel32s> upper = (swapped & Vec<Zel32s>(splat(90.f))) | (~swapped & left & Vec<Zel32s>(splat(180.f)));
    const Vec<Zel32f> degrees = absolute(keep(below, splat(360.f)) - Vec<Zel32f>(upper));
    const Vec<Zel32f> first = keep(degrees == 0, splat(kOffset - kOffsetOfFirst));
    const Vec<Zel32f> offset = degrees + Vec<Zel32f>(falling ^ Vec<Zel32s>(splat(-kOffset))) + first;

    const Vec<Zel32f> t = divideFours(smaller, Vec<Zel32f>(Vec<Zel32s>(larger) | (zero & Vec<Zel32s>(splat(1.f)))));
    const Doubles magnitude = toDoubles(t), turn = toDoubles(Vec<Zel32f>(Vec<Zel32s>(t) ^ falling));
    return toFloat((magnitude * splatDoubles(kCubic) + splatDoubles(kLinear)) * turn + toDoubles(offset));
}

ZELCV_INLINE inline void anglesAt(const Zel32f* y, const Zel32f* x, Zel32f* dst)
{
    store(dst, pairFours(angles(pairFours(load(y)), pairFours(load(x)))));
}

} // namespace

ZelStatus zelibFastArctan_32f(const Zel32f* y, const Zel32f* x, Zel32f* dst, int len)
{
    if (auto status = checkPointers(y, x, dst)) return status;
    if (len < 1) return zelStatusBadSize;
    constexpr int block = kLanes<Zel32f>;
    std::ptrdiff_t i = 0;
    for (; i <= len - block; i += block) anglesAt(y + i, x + i, dst + i);
    if (i == len) return zelStatusOk;
    Zel32f lastY[block], lastX[block], last[block];
    std::fill_n(lastY, block, 1.f);
    std::fill_n(lastX, block, 1.f);
    std::copy(y + i, y + len, lastY);
    std::copy(x + i, x + len, lastX);
    anglesAt(lastY, lastX, last);
    std::copy_n(last, len - i, dst + i);
    return zelStatusOk;
}
