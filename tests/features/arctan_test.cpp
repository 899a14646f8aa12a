// zelibFastArctan_32f against its definition, one block of four after the other.
#include "support/calls.h"

#include <cmath>

using namespace zeltest;

namespace {

// The results of four pairs.
std::array<float, 4> definition(std::array<float, 4> y, std::array<float, 4> x)
{
    const float offsets[] = {-0.14050041f,  90.14050293f,  180.14050293f, 89.85949707f,
                             360.14050293f, 269.85949707f, 179.85949707f, 270.14050293f};
    std::array<double, 4> n, d;
    std::array<float, 4> result;
    for (std::size_t i = 0; i < 4; ++i) {
        const float ay = std::fabs(y[i]), ax = std::fabs(x[i]);
        n[i] = ay > ax ? ax : ay;
        d[i] = ay > ax ? ay : ax;
        if (d[i] == 0) d[i] = 1;
    }
    const double even = d[0] * d[2], odd = d[1] * d[3], reciprocal = 1 / (even * odd);
    for (std::size_t i = 0; i < 4; ++i) {
        const double magnitude = float(n[i] * d[i ^ 2] * (reciprocal * (i % 2 ? even : odd)));
        const bool none = y[i] == 0 && x[i] == 0;
        const int k = none ? 0 : (std::fabs(y[i]) > std::fabs(x[i])) + 2 * std::signbit(x[i]) + 4 * std::signbit(y[i]);
        const double t = k == 1 || k == 2 || k == 4 || k == 7 ? -magnitude : magnitude;
        result[i] = float((std::fabs(t) * -15.813189506530762 + 61.09419631958008) * t + double(offsets[k]));
    }
    return result;
}

void expectDefinition(const Image<float>& y, const Image<float>& x)
{
    const int length = x.width();
    Random random(7);
    Image<float> apart(random, length, 1), overY = y, overX = x;
    EXPECT_EQ(zelStatusOk, zelibFastArctan_32f(y.data(), x.data(), apart.data(), length));
    EXPECT_EQ(zelStatusOk, zelibFastArctan_32f(overY.data(), x.data(), overY.data(), length));
    EXPECT_EQ(zelStatusOk, zelibFastArctan_32f(y.data(), overX.data(), overX.data(), length));
    const auto wanted = [&](int i, int) {
        std::array<float, 4> fourY, fourX;
        for (int k = 0; k < 4; ++k) {
            const int at = i / 4 * 4 + k;
            fourY[std::size_t(k)] = at < length ? y.at(at, 0) : 1;
            fourX[std::size_t(k)] = at < length ? x.at(at, 0) : 1;
        }
        return definition(fourY, fourX)[std::size_t(i % 4)];
    };
    apart.expect(wanted, "angles");
    overY.expect(wanted, "angles over y");
    overX.expect(wanted, "angles over x");
}

TEST(FastArctan, EqualsDefinition)
{
    Random random(1);
    for (int length = 1; length <= 40; ++length)
        for (Texture texture : {Texture::Noise, Texture::Smooth, Texture::Extremes})
            for (int turn = 0; turn < 8; ++turn)
                expectDefinition(Image<float>(random, length, 1, texture), Image<float>(random, length, 1, texture));
    Image<float> y(random, 10000, 1), x(random, 10000, 1); // of all sizes, which share their divisions
    for (auto* v : {&y, &x})
        v->fill([&](int, int) { return std::ldexp(float(random.between(-4000, 4000)), random.between(-150, 110)); });
    expectDefinition(y, x);
}

TEST(FastArctan, Examples)
{
    const float y[] = {0, 0, 1, 0, 0, -0.f, 3, -2, 1, -1, -0.f, -0.f}, x[] = {0, 1, 1, -1, -0.f, -0.f, 0, 0, -1, 1, 0, 5};
    const float wanted[] = {-0.14050041f, -0.14050041f, 45.140507f,    180.1405f,  -0.14050041f, -0.14050041f,
                            90.1405f,     269.8595f,    134.8595f, 314.8595f,   -0.14050041f, 360.1405f};
    float dst[12];
    EXPECT_EQ(zelStatusOk, zelibFastArctan_32f(y, x, dst, 12));
    for (int i = 0; i < 12; ++i) EXPECT_NEAR(wanted[i], dst[i], 2e-5) << y[i] << ", " << x[i];
    for (int degrees = 1; degrees < 360; ++degrees) {
        const float angle = float(degrees) * 3.14159265f / 180, sine = std::sin(angle), cosine = std::cos(angle);
        zelibFastArctan_32f(&sine, &cosine, dst, 1);
        EXPECT_NEAR(float(degrees), dst[0], 0.17);
    }
}

TEST(FastArctan, ChecksInOrder)
{
    Random random(2);
    Image<float> y(random, 9, 1), x(random, 9, 1), dst(random, 9, 1);
    Checks checks(zelibFastArctan_32f, y.data(), x.data(), dst.data(), 9);
    checks.watch(dst).nulls().values(3, zelStatusBadSize, {0, -1}).expect();
}

} // namespace
