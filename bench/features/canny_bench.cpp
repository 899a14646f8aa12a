#include "support/measure.h"
#include "support/photograph.h"

#include <algorithm>
#include <vector>

using namespace zelbench;

namespace {

// Sobel 3x3 derivatives of the photograph, and its edges. About one pixel in twelve exceeds the low threshold.
template <class T, class Function>
Prepare edges(Function function)
{
    return [=](ZeliSize size) -> std::function<void()> {
        const std::vector<float> picture = photograph(size);
        Plane<T> dx(size), dy(size);
        Plane<Zel8u> dst(size);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                const auto at = [&](int i, int j) {
                    return picture[std::size_t(std::clamp(y + j, 0, size.height - 1)) * std::size_t(size.width) +
                                   std::size_t(std::clamp(x + i, 0, size.width - 1))];
                };
                dx.row(y)[x] = T(at(1, -1) - at(-1, -1) + 2 * (at(1, 0) - at(-1, 0)) + at(1, 1) - at(-1, 1));
                dy.row(y)[x] = T(at(-1, 1) - at(-1, -1) + 2 * (at(0, 1) - at(0, -1)) + at(1, 1) - at(1, -1));
            }
        int bytes = 0;
        require(zeliCannyGetSize(size, &bytes));
        const auto buffer = scratch(bytes);
        return [=] {
            require(function(dx.data(), dx.step(), dy.data(), dy.step(), dst.data(), dst.step(), size, 60, 140,
                             buffer.get()));
        };
    };
}

const bool registered = [] {
    measure("zeliCanny_16s8u_C1R", 5, edges<Zel16s>(zeliCanny_16s8u_C1R));
    measure("zeliCanny_32f8u_C1R", 9, edges<Zel32f>(zeliCanny_32f8u_C1R));
    return true;
}();

} // namespace
