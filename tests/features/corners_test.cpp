// Corner measures against their definition, on top of the filters as they are.
#include "support/calls.h"

#include <cfenv>
#include <cmath>

using namespace zeltest;

namespace {

struct Options {
    int kernelKind, apertureSize, avgWindow;
};
const Options kOptions[] = {{0, 3, 3}, {0, 3, 5}, {0, 5, 3}, {0, 5, 5}, {1, 3, 3}, {1, 3, 5}};

template <class S>
struct Members;
template <>
struct Members<Zel8u> {
    using Derivative = Zel16s;
    static constexpr auto sobelVert = zeliFilterSobelVertBorder_8u16s_C1R, sobelHoriz = zeliFilterSobelHorizBorder_8u16s_C1R;
    static constexpr auto scharrVert = zeliFilterScharrVertBorder_8u16s_C1R;
    static constexpr auto scharrHoriz = zeliFilterScharrHorizBorder_8u16s_C1R;
    static constexpr auto minSize = zeliMinEigenValGetBufferSize_8u32f_C1R;
    static constexpr auto minEigenVal = zeliMinEigenVal_8u32f_C1R;
    static constexpr auto bothSize = zeliEigenValsVecsGetBufferSize_8u32f_C1R;
    static constexpr auto valsVecs = zeliEigenValsVecs_8u32f_C1R;
    static constexpr int planeBytes = 16;
};
template <>
struct Members<Zel32f> {
    using Derivative = Zel32f;
    static constexpr auto sobelVert = zeliFilterSobelVertBorder_32f_C1R, sobelHoriz = zeliFilterSobelHorizBorder_32f_C1R;
    static constexpr auto scharrVert = zeliFilterScharrVertBorder_32f_C1R;
    static constexpr auto scharrHoriz = zeliFilterScharrHorizBorder_32f_C1R;
    static constexpr auto minSize = zeliMinEigenValGetBufferSize_32f_C1R;
    static constexpr auto minEigenVal = zeliMinEigenVal_32f_C1R;
    static constexpr auto bothSize = zeliEigenValsVecsGetBufferSize_32f_C1R;
    static constexpr auto valsVecs = zeliEigenValsVecs_32f_C1R;
    static constexpr int planeBytes = 20;
};

// The averaged products of the derivatives.
struct Tensor {
    Image<Zel32f> a, b, c;
};
template <class S>
Tensor tensorOf(const Image<S>& src, ZeliSize size, Options options)
{
    using M = Members<S>;
    using Derivative = typename M::Derivative;
    Random random(99);
    Image<Derivative> dx(random, size), dy(random, size);
    std::vector<Zel8u> buffer(1 << 21);
    const ZeliMaskSize mask = 11 * options.apertureSize, window = 11 * options.avgWindow;
    if (options.kernelKind == 1) {
        call(M::scharrVert, src, dx, size, zeliBorderReplicate, 0, buffer.data());
        call(M::scharrHoriz, src, dy, size, zeliBorderReplicate, 0, buffer.data());
    } else {
        call(M::sobelVert, src, dx, size, mask, zeliBorderReplicate, 0, buffer.data());
        call(M::sobelHoriz, src, dy, size, mask, zeliBorderReplicate, 0, buffer.data());
    }
    const auto averaged = [&](const auto& first, const auto& second) {
        Image<Zel32f> product(random, size), average(random, size);
        product.fill([&](int x, int y) { return float(first.at(x, y)) * float(second.at(x, y)); });
        call(zeliFilterLowpassBorder_32f_C1R, product, average, size, window, zeliBorderReplicate, 0, buffer.data());
        return average;
    };
    return {averaged(dx, dx), averaged(dy, dy), averaged(dx, dy)};
}

float scaleOf(Options options)
{
    const float scale = options.apertureSize == 3 ? 1 / 4080.0f : 1 / 65280.0f;
    return options.kernelKind == 1 ? scale * 0.6125f : scale;
}

float smallerEigenvalue(float a, float b, float c, Options options)
{
    const float d = a - b, underRoot = 4 * c * c + d * d, k = 0.5f * scaleOf(options);
    return float((double(a + b) - std::sqrt(double(underRoot))) * double(k));
}

std::array<float, 6> valuesAndVectors(float a, float b, float c, Options options)
{
    const float s = scaleOf(options);
    a *= s, b *= s, c *= s;
    const float larger = a > b ? a : b, smaller = a < b ? a : b, t = 0.01f * larger;
    const float r = std::sqrt(4 * c * c + (a - b) * (a - b)), l1 = (a + b + r) * 0.5f, l2 = (a + b - r) * 0.5f;
    if (t > smaller || t > a * b - c * c) return {};
    if (t > std::fabs(c)) return {l1, l2, 1, 0, 0, 1};
    const float x = c * (options.kernelKind == 1 ? 1.0f : -1.0f);
    const auto perLength = [&](float y) {
        const float length = std::sqrt(y * y + x * x);
        return 1 / (length > 1.1920929e-7f ? length : 1.1920929e-7f);
    };
    const float e1 = l1 - a, e2 = l2 - a, n1 = perLength(e1), n2 = perLength(e2);
    return {l1, l2, x * n1, e1 * n1, x * n2, e2 * n2};
}

template <class S>
void compare(const Image<S>& src, ZeliSize size, Options options, unsigned seed)
{
    using M = Members<S>;
    Random random(seed);
    const Tensor tensor = tensorOf(src, size, options);
    const auto run = [&](auto tellSize, auto measure, int numbers, const auto& definition) {
        Image<Zel32f> dst(random, {numbers * size.width, size.height});
        int bytes = 0;
        ASSERT_EQ(zelStatusOk, tellSize(size, options.apertureSize, options.avgWindow, &bytes));
        Buffer buffer(random, bytes);
        ASSERT_EQ(zelStatusOk, call(measure, src, dst, size, options.kernelKind, options.apertureSize, options.avgWindow,
                                    buffer.data()));
        dst.expect([&](int i, int y) {
            const int x = i / numbers;
            return definition(tensor.a.at(x, y), tensor.b.at(x, y), tensor.c.at(x, y), i % numbers);
        }, std::to_string(numbers) + " numbers, kernel " + std::to_string(options.kernelKind));
    };
    run(M::minSize, M::minEigenVal, 1, [&](float a, float b, float c, int) { return smallerEigenvalue(a, b, c, options); });
    run(M::bothSize, M::valsVecs, 6, [&](float a, float b, float c, int number) {
        return valuesAndVectors(a, b, c, options)[std::size_t(number)];
    });
    EXPECT_TRUE(src.untouched());
}

void compareAll(ZeliSize size, Options options, Texture texture, unsigned seed)
{
    Random random(seed);
    compare(Image<Zel8u>(random, size, texture), size, options, seed);
    compare(Image<Zel32f>(random, size, texture), size, options, seed);
}

TEST(Corners, EqualDefinition)
{
    unsigned seed = 0;
    for (const Options& options : kOptions) {
        for (ZeliSize size : withSeams({{1, 1}, {2, 1}, {1, 7}, {3, 3}, {7, 5}, {9, 2}, {65, 30}}))
            for (Texture texture : {Texture::Noise, Texture::Smooth, Texture::Extremes})
                compareAll(size, options, texture, ++seed);
        if (HasFailure()) return;
    }
    Random random(9);
    Image<Zel32f> tiny(random, {33, 9}); // squares of products that lose bits
    tiny.fill([&](int, int) { return float(random.between(-1000, 1000)) * 1e-14f; });
    compare(tiny, {33, 9}, kOptions[0], 9);
    for (int height : {64, 65, 67, 68, 69, 131, 132, 200}) // one strip, several, and a last one as short as can be
        for (const Options& options : kOptions) compareAll({5, height}, options, Texture::Noise, ++seed);
    compareAll({4100, 40}, kOptions[0], Texture::Noise, ++seed);
    underAllThreadings([&] { compareAll({300, 270}, {0, 5, 3}, Texture::Noise, ++seed); });
}

// A bright dot, a step and nothing: the vectors along the axes, no vectors, and the tiny length that counts in flat areas.
TEST(Corners, TellDotsStepsAndFlatAreasApart)
{
    const ZeliSize size{40, 21};
    Random random(1);
    Image<Zel8u> src(random, size);
    src.fill([](int x, int y) { return x >= 30 || (x == 8 && y == 10) ? 255 : 0; });
    for (const Options& options : kOptions) {
        compare(src, size, options, 5);
        Image<Zel32f> dst(random, {6 * size.width, size.height});
        std::vector<Zel8u> buffer(1 << 18);
        call(zeliEigenValsVecs_8u32f_C1R, src, dst, size, options.kernelKind, options.apertureSize, options.avgWindow,
             buffer.data());
        const auto expectAt = [&](int x, int y, const std::vector<float>& vectors, const char* what) {
            for (int i = 0; i < 4; ++i) EXPECT_EQ(vectors[std::size_t(i)], dst.at(6 * x + 2 + i, y)) << what;
        };
        expectAt(8, 10, {1, 0, 0, 1}, "dot");
        expectAt(30, 10, {0, 0, 0, 0}, "step");
        EXPECT_EQ(0, dst.at(6 * 30, 10)) << "step";
        EXPECT_LT(1, dst.at(6 * 8 + 1, 10)) << "dot";
        expectAt(19, 10, {0, 0, 0, 0}, "flat");
    }
}

TEST(Corners, AddNothingThatTheScratchHeld)
{
    Random random(5);
    for (ZeliSize size : {ZeliSize{1, 1}, {7, 3}, {18, 4}, {70, 4}}) {
        Image<Zel32f> src(random, size, Texture::Smooth), dst(random, {6 * size.width, size.height});
        std::vector<Zel32u> scratch(1 << 18, 0x7fa00000);
        for (auto measure : {zeliMinEigenVal_32f_C1R, zeliEigenValsVecs_32f_C1R}) {
            std::feclearexcept(FE_ALL_EXCEPT);
            call(measure, src, dst, size, 0, 5, 5, reinterpret_cast<Zel8u*>(scratch.data()));
            EXPECT_FALSE(std::fetestexcept(FE_INVALID)) << "at width " << size.width;
        }
    }
}

TEST(Corners, TellBufferSizesAndCheckInOrder)
{
    Random random(3);
    const ZeliSize size{20, 4};
    std::vector<Zel8u> buffer(1 << 16);
    std::vector<Zel32f> dst(6 * 20 * 4); // room for six numbers a pixel, which the checks do not ask for
    const auto expect = [&]<class S>(S, std::array<int, 3> wanted) {
        using M = Members<S>;
        for (auto tellSize : {M::minSize, M::bothSize}) {
            int bytes = 0, i = 0;
            for (const auto& [threads, aperture, window] : {std::tuple{1, 3, 3}, {4, 5, 3}, {4, 3, 5}}) {
                ThreadSetting setting(threads);
                EXPECT_EQ(zelStatusOk, tellSize({100, 50}, aperture, window, &bytes));
                EXPECT_EQ(wanted[std::size_t(i++)], bytes);
            }
            Checks(tellSize, ZeliSize{100, 50}, 3, 3, &bytes)
                .usual().values(1, zelStatusBadSize, {0, 4, 7}).values(2, zelStatusBadSize, {1, 4, 33}).expect();
        }
        Image<S> src(random, size);
        for (auto measure : {M::minEigenVal, M::valsVecs}) {
            Checks(measure, src, dst.data(), 80, size, 0, 3, 3, buffer.data())
                .usual().values(5, zelStatusBadArgument, {2, -1}).values(6, zelStatusBadSize, {1, 4, 33})
                .values(7, zelStatusBadSize, {4, 7}).expect();
            Checks(measure, src, dst.data(), 80, size, 1, 3, 3, buffer.data()).values(6, zelStatusBadSize, {5}).expect();
        }
    };
    expect(Zel8u(), {100592, 143936, 155648});
    expect(Zel32f(), {123056, 178304, 178048});
}

} // namespace
