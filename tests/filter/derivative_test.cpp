// Sobel and Scharr filters with border, and the generated kernels, against their definition.
#include "support/calls.h"
#include "support/fixed_taps.h"

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <thread>

using namespace zeltest;

namespace {

// Stages, functions, and buffer sizes for 100 by 50 pixels: 3 by 3 with one thread, 5 by 5 (Scharr: 3 by 3) with four.
struct Family {
    const char* name;
    TapList row3, column3, row5, column5;
    ZelStatus (*size16s)(ZeliSize, ZeliMaskSize, int*);
    ZelStatus (*size8s)(ZeliSize, ZeliMaskSize, int*);
    ZelStatus (*size32f)(ZeliSize, ZeliMaskSize, int*);
    ZelStatus (*filter16s)(const Zel8u*, int, Zel16s*, int, ZeliSize, ZeliMaskSize, ZeliBorderType, Zel8u, Zel8u*);
    ZelStatus (*filter8s)(const Zel8u*, int, Zel8s*, int, ZeliSize, ZeliMaskSize, ZeliBorderType, Zel8u, int, Zel8u*);
    ZelStatus (*filter32f)(const Zel32f*, int, Zel32f*, int, ZeliSize, ZeliMaskSize, ZeliBorderType, Zel32f, Zel8u*);
    int bytes16s[2], bytes8s[2], bytes32f[2];
};

template <auto function>
ZelStatus withoutMask(ZeliSize size, ZeliMaskSize, int* bytes)
{
    return function(size, bytes);
}
template <auto function, class S, class D, class... Rest>
ZelStatus withoutMask(const S* src, int srcStep, D* dst, int dstStep, ZeliSize size, ZeliMaskSize, ZeliBorderType border,
                      S value, Rest... rest)
{
    return function(src, srcStep, dst, dstStep, size, border, value, rest...);
}

#define SOBEL(name)                                                                                                   \
    zeliFilter##name##GetBufferSize_8u16s_C1R, zeliFilter##name##GetBufferSize_8u8s_C1R,                              \
        zeliFilter##name##GetBufferSize_32f_C1R, zeliFilter##name##Border_8u16s_C1R,                                  \
        zeliFilter##name##Border_8u8s_C1R, zeliFilter##name##Border_32f_C1R
#define SCHARR(name)                                                                                                  \
    withoutMask<zeliFilter##name##GetBufferSize_8u16s_C1R>, withoutMask<zeliFilter##name##GetBufferSize_8u8s_C1R>,    \
        withoutMask<zeliFilter##name##GetBufferSize_32f_C1R>, withoutMask<zeliFilter##name##Border_8u16s_C1R>,        \
        withoutMask<zeliFilter##name##Border_8u8s_C1R>, withoutMask<zeliFilter##name##Border_32f_C1R>

const Family kFamilies[] = {
    {"SobelHoriz", {1, 2, 1}, {-1, 0, 1}, {1, 4, 6, 4, 1}, {-1, -2, 0, 2, 1}, SOBEL(SobelHoriz),
     {6208, 41376}, {6112, 40992}, {10832, 66080}},
    {"SobelVert", {1, 0, -1}, {1, 2, 1}, {1, 2, 0, -2, -1}, {1, 4, 6, 4, 1}, SOBEL(SobelVert),
     {6144, 41120}, {6112, 40992}, {10832, 66080}},
    {"SobelNegVert", {1, 0, -1}, {-1, -2, -1}, {1, 2, 0, -2, -1}, {-1, -4, -6, -4, -1}, SOBEL(SobelNegVert),
     {6176, 41248}, {6112, 40992}, {10832, 66080}},
    {"SobelHorizSecond", {1, 2, 1}, {1, -2, 1}, {1, 4, 6, 4, 1}, {1, 0, -2, 0, 1}, SOBEL(SobelHorizSecond),
     {6176, 41248}, {6112, 40992}, {10832, 66080}},
    {"SobelVertSecond", {1, -2, 1}, {1, 2, 1}, {1, 0, -2, 0, 1}, {1, 4, 6, 4, 1}, SOBEL(SobelVertSecond),
     {6176, 41248}, {6112, 40992}, {10832, 66080}},
    {"SobelCross", {1, 0, -1}, {-1, 0, 1}, {1, 2, 0, -2, -1}, {-1, -2, 0, 2, 1}, SOBEL(SobelCross),
     {6176, 41248}, {6112, 40992}, {10832, 66080}},
    {"ScharrHoriz", {3, 10, 3}, {-1, 0, 1}, {}, {}, SCHARR(ScharrHoriz),
     {6112, 36448}, {6112, 36448}, {10832, 54368}},
    {"ScharrVert", {-1, 0, 1}, {3, 10, 3}, {}, {}, SCHARR(ScharrVert),
     {6176, 36704}, {6112, 36448}, {10832, 54368}},
};

// What the filter must give at (x, y), in int for 8u sources and in float for 32f.
template <class Real, class T>
Real definition(const Image<T>& src, const TapList& row, const TapList& column, ZeliBorderType border, T value, int x, int y)
{
    const int reach = int(column.size()) / 2;
    return weightedSum<Real>(column, [&](int j) { return rowSum<Real>(src, row, border, value, x, y - reach + j); });
}

struct Mask {
    ZeliMaskSize code;
    const TapList &row, &column;
};
std::vector<Mask> masks(const Family& family)
{
    std::vector<Mask> all = {{zeliMask3x3, family.row3, family.column3}};
    if (!family.row5.empty()) all.push_back({zeliMask5x5, family.row5, family.column5});
    return all;
}

// Runs one member of each type on a region and compares every pixel.
void compareAll(const Family& family, const Mask& mask, ZeliSize size, ZeliBorderType border, Texture texture, unsigned seed)
{
    Random random(seed);
    // `finish` makes an output element of a sum.
    const auto compare = [&]<class S>(auto tellSize, auto filter, S value, const auto& finish, auto... divisor) {
        using Real = std::conditional_t<std::is_integral_v<S>, int, float>;
        Image<S> src(random, size, texture, realPixels(border, int(mask.row.size()) / 2));
        Image<decltype(finish(Real()))> dst(random, size);
        int bytes = 0;
        ASSERT_EQ(zelStatusOk, tellSize(size, mask.code, &bytes));
        Buffer buffer(random, bytes);
        ASSERT_EQ(zelStatusOk, call(filter, src, dst, size, mask.code, border, value, divisor..., buffer.data()));
        dst.expect([&](int x, int y) {
            return finish(definition<Real>(src, mask.row, mask.column, border, value, x, y));
        }, std::string(family.name) + " mask " + std::to_string(mask.code) + " border " + std::to_string(border));
        EXPECT_TRUE(src.untouched());
    };
    const int divisors[] = {1, 41, -4, 100, 3, -255, 16385}, divisor = divisors[seed % 7];
    compare(family.size16s, family.filter16s, Zel8u(255), [](int sum) { return Zel16s(sum); });
    compare(family.size8s, family.filter8s, Zel8u(255), [=](int sum) {
        return Zel8s(int(std::clamp(float(sum) * (1.0f / float(divisor)), -128.0f, 127.0f)));
    }, divisor);
    compare(family.size32f, family.filter32f, 7.3f, [](float sum) { return sum; });
}

TEST(Derivative, EqualsDefinitionUnderEveryBorder)
{
    unsigned seed = 0;
    for (const Family& family : kFamilies)
        for (const Mask& mask : masks(family)) {
            for (ZeliSize size : withSeams({})) {
                const ZeliBorderType borders[] = {0, 1, 2, 3, 4, zeliBorderInMemory};
                ++seed;
                compareAll(family, mask, size, borders[seed % 6], Texture::Noise, seed);
            }
            for (ZeliSize size : {ZeliSize{1, 1}, {2, 1}, {1, 2}, {3, 3}, {4, 6}, {5, 1}, {17, 4}, {33, 9}, {65, 3}, {67, 1}})
                for (ZeliBorderType kind : {0, 1, 2, 3, 4})
                    for (ZeliBorderType flags : {0x00, 0x10, 0x20, 0x40, 0x80, 0xd0, 0x110, 0xf0, 6}) {
                        const ZeliBorderType border = flags == 6 ? zeliBorderInMemory : kind | flags;
                        const Texture texture = seed % 3 == 0 ? Texture::Extremes : Texture::Noise;
                        compareAll(family, mask, size, border, texture, ++seed);
                        if (HasFailure()) return;
                    }
        }
}

// 4 threads and more than 500 rows: both sides of the gate, and seams that all kinds must not show.
TEST(Derivative, EqualsDefinitionOnManyThreads)
{
    for (const Family& family : kFamilies)
        for (ZeliBorderType border : {zeliBorderConstant, zeliBorderWrap, zeliBorderReflect}) {
            const Mask mask = masks(family).back();
            for (ZeliSize size : {ZeliSize{256, 519}, {255, 300}}) {
                const auto compare = [&] { compareAll(family, mask, size, border, Texture::Noise, 77); };
                ThreadSetting setting(4);
                if (family.name == std::string("SobelVert")) underAllThreadings(compare);
                else compare();
            }
        }
}

TEST(Derivative, ServesConcurrentCalls)
{
    std::vector<std::thread> callers;
    for (unsigned i = 0; i < 4; ++i)
        callers.emplace_back([i] {
            const Family& family = kFamilies[i];
            compareAll(family, masks(family)[0], {300, 290}, zeliBorderReplicate, Texture::Smooth, i);
        });
    for (auto& caller : callers) caller.join();
}

// Numbers left in the scratch may be slow to add: not even sums that nobody sees are to be made of them. Signalling ones tell.
TEST(Derivative, AddsNothingThatTheScratchHeld)
{
    Random random(5);
    for (const Family& family : kFamilies)
        for (ZeliSize size : {ZeliSize{1, 1}, {7, 3}, {18, 4}, {70, 4}}) {
            Image<Zel32f> src(random, size), dst(random, size);
            const ZeliMaskSize mask = masks(family).back().code;
            int bytes = 0;
            ASSERT_EQ(zelStatusOk, family.size32f(size, mask, &bytes));
            std::vector<Zel32u> scratch(std::size_t(bytes) / 4 + 1, 0x7fa00000);
            std::feclearexcept(FE_ALL_EXCEPT);
            call(family.filter32f, src, dst, size, mask, zeliBorderReflect, 0, reinterpret_cast<Zel8u*>(scratch.data()));
            EXPECT_FALSE(std::fetestexcept(FE_INVALID)) << family.name << " at width " << size.width;
        }
}

TEST(Derivative, TellsBufferSizes)
{
    for (const Family& family : kFamilies)
        for (const auto& [function, wanted] : {std::pair{family.size16s, family.bytes16s},
                                               std::pair{family.size8s, family.bytes8s},
                                               std::pair{family.size32f, family.bytes32f}}) {
            int bytes = 0;
            for (int threads : {1, 4}) {
                ThreadSetting setting(threads);
                const ZeliMaskSize mask = threads == 1 ? zeliMask3x3 : masks(family).back().code;
                EXPECT_EQ(zelStatusOk, function({100, 50}, mask, &bytes));
                EXPECT_EQ(wanted[threads == 4], bytes) << family.name;
            }
            Checks checks(function, ZeliSize{100, 50}, zeliMask3x3, &bytes);
            checks.usual();
            if (!family.row5.empty()) checks.values(1, zelStatusBadMaskSize, {35});
            checks.expect();
        }
}

TEST(Derivative, ChecksInOrder)
{
    Random random(3);
    const ZeliSize size{20, 4};
    Image<Zel8u> bytes(random, size);
    Image<Zel16s> to16s(random, size);
    Image<Zel8s> to8s(random, size);
    Image<Zel32f> floats(random, size), to32f(random, size);
    std::vector<Zel8u> buffer(1 << 20);
    for (const Family& family : kFamilies) {
        const auto expectChecks = [&](auto filter, auto& src, auto& dst, auto... divisor) {
            Checks checks(filter, src, dst, size, zeliMask3x3, zeliBorderReplicate, 0, divisor..., buffer.data());
            checks.usual().values(6, zelStatusBadArgument, {5, 7, 15, 0x15, 0x100, 0x8001, 0x1300});
            if (sizeof...(divisor) > 0) checks.values(8, zelStatusBadArgument, {0});
            if (!family.row5.empty()) checks.values(5, zelStatusBadMaskSize, {0, 3, 53});
            checks.expect();
        };
        expectChecks(family.filter16s, bytes, to16s);
        expectChecks(family.filter8s, bytes, to8s, 1);
        expectChecks(family.filter32f, floats, to32f);
    }
}

TEST(GenSobelKernel, GivesTheCoefficientsOfItsPolynomial)
{
    const auto coefficients = [](int size, int order, int sign) {
        std::vector<double> taps = {double(sign < 0 ? -1 : 1)};
        for (int factor = 0; factor < size - 1; ++factor) { // times (x + 1) or (x - 1)
            std::vector<double> next(taps.size() + 1, 0.0);
            for (std::size_t i = 0; i < taps.size(); ++i) {
                next[i] += factor < order ? -taps[i] : taps[i];
                next[i + 1] += taps[i];
            }
            taps = next;
        }
        return taps;
    };
    for (int size : {1, 3, 5, 9, 21, 35})
        for (int order = 0; order < size; order += size > 9 ? 5 : 1)
            for (int sign : {-3, 0, 1}) {
                std::vector<Zel16s> integers(std::size_t(size) + 1, 99);
                std::vector<Zel32f> floats(std::size_t(size) + 1, 99.0f);
                EXPECT_EQ(zelStatusOk, zeliGenSobelKernel_16s(integers.data(), size, order, sign));
                EXPECT_EQ(zelStatusOk, zeliGenSobelKernel_32f(floats.data(), size, order, sign));
                const auto wanted = coefficients(size, order, sign);
                for (std::size_t i = 0; i < wanted.size(); ++i) {
                    EXPECT_EQ(Zel16s(std::int64_t(wanted[i])), integers[i]) << size << " order " << order; // wraps
                    if (size < 25) {
                        EXPECT_EQ(Zel32f(wanted[i]), floats[i]) << size << " order " << order;
                    }
                }
                EXPECT_EQ(99, integers.back());
                EXPECT_EQ(99.0f, floats.back());
            }
    Zel16s dst[4] = {5, 5, 5, 5};
    EXPECT_EQ(zelStatusNullPointer, zeliGenSobelKernel_16s(nullptr, 2, 9, 1));
    for (auto [size, order] : {std::pair{0, 0}, {-1, 0}, {2, 0}, {4, 1}, {3, -1}, {3, 3}})
        EXPECT_EQ(zelStatusBadSize, zeliGenSobelKernel_16s(dst, size, order, 1)) << size << " " << order;
    EXPECT_EQ(5, dst[0]);
}

} // namespace
