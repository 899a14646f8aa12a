#include "support/measure.h"

using namespace zelbench;

namespace {

// `numbers` for each pixel of the result.
template <class Src, class SizeFunction, class Function>
Prepare corners(SizeFunction sizeFunction, Function function, int numbers, int apertureSize, int avgWindow)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<Src> src(size);
        Plane<Zel32f> dst(size, numbers);
        int bytes = 0;
        require(sizeFunction(size, apertureSize, avgWindow, &bytes));
        auto buffer = scratch(bytes);
        return [=] {
            require(function(src.data(), src.step(), dst.data(), dst.step(), size, 0, apertureSize, avgWindow,
                             buffer.get()));
        };
    };
}

const bool registered = [] {
    for (int length : {3, 5}) {
        const std::string remark = length == 3 ? "/3and3" : "/5and5";
        measure("zeliMinEigenVal_8u32f_C1R" + remark, 5,
                corners<Zel8u>(zeliMinEigenValGetBufferSize_8u32f_C1R, zeliMinEigenVal_8u32f_C1R, 1, length, length));
        measure("zeliMinEigenVal_32f_C1R" + remark, 8,
                corners<Zel32f>(zeliMinEigenValGetBufferSize_32f_C1R, zeliMinEigenVal_32f_C1R, 1, length, length));
        measure("zeliEigenValsVecs_8u32f_C1R" + remark, 25,
                corners<Zel8u>(zeliEigenValsVecsGetBufferSize_8u32f_C1R, zeliEigenValsVecs_8u32f_C1R, 6, length, length));
        measure("zeliEigenValsVecs_32f_C1R" + remark, 28,
                corners<Zel32f>(zeliEigenValsVecsGetBufferSize_32f_C1R, zeliEigenValsVecs_32f_C1R, 6, length, length));
    }
    return true;
}();

} // namespace
