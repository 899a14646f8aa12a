// Accumulators: a 32f image that a function of each frame is added to. With a the accumulator, s the frame, m the mask:
//
//   Add            a + s                       m * s + a
//   AddSquare      a + s * s                   (s * s) * m + a
//   AddProduct     a + s1 * s2                 (s1 * s2) * m + a
//   AddWeighted    a + (s - a) * alpha         (s - a) * (m ? alpha : 0) + a
//
// in single precision, one rounding for each operation. The products of 8-bit elements are exact integers, and so they are in
// single precision. The mask multiplies and does not skip: a masked-off NaN or infinity reaches the accumulator, and -0
// becomes +0.
#include "checks.h"
#include "map.h"

#include <array>
#include <tuple>
#include <type_traits>

using namespace zelcv;

namespace {

constexpr Gate kGate = Gate::area(0x40000);

// ---- what is added, before the weight: from the accumulator and the frames, block by block

// What frames of T are read as: `Number` widened to, `Mask` whether masked-off elements may be cleared before instead of being
// multiplied by 0 after. That takes numbers without signs, which leave no -0 behind, and integers, which are no NaN.
struct Sum {
    template <class T>
    using Number = Zel32f;
    template <class T>
    static constexpr bool kClears = std::is_unsigned_v<T>;
    static auto term(const auto&, const auto& s) { return s; }
};
// Products of 8-bit elements are exact in 16 bits and more.
template <class T>
using Factor = std::conditional_t<sizeof(T) != 1, Zel32f,
                                  std::conditional_t<kLoadsWiden, Zel32s,
                                                     std::conditional_t<std::is_signed_v<T>, Zel16s, Zel16u>>>;
struct Square {
    template <class T>
    using Number = Factor<T>;
    template <class T>
    static constexpr bool kClears = std::is_integral_v<T>;
    static auto term(const auto&, const auto& s) { return convert<Zel32f>(s * s); }
};
struct Product {
    template <class T>
    using Number = Factor<T>;
    template <class T>
    static constexpr bool kClears = std::is_unsigned_v<T>;
    static auto term(const auto&, const auto& s1, const auto& s2) { return convert<Zel32f>(s1 * s2); }
};
struct Weighted {
    template <class T>
    using Number = Zel32f;
    template <class T>
    static constexpr bool kClears = false;
    static auto term(const auto& a, const auto& s) { return s - a; }
};

template <class What>
constexpr bool kHasWeight = std::is_same_v<What, Weighted>;

// ---- drivers

template <class T, std::size_t count>
using Frames = std::array<Plane<const T>, count>;

// Frames of 16u are checked whole, sizes and alignments, before the other planes.
template <class T, std::size_t count, class... Others>
ZelStatus checkPlanes(ZeliSize roi, const Frames<T, count>& frames, Others... others)
{
    return std::apply([&](auto... frame) -> ZelStatus {
        if (auto status = checkPointers(frame.data..., others.data...)) return status;
        if (auto status = checkSize(roi)) return status;
        if constexpr (!std::is_same_v<T, Zel16u>) return checkSteps(roi.width, frame..., others...);
        if (auto status = checkSteps(roi.width, frame...)) return status;
        return checkSteps(roi.width, others...);
    }, frames);
}

// The accumulator after a block of frames.
template <class What>
auto accumulated(Zel32f alpha)
{
    return [weight = splat(alpha)](const auto& a, const auto&... s) ZELCV_INLINE {
        return forParts([=](auto old, auto term) { return old + (kHasWeight<What> ? term * weight : term); }, a,
                        What::term(a, s...));
    };
}

template <class What, class T, std::size_t count>
ZelStatus accumulate(const Frames<T, count>& frames, Plane<Zel32f> srcDst, ZeliSize roi, Zel32f alpha = 1)
{
    if (auto status = checkPlanes(roi, frames, srcDst)) return status;
    using Number = typename What::template Number<T>;
    std::apply([&](auto... frame) {
        forRows(roi, kGate, [=](int y, int n) {
            Zel32f* const row = srcDst.row(y);
            mapRow(row, n, accumulated<What>(alpha), elements<Zel32f>(row), As<Number, T>{frame.row(y)}...);
        }, frame..., srcDst);
    }, frames);
    return zelStatusOk;
}

// Of a group of frame elements, those under the mask, and zeros.
template <class T, int n>
auto cleared(const Group<Vec<T>, n>& s, const Group<Vec<Zel8u>, 1>& mask)
{
    Group<Vec<T>, n> kept;
    const auto lanes = widenMask<T>(mask.part[0] != 0);
    for (int i = 0; i < n; ++i) kept.part[i] = Vec<T>(Vec<T>(lanes.part[i]) & s.part[i]);
    return kept;
}

template <class What, class T, std::size_t count>
ZelStatus accumulateMasked(const Frames<T, count>& frames, Plane<const Zel8u> mask, Plane<Zel32f> srcDst, ZeliSize roi,
                           Zel32f alpha = 1)
{
    if (auto status = checkPlanes(roi, frames, mask, srcDst)) return status;
    using Number = typename What::template Number<T>;
    const auto masked = [&](auto first, auto... second) {
        forRows(roi, kGate, [=](int y, int n) {
            Zel32f* const row = srcDst.row(y);
            if constexpr (What::template kClears<T>) { // one factor of 0 is enough
                const auto next = [](const auto& selected, const auto& a, const auto& s, const auto&... others) ZELCV_INLINE {
                    return a + What::term(a, convert<Number>(cleared<T>(s, selected)), others...);
                };
                mapRow(row, n, next, elements(mask.row(y)), elements<Zel32f>(row), elements(first.row(y)),
                       As<Number, T>{second.row(y)}...);
            } else {
                const auto next = [weight = splat(alpha)](const auto& selected, const auto& a, const auto&... s) ZELCV_INLINE {
                    return forParts([=](Vec<Zel32s> lanes, auto old, auto term) { return term * keep(lanes, weight) + old; },
                                    widenMask<Zel32f>(selected.part[0] != 0), a, What::term(a, s...));
                };
                mapRow(row, n, next, elements(mask.row(y)), elements<Zel32f>(row), As<Number, T>{first.row(y)},
                       As<Number, T>{second.row(y)}...);
            }
        }, first, second..., mask, srcDst);
    };
    std::apply(masked, frames);
    return zelStatusOk;
}

} // namespace

// ---- exports: the members by operation and type

#define ONE_FRAME(What, T, name)                                                                                      \
    ZelStatus name(const T* src, int srcStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize)                       \
    {                                                                                                                 \
        return accumulate<What>(Frames<T, 1>{{{src, srcStep}}}, {srcDst, srcDstStep}, roiSize); \
    }
#define ONE_FRAME_MASKED(What, T, name)                                                                                 \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, Zel32f* srcDst, int srcDstStep,          \
                   ZeliSize roiSize)                                                                                    \
    {                                                                                                                   \
        return accumulateMasked<What>(Frames<T, 1>{{{src, srcStep}}}, {mask, maskStep}, {srcDst, srcDstStep}, roiSize); \
    }
#define TWO_FRAMES(What, T, name)                                                                            \
    ZelStatus name(const T* src1, int src1Step, const T* src2, int src2Step, Zel32f* srcDst, int srcDstStep, \
                   ZeliSize roiSize)                                                                         \
    {                                                                                                        \
        return accumulate<What>(Frames<T, 2>{{{src1, src1Step}, {src2, src2Step}}}, {srcDst, srcDstStep},    \
                                   roiSize);                                                                 \
    }
#define TWO_FRAMES_MASKED(What, T, name)                                                                      \
    ZelStatus name(const T* src1, int src1Step, const T* src2, int src2Step, const Zel8u* mask, int maskStep, \
                   Zel32f* srcDst, int srcDstStep, ZeliSize roiSize)                                          \
    {                                                                                                         \
        return accumulateMasked<What>(Frames<T, 2>{{{src1, src1Step}, {src2, src2Step}}}, {mask, maskStep},   \
                                         {srcDst, srcDstStep}, roiSize);                                      \
    }
#define WEIGHTED(T, name)                                                                                                \
    ZelStatus name(const T* src, int srcStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize, Zel32f alpha)            \
    {                                                                                                                    \
        return accumulate<Weighted>(Frames<T, 1>{{{src, srcStep}}}, {srcDst, srcDstStep}, roiSize, \
                                    alpha);                                                                              \
    }
#define WEIGHTED_MASKED(T, name)                                                                                  \
    ZelStatus name(const T* src, int srcStep, const Zel8u* mask, int maskStep, Zel32f* srcDst, int srcDstStep,    \
                   ZeliSize roiSize, Zel32f alpha)                                                                \
    {                                                                                                             \
        return accumulateMasked<Weighted>(Frames<T, 1>{{{src, srcStep}}}, {mask, maskStep}, {srcDst, srcDstStep}, \
                                          roiSize, alpha);                                                        \
    }

ONE_FRAME(Sum, Zel8u, zeliAdd_8u32f_C1IR)
ONE_FRAME(Sum, Zel8s, zeliAdd_8s32f_C1IR)
ONE_FRAME(Sum, Zel16u, zeliAdd_16u32f_C1IR)
ONE_FRAME_MASKED(Sum, Zel8u, zeliAdd_8u32f_C1IMR)
ONE_FRAME_MASKED(Sum, Zel8s, zeliAdd_8s32f_C1IMR)
ONE_FRAME_MASKED(Sum, Zel16u, zeliAdd_16u32f_C1IMR)
ONE_FRAME_MASKED(Sum, Zel32f, zeliAdd_32f_C1IMR)

ONE_FRAME(Square, Zel8u, zeliAddSquare_8u32f_C1IR)
ONE_FRAME(Square, Zel8s, zeliAddSquare_8s32f_C1IR)
ONE_FRAME(Square, Zel16u, zeliAddSquare_16u32f_C1IR)
ONE_FRAME(Square, Zel32f, zeliAddSquare_32f_C1IR)
ONE_FRAME_MASKED(Square, Zel8u, zeliAddSquare_8u32f_C1IMR)
ONE_FRAME_MASKED(Square, Zel8s, zeliAddSquare_8s32f_C1IMR)
ONE_FRAME_MASKED(Square, Zel16u, zeliAddSquare_16u32f_C1IMR)
ONE_FRAME_MASKED(Square, Zel32f, zeliAddSquare_32f_C1IMR)

TWO_FRAMES(Product, Zel8u, zeliAddProduct_8u32f_C1IR)
TWO_FRAMES(Product, Zel8s, zeliAddProduct_8s32f_C1IR)
TWO_FRAMES(Product, Zel16u, zeliAddProduct_16u32f_C1IR)
TWO_FRAMES(Product, Zel32f, zeliAddProduct_32f_C1IR)
TWO_FRAMES_MASKED(Product, Zel8u, zeliAddProduct_8u32f_C1IMR)
TWO_FRAMES_MASKED(Product, Zel8s, zeliAddProduct_8s32f_C1IMR)
TWO_FRAMES_MASKED(Product, Zel16u, zeliAddProduct_16u32f_C1IMR)
TWO_FRAMES_MASKED(Product, Zel32f, zeliAddProduct_32f_C1IMR)

WEIGHTED(Zel8u, zeliAddWeighted_8u32f_C1IR)
WEIGHTED(Zel8s, zeliAddWeighted_8s32f_C1IR)
WEIGHTED(Zel16u, zeliAddWeighted_16u32f_C1IR)
WEIGHTED(Zel32f, zeliAddWeighted_32f_C1IR)
WEIGHTED_MASKED(Zel8u, zeliAddWeighted_8u32f_C1IMR)
WEIGHTED_MASKED(Zel8s, zeliAddWeighted_8s32f_C1IMR)
WEIGHTED_MASKED(Zel16u, zeliAddWeighted_16u32f_C1IMR)
WEIGHTED_MASKED(Zel32f, zeliAddWeighted_32f_C1IMR)

// Out of place, and always on the calling thread.
ZelStatus zeliAddWeighted_32f_C1R(const Zel32f* src1, int src1Step, const Zel32f* src2, int src2Step, Zel32f* dst,
                                  int dstStep, ZeliSize roiSize, Zel32f alpha)
{
    const Plane<const Zel32f> frame = {src1, src1Step}, accumulator = {src2, src2Step};
    const Plane<Zel32f> result = {dst, dstStep};
    if (auto status = checkPlanes(roiSize, Frames<Zel32f, 1>{{frame}}, accumulator, result)) return status;
    forRows(roiSize, Gate::serial(), [=](int y, int n) {
        mapRow(result.row(y), n, accumulated<Weighted>(alpha), elements(accumulator.row(y)), elements(frame.row(y)));
    }, frame, accumulator, result);
    return zelStatusOk;
}
