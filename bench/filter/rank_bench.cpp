#include "support/measure.h"

using namespace zelbench;

namespace {

template <class T, class SizeFunction, class Function>
Prepare filter(SizeFunction sizeFunction, Function function, int channels, ZeliSize mask)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, channels), dst(size, channels);
        int bytes = 0;
        require(sizeFunction(size.width, mask, &bytes));
        auto buffer = scratch(bytes);
        return [=] {
            require(function(src.data(), src.step(), dst.data(), dst.step(), size, mask,
                             ZeliPoint{mask.width / 2, mask.height / 2}, buffer.get()));
        };
    };
}

const bool registered = [] {
#define RANK(T, layout, channels)                                                                                         \
    for (const auto& [side, remark] : {std::pair{3, "/3x3"}, {5, "/5x5"}, {15, "/15x15"}, {51, "/51x51"}}) {              \
        const ZeliSize mask{side, side};                                                                                  \
        measure("zeliFilterMaxBorderReplicate_" #layout + std::string(remark), 2 * channels * sizeof(T),                  \
                filter<T>(zeliFilterMaxGetBufferSize_##layout, zeliFilterMaxBorderReplicate_##layout, channels, mask));   \
        measure("zeliFilterMinBorderReplicate_" #layout + std::string(remark), 2 * channels * sizeof(T),                  \
                filter<T>(zeliFilterMinGetBufferSize_##layout, zeliFilterMinBorderReplicate_##layout, channels, mask));   \
    }
    RANK(Zel8u, 8u_C1R, 1)
    RANK(Zel8u, 8u_C3R, 3)
    RANK(Zel8u, 8u_C4R, 4)
    RANK(Zel32f, 32f_C1R, 1)
    RANK(Zel32f, 32f_C3R, 3)
    RANK(Zel32f, 32f_C4R, 4)
    return true;
}();

} // namespace
