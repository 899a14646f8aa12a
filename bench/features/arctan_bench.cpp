#include "support/measure.h"

using namespace zelbench;

namespace {

const bool registered = [] {
    measure("zelibFastArctan_32f", 12, [](ZeliSize size) -> std::function<void()> { // all pixels as one vector
        const ZeliSize line = {size.width * size.height, 1};
        Plane<Zel32f> y(line), x(line), dst(line);
        for (int i = 0; i < line.width; ++i) y.data()[i] -= 100, x.data()[i] -= float(i % 256);
        return [=] { require(zelibFastArctan_32f(y.data(), x.data(), dst.data(), line.width)); };
    });
    return true;
}();

} // namespace
