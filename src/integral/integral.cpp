// Integral images: sums of an 8u image, or of its squares, over everything above and left of a point (upright), or over the
// triangle above it (tilted). With s the source row, squared where squares are summed, the rows of sums are
//
//   upright   I[y+1][x+1] = I[y][x+1] + (s[0] + ... + s[x])
//   tilted    C[x] = s[x-1] + s[x] + Q[x-1] + Q[x+1] - P[x], with C below Q below P
//             C[0] = Q[1], C[width+1] = Q[width]
//
// A tilted sum at column `width` counts the last pixel once. Every row depends on the rows above it: one thread.
#include "checks.h"
#include "map.h"

#include <algorithm>
#include <type_traits>

using namespace zelcv;

namespace {

// ---- what is summed: sums within runs of pixels, from a vector of them; the runs follow each other
//
// Pairs of neighbours are added first, then the pairs up to each. Less the second of its pair, that is the sum up to the first.

constexpr int kBlock = kLanes<Zel8u>;
using BlockSums = Group<Vec<Zel32u>, kBlock / kLanes<Zel32u>>;

struct Pixels {
    static constexpr int kRun = 16;

    ZELCV_INLINE static Vec<Zel32u> term(Vec<Zel32u> pixel) { return pixel; }
    ZELCV_INLINE static BlockSums sums(Vec<Zel8u> pixels)
    {
        const Vec<Zel16u> second = Vec<Zel16u>(pixels) >> 8, pairs = (Vec<Zel16u>(pixels) & 0xff) + second;
        const Vec<Zel16u> ofPairs = prefixSumsInGroups(pairs), ofFirsts = ofPairs - second;
        return widenSorted<Zel32u>(interleaveLow(ofFirsts, ofPairs), interleaveHigh(ofFirsts, ofPairs));
    }
};
struct Squares {
    static constexpr int kRun = 8;

    ZELCV_INLINE static Vec<Zel32u> term(Vec<Zel32u> pixel)
    {
        return multiplyAddPairs(Vec<Zel16s>(pixel), Vec<Zel16s>(pixel)); // the upper half of each is 0
    }
    ZELCV_INLINE static BlockSums sums(Vec<Zel8u> pixels)
    {
        BlockSums all;
        const auto words = widen<Zel16s>(pixels);
        for (int half = 0; half < 2; ++half) {
            const Vec<Zel16s> both = words.part[half], second = Vec<Zel16s>(Vec<Zel32u>(both) >> 16);
            const Vec<Zel32u> ofPairs = prefixSumsInGroups(multiplyAddPairs(both, both));
            const Vec<Zel32u> ofFirsts = ofPairs - multiplyAddPairs(second, second);
            const auto sorted = sortGroups(interleaveLow(ofFirsts, ofPairs), interleaveHigh(ofFirsts, ofPairs));
            for (int i = 0; i < 2; ++i) all.part[2 * half + i] = sorted.part[i];
        }
        return all;
    }
};

// An output: the plane, and the value that its sums start from.
template <class What, class T>
struct Sums {
    Plane<T> plane;
    T start;
};

// ---- how each type adds

template <class T>
struct Adder;

template <>
struct Adder<Zel32s> {
    using Reader = As<Zel32s, Zel32s>;

    static void upright(Zel32s* sums, const Zel32s* above, Vec<Zel32u> row)
    {
        store(sums, Vec<Zel32s>(Vec<Zel32u>(load(above)) + row));
    }
    ZELCV_INLINE static Vec<Zel32s> tilted(Vec<Zel32u> left, Vec<Zel32u> right, Vec<Zel32s> q0, Vec<Zel32s> q2, Vec<Zel32s> p)
    {
        return Vec<Zel32s>(left + right + Vec<Zel32u>(q0) + Vec<Zel32u>(q2) - Vec<Zel32u>(p));
    }
};

template <>
struct Adder<Zel32f> {
    using Reader = As<Zel32f, Zel32f>;

    static void upright(Zel32f* sums, const Zel32f* above, Vec<Zel32u> row)
    {
        store(sums, load(above) + toFloat(Vec<Zel32s>(row)));
    }
    // In double, in this order.
    ZELCV_INLINE static Vec<Zel32f> tilted(Vec<Zel32u> left, Vec<Zel32u> right, Vec<Zel32f> q0, Vec<Zel32f> q2, Vec<Zel32f> p)
    {
        return toFloat(toDoubles(q0) - toDoubles(p) + toDoubles(q2) + toDoubles(Vec<Zel32s>(left)) +
                       toDoubles(Vec<Zel32s>(right)));
    }
};

template <>
struct Adder<Zel64f> {
    using Reader = AsDoubles;

    // Row sums of squares are integers below 2^31 * 2^16, which doubles hold, so that they may be added in any order.
    static void upright(Zel64f* sums, const Zel64f* above, Vec<Zel32u> row)
    {
        store(sums, loadDoubles(above) + toDoubles(Vec<Zel32s>(row)));
    }
    static void upright(Zel64f* sums, const Zel64f* above, Vec<Zel32u> row, const Doubles& before)
    {
        store(sums, loadDoubles(above) + (toDoubles(Vec<Zel32s>(row)) + before));
    }
    ZELCV_INLINE static Doubles tilted(Vec<Zel32u> left, Vec<Zel32u> right, const Doubles& q0, const Doubles& q2, const Doubles& p)
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
        out.plane.row(y + 1)[0] = out.start;
        T* const sums = out.plane.row(y + 1) + 1;
        const T* const above = out.plane.row(y) + 1;
        if constexpr (std::is_same_v<T, Zel64f>) { // the sums of so many squares stay below 2^31
            constexpr int kStretch = 32768;
            Doubles before = {};
            for (int x = 0; x < width; x += kStretch) {
                const Doubles soFar = before;
                const auto add = [=](T* to, const T* up, Vec<Zel32u> row) { Adder<T>::upright(to, up, row, soFar); };
                const int count = std::min(kStretch, width - x);
                const Vec<Zel32u> total = x == 0 ? stretch<What>(sums, above, s, count, plainly<T>)
                                                 : stretch<What>(sums + x, above + x, s + x, count, add);
                before = before + toDoubles(Vec<Zel32s>(total));
            }
        } else {
            stretch<What>(sums, above, s, width, plainly<T>);
        }
    }

private:
    template <class T>
    static constexpr auto plainly = [](T* to, const T* up, Vec<Zel32u> row) { Adder<T>::upright(to, up, row); };

    // The sums of some pixels of a row, by add(sums, above, sums of the row). Returns their total in all lanes.
    template <class What, class T, class Add>
    static Vec<Zel32u> stretch(T* sums, const T* above, const Zel8u* s, int count, const Add& add)
    {
        Vec<Zel32u> total = {};
        const auto block = [&](T* to, const T* up, const Zel8u* pixels) ZELCV_INLINE {
            constexpr int lanes = kLanes<Zel32u>, run = What::kRun / lanes;
            const BlockSums within = What::sums(load(pixels));
            for (int first = 0; first < kBlock / lanes; first += run) {
                Vec<Zel32u> row = total;
                for (int i = first; i < first + run; ++i) {
                    row = total + within.part[i];
                    add(to + i * lanes, up + i * lanes, row);
                }
                total = splatLast(row);
            }
        };
        std::ptrdiff_t x = 0;
        for (; x <= count - kBlock; x += kBlock) block(sums + x, above + x, s + x);
        if (const auto rest = count - x; rest > 0) {
            Zel8u pixels[kBlock] = {};
            T up[kBlock] = {}, to[kBlock];
            std::memcpy(pixels, s + x, std::size_t(rest));
            std::memcpy(up, above + x, sizeof(T) * std::size_t(rest));
            block(to, up, pixels);
            std::memcpy(sums + x, to, sizeof(T) * std::size_t(rest));
        }
        return total;
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
        using Words = As<Zel32u, Zel8u>;
        const T *const p = out.plane.row(y), *const q = out.plane.row(y + 1);
        T* const c = out.plane.row(y + 2);
        const auto sums = [](const auto& left, const auto& right, const auto&... above) {
            return forParts([](auto l, auto r, auto... a) { return Adder<T>::tilted(What::term(l), What::term(r), a...); }, left,
                            right, above...);
        };
        c[0] = q[1];
        if constexpr (kLast == LastColumn::AsTheOthers) {
            mapRow(c + 1, width, sums, Words{s}, Words{s + 1}, Reader{q}, Reader{q + 2}, Reader{p + 1});
        } else {
            mapRow(c + 1, width - 1, sums, Words{s}, Words{s + 1}, Reader{q}, Reader{q + 2}, Reader{p + 1});
            const Zel8u none = 0;
            T last;
            mapRow(&last, 1, sums, Words{s + width - 1}, Words{&none}, Reader{q + width - 1}, Reader{q + width + 1},
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
