#include "support/measure.h"

#include <vector>

using namespace zelbench;

namespace {

// Dilation by a 5 by 5 mask: a paraboloid, whose elements have few values, or elements of 25 values.
template <class T, class InitAlloc, class Release, class Function>
Prepare byMask(InitAlloc initAlloc, Release release, Function function, bool paraboloid)
{
    return [=](ZeliSize size) -> std::function<void()> {
        using Element = std::conditional_t<sizeof(T) == 1, Zel32s, Zel32f>;
        std::vector<Element> mask;
        for (int y = -2; y <= 2; ++y)
            for (int x = -2; x <= 2; ++x) mask.push_back(Element(paraboloid ? -3 * (x * x + y * y) : 5 * y - x));
        ZeliMorphGrayState* made = nullptr;
        require(initAlloc(&made, size, mask.data(), {5, 5}, {2, 2}));
        const std::shared_ptr<ZeliMorphGrayState> state(made, release);
        Plane<T> src(size), dst(size);
        return [=] {
            require(function(src.data(), src.step(), dst.data(), dst.step(), size, zeliBorderReplicate, state.get()));
        };
    };
}

const bool registered = [] {
#define GRAY(name, type, T)                                                                                              \
    for (const bool paraboloid : {true, false})                                                                          \
        measure(std::string("zeliGray" #name "Border_" #type "_C1R/5x5/") + (paraboloid ? "paraboloid" : "25 values"),  \
                2 * sizeof(T),                                                                                           \
                byMask<T>(zeliMorphGrayInitAlloc_##type##_C1R, zeliMorphGrayFree_##type##_C1R,                           \
                          zeliGray##name##Border_##type##_C1R, paraboloid));
    GRAY(Dilate, 8u, Zel8u)
    GRAY(Erode, 8u, Zel8u)
    GRAY(Dilate, 32f, Zel32f)
    GRAY(Erode, 32f, Zel32f)
    return true;
}();

} // namespace
