#include "filter/bordered.h"

using namespace zelbench;

namespace {

Prepare gauss(int kernelSize)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<Zel32f> src(size), dst(size);
        int bytes = 0;
        require(zeliFilterGaussGetBufferSize_32f_C1R(size, kernelSize, &bytes));
        auto buffer = scratch(bytes);
        return [=] {
            require(zeliFilterGaussBorder_32f_C1R(src.data(), src.step(), dst.data(), dst.step(), size, kernelSize,
                                                  Zel32f(kernelSize) / 6, zeliBorderReplicate, 0, buffer.get()));
        };
    };
}

const bool registered = [] {
    for (ZeliMaskSize mask : {zeliMask3x3, zeliMask5x5}) {
        const std::string remark = mask == zeliMask3x3 ? "/3x3" : "/5x5";
        measure("zeliFilterLowpassBorder_8u_C1R" + remark, 2,
                bordered<Zel8u, Zel8u>(zeliFilterLowpassGetBufferSize_8u_C1R, zeliFilterLowpassBorder_8u_C1R, mask));
        measure("zeliFilterLowpassBorder_32f_C1R" + remark, 8,
                bordered<Zel32f, Zel32f>(zeliFilterLowpassGetBufferSize_32f_C1R, zeliFilterLowpassBorder_32f_C1R, mask));
        measure("zeliFilterLaplacianBorder_8u16s_C1R" + remark, 3,
                bordered<Zel8u, Zel16s>(zeliFilterLaplacianGetBufferSize_8u16s_C1R, zeliFilterLaplacianBorder_8u16s_C1R,
                                        mask));
        measure("zeliFilterLaplacianBorder_8u8s_C1R" + remark, 2,
                bordered<Zel8u, Zel8s>(zeliFilterLaplacianGetBufferSize_8u8s_C1R, zeliFilterLaplacianBorder_8u8s_C1R, mask,
                                       4));
        measure("zeliFilterLaplacianBorder_32f_C1R" + remark, 8,
                bordered<Zel32f, Zel32f>(zeliFilterLaplacianGetBufferSize_32f_C1R, zeliFilterLaplacianBorder_32f_C1R, mask));
    }
    for (int taps : {3, 5, 9, 21})
        measure("zeliFilterGaussBorder_32f_C1R/" + std::to_string(taps) + "taps", 8, gauss(taps));
    return true;
}();

} // namespace
