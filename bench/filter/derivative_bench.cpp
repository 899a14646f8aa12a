#include "filter/bordered.h"

using namespace zelbench;

namespace {

template <class Src, class Dst, class SizeFunction, class Function, class... Tail>
Prepare scharr(SizeFunction sizeFunction, Function function, Tail... tail)
{
    const auto withoutMask = [=](auto src, int srcStep, auto dst, int dstStep, ZeliSize size, ZeliMaskSize, auto... rest) {
        return function(src, srcStep, dst, dstStep, size, rest...);
    };
    return bordered<Src, Dst>([=](ZeliSize size, ZeliMaskSize, int* bytes) { return sizeFunction(size, bytes); },
                              withoutMask, zeliMask3x3, tail...);
}

const bool registered = [] {
#define SOBEL(name)                                                                                                         \
    for (ZeliMaskSize mask : {zeliMask3x3, zeliMask5x5}) {                                                                  \
        const std::string remark = mask == zeliMask3x3 ? "/3x3" : "/5x5";                                                   \
        measure("zeliFilter" #name "Border_8u16s_C1R" + remark, 3,                                                          \
                bordered<Zel8u, Zel16s>(zeliFilter##name##GetBufferSize_8u16s_C1R, zeliFilter##name##Border_8u16s_C1R,      \
                                        mask));                                                                             \
        measure("zeliFilter" #name "Border_8u8s_C1R" + remark, 2,                                                           \
                bordered<Zel8u, Zel8s>(zeliFilter##name##GetBufferSize_8u8s_C1R, zeliFilter##name##Border_8u8s_C1R, mask,   \
                                       4));                                                                                 \
        measure("zeliFilter" #name "Border_32f_C1R" + remark, 8,                                                            \
                bordered<Zel32f, Zel32f>(zeliFilter##name##GetBufferSize_32f_C1R, zeliFilter##name##Border_32f_C1R, mask)); \
    }
    SOBEL(SobelHoriz)
    SOBEL(SobelVert)
    SOBEL(SobelNegVert)
    SOBEL(SobelHorizSecond)
    SOBEL(SobelVertSecond)
    SOBEL(SobelCross)
#define SCHARR(name)                                                                                                        \
    measure("zeliFilter" #name "Border_8u16s_C1R", 3,                                                                       \
            scharr<Zel8u, Zel16s>(zeliFilter##name##GetBufferSize_8u16s_C1R, zeliFilter##name##Border_8u16s_C1R));          \
    measure("zeliFilter" #name "Border_8u8s_C1R", 2,                                                                        \
            scharr<Zel8u, Zel8s>(zeliFilter##name##GetBufferSize_8u8s_C1R, zeliFilter##name##Border_8u8s_C1R, 16));         \
    measure("zeliFilter" #name "Border_32f_C1R", 8,                                                                         \
            scharr<Zel32f, Zel32f>(zeliFilter##name##GetBufferSize_32f_C1R, zeliFilter##name##Border_32f_C1R));
    SCHARR(ScharrHoriz)
    SCHARR(ScharrVert)
    measure("zeliFilterSobelVertBorder_8u16s_C1R/5x5/2 threads", 3,
            bordered<Zel8u, Zel16s>(zeliFilterSobelVertGetBufferSize_8u16s_C1R, zeliFilterSobelVertBorder_8u16s_C1R,
                                    zeliMask5x5),
            2);
    return true;
}();

} // namespace
