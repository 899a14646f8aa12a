#include "support/measure.h"
#include "support/photograph.h"

#include <cstring>

using namespace zelbench;

namespace {

// Reconstruction from a marker 40 below (above) a photograph: its domes (basins) of that height are cut off. Each call copies
// the marker first, which is in the count.
template <class T, class SizeFunction, class Function>
Prepare domes(SizeFunction sizeFunction, Function function, bool dilates, ZeliNormType norm)
{
    return [=](ZeliSize size) -> std::function<void()> {
        const std::vector<float> picture = photograph(size);
        Plane<T> mask(size), start(size), marker(size);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                const float value = picture[std::size_t(y) * std::size_t(size.width) + std::size_t(x)];
                mask.row(y)[x] = T(value);
                start.row(y)[x] = T(dilates ? std::max(0.f, value - 40) : std::min(255.f, value + 40));
            }
        int bytes = 0;
        require(sizeFunction(size, &bytes));
        const auto buffer = scratch(bytes);
        return [=] {
            std::memcpy(marker.data(), start.data(), std::size_t(start.step()) * std::size_t(size.height));
            require(function(mask.data(), mask.step(), marker.data(), marker.step(), size, buffer.get(), norm));
        };
    };
}

const bool registered = [] {
#define RECONSTRUCT(type, T)                                                                                                 \
    for (const ZeliNormType norm : {ZeliNormType(zeliNormL1), ZeliNormType(zeliNormInf)}) {                                  \
        const std::string remark = norm == zeliNormInf ? "/8 neighbours" : "/4 neighbours";                                  \
        measure("zeliMorphReconstructDilate_" #type "_C1IR" + remark, 3 * sizeof(T),                                         \
                domes<T>(zeliMorphReconstructGetBufferSize_##type##_C1, zeliMorphReconstructDilate_##type##_C1IR, true,      \
                         norm));                                                                                             \
        measure("zeliMorphReconstructErode_" #type "_C1IR" + remark, 3 * sizeof(T),                                          \
                domes<T>(zeliMorphReconstructGetBufferSize_##type##_C1, zeliMorphReconstructErode_##type##_C1IR, false,      \
                         norm));                                                                                             \
    }
    RECONSTRUCT(8u, Zel8u)
    RECONSTRUCT(16u, Zel16u)
    RECONSTRUCT(32f, Zel32f)
    RECONSTRUCT(64f, Zel64f)
    return true;
}();

} // namespace
