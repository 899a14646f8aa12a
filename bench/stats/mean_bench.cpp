#include "stats/masks.h"

using namespace zelbench;

namespace {

double result[2];

// `tail` is the channel of interest where there is one.
template <class T, class Function, class... Tail>
Prepare plain(Function function, Tail... tail)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, sizeof...(Tail) ? 3 : 1);
        return [=] { require(function(src.data(), src.step(), size, tail..., result, result + 1)); };
    };
}

template <class T, class Function, class... Tail>
Prepare masked(Function function, Tail... tail)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, sizeof...(Tail) ? 3 : 1);
        const auto mask = randomMask(size);
        return [=] {
            if constexpr (std::is_invocable_v<Function, const T*, int, const Zel8u*, int, ZeliSize, Tail..., double*>)
                require(function(src.data(), src.step(), mask.data(), mask.step(), size, tail..., result));
            else
                require(function(src.data(), src.step(), mask.data(), mask.step(), size, tail..., result, result + 1));
        };
    };
}

#define MEASURE_TYPE(T, token, size)                                                                       \
    measure("zeliMean_" #token "_C1MR", size + 1, masked<T>(zeliMean_##token##_C1MR));                     \
    measure("zeliMean_" #token "_C3CMR", 3 * size + 1, masked<T>(zeliMean_##token##_C3CMR, 2));            \
    measure("zeliMean_StdDev_" #token "_C1R", size, plain<T>(zeliMean_StdDev_##token##_C1R));              \
    measure("zeliMean_StdDev_" #token "_C1R/2 threads", size, plain<T>(zeliMean_StdDev_##token##_C1R), 2); \
    measure("zeliMean_StdDev_" #token "_C3CR", 3 * size, plain<T>(zeliMean_StdDev_##token##_C3CR, 2));     \
    measure("zeliMean_StdDev_" #token "_C1MR", size + 1, masked<T>(zeliMean_StdDev_##token##_C1MR));       \
    measure("zeliMean_StdDev_" #token "_C3CMR", 3 * size + 1, masked<T>(zeliMean_StdDev_##token##_C3CMR, 2));

const bool registered = [] {
    MEASURE_TYPE(Zel8u, 8u, 1)
    MEASURE_TYPE(Zel8s, 8s, 1)
    MEASURE_TYPE(Zel16u, 16u, 2)
    MEASURE_TYPE(Zel32f, 32f, 4)
    return true;
}();

} // namespace
