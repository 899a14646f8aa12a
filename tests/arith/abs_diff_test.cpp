// zeliAbsDiff and zeliAbsDiffC against their definition.
#include "support/calls.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

using namespace zeltest;

namespace {

template <class T>
T definition(T a, T b)
{
    if constexpr (std::is_floating_point_v<T>)
        return std::fabs(a - b);
    else
        return T(std::abs(int(a) - int(b)));
}

template <class T_, auto diff, auto diffC>
struct Members {
    using T = T_;
    static constexpr auto kDiff = diff, kDiffC = diffC;
};
using Types = testing::Types<Members<Zel8u, zeliAbsDiff_8u_C1R, zeliAbsDiffC_8u_C1R>,
                             Members<Zel16u, zeliAbsDiff_16u_C1R, zeliAbsDiffC_16u_C1R>,
                             Members<Zel32f, zeliAbsDiff_32f_C1R, zeliAbsDiffC_32f_C1R>>;
template <class M>
class AbsDiff : public testing::Test {};
TYPED_TEST_SUITE(AbsDiff, Types);

// Small and odd shapes, and shapes on both sides of the parallel gate.
const auto kSizes = withSeams({{1, 1}, {3, 5}, {67, 3}, {511, 512}, {512, 512}, {1031, 257}});

TYPED_TEST(AbsDiff, EqualsDefinition)
{
    using T = typename TypeParam::T;
    Random random(1);
    for (Texture texture : {Texture::Noise, Texture::Extremes, Texture::Smooth})
        for (ZeliSize size : kSizes) {
            Image<T> a(random, size, texture), b(random, size, texture);
            const auto wanted = [&](int x, int y) { return definition(a.at(x, y), b.at(x, y)); };
            underAllThreadings([&] {
                Image<T> dst(random, size);
                EXPECT_EQ(zelStatusOk, call(TypeParam::kDiff, a, b, dst, size));
                dst.expect(wanted, "absolute difference");
            });
            Image<T> first = a, second = b;
            EXPECT_EQ(zelStatusOk, call(TypeParam::kDiff, first, b, first, size));
            EXPECT_EQ(zelStatusOk, call(TypeParam::kDiff, a, second, second, size));
            first.expect(wanted, "into the first source");
            second.expect(wanted, "into the second source");
        }
}

TYPED_TEST(AbsDiff, ConstantEqualsDefinitionAndIsLimited)
{
    using T = typename TypeParam::T;
    Random random(2);
    const double largest = double(std::numeric_limits<T>::max());
    for (double value : {0.0, 7.0, -5.0, 300.0, 70000.0})
        for (ZeliSize size : withSeams({{37, 5}, {512, 513}})) {
            const T used = T(std::is_integral_v<T> ? std::clamp(value, 0.0, largest) : value);
            Image<T> src(random, size), dst(random, size);
            EXPECT_EQ(zelStatusOk, call(TypeParam::kDiffC, src, dst, size, value));
            const auto wanted = [&](int x, int y) { return definition(src.before(x, y), used); };
            dst.expect(wanted, "constant");
            EXPECT_EQ(zelStatusOk, call(TypeParam::kDiffC, src, src, size, value));
            src.expect(wanted, "constant, in place");
        }
}

TYPED_TEST(AbsDiff, TakesPointersOffTheirElementBoundary)
{
    using T = typename TypeParam::T;
    Random random(3);
    constexpr int width = 44, bytes = width * int(sizeof(T));
    std::vector<Image<Zel8u>> planes; // one byte longer than a row, which ends at their end
    for (int i = 0; i < 3; ++i) planes.emplace_back(random, 1 + bytes, 1);
    const auto row = [&](int i) { return reinterpret_cast<T*>(planes[i].data() + 1); };
    EXPECT_EQ(zelStatusOk, TypeParam::kDiff(row(0), bytes, row(1), bytes, row(2), bytes, {width, 1}));
    for (int x = 0; x < width; ++x) {
        T elements[3];
        for (int i = 0; i < 3; ++i) std::memcpy(&elements[i], planes[i].data() + 1 + std::size_t(x) * sizeof(T), sizeof(T));
        const T wanted = definition(elements[0], elements[1]);
        EXPECT_TRUE(wanted == elements[2] || wanted != wanted) << x; // bytes at random are NaN now and then
    }
}

TEST(AbsDiff8uC3, IsThreeTimesAsWide)
{
    Random random(4);
    for (ZeliSize size : {ZeliSize{1, 1}, {300, 300}}) {
        const ZeliSize flat{3 * size.width, size.height};
        Image<Zel8u> a(random, flat), b(random, flat), dst(random, flat);
        EXPECT_EQ(zelStatusOk, call(zeliAbsDiff_8u_C3R, a, b, dst, size));
        dst.expect([&](int x, int y) { return definition(a.at(x, y), b.at(x, y)); }, "three channels");
        Checks(zeliAbsDiff_8u_C3R, a, b, dst, size).usual().expect();
    }
}

TYPED_TEST(AbsDiff, ChecksInOrder)
{
    Random random(5);
    const ZeliSize size{20, 4};
    Image<typename TypeParam::T> a(random, size), b(random, size), dst(random, size);
    Checks(TypeParam::kDiff, a, b, dst, size).usual().expect();
    Checks(TypeParam::kDiffC, a, dst, size, 1).usual().expect();
}

} // namespace
