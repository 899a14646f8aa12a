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
#include "bands.h"
#include "checks.h"
#include "map_row.h"

#include <array>
#include <tuple>
#include <type_traits>

using namespace zelcv;

namespace {

constexpr Gate kGate = Gate::area(0x40000);

// ---- what is added, before the weight

using Floats = Vec<Zel32f>;

struct Sum {
    static Floats term(Floats, Floats s) { return s; }
};
struct Square {
    static Floats term(Floats, Floats s) { return s * s; }
};
struct Product {
    static Floats term(Floats, Floats s1, Floats s2) { return s1 * s2; }
};
// Exact products of integers: a product of 0 is +0 also beside a negative factor.
struct SignedProduct {
    static Floats term(Floats, Floats s1, Floats s2) { return s1 * s2 + 0.0f; }
};
struct Weighted {
    static Floats term(Floats a, Floats s) { return s - a; }
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

// Calls run(dst, a, s...) for each row: the row to write, and readers of the accumulator and the frames.
template <class T, std::size_t count, class Run>
void forRows(ZeliSize roi, Gate gate, const Frames<T, count>& frames, Plane<const Zel32f> accumulator, Plane<Zel32f> dst,
             const Run& run)
{
    forBands(roi, gate, [&](Band band) {
        for (int y = band.first; y < band.last; ++y)
            std::apply([&](auto... frame) {
                run(y, dst.row(y), Elements<Zel32f>{accumulator.row(y)}, AsFloats<T>{frame.row(y)}...);
            }, frames);
    });
}

// dst may be the accumulator.
template <class What, class T, std::size_t count>
ZelStatus accumulate(const Frames<T, count>& frames, Plane<const Zel32f> accumulator, Plane<Zel32f> dst, ZeliSize roi,
                     Zel32f alpha = 1, Gate gate = kGate)
{
    if (auto status = checkPlanes(roi, frames, accumulator, dst)) return status;
    const auto next = [weight = splat(alpha)](Floats a, auto... s) {
        const Floats term = What::term(a, s...);
        return a + (kHasWeight<What> ? term * weight : term);
    };
    forRows(roi, gate, frames, accumulator, dst,
            [&](int, Zel32f* row, auto... readers) { mapRow(row, roi.width, next, readers...); });
    return zelStatusOk;
}

template <class What, class T, std::size_t count>
ZelStatus accumulateMasked(const Frames<T, count>& frames, Plane<const Zel8u> mask, Plane<Zel32f> srcDst, ZeliSize roi,
                           Zel32f alpha = 1)
{
    if (auto status = checkPlanes(roi, frames, mask, srcDst)) return status;
    const auto next = [weight = splat(alpha)](Vec<Zel32s> selected, Floats a, auto... s) {
        return What::term(a, s...) * keep(selected, weight) + a;
    };
    forRows(roi, kGate, frames, {srcDst.data, srcDst.step}, srcDst, [&](int y, Zel32f* row, auto... readers) {
        mapRow(row, roi.width, next, AsMask{mask.row(y)}, readers...);
    });
    return zelStatusOk;
}

} // namespace

// ---- exports: the members by operation and type

#define ONE_FRAME(What, T, name)                                                                                      \
    ZelStatus name(const T* src, int srcStep, Zel32f* srcDst, int srcDstStep, ZeliSize roiSize)                       \
    {                                                                                                                 \
        return accumulate<What>(Frames<T, 1>{{{src, srcStep}}}, {srcDst, srcDstStep}, {srcDst, srcDstStep}, roiSize); \
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
                                   {srcDst, srcDstStep}, roiSize);                                           \
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
        return accumulate<Weighted>(Frames<T, 1>{{{src, srcStep}}}, {srcDst, srcDstStep}, {srcDst, srcDstStep}, roiSize, \
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
TWO_FRAMES(SignedProduct, Zel8s, zeliAddProduct_8s32f_C1IR)
TWO_FRAMES(Product, Zel16u, zeliAddProduct_16u32f_C1IR)
TWO_FRAMES(Product, Zel32f, zeliAddProduct_32f_C1IR)
TWO_FRAMES_MASKED(Product, Zel8u, zeliAddProduct_8u32f_C1IMR)
TWO_FRAMES_MASKED(SignedProduct, Zel8s, zeliAddProduct_8s32f_C1IMR)
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
    return accumulate<Weighted>(Frames<Zel32f, 1>{{{src1, src1Step}}}, {src2, src2Step}, {dst, dstStep}, roiSize, alpha,
                                Gate::serial());
}
