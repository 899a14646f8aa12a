// The derivative filters by name.
#include "operations/filter.h"

namespace app {

namespace {

// A member of the family: the filter, and the function that sizes its scratch. Scharr members take no mask size, and only 8s
// members a divisor.
template <class S, class D, class Size, class Filter>
Derivative<S, D> member(Function<Size> size, Function<Filter> filter)
{
    return [=](Calls& calls, View<const S> src, const DerivativeOptions& options) {
        Image<D> dst(src.size, 1);
        const auto mask = onlyIf<std::is_invocable_v<Size*, ZeliSize, ZeliMaskSize, int*>>(options.mask);
        const Block buffer = std::apply([&](auto... m) { return calls.scratch(size, src.size, m...); }, mask);
        const auto arguments = std::tuple_cat(std::tuple(src.data, src.step, dst.data(), dst.step(), src.size), mask,
                                              std::tuple(options.border, S(0)),
                                              onlyIf<std::is_same_v<D, Zel8s>>(options.divisor), std::tuple(buffer.data()));
        std::apply([&](auto... a) { calls(filter, a...); }, arguments);
        return dst;
    };
}

const DerivativeFamily kFamilies[] = {
    {"SobelHoriz",
     "First derivative down the columns: bright where the picture gets brighter downwards.",
     true,
     {4, 48},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelHorizGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterSobelHorizBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelHorizGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterSobelHorizBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelHorizGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterSobelHorizBorder_32f_C1R))},
    {"SobelVert",
     "First derivative along the rows, left minus right: bright where it gets darker to the right.",
     true,
     {4, 48},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelVertGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterSobelVertBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelVertGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterSobelVertBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelVertGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterSobelVertBorder_32f_C1R))},
    {"SobelNegVert",
     "First derivative along the rows, right minus left: bright where it gets brighter to the right.",
     true,
     {4, 48},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelNegVertGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterSobelNegVertBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelNegVertGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterSobelNegVertBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelNegVertGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterSobelNegVertBorder_32f_C1R))},
    {"SobelHorizSecond",
     "Second derivative down the columns: dark on bright lines that run across, bright on dark ones.",
     true,
     {8, 32},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelHorizSecondGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterSobelHorizSecondBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelHorizSecondGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterSobelHorizSecondBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelHorizSecondGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterSobelHorizSecondBorder_32f_C1R))},
    {"SobelVertSecond",
     "Second derivative along the rows: dark on bright lines that run down, bright on dark ones.",
     true,
     {8, 32},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelVertSecondGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterSobelVertSecondBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelVertSecondGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterSobelVertSecondBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelVertSecondGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterSobelVertSecondBorder_32f_C1R))},
    {"SobelCross",
     "Mixed second derivative: answers to corners and to slanted lines.",
     true,
     {2, 18},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelCrossGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterSobelCrossBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelCrossGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterSobelCrossBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelCrossGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterSobelCrossBorder_32f_C1R))},
    {"ScharrHoriz",
     "First derivative down the columns, with weights that treat all directions more alike.",
     false,
     {16, 16},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterScharrHorizGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterScharrHorizBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterScharrHorizGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterScharrHorizBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterScharrHorizGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterScharrHorizBorder_32f_C1R))},
    {"ScharrVert",
     "First derivative along the rows, right minus left, with weights that treat all directions more alike.",
     false,
     {16, 16},
     member<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterScharrVertGetBufferSize_8u16s_C1R),
                           ZELCV_FUNCTION(zeliFilterScharrVertBorder_8u16s_C1R)),
     member<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterScharrVertGetBufferSize_8u8s_C1R),
                          ZELCV_FUNCTION(zeliFilterScharrVertBorder_8u8s_C1R)),
     member<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterScharrVertGetBufferSize_32f_C1R),
                            ZELCV_FUNCTION(zeliFilterScharrVertBorder_32f_C1R))},
};

} // namespace

std::span<const DerivativeFamily> derivativeFamilies() { return kFamilies; }

const DerivativeFamily& derivativeFamily(std::string_view name)
{
    return *std::find_if(std::begin(kFamilies), std::end(kFamilies), [&](const auto& family) { return family.name == name; });
}

GradientFamilies gradientFamilies(bool scharr)
{
    return scharr ? GradientFamilies{derivativeFamily("ScharrVert"), derivativeFamily("ScharrHoriz")}
                  : GradientFamilies{derivativeFamily("SobelNegVert"), derivativeFamily("SobelHoriz")};
}

} // namespace app
