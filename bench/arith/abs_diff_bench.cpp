#include "support/measure.h"

using namespace zelbench;

namespace {

template <class T, class Function>
Prepare difference(Function function, int channels = 1)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> a(size, channels), b(size, channels), dst(size, channels);
        return [=] { require(function(a.data(), a.step(), b.data(), b.step(), dst.data(), dst.step(), size)); };
    };
}

template <class T, class Function>
Prepare constantDifference(Function function)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> a(size), dst(size);
        return [=] { require(function(a.data(), a.step(), dst.data(), dst.step(), size, 100)); };
    };
}

const bool registered = [] {
    measure("zeliAbsDiff_8u_C1R", 3, difference<Zel8u>(zeliAbsDiff_8u_C1R));
    measure("zeliAbsDiff_8u_C3R", 9, difference<Zel8u>(zeliAbsDiff_8u_C3R, 3));
    measure("zeliAbsDiff_16u_C1R", 6, difference<Zel16u>(zeliAbsDiff_16u_C1R));
    measure("zeliAbsDiff_32f_C1R", 12, difference<Zel32f>(zeliAbsDiff_32f_C1R));
    measure("zeliAbsDiff_32f_C1R/2 threads", 12, difference<Zel32f>(zeliAbsDiff_32f_C1R), 2);
    measure("zeliAbsDiffC_8u_C1R", 2, constantDifference<Zel8u>(zeliAbsDiffC_8u_C1R));
    measure("zeliAbsDiffC_16u_C1R", 4, constantDifference<Zel16u>(zeliAbsDiffC_16u_C1R));
    measure("zeliAbsDiffC_32f_C1R", 8, constantDifference<Zel32f>(zeliAbsDiffC_32f_C1R));
    return true;
}();

} // namespace
