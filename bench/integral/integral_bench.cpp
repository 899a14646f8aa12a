#include "support/measure.h"

using namespace zelbench;

namespace {

// A plane with the columns and rows that integral images have more than their source.
template <class T>
Plane<T> sums(ZeliSize size)
{
    return Plane<T>({size.width + 2, size.height + 2});
}

template <class T>
Prepare integral(ZelStatus (*function)(const Zel8u*, int, T*, int, ZeliSize, T))
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<Zel8u> src(size);
        Plane<T> dst = sums<T>(size);
        return [=] { require(function(src.data(), src.step(), dst.data(), dst.step(), size, 0)); };
    };
}

template <class T, class S>
Prepare withSquares(ZelStatus (*function)(const Zel8u*, int, T*, int, S*, int, ZeliSize, T, S))
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<Zel8u> src({size.width + 1, size.height});
        Plane<T> dst = sums<T>(size);
        Plane<S> sqr = sums<S>(size);
        return [=] {
            require(function(src.data(), src.step(), dst.data(), dst.step(), sqr.data(), sqr.step(), size, 0, 0));
        };
    };
}

#define MEASURE(prepare, name, bytes) measure(#name, bytes, prepare(name));

const bool registered = [] {
    MEASURE(integral, zeliIntegral_8u32s_C1R, 5)
    MEASURE(integral, zeliIntegral_8u32f_C1R, 5)
    MEASURE(integral, zeliTiltedIntegral_8u32s_C1R, 5)
    MEASURE(integral, zeliTiltedIntegral_8u32f_C1R, 5)
    MEASURE(withSquares, zeliSqrIntegral_8u32s_C1R, 9)
    MEASURE(withSquares, zeliSqrIntegral_8u32s64f_C1R, 13)
    MEASURE(withSquares, zeliSqrIntegral_8u32f64f_C1R, 13)
    MEASURE(withSquares, zeliTiltedSqrIntegral_8u32s_C1R, 9)
    MEASURE(withSquares, zeliTiltedSqrIntegral_8u32s64f_C1R, 13)
    MEASURE(withSquares, zeliTiltedSqrIntegral_8u32f64f_C1R, 13)
    return true;
}();

} // namespace
