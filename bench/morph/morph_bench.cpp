#include "support/measure.h"

#include <algorithm>
#include <cmath>
#include <vector>

using namespace zelbench;

namespace {

struct Mask {
    std::string name;
    ZeliSize size;
    std::vector<Zel8u> bytes;
};

template <class IsSet>
Mask mask(std::string name, int size, const IsSet& isSet)
{
    std::vector<Zel8u> bytes;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) bytes.push_back(isSet(x, y) ? 1 : 0);
    return {std::move(name), {size, size}, bytes};
}

std::string named(std::string shape, int size)
{
    return shape.append(" ").append(std::to_string(size)).append("x").append(std::to_string(size));
}

Mask rectangle(int size)
{
    return mask(named("rectangle", size), size, [](int, int) { return true; });
}
// The lattice points of an ellipse that touches all four sides.
Mask ellipse(int size)
{
    return mask(named("ellipse", size), size, [=](int x, int y) {
        const int radius = size / 2;
        const double reach = std::sqrt(1 - double((y - radius) * (y - radius)) / (radius * radius)) * radius;
        return std::abs(x - radius) <= std::lround(reach);
    });
}
Mask threeOf25()
{
    return mask("3 of 25", 5, [](int x, int y) { return (x == 0 && y == 0) || (x == 3 && y == 1) || (x == 2 && y == 4); });
}
Mask thirdOf121()
{
    unsigned state = 4321;
    return mask("a third of 121", 11, [&](int, int) { return (state = state * 1664525u + 1013904223u) >> 24 < 85; });
}

template <class T, class InitAlloc, class Function>
Prepare filter(InitAlloc initAlloc, Function function, int channels, const Mask& mask)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, channels), dst(size, channels);
        ZeliMorphState* made = nullptr;
        require(initAlloc(size.width, mask.bytes.data(), mask.size, {mask.size.width / 2, mask.size.height / 2}, &made));
        const std::shared_ptr<ZeliMorphState> state(made, zeliMorphologyFree);
        return [=] {
            require(function(src.data(), src.step(), dst.data(), dst.step(), size, zeliBorderReplicate, state.get()));
        };
    };
}

template <class T, class InitAlloc, class Function>
Prepare compound(InitAlloc initAlloc, Function function, int channels, const Mask& mask)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, channels), dst(size, channels);
        ZeliMorphAdvState* made = nullptr;
        require(initAlloc(&made, size, mask.bytes.data(), mask.size, {mask.size.width / 2, mask.size.height / 2}));
        const std::shared_ptr<ZeliMorphAdvState> state(made, zeliMorphAdvFree);
        return [=] {
            require(function(src.data(), src.step(), dst.data(), dst.step(), size, zeliBorderReplicate, state.get()));
        };
    };
}

const bool registered = [] {
#define STEPS(T, channels, suffix)                                                                                          \
    for (const Mask& mask : {rectangle(5), ellipse(5), ellipse(11), threeOf25(), thirdOf121()}) {                           \
        const double bytes = 2 * channels * sizeof(T);                                                                      \
        measure("zeliDilateBorderReplicate_" #suffix "/" + mask.name, bytes,                                                \
                filter<T>(zeliMorphologyInitAlloc_##suffix, zeliDilateBorderReplicate_##suffix, channels, mask));           \
        measure("zeliErodeBorderReplicate_" #suffix "/" + mask.name, bytes,                                                 \
                filter<T>(zeliMorphologyInitAlloc_##suffix, zeliErodeBorderReplicate_##suffix, channels, mask));            \
    }
    STEPS(Zel8u, 1, 8u_C1R)
    STEPS(Zel8u, 3, 8u_C3R)
    STEPS(Zel8u, 4, 8u_C4R)
    STEPS(Zel32f, 1, 32f_C1R)
    STEPS(Zel32f, 3, 32f_C3R)
    STEPS(Zel32f, 4, 32f_C4R)
#define COMPOUND(T, channels, suffix, Name)                                                                                 \
    for (const Mask& mask : {rectangle(5), ellipse(5)})                                                                     \
        measure("zeliMorph" #Name "Border_" #suffix "/" + mask.name, 2 * channels * sizeof(T),                              \
                compound<T>(zeliMorphAdvInitAlloc_##suffix, zeliMorph##Name##Border_##suffix, channels, mask));
#define COMPOUNDS(T, channels, suffix)                                                                                      \
    COMPOUND(T, channels, suffix, Open)                                                                                     \
    COMPOUND(T, channels, suffix, Close)                                                                                    \
    COMPOUND(T, channels, suffix, Tophat)                                                                                   \
    COMPOUND(T, channels, suffix, Blackhat)                                                                                 \
    COMPOUND(T, channels, suffix, Gradient)
    COMPOUNDS(Zel8u, 1, 8u_C1R)
    COMPOUNDS(Zel8u, 3, 8u_C3R)
    COMPOUNDS(Zel8u, 4, 8u_C4R)
    COMPOUNDS(Zel32f, 1, 32f_C1R)
    COMPOUNDS(Zel32f, 3, 32f_C3R)
    COMPOUNDS(Zel32f, 4, 32f_C4R)
    return true;
}();

} // namespace
