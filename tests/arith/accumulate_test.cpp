// The accumulators against their definition.
#include "support/calls.h"

#include <cmath>

using namespace zeltest;

namespace {

// The members of one source type; of 32f there is no Add without a mask.
#define MEMBERS(add, token)                                                                                            \
    std::make_tuple(add, zeliAddSquare_##token##_C1IR, zeliAddProduct_##token##_C1IR, zeliAddWeighted_##token##_C1IR,  \
                    zeliAdd_##token##_C1IMR, zeliAddSquare_##token##_C1IMR, zeliAddProduct_##token##_C1IMR,            \
                    zeliAddWeighted_##token##_C1IMR)
template <class T>
constexpr auto kMembers = [] {
    if constexpr (std::is_same_v<T, Zel8u>) return MEMBERS(zeliAdd_8u32f_C1IR, 8u32f);
    else if constexpr (std::is_same_v<T, Zel8s>) return MEMBERS(zeliAdd_8s32f_C1IR, 8s32f);
    else if constexpr (std::is_same_v<T, Zel16u>) return MEMBERS(zeliAdd_16u32f_C1IR, 16u32f);
    else return MEMBERS(nullptr, 32f);
}();

// Squares and products: exact integers of 8 bits, single precision otherwise.
template <class T>
float multiplied(T a, T b)
{
    return sizeof(T) == 1 ? float(int(a) * int(b)) : float(a) * float(b);
}

template <class T>
class Accumulate : public testing::Test {};
using Types = testing::Types<Zel8u, Zel8s, Zel16u, Zel32f>;
TYPED_TEST_SUITE(Accumulate, Types);

TYPED_TEST(Accumulate, EqualsDefinition)
{
    using T = TypeParam;
    const auto& [add, square, product, weighted, addMasked, squareMasked, productMasked, weightedMasked] = kMembers<T>;
    const float alpha = 0.3f;
    Random random(1);
    for (Texture texture : {Texture::Noise, Texture::Extremes})
        for (ZeliSize size : withSeams({{1, 1}, {3, 2}, {8, 3}, {29, 4}, {512, 511}, {512, 512}})) {
            Image<T> a(random, size, texture), b(random, size, texture);
            Image<Zel8u> mask = makeMask(random, size, 66);
            mask.set(0, 0, 1);
            // wanted(s, t, m, old) of the elements of a and b, 1 where the mask is set, and what stood there before. The
            // arguments are those before and those behind the accumulator.
            const auto compare = [&](const char* what, const auto& wanted, auto member, auto before, auto... behind) {
                const auto once = [&] {
                    Image<Zel32f> dst(random, size, texture);
                    const auto run = [&](auto&... planes) { return call(member, planes..., dst, size, behind...); };
                    EXPECT_EQ(zelStatusOk, std::apply(run, before)) << what;
                    dst.expect([&](int x, int y) {
                        return wanted(a.at(x, y), b.at(x, y), mask.at(x, y) != 0 ? 1.0f : 0.0f, dst.before(x, y));
                    }, what);
                };
                if (size.height == 512) underAllThreadings(once);
                else once();
            };
            const std::tuple one = std::tie(a);
            const std::tuple oneMasked = std::tie(a, mask);
            const std::tuple two = std::tie(a, b);
            const std::tuple twoMasked = std::tie(a, b, mask);
            if constexpr (!std::is_null_pointer_v<decltype(add)>)
                compare("add", [](T s, T, float, float old) { return old + float(s); }, add, one);
            compare("add masked", [](T s, T, float m, float old) { return m * float(s) + old; }, addMasked, oneMasked);
            compare("square", [](T s, T, float, float old) { return old + multiplied(s, s); }, square, one);
            compare("square masked", [](T s, T, float m, float old) { return multiplied(s, s) * m + old; }, squareMasked,
                    oneMasked);
            compare("product", [](T s, T t, float, float old) { return old + multiplied(s, t); }, product, two);
            compare("product masked", [](T s, T t, float m, float old) { return multiplied(s, t) * m + old; }, productMasked,
                    twoMasked);
            compare("weighted", [=](T s, T, float, float old) { return old + (float(s) - old) * alpha; }, weighted, one,
                    alpha);
            compare("weighted masked", [=](T s, T, float m, float old) {
                return (float(s) - old) * (m != 0 ? alpha : 0.0f) + old;
            }, weightedMasked, oneMasked, alpha);
        }
}

TEST(AddWeighted32f, WritesElsewhere)
{
    Random random(2);
    const ZeliSize size = {531, 509};
    Image<Zel32f> s1(random, size), s2(random, size), dst(random, size);
    EXPECT_EQ(zelStatusOk, call(zeliAddWeighted_32f_C1R, s1, s2, dst, size, 0.7f));
    dst.expect([&](int x, int y) { return s2.at(x, y) + (s1.at(x, y) - s2.at(x, y)) * 0.7f; }, "weighted into dst");
    Checks(zeliAddWeighted_32f_C1R, s1, s2, dst, size, 1).usual().expect();
}

TEST(Accumulate, ShowsNanUnderTheMaskAndClearsTheSignOfZero)
{
    const Zel8u none = 0, highest = 255;
    const Zel32f nan = std::numeric_limits<Zel32f>::quiet_NaN();
    Zel32f sum = 0;
    zeliAdd_32f_C1IMR(&nan, 4, &none, 1, &sum, 4, {1, 1});
    EXPECT_TRUE(std::isnan(sum));
    sum = -0.0f;
    zeliAdd_8u32f_C1IMR(&highest, 1, &none, 1, &sum, 4, {1, 1});
    EXPECT_FALSE(std::signbit(sum));
}

// Frames of 16u are checked whole before the other planes. Positions are those of the planes.
TYPED_TEST(Accumulate, ChecksInOrder)
{
    using T = TypeParam;
    const auto& [add, square, product, weighted, addMasked, squareMasked, productMasked, weightedMasked] = kMembers<T>;
    Random random(3);
    const ZeliSize size{12, 3};
    Image<T> a(random, size), b(random, size);
    Image<Zel8u> mask(random, size);
    Image<Zel32f> dst(random, size);
    const auto expectChecks = [](auto checks, const std::vector<int>& frames, const std::vector<int>& others) {
        if (std::is_same_v<T, Zel16u>)
            checks.nulls().sizes().shortSteps(frames).oddSteps(frames).shortSteps(others).oddSteps(others).expect();
        else
            checks.usual().expect();
    };
    if constexpr (!std::is_null_pointer_v<decltype(add)>) expectChecks(Checks(add, a, dst, size), {0}, {2});
    expectChecks(Checks(square, a, dst, size), {0}, {2});
    expectChecks(Checks(product, a, b, dst, size), {0, 2}, {4});
    expectChecks(Checks(weighted, a, dst, size, 1), {0}, {2});
    for (auto member : {addMasked, squareMasked}) expectChecks(Checks(member, a, mask, dst, size), {0}, {2, 4});
    expectChecks(Checks(productMasked, a, b, mask, dst, size), {0, 2}, {4, 6});
    expectChecks(Checks(weightedMasked, a, mask, dst, size, 1), {0}, {2, 4});
}

} // namespace
