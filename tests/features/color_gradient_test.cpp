// Gradients of colour images against their definition.
#include "support/calls.h"

#include <cmath>

using namespace zeltest;

namespace {

template <class T>
constexpr auto fold = zeliGradientColorToGray_8u_C3C1R;
template <>
constexpr auto fold<Zel16u> = zeliGradientColorToGray_16u_C3C1R;
template <>
constexpr auto fold<Zel32f> = zeliGradientColorToGray_32f_C3C1R;

Zel8u definition(int a, int b, int c, ZeliNormType norm)
{
    if (norm == zeliNormInf) return Zel8u(std::max({a, b, c}));
    if (norm == zeliNormL1) return Zel8u(((a + b + c) * 1365 + 2048) >> 12);
    return Zel8u(std::sqrt(double(float(a * a + b * b + c * c) / 3.0f)) + 0.5);
}
Zel16u definition(unsigned a, unsigned b, unsigned c, ZeliNormType norm)
{
    if (norm == zeliNormInf) return Zel16u(std::max({a, b, c}));
    if (norm == zeliNormL1) return Zel16u(((a + b + c) * 5461 + 8192) >> 14);
    return Zel16u(std::sqrt((double(a) * a + double(b) * b + double(c) * c) / 3.0) + 0.5);
}
float definition(float a, float b, float c, ZeliNormType norm)
{
    const float x = std::fabs(a), y = std::fabs(b), z = std::fabs(c), larger = x > y ? x : y;
    if (norm == zeliNormInf) return larger > z ? larger : z;
    return norm == zeliNormL1 ? x + y + z : std::sqrt(a * a + b * b + c * c);
}

template <class T>
using Wide = std::conditional_t<std::is_same_v<T, Zel8u>, int, std::conditional_t<std::is_same_v<T, Zel16u>, unsigned, float>>;

template <class T>
void expectDefinition(Random& random, const Image<T>& src)
{
    const ZeliSize size{src.width() / 3, src.height()};
    for (ZeliNormType norm : {zeliNormInf, zeliNormL1, zeliNormL2}) {
        Image<T> dst(random, size);
        EXPECT_EQ(zelStatusOk, call(fold<T>, src, dst, size, norm));
        dst.expect([&](int x, int y) {
            const auto channel = [&](int c) { return Wide<T>(src.at(3 * x + c, y)); };
            return definition(channel(0), channel(1), channel(2), norm);
        }, "norm " + std::to_string(norm));
    }
}

template <class T>
class ColorGradient : public testing::Test {};
using Types = testing::Types<Zel8u, Zel16u, Zel32f>;
TYPED_TEST_SUITE(ColorGradient, Types);

TYPED_TEST(ColorGradient, EqualsDefinition)
{
    Random random(1);
    for (ZeliSize size : withSeams({{1, 1}, {2, 3}, {3, 2}, {5, 2}, {7, 5}, {9, 1}, {70, 40}}))
        for (Texture texture : {Texture::Noise, Texture::Extremes, Texture::Smooth})
            expectDefinition(random, Image<TypeParam>(random, 3 * size.width, size.height, texture));
}

TEST(ColorGradient8u, AllSumsOfSquares)
{
    Random random(2);
    Image<Zel8u> src(random, 3 * 256 * 16, 256 * 16); // all pairs, with c near the larger one and anywhere
    src.fill([&](int x, int y) {
        const int a = x / 3 % 256, b = y % 256, c = (x / 3 / 256) * 16 + y / 256;
        return x % 3 == 0 ? a : x % 3 == 1 ? b : c;
    });
    expectDefinition(random, src);
}

TEST(ColorGradient16u, RootsAtTheirBounds)
{
    Random random(3);
    Image<Zel16u> src(random, 3 * 1000, 300); // nearly equal channels, whose mean of squares is near a half root
    src.fill([&](int x, int y) { return std::clamp(int((x / 3 + 1000 * y) * 0.21845) + random.between(-1, 1), 0, 65535); });
    expectDefinition(random, src);
}

// The team is the caller's; every row is made whatever it is.
TYPED_TEST(ColorGradient, UnderAllThreadings)
{
    Random random(4);
    const Image<TypeParam> src(random, 3 * 67, 131);
    underAllThreadings([&] { expectDefinition(random, src); });
    omp_set_max_active_levels(2);
#pragma omp parallel num_threads(3)
    {
#pragma omp master
        expectDefinition(random, src);
    }
    omp_set_max_active_levels(1);
}

TYPED_TEST(ColorGradient, ChecksInOrder)
{
    Random random(5);
    const ZeliSize size{20, 4};
    Image<TypeParam> src(random, 60, 4), dst(random, size);
    Checks(fold<TypeParam>, src, dst, size, int(zeliNormL1)).usual().values(-1, zelStatusBadArgument, {-1, 3}).expect();
}

TYPED_TEST(ColorGradient, White)
{
    const TypeParam white = std::numeric_limits<TypeParam>::max(), src[] = {white, white, white};
    if (std::is_floating_point_v<TypeParam>) return;
    for (auto [norm, wanted] : {std::pair(zeliNormInf, white), {zeliNormL1, sizeof white == 1 ? white : TypeParam(65531)},
                                {zeliNormL2, white}}) {
        TypeParam dst = 0;
        EXPECT_EQ(zelStatusOk, fold<TypeParam>(src, sizeof src, &dst, sizeof dst, {1, 1}, norm));
        EXPECT_EQ(wanted, dst);
    }
}

} // namespace
