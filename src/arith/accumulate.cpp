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

// `Number` is what frames of T are read as. `kClears` tells that masked-off elements may be cleared before instead of being
// multiplied by 0 after, to the same sums: that takes terms that are neither negative, which would leave -0, nor NaN.
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

// What follows an accumulator, block by block: each makes an operation of mapRow.

template <class What>
auto next(Zel32f alpha)
{
    return [weight = splat(alpha)](const auto& a, const auto&... s) ZELCV_INLINE {
        return forParts([=](auto old, auto term) { return old + (kHasWeight<What> ? term * weight : term); }, a,
                        What::term(a, s...));
    };
}

// Under a mask of bytes: the weight is cleared where a byte is 0.
template <class What>
auto nextMasked(Zel32f alpha)
{
    return [weight = splat(alpha)](const auto& mask, const auto& a, const auto&... s) ZELCV_INLINE {
        return forParts([=](Vec<Zel32s> selected, auto old, auto term) { return term * keep(selected, weight) + old; },
                        widenMask<Zel32f>(mask.part[0] != 0), a, What::term(a, s...));
    };
}

// The elements themselves are cleared, as they are in memory. Of two factors one is enough.
template <class What, class T>
auto nextCleared()
{
    return [](const auto& mask, const auto& a, const auto& s, const auto&... others) ZELCV_INLINE {
        const auto kept = forParts([](auto selected, Vec<T> x) { return Vec<T>(Vec<T>(selected) & x); },
                                   widenMask<T>(mask.part[0] != 0), s);
        return a + What::term(a, convert<typename What::template Number<T>>(kept), others...);
    };
}

template <class What, class T, std::size_t count>
ZelStatus accumulate(const Frames<T, count>& frames, Plane<Zel32f> srcDst, ZeliSize roi, Zel32f alpha = 1)
{
    if (auto status = checkPlanes(roi, frames, srcDst)) return status;
    using Reader = As<typename What::template Number<T>, T>;
    std::apply([&](auto... frame) {
        forRows(roi, kGate, [=](int y, int n) {
            Zel32f* const row = srcDst.row(y);
            mapRow(row, n, next<What>(alpha), elements<Zel32f>(row), Reader{frame.row(y)}...);
        }, frame..., srcDst);
    }, frames);
    return zelStatusOk;
}

template <class What, class T, std::size_t count>
ZelStatus accumulateMasked(const Frames<T, count>& frames, Plane<const Zel8u> mask, Plane<Zel32f> srcDst, ZeliSize roi,
                           Zel32f alpha = 1)
{
    if (auto status = checkPlanes(roi, frames, mask, srcDst)) return status;
    using Reader = As<typename What::template Number<T>, T>;
    std::apply([&](auto first, auto... second) {
        forRows(roi, kGate, [=](int y, int n) {
            Zel32f* const row = srcDst.row(y);
            const auto bytes = elements(mask.row(y));
            if constexpr (What::template kClears<T>)
                mapRow(row, n, nextCleared<What, T>(), bytes, elements<Zel32f>(row), elements(first.row(y)),
                       Reader{second.row(y)}...);
            else
                mapRow(row, n, nextMasked<What>(alpha), bytes, elements<Zel32f>(row), Reader{first.row(y)},
                       Reader{second.row(y)}...);
        }, first, second..., mask, srcDst);
    }, frames);
    return zelStatusOk;
}

} // namespace

// ---- exports: the members by operation and type

#define ONE_FRAME(What, T, name)                                                                \
    ZelStatus name(const T* src, int srcStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize) \
    {                                                                                           \
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
#define WEIGHTED(T, name)                                                                                     \
    ZelStatus name(const T* src, int srcStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize, Zel32f alpha) \
    {                                                                                                         \
        return accumulate<Weighted>(Frames<T, 1>{{{src, srcStep}}}, {srcDst, srcDstStep}, roiSize,            \
                                    alpha);                                                                   \
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
        mapRow(result.row(y), n, next<Weighted>(alpha), elements(accumulator.row(y)), elements(frame.row(y)));
    }, frame, accumulator, result);
    return zelStatusOk;
}
