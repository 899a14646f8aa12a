#include "support/measure.h"

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

// A mask of 0 and 255 at random, or solid.
Plane<Zel8u> maskPlane(ZeliSize size, bool random)
{
    Plane<Zel8u> mask(size);
    unsigned state = 1;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            state = state * 1664525u + 1013904223u;
            mask.row(y)[x] = !random || state >> 31 ? 255 : 0;
        }
    return mask;
}

template <class T>
Prepare masked(ZelStatus (*function)(const T*, int, const Zel8u*, int, ZeliSize, Zel32f*, Zel32f*, ZeliPoint*, ZeliPoint*),
               bool random)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size);
        Plane<Zel8u> mask = maskPlane(size, random);
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
        Plane<Zel8u> mask = maskPlane(size, true);
        return [=, r = Results{}]() mutable {
            require(function(src.data(), src.step(), mask.data(), mask.step(), size, 2, &r.min, &r.max, &r.minAt, &r.maxAt));
        };
    };
}

#define MEASURE_TYPE(token, size)                                                                              \
    measure("zeliMinMaxIndx_" #token "_C1R", size, plain(zeliMinMaxIndx_##token##_C1R));                       \
    measure("zeliMinMaxIndx_" #token "_C1R/2 threads", size, plain(zeliMinMaxIndx_##token##_C1R), 2);          \
    measure("zeliMinMaxIndx_" #token "_C1MR/random", size + 1, masked(zeliMinMaxIndx_##token##_C1MR, true));   \
    measure("zeliMinMaxIndx_" #token "_C1MR/solid", size + 1, masked(zeliMinMaxIndx_##token##_C1MR, false));   \
    measure("zeliMinMaxIndx_" #token "_C3CR", 3 * size, channel(zeliMinMaxIndx_##token##_C3CR));               \
    measure("zeliMinMaxIndx_" #token "_C3CMR", 3 * size + 1, channelMasked(zeliMinMaxIndx_##token##_C3CMR));

const bool registered = [] {
    MEASURE_TYPE(8u, 1)
    MEASURE_TYPE(8s, 1)
    MEASURE_TYPE(16u, 2)
    MEASURE_TYPE(32f, 4)
    return true;
}();

} // namespace
