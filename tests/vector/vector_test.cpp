// The operations of the instruction set that this test is compiled for, against their definitions: those of portable.h, and a
// line for each that is made of others. All on edge values and on random ones.
#include "support/images.h"

#include "vector/vector.h"

#include <array>
#include <bit>
#include <cmath>

using namespace zelcv;
using namespace zeltest;

namespace {

Random random_(1);

// Some of the values that operations could take wrongly, or any.
template <class T>
T someValue()
{
    using Limits = std::numeric_limits<T>;
    if constexpr (std::is_floating_point_v<T>) {
        const T edges[] = {T(0), T(-0.0), T(0.5), T(-0.99), T(32767.5), T(-32769), T(2147483520), T(2147483648.0),
                           T(-2147483648.0), T(-2147483904.0), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN(),
                           Limits::denorm_min(), Limits::max()};
        return random_.between(0, 2) != 0 ? edges[random_.between(0, int(std::size(edges)) - 1)]
                                          : T(random_.between(-100000, 100000)) / T(16);
    } else {
        const T edges[] = {0, 1, T(-1), Limits::min(), Limits::max(), T(Limits::min() + 1), T(Limits::max() / 2 + 1), T(128),
                           T(-129), T(32768)};
        if (random_.between(0, 2) != 0) return edges[random_.between(0, int(std::size(edges)) - 1)];
        return T(std::uint64_t(random_.next()) << 32 | random_.next());
    }
}
template <class T>
Vec<T> someVector()
{
    return portable::lanes<T>([](int) { return someValue<T>(); });
}

template <class T>
bool same(T a, T b)
{
    return std::memcmp(&a, &b, sizeof a) == 0 || (a != a && b != b);
}
template <class V>
std::vector<LaneOf<V>> lanesOf(V v)
{
    std::vector<LaneOf<V>> lanes(sizeof v / sizeof v[0]);
    std::memcpy(lanes.data(), &v, sizeof v);
    return lanes;
}
template <class V, int n>
auto lanesOf(const Group<V, n>& group)
{
    std::vector<LaneOf<V>> lanes(sizeof group / sizeof group.part[0][0]);
    std::memcpy(lanes.data(), &group, sizeof group);
    return lanes;
}
inline std::vector<Zel32u> lanesOf(Zel32u bits) { return {bits}; }

// operation(arguments...) equals definition(arguments...) in all lanes, for vectors of the types told.
template <class... T, class Operation, class Definition>
void compare(const char* what, const Operation& operation, const Definition& definition)
{
    for (int time = 0; time < 300; ++time) {
        const std::tuple<Vec<T>...> arguments{someVector<T>()...};
        const auto got = lanesOf(std::apply(operation, arguments)), wanted = lanesOf(std::apply(definition, arguments));
        ASSERT_EQ(got.size(), wanted.size()) << what;
        for (std::size_t i = 0; i < got.size(); ++i)
            ASSERT_TRUE(same(got[i], wanted[i])) << what << ", lane " << i << ": " << +got[i] << " for " << +wanted[i];
    }
}

#define COMPARE(operation, ...)                                                                                      \
    compare<__VA_ARGS__>(#operation " of " #__VA_ARGS__, [](auto... v) { return isa::operation(v...); },             \
                         [](auto... v) { return portable::operation(v...); })

TEST(Vector, OperationsOfTheInstructionSetAreThoseOfPlainVectors)
{
    COMPARE(subtractSaturating, Zel8u, Zel8u);
    COMPARE(subtractSaturating, Zel16u, Zel16u);
    COMPARE(addSaturating, Zel8u, Zel8u);
    COMPARE(minimum, Zel32f, Zel32f);
    COMPARE(minimum, Zel64f, Zel64f);
    COMPARE(maximum, Zel32f, Zel32f);
    COMPARE(maximum, Zel64f, Zel64f);
    COMPARE(multiplyAddPairs, Zel16s, Zel16s);
    COMPARE(multiplyHigh, Zel16s, Zel16s);
    COMPARE(multiplyHigh, Zel16u, Zel16u);
    COMPARE(addBytePairs, Zel8u);
    COMPARE(sumBytes, Zel8u);
    COMPARE(minimum, Zel32f, Zel32f);
    COMPARE(maximum, Zel32f, Zel32f);
    COMPARE(squareRoot, Zel32f);
    COMPARE(squareRoot, Zel64f);
    COMPARE(shiftBytesUp<2>, Zel8u);
    COMPARE(shiftBytesUp<8>, Zel8u);
    COMPARE(shiftBytesDown<1>, Zel8u);
    COMPARE(shiftBytesDown<6>, Zel8u);
    COMPARE(shiftAllUp<1>, Zel8u);
    COMPARE(shiftAllUp<16>, Zel8u);
    COMPARE(shiftAllDown<3>, Zel8u);
    COMPARE(shiftAllDown<16>, Zel8u);
    COMPARE(truncate, Zel32f);
    COMPARE(widen<Zel16u>, Zel8u);
    COMPARE(widen<Zel32s>, Zel8u);
    COMPARE(widen<Zel16s>, Zel8s);
    COMPARE(widen<Zel32s>, Zel8s);
    COMPARE(widen<Zel32u>, Zel16u);
    COMPARE(widen<Zel32s>, Zel16s);
    COMPARE(widen<std::int64_t>, Zel32s);
    COMPARE(widen<Zel64f>, Zel32s);
    COMPARE(widen<Zel64f>, Zel32f);
    COMPARE(narrowPairs<Zel16s>, Zel32s, Zel32s);
    COMPARE(narrowPairs<Zel8u>, Zel16s, Zel16s);
    COMPARE(narrowPairs<Zel8s>, Zel16s, Zel16s);
    COMPARE(laneBits, Zel8s);
    COMPARE(laneBits, Zel16s);
    COMPARE(laneBits, Zel32s);
    for (const std::int64_t count : {0, 1, 31, 63, 64, 65, 1000})
        compare<std::uint64_t>("shiftLeft", [=](auto v) { return isa::shiftLeft(v, count); },
                               [=](auto v) { return portable::shiftLeft(v, count); });
    compare<Zel64f, Zel64f>("truncate", [](auto a, auto b) { return isa::truncate({a, b}); },
                            [](auto a, auto b) { return portable::truncate({a, b}); });
    compare<Zel64f, Zel64f>("toFloat", [](auto a, auto b) { return isa::toFloat({a, b}); },
                            [](auto a, auto b) { return portable::toFloat({a, b}); });
    compare<Zel8s>("loadWidened", [](auto v) { return isa::loadWidened<Zel32s>(lanesOf(v).data()); },
                   [](auto v) { return portable::widen<Zel32s>(v); });
}

template <class T, class Lane>
void compareLanes(const char* what, const Lane& lane, auto operation)
{
    compare<T, T>(what, operation, [&](Vec<T> a, Vec<T> b) {
        return portable::lanes<LaneOf<decltype(operation(a, b))>>([&](int i) { return lane(i, a, b); });
    });
}

TEST(Vector, OperationsMadeOfOthersAreWhatTheirNamesSay)
{
    constexpr auto difference = [](int i, auto a, auto b) { return std::abs(int(a[i]) - int(b[i])); };
    compareLanes<Zel8u>("absoluteDifference", difference, [](auto a, auto b) { return absoluteDifference(a, b); });
    compareLanes<Zel8s>("absoluteDifference", difference, [](auto a, auto b) { return absoluteDifference(a, b); });
    compareLanes<Zel16u>("absoluteDifference", difference, [](auto a, auto b) { return absoluteDifference(a, b); });
    constexpr auto smaller = [](int i, auto a, auto b) { return a[i] < b[i] ? a[i] : b[i]; };
    constexpr auto larger = [](int i, auto a, auto b) { return a[i] > b[i] ? a[i] : b[i]; };
    compareLanes<Zel32f>("minimum", smaller, [](auto a, auto b) { return minimum(a, b); });
    compareLanes<Zel16u>("minimum", smaller, [](auto a, auto b) { return minimum(a, b); });
    compareLanes<Zel64f>("maximum", larger, [](auto a, auto b) { return maximum(a, b); });
    compareLanes<Zel16u>("maximum", larger, [](auto a, auto b) { return maximum(a, b); });
    compareLanes<Zel8s>("absolute", [](int i, auto a, auto) { return std::abs(int(a[i])); },
                        [](auto a, auto) { return absolute(a); });
    compareLanes<Zel16s>("absolute", [](int i, auto a, auto) { return std::abs(int(a[i])); },
                         [](auto a, auto) { return absolute(a); });
    compareLanes<Zel32f>("absolute", [](int i, auto a, auto) { return std::fabs(a[i]); },
                         [](auto a, auto) { return absolute(a); });

    constexpr int n = kLanes<Zel16s>;
    const auto pick = [](bool second, auto a, auto b, int i) { return second ? b[i] : a[i]; };
    compareLanes<Zel16s>("interleaveLow", [=](int i, auto a, auto b) { return pick(i % 2, a, b, i / 8 * 8 + i % 8 / 2); },
                         [](auto a, auto b) { return interleaveLow(a, b); });
    compareLanes<Zel16s>("interleaveHigh", [=](int i, auto a, auto b) { return pick(i % 2, a, b, i / 8 * 8 + 4 + i % 8 / 2); },
                         [](auto a, auto b) { return interleaveHigh(a, b); });
    compareLanes<Zel16s>("upperHalvesInGroups", [=](int i, auto a, auto b) {
        return pick(i % 8 >= 4, a, b, i / 8 * 8 + i % 4 * 2 + 1);
    }, [](auto a, auto b) { return upperHalvesInGroups(a, b); });
    compareLanes<Zel16s>("secondHalves", [](int i, auto a, auto b) { return i < n / 2 ? a[i + n / 2] : b[i]; },
                         [](auto a, auto b) { return secondHalves(a, b); });
    compareLanes<Zel16s>("sortGroups of what was interleaved", [=](int i, auto a, auto b) { return pick(i % 2, a, b, i / 2); },
                         [](auto a, auto b) { return sortGroups(interleaveLow(a, b), interleaveHigh(a, b)).part[0]; });
    compareLanes<Zel16s>("widenSorted of it", [=](int i, auto a, auto b) {
        const int at = i + 3 * kLanes<Zel32s>;
        return Zel32s(pick(at % 2, a, b, at / 2));
    }, [](auto a, auto b) { return widenSorted<Zel32s>(interleaveLow(a, b), interleaveHigh(a, b)).part[3]; });
    compareLanes<Zel16s>("narrowInOrder", [](int i, auto a, auto b) {
        return Zel8s(std::clamp<int>(i < n ? a[i] : b[i - n], -128, 127));
    }, [](auto a, auto b) { return narrowInOrder<Zel8s>(a, b); });
    compareLanes<Zel16u>("prefixSumsInGroups", [](int i, auto a, auto) {
        unsigned sum = 0;
        for (int k = i / 8 * 8; k <= i; ++k) sum += a[k];
        return Zel16u(sum);
    }, [](auto a, auto) { return prefixSumsInGroups(a); });
    compareLanes<Zel32u>("bytesFromBits", [](int i, auto a, auto) { return Zel8u(a[0] >> i % 32 & 1 ? 255 : 0); },
                         [](auto a, auto) { return bytesFromBits(a[0]); });
    compareLanes<Zel8u>("loadMask", [](int i, auto a, auto) { return a[i + 3 * kLanes<Zel32s>] ? -1 : 0; },
                        [](auto a, auto) { return loadMask<Zel32s>(lanesOf(a).data()).part[3]; });
    compareLanes<Zel8u>("convert", [](int i, auto a, auto) { return Zel32f(a[i + 3 * kLanes<Zel32f>]); },
                        [](auto a, auto) { return convert<Zel32f>(a).part[3]; });
}

} // namespace
