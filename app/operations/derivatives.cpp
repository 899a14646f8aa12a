// The derivative filters by name.
#include "operations/filter.h"

namespace app {

namespace {

const DerivativeFamily kFamilies[] = {
    {"SobelHoriz",
     "First derivative down the columns: bright where the picture gets brighter downwards.",
     true,
     {4, 48},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelHorizGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterSobelHorizBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelHorizGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterSobelHorizBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelHorizGetBufferSize_32f_C1R),
                                ZELCV_FUNCTION(zeliFilterSobelHorizBorder_32f_C1R))},
    {"SobelVert",
     "First derivative along the rows, left minus right: bright where it gets darker to the right.",
     true,
     {4, 48},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelVertGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterSobelVertBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelVertGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterSobelVertBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelVertGetBufferSize_32f_C1R),
                                ZELCV_FUNCTION(zeliFilterSobelVertBorder_32f_C1R))},
    {"SobelNegVert",
     "First derivative along the rows, right minus left: bright where it gets brighter to the right.",
     true,
     {4, 48},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelNegVertGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterSobelNegVertBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelNegVertGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterSobelNegVertBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelNegVertGetBufferSize_32f_C1R),
                                ZELCV_FUNCTION(zeliFilterSobelNegVertBorder_32f_C1R))},
    {"SobelHorizSecond",
     "Second derivative down the columns: dark on bright lines that run across, bright on dark ones.",
     true,
     {8, 32},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelHorizSecondGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterSobelHorizSecondBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelHorizSecondGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterSobelHorizSecondBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelHorizSecondGetBufferSize_32f_C1R),
                                ZELCV_FUNCTION(zeliFilterSobelHorizSecondBorder_32f_C1R))},
    {"SobelVertSecond",
     "Second derivative along the rows: dark on bright lines that run down, bright on dark ones.",
     true,
     {8, 32},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelVertSecondGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterSobelVertSecondBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelVertSecondGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterSobelVertSecondBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelVertSecondGetBufferSize_32f_C1R),
                                ZELCV_FUNCTION(zeliFilterSobelVertSecondBorder_32f_C1R))},
    {"SobelCross",
     "Mixed second derivative: answers to corners and to slanted lines.",
     true,
     {2, 18},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterSobelCrossGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterSobelCrossBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterSobelCrossGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterSobelCrossBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterSobelCrossGetBufferSize_32f_C1R),
                                ZELCV_FUNCTION(zeliFilterSobelCrossBorder_32f_C1R))},
    {"ScharrHoriz",
     "First derivative down the columns, with weights that treat all directions more alike.",
     false,
     {16, 16},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterScharrHorizGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterScharrHorizBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterScharrHorizGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterScharrHorizBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterScharrHorizGetBufferSize_32f_C1R),
                                ZELCV_FUNCTION(zeliFilterScharrHorizBorder_32f_C1R))},
    {"ScharrVert",
     "First derivative along the rows, right minus left, with weights that treat all directions more alike.",
     false,
     {16, 16},
     maskFilter<Zel8u, Zel16s>(ZELCV_FUNCTION(zeliFilterScharrVertGetBufferSize_8u16s_C1R),
                               ZELCV_FUNCTION(zeliFilterScharrVertBorder_8u16s_C1R)),
     maskFilter<Zel8u, Zel8s>(ZELCV_FUNCTION(zeliFilterScharrVertGetBufferSize_8u8s_C1R),
                              ZELCV_FUNCTION(zeliFilterScharrVertBorder_8u8s_C1R)),
     maskFilter<Zel32f, Zel32f>(ZELCV_FUNCTION(zeliFilterScharrVertGetBufferSize_32f_C1R),
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
