#include "stats/masks.h"

#include <set>

using namespace zelbench;

namespace {

double result;

// `tail` is the channel of interest where there is one.
template <class T, class Function, class... Tail>
Prepare one(Function function, Plane<Zel8u> makeMask(ZeliSize), Tail... tail)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src(size, sizeof...(Tail) ? 3 : 1);
        const auto mask = makeMask(size);
        return [=] { require(function(src.data(), src.step(), mask.data(), mask.step(), size, tail..., &result)); };
    };
}

template <class T, class Function, class... Tail>
Prepare two(Function function, Plane<Zel8u> makeMask(ZeliSize), Tail... tail)
{
    return [=](ZeliSize size) -> std::function<void()> {
        Plane<T> src1(size, sizeof...(Tail) ? 3 : 1), src2(size, sizeof...(Tail) ? 3 : 1);
        const auto mask = makeMask(size);
        return [=] {
            require(function(src1.data(), src1.step(), src2.data(), src2.step(), mask.data(), mask.step(), size, tail...,
                             &result));
        };
    };
}

// Members of one channel that run on one thread, whatever the setting.
bool isSerial(const std::string& name)
{
    static const std::set<std::string> serial = {
        "zeliNormDiff_Inf_8u", "zeliNormDiff_Inf_8s", "zeliNormDiff_Inf_16u", "zeliNormDiff_Inf_32f", "zeliNormDiff_L1_32f",
        "zeliNormDiff_L2_32f", "zeliNormRel_L1_32f",  "zeliNormRel_L2_32f",   "zeliNormRel_L1_8u"};
    return serial.count(name) != 0;
}

#define MEASURE(prepare, T, name, bytes)                                                     \
    measure(#name "_C1MR", bytes + 1, prepare<T>(name##_C1MR, randomMask));                  \
    measure(#name "_C1MR/solid", bytes + 1, prepare<T>(name##_C1MR, solidMask));             \
    if (!isSerial(#name))                                                                    \
        measure(#name "_C1MR/2 threads", bytes + 1, prepare<T>(name##_C1MR, randomMask), 2); \
    measure(#name "_C3CMR", 3 * (bytes) + 1, prepare<T>(name##_C3CMR, randomMask, 2));
#define MEASURE_NORM(T, norm, token, size)                   \
    MEASURE(one, T, zeliNorm_##norm##_##token, size)         \
    MEASURE(two, T, zeliNormDiff_##norm##_##token, 2 * size) \
    MEASURE(two, T, zeliNormRel_##norm##_##token, 2 * size)
#define MEASURE_TYPE(T, token, size)  \
    MEASURE_NORM(T, Inf, token, size) \
    MEASURE_NORM(T, L1, token, size)  \
    MEASURE_NORM(T, L2, token, size)

const bool registered = [] {
    MEASURE_TYPE(Zel8u, 8u, 1)
    MEASURE_TYPE(Zel8s, 8s, 1)
    MEASURE_TYPE(Zel16u, 16u, 2)
    MEASURE_TYPE(Zel32f, 32f, 4)
    return true;
}();

} // namespace
