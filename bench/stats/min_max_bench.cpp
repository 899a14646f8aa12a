#include "stats/masks.h"

using namespace zelbench;

namespace {

struct Results {
    Zel32f min, max;
    ZeliPoint minAt, maxAt;
};

template <class T>
Prepare plain(ZelStatus (*function)(const T*, int, ZeliSize, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*))
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size);
        return [=, r = Results{}]() mutable {
            require(function(src.data(), src.step(), size, &r.min, &r.max, &r.minAt, &r.maxAt));
        };
    };
}

template <class T>
Prepare masked(ZelStatus (*function)(const T*, int, const Zel8u*, int, ZeliSize, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*),
               Plane<Zel8u> makeMask(ZeliSize))
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size);
        const auto mask = makeMask(size);
        return [=, r = Results{}]() mutable {
            require(function(src.data(), src.step(), mask.data(), mask.step(), size, &r.min, &r.max, &r.minAt, &r.maxAt));
        };
    };
}

template <class T>
Prepare channel(ZelStatus (*function)(const T*, int, ZeliSize, int, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*))
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, 3);
        return [=, r = Results{}]() mutable {
            require(function(src.data(), src.step(), size, 2, &r.min, &r.max, &r.minAt, &r.maxAt));
        };
    };
}

template <class T>
Prepare channelMasked(ZelStatus (*function)(const T*, int, const Zel8u*, int, ZeliSize, int, Zel32f*, Zel32f*, ZeliPoint*,
                                            ZeliPoint*))
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, 3);
        const auto mask = randomMask(size);
        return [=, r = Results{}]() mutable {
            require(function(src.data(), src.step(), mask.data(), mask.step(), size, 2, &r.min, &r.max, &r.minAt, &r.maxAt));
        };
    };
}

#define MEASURE_TYPE(token, size)                                                                                  \
    measure("zeliMinMaxIndx_" #token "_C1R", size, plain(zeliMinMaxIndx_##token##_C1R));                           \
    measure("zeliMinMaxIndx_" #token "_C1R/2 threads", size, plain(zeliMinMaxIndx_##token##_C1R), 2);              \
    measure("zeliMinMaxIndx_" #token "_C1MR/random", size + 1, masked(zeliMinMaxIndx_##token##_C1MR, randomMask)); \
    measure("zeliMinMaxIndx_" #token "_C1MR/solid", size + 1, masked(zeliMinMaxIndx_##token##_C1MR, solidMask));   \
    measure("zeliMinMaxIndx_" #token "_C3CR", 3 * size, channel(zeliMinMaxIndx_##token##_C3CR));                   \
    measure("zeliMinMaxIndx_" #token "_C3CMR", 3 * size + 1, channelMasked(zeliMinMaxIndx_##token##_C3CMR));

const bool registered = [] {
    MEASURE_TYPE(8u, 1)
    MEASURE_TYPE(8s, 1)
    MEASURE_TYPE(16u, 2)
    MEASURE_TYPE(32f, 4)
    return true;
}();

} // namespace
