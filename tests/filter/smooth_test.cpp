// Box averages, Laplacians and the Gauss filter against their definitions.
#include "support/calls.h"
#include "support/fixed_taps.h"

#include <cfenv>
#include <cmath>

using namespace zeltest;

namespace {

template <class S, class D, class... Divisor>
struct Member {
    const char* name;
    ZelStatus (*tellSize)(ZeliSize, ZeliMaskSize, int*);
    ZelStatus (*filter)(const S*, int, D*, int, ZeliSize, ZeliMaskSize, ZeliBorderType, S, Divisor..., Zel8u*);
    int bytes[2]; // of scratch for 100 by 50 pixels: 3 by 3 with one thread, 5 by 5 with four
};
const Member<Zel8u, Zel8u> kLowpass8u = {
    "Lowpass 8u", zeliFilterLowpassGetBufferSize_8u_C1R, zeliFilterLowpassBorder_8u_C1R, {6176, 41248}};
const Member<Zel32f, Zel32f> kLowpass32f = {
    "Lowpass 32f", zeliFilterLowpassGetBufferSize_32f_C1R, zeliFilterLowpassBorder_32f_C1R, {10768, 65824}};
const Member<Zel8u, Zel16s> kLaplacian16s = {"Laplacian 16s", zeliFilterLaplacianGetBufferSize_8u16s_C1R,
                                             zeliFilterLaplacianBorder_8u16s_C1R, {11160, 64960}};
const Member<Zel8u, Zel8s, int> kLaplacian8s = {"Laplacian 8s", zeliFilterLaplacianGetBufferSize_8u8s_C1R,
                                                zeliFilterLaplacianBorder_8u8s_C1R, {11160, 109888}};
const Member<Zel32f, Zel32f> kLaplacian32f = {"Laplacian 32f", zeliFilterLaplacianGetBufferSize_32f_C1R,
                                              zeliFilterLaplacianBorder_32f_C1R, {20520, 112192}};

int reachOf(ZeliMaskSize mask) { return mask == zeliMask3x3 ? 1 : 2; }

// The sum under the mask for 8u sources, pixel by pixel: nothing can be lost.
template <class Weight>
int sumUnderMask(const Image<Zel8u>& src, int reach, ZeliBorderType border, Zel8u value, int x, int y, const Weight& weight)
{
    int sum = 0;
    for (int j = -reach; j <= reach; ++j)
        for (int i = -reach; i <= reach; ++i)
            sum += weight(i, j) * rowSum<int>(src, {1}, border, value, x + i, y + j);
    return sum;
}

Zel8u boxMean(const Image<Zel8u>& src, ZeliMaskSize mask, ZeliBorderType border, Zel8u value, int x, int y)
{
    const int sum = sumUnderMask(src, reachOf(mask), border, value, x, y, [](int, int) { return 1; });
    return Zel8u(mask == zeliMask3x3 ? (sum * 7280 + 36400) >> 16 : (sum * 2621) >> 16);
}

int laplacian(const Image<Zel8u>& src, ZeliMaskSize mask, ZeliBorderType border, Zel8u value, int x, int y)
{
    const int weights3[2][2] = {{-8, 0}, {0, 2}}, weights5[3][3] = {{-24, -8, 4}, {-8, 0, 4}, {4, 4, 2}};
    return sumUnderMask(src, reachOf(mask), border, value, x, y, [&](int i, int j) {
        return mask == zeliMask3x3 ? weights3[std::abs(j)][std::abs(i)] : weights5[std::abs(j)][std::abs(i)];
    });
}

// In single precision the order of the additions counts.
float boxMean(const Image<Zel32f>& src, ZeliMaskSize mask, ZeliBorderType border, float value, int x, int y)
{
    const int reach = reachOf(mask);
    const TapList ones(std::size_t(2 * reach + 1), 1);
    const float sum = weightedSum<float>(ones, [&](int j) {
        return rowSum<float>(src, ones, border, value, x, y - reach + j);
    });
    return sum * (mask == zeliMask3x3 ? 0.11111111f : 0.04f);
}

float laplacian(const Image<Zel32f>& src, ZeliMaskSize mask, ZeliBorderType border, float value, int x, int y)
{
    const auto row = [&](const TapList& taps, int dy) { return rowSum<float>(src, taps, border, value, x, y + dy); };
    if (mask == zeliMask3x3) {
        const TapList sides = {1, 0, 1};
        return (row(sides, -1) + row(sides, 1)) * 2 - src.at(x, y) * 8;
    }
    const TapList smooth = {1, 4, 6, 4, 1}, second = {1, 0, -2, 0, 1};
    const float down = row(smooth, -2) + row(smooth, 2) - 2 * row(smooth, 0);
    return down + (row(second, 0) * 6 + row(second, -2) + (row(second, -1) + row(second, 1)) * 4 + row(second, 2));
}

template <class S, class D, class... Divisor, class Definition>
void compare(const Member<S, D, Divisor...>& member, ZeliSize size, ZeliMaskSize mask, ZeliBorderType border, Texture texture,
             unsigned seed, S value, const Definition& definition, Divisor... divisor)
{
    Random random(seed);
    Image<S> src(random, size, texture, realPixels(border, reachOf(mask)));
    Image<D> dst(random, size);
    int bytes = 0;
    ASSERT_EQ(zelStatusOk, member.tellSize(size, mask, &bytes));
    Buffer buffer(random, bytes);
    ASSERT_EQ(zelStatusOk, call(member.filter, src, dst, size, mask, border, value, divisor..., buffer.data()));
    dst.expect([&](int x, int y) { return definition(src, mask, border, value, x, y); },
               std::string(member.name) + " mask " + std::to_string(mask) + " border " + std::to_string(border));
    EXPECT_TRUE(src.untouched());
}

void compareAll(ZeliSize size, ZeliMaskSize mask, ZeliBorderType border, Texture texture, unsigned seed)
{
    const int divisors[] = {1, 41, -4, 100, 64, -255, 16385}, divisor = divisors[seed % 7];
    const auto exact = [](const auto&... at) { return Zel16s(laplacian(at...)); };
    compare(kLowpass8u, size, mask, border, texture, seed, Zel8u(255), [](const auto&... at) { return boxMean(at...); });
    compare(kLowpass32f, size, mask, border, texture, seed, 7.3f, [](const auto&... at) { return boxMean(at...); });
    compare(kLaplacian16s, size, mask, border, texture, seed, Zel8u(255), exact);
    compare(kLaplacian8s, size, mask, border, texture, seed, Zel8u(200), [=](const auto&... at) {
        return Zel8s(int(std::clamp(float(laplacian(at...)) * (1.0f / float(divisor)), -128.0f, 127.0f)));
    }, divisor);
    compare(kLaplacian32f, size, mask, border, texture, seed, 7.3f, [](const auto&... at) { return laplacian(at...); });
}

TEST(Smooth, EqualsDefinitionUnderEveryBorder)
{
    unsigned seed = 0;
    for (ZeliMaskSize mask : {zeliMask3x3, zeliMask5x5}) {
        for (ZeliSize size : withSeams({})) {
            const ZeliBorderType borders[] = {0, 1, 2, 3, 4, zeliBorderInMemory};
            ++seed;
            compareAll(size, mask, borders[seed % 6], Texture::Noise, seed);
        }
        for (ZeliSize size : {ZeliSize{1, 1}, {2, 1}, {1, 2}, {3, 3}, {4, 6}, {17, 4}, {33, 9}, {67, 1}})
            for (ZeliBorderType kind : {0, 1, 2, 3, 4})
                for (ZeliBorderType flags : {0x00, 0x10, 0x20, 0xc0, 0xf0, 6}) {
                    const ZeliBorderType border = flags == 6 ? zeliBorderInMemory : kind | flags;
                    ++seed;
                    compareAll(size, mask, border, seed % 3 == 0 ? Texture::Extremes : Texture::Noise, seed);
                    if (HasFailure()) return;
                }
    }
    ThreadSetting setting(4); // 500 rows and more: threads, and seams that no kind may show
    for (ZeliMaskSize mask : {zeliMask3x3, zeliMask5x5})
        for (ZeliBorderType border : {zeliBorderConstant, zeliBorderWrap})
            compareAll({256, 519}, mask, border, Texture::Noise, ++seed);
    underAllThreadings([&] { compareAll({300, 290}, zeliMask5x5, zeliBorderReflect, Texture::Noise, 77); });
}

// A flat area under 5 by 5 gets darker by one: the sum is cut and not rounded.
TEST(Smooth, KeepsFlatAreasUnder3By3Alone)
{
    Random random(1);
    const ZeliSize size{20, 3};
    Image<Zel8u> src(random, size), dst(random, size);
    std::vector<Zel8u> buffer(1 << 16);
    for (const auto& [mask, wanted] : {std::pair{zeliMask3x3, 255}, {zeliMask5x5, 254}}) {
        src.fill([](int, int) { return 255; });
        ASSERT_EQ(zelStatusOk,
                  call(zeliFilterLowpassBorder_8u_C1R, src, dst, size, mask, zeliBorderReplicate, 0, buffer.data()));
        dst.expect([&](int, int) { return Zel8u(wanted); }, "flat");
    }
}

TEST(Smooth, TellsBufferSizesAndChecksInOrder)
{
    Random random(3);
    std::vector<Zel8u> buffer(1 << 20);
    const auto expect = [&]<class S, class D, class... Divisor>(const Member<S, D, Divisor...>& member, Divisor... divisor) {
        int bytes = 0;
        for (int threads : {1, 4}) {
            ThreadSetting setting(threads);
            EXPECT_EQ(zelStatusOk, member.tellSize({100, 50}, threads == 1 ? zeliMask3x3 : zeliMask5x5, &bytes));
            EXPECT_EQ(member.bytes[threads == 4], bytes) << member.name;
        }
        Checks(member.tellSize, ZeliSize{100, 50}, zeliMask3x3, &bytes)
            .usual().values(1, zelStatusBadMaskSize, {35}).expect();
        const ZeliSize size{20, 4};
        Image<S> src(random, size);
        Image<D> dst(random, size);
        Checks checks(member.filter, src, dst, size, zeliMask3x3, zeliBorderReplicate, 0, divisor..., buffer.data());
        checks.usual().values(6, zelStatusBadArgument, {5, 7, 0x15, 0x100});
        if (sizeof...(divisor) > 0) checks.values(8, zelStatusBadArgument, {0});
        checks.values(5, zelStatusBadMaskSize, {0, 3, 53}).expect();
    };
    expect(kLowpass8u);
    expect(kLowpass32f);
    expect(kLaplacian16s);
    expect(kLaplacian8s, 1);
    expect(kLaplacian32f);
}

// ---- Gauss

std::vector<float> gaussTaps(int kernelSize, float sigma)
{
    std::vector<float> taps;
    double sum = 0;
    for (int j = 0; j < kernelSize; ++j) {
        const int distance = std::abs(j - kernelSize / 2);
        taps.push_back(float(std::exp(double(float(-distance * distance) / ((sigma + sigma) * sigma)))));
        sum += taps.back();
    }
    for (float& tap : taps) tap = float(tap / sum);
    return taps;
}

// What stands at (x, y): the rows filtered, then the columns, each sum by rising tap.
float gauss(const Image<Zel32f>& src, const std::vector<float>& taps, ZeliBorderType border, float value, int x, int y)
{
    const int count = int(taps.size()), kind = border & 15;
    const bool top = border & zeliBorderInMemoryTop, bottom = border & zeliBorderInMemoryBottom;
    float sum = 0;
    for (int j = 0; j < count; ++j) {
        const int line = standIn(y - count / 2 + j, src.height(), kind, top, bottom, !top, !bottom);
        float row = 0;
        for (int i = 0; i < count; ++i) {
            const int pixel = standIn(x - count / 2 + i, src.width(), kind, false, false);
            const bool outside = line == kConstant || pixel == kConstant;
            row += (outside ? value : src.at(pixel, line)) * taps[std::size_t(i)];
        }
        sum += row * taps[std::size_t(j)];
    }
    return sum;
}

void compareGauss(ZeliSize size, int kernelSize, float sigma, ZeliBorderType border, Texture texture, unsigned seed)
{
    Random random(seed);
    Margin margin = realPixels(border, kernelSize / 2);
    Image<Zel32f> src(random, size, texture, margin), dst(random, size);
    int bytes = 0;
    ASSERT_EQ(zelStatusOk, zeliFilterGaussGetBufferSize_32f_C1R(size, kernelSize, &bytes));
    Buffer buffer(random, bytes);
    ASSERT_EQ(zelStatusOk,
              call(zeliFilterGaussBorder_32f_C1R, src, dst, size, kernelSize, sigma, border, -0.7f, buffer.data()));
    const std::vector<float> taps = gaussTaps(kernelSize, sigma);
    dst.expect([&](int x, int y) { return gauss(src, taps, border, -0.7f, x, y); },
               "Gauss of " + std::to_string(kernelSize) + " border " + std::to_string(border));
    EXPECT_TRUE(src.untouched());
}

TEST(Gauss, EqualsDefinitionUnderEveryBorder)
{
    unsigned seed = 0;
    const ZeliBorderType borders[] = {0, 1, 2, 3, 4, 0x10, 0x21, 0x32, 0x13, 0x24};
    for (int kernelSize : {3, 5, 7, 9, 11, 19}) {
        for (ZeliSize size : withSeams({})) {
            ++seed;
            compareGauss(size, kernelSize, 1.4f, borders[seed % 10], Texture::Noise, seed);
        }
        for (ZeliSize size : {ZeliSize{1, 1}, {2, 1}, {1, 2}, {3, 3}, {5, 20}, {17, 4}, {40, 11}})
            for (ZeliBorderType border : borders) {
                ++seed;
                const Texture texture = seed % 3 == 0 ? Texture::Extremes : Texture::Noise;
                compareGauss(size, kernelSize, seed % 2 ? 0.8f : 5.0f, border, texture, seed);
            }
        if (HasFailure()) return;
    }
    compareGauss({50, 3}, 101, 30, zeliBorderReflect, Texture::Noise, 1); // a kernel beyond both sides
    compareGauss({9, 9}, 5, 0, zeliBorderReplicate, Texture::Noise, 2);   // NaN all over
}

// Steps need to be no more than the width, and no multiple of 4: rows may overlap, and of dst the later row stands.
TEST(Gauss, TakesStepsOfAnyNumberOfBytes)
{
    const ZeliSize size{37, 8};
    for (int srcStep : {37, 90, 149, 161})
        for (int dstStep : {38, 91, 148, 167}) {
            Random random(unsigned(srcStep * dstStep));
            Image<Zel32f> rows(random, size);
            const auto bytesOf = [&](int step) { return std::size_t(step * (size.height - 1) + size.width * 4); };
            std::vector<unsigned char> src(bytesOf(srcStep)), dst(bytesOf(dstStep), 0x5a), wanted = dst;
            for (auto& byte : src) byte = static_cast<unsigned char>(random.between(0, 63)); // small numbers all
            rows.fill([&](int x, int y) {
                float value;
                std::memcpy(&value, src.data() + srcStep * y + 4 * x, sizeof value);
                return value;
            });
            const std::vector<float> taps = gaussTaps(5, 1);
            for (int y = 0; y < size.height; ++y)
                for (int x = 0; x < size.width; ++x) {
                    const float value = gauss(rows, taps, zeliBorderReplicate, 0, x, y);
                    std::memcpy(wanted.data() + dstStep * y + 4 * x, &value, sizeof value);
                }
            int bytes = 0;
            ASSERT_EQ(zelStatusOk, zeliFilterGaussGetBufferSize_32f_C1R(size, 5, &bytes));
            Buffer buffer(random, bytes);
            ASSERT_EQ(zelStatusOk, zeliFilterGaussBorder_32f_C1R(reinterpret_cast<const Zel32f*>(src.data()), srcStep,
                                                                 reinterpret_cast<Zel32f*>(dst.data()), dstStep, size, 5, 1,
                                                                 zeliBorderReplicate, 0, buffer.data()));
            EXPECT_TRUE(wanted == dst) << srcStep << " " << dstStep;
        }
}

// Numbers left in the scratch may be slow to add: not even sums that nobody sees are to be made of them. Signalling ones tell.
TEST(Smooth, AddsNothingThatTheScratchHeld)
{
    Random random(5);
    for (ZeliSize size : {ZeliSize{1, 1}, {7, 3}, {18, 4}, {70, 4}}) {
        Image<Zel32f> src(random, size, Texture::Smooth), dst(random, size);
        std::vector<Zel32u> scratch(1 << 18, 0x7fa00000);
        const auto expectQuiet = [&](auto filter, auto... arguments) {
            std::feclearexcept(FE_ALL_EXCEPT);
            call(filter, src, dst, size, arguments..., zeliBorderReflect, 0, reinterpret_cast<Zel8u*>(scratch.data()));
            EXPECT_FALSE(std::fetestexcept(FE_INVALID)) << "at width " << size.width;
        };
        expectQuiet(zeliFilterLowpassBorder_32f_C1R, zeliMask5x5);
        expectQuiet(zeliFilterLaplacianBorder_32f_C1R, zeliMask5x5);
        expectQuiet(zeliFilterGaussBorder_32f_C1R, 7, 1.0f);
    }
}

TEST(Gauss, TellsBufferSizesAndChecksInOrder)
{
    int bytes = 0;
    for (const auto& [threads, kernelSize, wanted] : {std::tuple{1, 3, 4576}, {4, 9, 18144}}) {
        ThreadSetting setting(threads);
        EXPECT_EQ(zelStatusOk, zeliFilterGaussGetBufferSize_32f_C1R({100, 50}, kernelSize, &bytes));
        EXPECT_EQ(wanted, bytes) << kernelSize;
    }
    Checks(zeliFilterGaussGetBufferSize_32f_C1R, ZeliSize{100, 50}, 3, &bytes)
        .usual().values(1, zelStatusBadArgument, {2, 4, 1, -1}).expect();
    Random random(3);
    const ZeliSize size{20, 4};
    Image<Zel32f> src(random, size), dst(random, size);
    std::vector<Zel8u> buffer(1 << 16);
    Checks(zeliFilterGaussBorder_32f_C1R, src.data(), 20, dst.data(), 20, size, 3, 1, zeliBorderReplicate, 0, buffer.data())
        .nulls().sizes().shortSteps()
        .values(5, zelStatusBadArgument, {2, 4, 1, -3})
        .values(7, zelStatusBadArgument, {5, 6, 0x41, 0x80, 0x101, 0xf0, -1})
        .expect();
}

} // namespace
