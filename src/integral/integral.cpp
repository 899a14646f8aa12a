// Integral images: sums of an 8u image, or of its squares, over everything above and left of a point (upright), or over the
// triangle above it (tilted). With s the source row, squared where squares are summed, the rows of sums are
//
//   upright   I[y+1][x+1] = I[y][x+1] + (s[0] + ... + s[x])
//   tilted    C[x] = s[x-1] + s[x] + Q[x-1] + Q[x+1] - P[x], with C below Q below P
//             C[0] = Q[1], C[width+1] = Q[width]
//
// A tilted sum at column `width` counts the last pixel once. Every row depends on the rows above it: one thread.
#include "checks.h"
#include "map_row.h"

#include <algorithm>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- what is summed

struct Pixels {
    static Vec<Zel32u> terms(Vec<Zel32u> pixels) { return pixels; }
    static Pair<Vec<Zel32u>> sums(Vec<Zel16u> pixels) { return prefixSums(pixels); }
};
struct Squares {
    static Vec<Zel32u> terms(Vec<Zel32u> pixels)
    {
        return multiplyAddPairs(Vec<Zel16s>(pixels), Vec<Zel16s>(pixels)); // the upper half of each is 0
    }
    static Pair<Vec<Zel32u>> sums(Vec<Zel16u> pixels) { return squarePrefixSums(pixels); }
};

// An output: the plane, and the value that its sums start from.
template <class What, class T>
struct Sums {
    Plane<T> plane;
    T start;
};

// ---- how each type adds

// The sums of a row, block by block.
class RowSums {
public:
    // `within`: the sums within the next block.
    Pair<Vec<Zel32u>> next(Pair<Vec<Zel32u>> within)
    {
        const Pair<Vec<Zel32u>> sums = {within.low + total_, within.high + total_};
        total_ = splatLast(sums.high);
        return sums;
    }
    Vec<Zel32u> total() const { return total_; } // in all lanes

private:
    Vec<Zel32u> total_ = {};
};

template <class T>
struct Adder;

template <>
struct Adder<Zel32s> {
    using Reader = Elements<Zel32s>;
    RowSums row = {};

    Pair<Vec<Zel32s>> upright(Pair<Vec<Zel32s>> above, Pair<Vec<Zel32u>> within)
    {
        const Pair<Vec<Zel32u>> sums = row.next(within);
        return {Vec<Zel32s>(Vec<Zel32u>(above.low) + sums.low), Vec<Zel32s>(Vec<Zel32u>(above.high) + sums.high)};
    }
    static Vec<Zel32s> tilted(Vec<Zel32u> left, Vec<Zel32u> right, Vec<Zel32s> q0, Vec<Zel32s> q2, Vec<Zel32s> p)
    {
        return Vec<Zel32s>(left + right + Vec<Zel32u>(q0) + Vec<Zel32u>(q2) - Vec<Zel32u>(p));
    }
};

template <>
struct Adder<Zel32f> {
    using Reader = Elements<Zel32f>;
    RowSums row = {};

    Pair<Vec<Zel32f>> upright(Pair<Vec<Zel32f>> above, Pair<Vec<Zel32u>> within)
    {
        const Pair<Vec<Zel32u>> sums = row.next(within);
        return {above.low + toFloat(Vec<Zel32s>(sums.low)), above.high + toFloat(Vec<Zel32s>(sums.high))};
    }
    // In double, in this order.
    static Vec<Zel32f> tilted(Vec<Zel32u> left, Vec<Zel32u> right, Vec<Zel32f> q0, Vec<Zel32f> q2, Vec<Zel32f> p)
    {
        return toFloat(toDoubles(q0) - toDoubles(p) + toDoubles(q2) + toDoubles(Vec<Zel32s>(left)) +
                       toDoubles(Vec<Zel32s>(right)));
    }
};

template <>
struct Adder<Zel64f> {
    using Reader = AsDoubles;
    static constexpr int kBlocks = 32768 / kLanes<Zel16u>; // of squares whose sum stays below 2^31
    RowSums recent = {};
    int recentBlocks = 0;
    Doubles before = {};

    // Row sums of squares are integers below 2^31 * 2^16, which doubles hold, so that they may be added in any order.
    Pair<Doubles> upright(Pair<Doubles> above, Pair<Vec<Zel32u>> within)
    {
        const Pair<Vec<Zel32u>> sums = recent.next(within);
        const Doubles low = toDoubles(Vec<Zel32s>(sums.low)) + before, high = toDoubles(Vec<Zel32s>(sums.high)) + before;
        if (++recentBlocks == kBlocks) {
            before = before + toDoubles(Vec<Zel32s>(recent.total()));
            recent = {};
            recentBlocks = 0;
        }
        return {above.low + low, above.high + high};
    }
    static Doubles tilted(Vec<Zel32u> left, Vec<Zel32u> right, Doubles q0, Doubles q2, Doubles p)
    {
        return toDoubles(Vec<Zel32s>(left + right)) + q0 + q2 - p;
    }
};

// ---- forms: the elements around the image, the rows of start values, the row of sums for a source row

struct Upright {
    static constexpr int kExtra = 1;

    template <class What, class T>
    static void row(Sums<What, T> out, const Zel8u* s, int y, int width)
    {
        using Reader = typename Adder<T>::Reader;
        T* const sums = out.plane.row(y + 1);
        sums[0] = out.start;
        const auto sum = [adder = Adder<T>()](auto above, Vec<Zel16u> pixels) mutable {
            return adder.upright(above, What::sums(pixels));
        };
        mapRow(sums + 1, width, sum, InPairs<Reader>{out.plane.row(y) + 1}, AsShorts{s});
    }
};

enum class LastColumn {
    CountsOnce, // as above; single sums are added to what stands there
    AsTheOthers // reads the pixel behind the row
};

template <LastColumn kLast>
struct Tilted {
    static constexpr int kExtra = 2;

    template <class What, class T>
    static void row(Sums<What, T> out, const Zel8u* s, int y, int width)
    {
        using Reader = typename Adder<T>::Reader;
        const T *const p = out.plane.row(y), *const q = out.plane.row(y + 1);
        T* const c = out.plane.row(y + 2);
        const auto sum = [](Vec<Zel32u> left, Vec<Zel32u> right, auto... above) {
            return Adder<T>::tilted(What::terms(left), What::terms(right), above...);
        };
        c[0] = q[1];
        if constexpr (kLast == LastColumn::AsTheOthers) {
            mapRow(c + 1, width, sum, AsWords{s}, AsWords{s + 1}, Reader{q}, Reader{q + 2}, Reader{p + 1});
        } else {
            mapRow(c + 1, width - 1, sum, AsWords{s}, AsWords{s + 1}, Reader{q}, Reader{q + 2}, Reader{p + 1});
            const Zel8u none = 0;
            T last;
            mapRow(&last, 1, sum, AsWords{s + width - 1}, AsWords{&none}, Reader{q + width - 1}, Reader{q + width + 1},
                   Reader{p + width});
            c[width] = std::is_same_v<T, Zel32f> ? c[width] + last : last;
        }
        c[width + 1] = q[width];
    }
};

// ---- driver

template <class Form, class... Outputs>
ZelStatus integrate(Plane<const Zel8u> src, ZeliSize roi, Outputs... outputs)
{
    if (auto status = checkPointers(src.data, outputs.plane.data...)) return status;
    if (auto status = checkSize(roi)) return status;
    if (auto status = checkStepSizes(roi.width, src)) return status;
    if (auto status = checkSteps(wrappingSum(roi.width, Form::kExtra), outputs.plane...)) return status;
    for (int y = 0; y < Form::kExtra; ++y)
        (std::fill_n(outputs.plane.row(y), roi.width + Form::kExtra, outputs.start), ...);
    for (int y = 0; y < roi.height; ++y) (Form::row(outputs, src.row(y), y, roi.width), ...);
    return zelStatusOk;
}

using TiltedForm = Tilted<LastColumn::CountsOnce>;
using TiltedThroughout = Tilted<LastColumn::AsTheOthers>;

} // namespace

// ---- exports: the members by form and types

#define INTEGRAL(Form, T, name)                                                                                          \
    ZelStatus name(const Zel8u* src, int srcStep, T* dst, int dstStep, ZeliSize roiSize, T val)                          \
    {                                                                                                                    \
        return integrate<Form>({src, srcStep}, roiSize, Sums<Pixels, T>{{dst, dstStep}, val});                           \
    }
#define INTEGRAL_AND_SQUARES(Form, T, S, name)                                                                           \
    ZelStatus name(const Zel8u* src, int srcStep, T* dst, int dstStep, S* sqr, int sqrStep, ZeliSize roiSize, T val,     \
                   S valSqr)                                                                                             \
    {                                                                                                                    \
        return integrate<Form>({src, srcStep}, roiSize, Sums<Pixels, T>{{dst, dstStep}, val},                            \
                               Sums<Squares, S>{{sqr, sqrStep}, valSqr});                                                \
    }

INTEGRAL(Upright, Zel32s, zeliIntegral_8u32s_C1R)
INTEGRAL(Upright, Zel32f, zeliIntegral_8u32f_C1R)
INTEGRAL(TiltedForm, Zel32s, zeliTiltedIntegral_8u32s_C1R)
INTEGRAL(TiltedForm, Zel32f, zeliTiltedIntegral_8u32f_C1R)
INTEGRAL_AND_SQUARES(Upright, Zel32s, Zel32s, zeliSqrIntegral_8u32s_C1R)
INTEGRAL_AND_SQUARES(Upright, Zel32s, Zel64f, zeliSqrIntegral_8u32s64f_C1R)
INTEGRAL_AND_SQUARES(Upright, Zel32f, Zel64f, zeliSqrIntegral_8u32f64f_C1R)
INTEGRAL_AND_SQUARES(TiltedThroughout, Zel32s, Zel32s, zeliTiltedSqrIntegral_8u32s_C1R)
INTEGRAL_AND_SQUARES(TiltedForm, Zel32s, Zel64f, zeliTiltedSqrIntegral_8u32s64f_C1R)
INTEGRAL_AND_SQUARES(TiltedForm, Zel32f, Zel64f, zeliTiltedSqrIntegral_8u32f64f_C1R)
