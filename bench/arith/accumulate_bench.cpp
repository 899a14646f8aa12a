#include "support/measure.h"

using namespace zelbench;

namespace {

// `tail` holds alpha where there is one.
template <class T, class Function, class... Tail>
Prepare one(Function function, Tail... tail)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size);
        Plane<Zel32f> sum(size);
        return [=] { require(function(src.data(), src.step(), sum.data(), sum.step(), size, tail...)); };
    };
}

template <class T, class Function, class... Tail>
Prepare oneMasked(Function function, Tail... tail)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size);
        Plane<Zel8u> mask(size);
        Plane<Zel32f> sum(size);
        return [=] {
            require(function(src.data(), src.step(), mask.data(), mask.step(), sum.data(), sum.step(), size, tail...));
        };
    };
}

template <class T, class Function>
Prepare two(Function function)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> a(size), b(size);
        Plane<Zel32f> sum(size);
        return [=] { require(function(a.data(), a.step(), b.data(), b.step(), sum.data(), sum.step(), size)); };
    };
}

template <class T, class Function>
Prepare twoMasked(Function function)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> a(size), b(size);
        Plane<Zel8u> mask(size);
        Plane<Zel32f> sum(size);
        return [=] {
            require(function(a.data(), a.step(), b.data(), b.step(), mask.data(), mask.step(), sum.data(), sum.step(), size));
        };
    };
}

#define MEASURE(prepare, name, bytes, T, ...) measure(#name, bytes, prepare<T>(name __VA_OPT__(, ) __VA_ARGS__));
#define MEASURE_TYPE(T, token, size)                                    \
    MEASURE(one, zeliAddSquare_##token##_C1IR, size + 8, T)             \
    MEASURE(oneMasked, zeliAdd_##token##_C1IMR, size + 9, T)            \
    MEASURE(oneMasked, zeliAddSquare_##token##_C1IMR, size + 9, T)      \
    MEASURE(two, zeliAddProduct_##token##_C1IR, 2 * size + 8, T)        \
    MEASURE(twoMasked, zeliAddProduct_##token##_C1IMR, 2 * size + 9, T) \
    MEASURE(one, zeliAddWeighted_##token##_C1IR, size + 8, T, 0.25f)    \
    MEASURE(oneMasked, zeliAddWeighted_##token##_C1IMR, size + 9, T, 0.25f)

const bool registered = [] {
    MEASURE(one, zeliAdd_8u32f_C1IR, 9, Zel8u)
    MEASURE(one, zeliAdd_8s32f_C1IR, 9, Zel8s)
    MEASURE(one, zeliAdd_16u32f_C1IR, 10, Zel16u)
    MEASURE_TYPE(Zel8u, 8u32f, 1)
    MEASURE_TYPE(Zel8s, 8s32f, 1)
    MEASURE_TYPE(Zel16u, 16u32f, 2)
    MEASURE_TYPE(Zel32f, 32f, 4)
    measure("zeliAdd_8u32f_C1IR/2 threads", 9, one<Zel8u>(zeliAdd_8u32f_C1IR), 2);
    measure("zeliAdd_8u32f_C1IMR/2 threads", 10, oneMasked<Zel8u>(zeliAdd_8u32f_C1IMR), 2);
    measure("zeliAddProduct_32f_C1IMR/2 threads", 17, twoMasked<Zel32f>(zeliAddProduct_32f_C1IMR), 2);
    measure("zeliAddWeighted_32f_C1R", 12, [](ZeliSize size) -> std::function<void()> {
        Plane<Zel32f> a(size), b(size), dst(size);
        return [=] {
            require(zeliAddWeighted_32f_C1R(a.data(), a.step(), b.data(), b.step(), dst.data(), dst.step(), size, 0.25f));
        };
    });
    return true;
}();

} // namespace
