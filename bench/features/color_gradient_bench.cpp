#include "support/measure.h"

using namespace zelbench;

namespace {

template <class T, class Function>
Prepare fold(Function function, ZeliNormType norm)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, 3), dst(size);
        return [=] { require(function(src.data(), src.step(), dst.data(), dst.step(), size, norm)); };
    };
}

const bool registered = [] {
    for (const auto& [norm, remark] : {std::pair(zeliNormInf, "/Inf"), {zeliNormL1, "/L1"}, {zeliNormL2, "/L2"}}) {
        measure(std::string("zeliGradientColorToGray_8u_C3C1R") + remark, 4,
                fold<Zel8u>(zeliGradientColorToGray_8u_C3C1R, norm));
        measure(std::string("zeliGradientColorToGray_16u_C3C1R") + remark, 8,
                fold<Zel16u>(zeliGradientColorToGray_16u_C3C1R, norm));
        measure(std::string("zeliGradientColorToGray_32f_C3C1R") + remark, 16,
                fold<Zel32f>(zeliGradientColorToGray_32f_C3C1R, norm));
    }
    return true;
}();

} // namespace
