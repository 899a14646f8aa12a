// Angles of vectors in degrees, 0 to 360, by a polynomial on t, the smaller component over the larger one.
//
// By definition four elements share one reciprocal in double: with the denominators d0..d3,
//   r = 1 / ((d0 * d2) * (d1 * d3)),   t0 = (n0 * d2) * (r * (d1 * d3)),   and so on for its like,
// rounded to single. Four roundings put t off by 2^-51 of it at the most. A quotient of two 24-bit numbers is no halfway case
// of rounding to 24 bits, and lies farther than 2^-49 of it from each: the rounded t is always what a division in single gives.
// (Where t is too small to have 24 bits, it is lost in the sum.) Infinities and NaN are left to the definition.
#include "checks.h"
#include "vector/vector.h"

#include <algorithm>
#include <limits>

using namespace zelcv;

namespace {

constexpr double kCubic = -15.813189506530762, kLinear = 61.09419631958008;
constexpr float kOffset = 0.14050041f; // balances the polynomial's error between the octants

// An octant's angle is falling with growing t where an odd number of three hold: the components swapped, x negative, y
// negative. There the angle's negative is computed. The result before its polynomial is added: exact degrees, and kOffset
// rounded to the bits that are left behind them.
constexpr bool isFalling(bool swapped, bool left, bool below) { return (swapped != left) != below; }
constexpr float startOf(bool swapped, bool left, bool below)
{
    const float straight = isFalling(swapped, left, below) ? -180.f : 180.f, right = swapped != left ? -90.f : 90.f;
    return straight - right - (swapped ? 0.f : 90.f) - kOffset;
}
static_assert(startOf(0, 0, 0) == -0.14050041f && -startOf(1, 0, 0) == 90.14050293f && -startOf(0, 1, 0) == 180.14050293f &&
              startOf(1, 1, 0) == 89.85949707f && -startOf(0, 0, 1) == 360.14050293f && startOf(1, 0, 1) == 269.85949707f &&
              startOf(0, 1, 1) == 179.85949707f && -startOf(1, 1, 1) == 270.14050293f);

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

// n / d by the definition.
Vec<Zel32f> divideFours(Vec<Zel32f> n, Vec<Zel32f> d)
{
    const Doubles top = toDoubles(pairFours(n)), bottom = toDoubles(pairFours(d));
    const Vec<Zel64f> products = bottom.part[0] * bottom.part[1]; // d0 * d2 and d1 * d3
    const Vec<Zel64f> others = shuffle<[](int i) { return i ^ 1; }>(products, products);
    const Vec<Zel64f> reciprocals = 1.0 / (products * others) * others;
    return pairFours(toFloat(Doubles{top.part[0] * bottom.part[1] * reciprocals,
                                     top.part[1] * bottom.part[0] * reciprocals}));
}

ZELCV_INLINE inline Vec<Zel32f> quotients(Vec<Zel32f> n, Vec<Zel32f> d)
{
    const Vec<Zel32s> finite = d < std::numeric_limits<Zel32f>::infinity();
    return __builtin_expect(anyLane(~finite), 0) ? divideFours(n, d) : n / d;
}

ZELCV_INLINE inline Vec<Zel32f> angles(Vec<Zel32f> y, Vec<Zel32f> x)
{
    const Vec<Zel32f> ay = absolute(y), ax = absolute(x), larger = maximum(ay, ax), smaller = minimum(ax, ay);
    const Vec<Zel32s> swapped = inThisOrder(ay > ax), zero = inThisOrder(larger == 0);
    const Vec<Zel32s> one = Vec<Zel32s>(splat(1.f)), right = Vec<Zel32s>(splat(90.f)), straight = Vec<Zel32s>(splat(180.f));
    const Vec<Zel32s> sign = splat(std::numeric_limits<Zel32s>::min());

    const Vec<Zel32s> counting = ~zero & sign; // where both components are zero their signs do not count
    const Vec<Zel32s> crossed = (Vec<Zel32s>(x) & counting) ^ (swapped & sign);
    const Vec<Zel32s> falling = crossed ^ (Vec<Zel32s>(y) & counting);
    const Vec<Zel32f> degrees = Vec<Zel32f>(straight ^ falling) - Vec<Zel32f>(right ^ crossed) - Vec<Zel32f>(right & ~swapped);
    const Doubles start = toDoubles(degrees - splat(kOffset));

    const Doubles t = toDoubles(quotients(smaller, Vec<Zel32f>(Vec<Zel32s>(larger) | (zero & one))));
    const Vec<Zel32f> rising = toFloat((t * splatDoubles(kCubic) + splatDoubles(kLinear)) * t + start);
    return Vec<Zel32f>(Vec<Zel32s>(rising) ^ falling);
}

} // namespace

ZelStatus zelibFastArctan_32f(const Zel32f* y, const Zel32f* x, Zel32f* dst, int len)
{
    if (auto status = checkPointers(y, x, dst)) return status;
    if (len < 1) return zelStatusBadSize;
    constexpr int block = kLanes<Zel32f>;
    std::ptrdiff_t i = 0;
    for (; i <= len - block; i += block) store(dst + i, angles(load(y + i), load(x + i)));
    if (i == len) return zelStatusOk;
    const int left = int(len - i);
    Zel32f last[block];
    store(last, angles(loadUpTo(y + i, left), loadUpTo(x + i, left)));
    std::copy_n(last, left, dst + i);
    return zelStatusOk;
}
