// zeliAbsDiff and zeliAbsDiffC against their definition.
#include "support/images.h"

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

template <class T>
struct Functions;
template <>
struct Functions<Zel8u> {
    static constexpr auto diff = zeliAbsDiff_8u_C1R;
    static constexpr auto diffC = zeliAbsDiffC_8u_C1R;
};
template <>
struct Functions<Zel16u> {
    static constexpr auto diff = zeliAbsDiff_16u_C1R;
    static constexpr auto diffC = zeliAbsDiffC_16u_C1R;
};
template <>
struct Functions<Zel32f> {
    static constexpr auto diff = zeliAbsDiff_32f_C1R;
    static constexpr auto diffC = zeliAbsDiffC_32f_C1R;
};

template <class T>
class AbsDiff : public testing::Test {};
using Types = testing::Types<Zel8u, Zel16u, Zel32f>;
TYPED_TEST_SUITE(AbsDiff, Types);

// Small and odd shapes, one that ends in every vector tail, and shapes on both sides of the parallel gate.
constexpr ZeliSize kSizes[] = {{1, 1}, {3, 5}, {15, 2}, {16, 3}, {33, 4}, {67, 3}, {511, 512}, {512, 512}, {1031, 257}};

TYPED_TEST(AbsDiff, EqualsDefinition)
{
    Random random(1);
    for (Texture texture : {Texture::Noise, Texture::Extremes, Texture::Smooth})
        for (ZeliSize size : kSizes) {
            Image<TypeParam> a(random, size.width, size.height, texture), b(random, size.width, size.height, texture);
            const auto wanted = [&](int x, int y) { return definition(a.before(x, y), b.at(x, y)); };
            underAllThreadings([&] {
                Image<TypeParam> dst(random, size.width, size.height);
                EXPECT_EQ(zelStatusOk, Functions<TypeParam>::diff(a.data(), a.step(), b.data(), b.step(), dst.data(),
                                                                  dst.step(), size));
                dst.expect(wanted, "absolute difference");
            });
            EXPECT_EQ(zelStatusOk,
                      Functions<TypeParam>::diff(a.data(), a.step(), b.data(), b.step(), a.data(), a.step(), size));
            a.expect(wanted, "in place");
        }
}

TYPED_TEST(AbsDiff, ConstantEqualsDefinitionAndIsLimited)
{
    Random random(2);
    using Constant = std::conditional_t<std::is_floating_point_v<TypeParam>, Zel32f, int>;
    for (double given : {0.0, 7.0, -5.0, 300.0, 70000.0}) {
        Constant value = Constant(given), used = value;
        if constexpr (!std::is_floating_point_v<TypeParam>)
            used = std::clamp<int>(value, 0, std::numeric_limits<TypeParam>::max());
        for (ZeliSize size : {ZeliSize{37, 5}, ZeliSize{512, 513}}) {
            Image<TypeParam> src(random, size.width, size.height), dst(random, size.width, size.height);
            EXPECT_EQ(zelStatusOk,
                      Functions<TypeParam>::diffC(src.data(), src.step(), dst.data(), dst.step(), size, value));
            dst.expect([&](int x, int y) { return definition(src.at(x, y), TypeParam(used)); }, "constant");
        }
    }
}

TYPED_TEST(AbsDiff, TakesPointersOffTheirElementBoundary)
{
    Random random(3);
    constexpr int width = 45, bytes = width * int(sizeof(TypeParam));
    Image<Zel8u> a(random, bytes, 1), b(random, bytes, 1), dst(random, bytes, 1);
    const auto odd = [](Image<Zel8u>& image) {
        return reinterpret_cast<TypeParam*>(image.data() + (1 - reinterpret_cast<std::uintptr_t>(image.data()) % 2));
    };
    EXPECT_EQ(zelStatusOk, Functions<TypeParam>::diff(odd(a), bytes, odd(b), bytes, odd(dst), bytes, {width - 1, 1}));
    const auto element = [&](Image<Zel8u>& image, int x) {
        TypeParam value;
        std::memcpy(&value, reinterpret_cast<char*>(odd(image)) + std::size_t(x) * sizeof value, sizeof value);
        return value;
    };
    for (int x = 0; x < width - 1; ++x) {
        const TypeParam wanted = definition(element(a, x), element(b, x)), got = element(dst, x);
        EXPECT_TRUE(wanted == got || wanted != wanted) << x; // bytes at random are NaN now and then
    }
}

TEST(AbsDiff8uC3, IsThreeTimesAsWide)
{
    Random random(4);
    for (ZeliSize size : {ZeliSize{1, 1}, ZeliSize{300, 300}}) {
        Image<Zel8u> a(random, 3 * size.width, size.height), b(random, 3 * size.width, size.height);
        Image<Zel8u> dst(random, 3 * size.width, size.height);
        EXPECT_EQ(zelStatusOk,
                  zeliAbsDiff_8u_C3R(a.data(), a.step(), b.data(), b.step(), dst.data(), dst.step(), size));
        dst.expect([&](int x, int y) { return definition(a.at(x, y), b.at(x, y)); }, "three channels");
        EXPECT_EQ(zelStatusBadStep, zeliAbsDiff_8u_C3R(a.data(), a.step(), b.data(), 3 * size.width - 1, dst.data(),
                                                       dst.step(), size));
    }
}

template <class T>
struct Arguments {
    T *src1, *src2, *dst;
    int src1Step, src2Step, dstStep;
    ZeliSize size;
};

TYPED_TEST(AbsDiff, ChecksInOrder)
{
    Random random(5);
    using A = Arguments<TypeParam>;
    const int width = 20, row = width * int(sizeof(TypeParam));
    Image<TypeParam> a(random, width, 4), b(random, width, 4), dst(random, width, 4);
    std::vector<Fault<A>> faults = {
        {"null src1", zelStatusNullPointer, [](A& f) { f.src1 = nullptr; }},
        {"null src2", zelStatusNullPointer, [](A& f) { f.src2 = nullptr; }},
        {"null dst", zelStatusNullPointer, [](A& f) { f.dst = nullptr; }},
        {"width 0", zelStatusBadSize, [](A& f) { f.size.width = 0; }},
        {"height -1", zelStatusBadSize, [](A& f) { f.size.height = -1; }},
        {"src1Step short", zelStatusBadStep, [=](A& f) { f.src1Step = row - 1; }},
        {"src2Step negative", zelStatusBadStep, [=](A& f) { f.src2Step = -row; }},
        {"dstStep short", zelStatusBadStep, [=](A& f) { f.dstStep = row - 1; }},
    };
    if (sizeof(TypeParam) > 1) {
        faults.push_back({"src1Step odd", zelStatusStepNotAligned, [=](A& f) { f.src1Step = row + 1; }});
        faults.push_back({"src2Step odd", zelStatusStepNotAligned, [=](A& f) { f.src2Step = row + 1; }});
        faults.push_back({"dstStep odd", zelStatusStepNotAligned, [=](A& f) { f.dstStep = row + 1; }});
    }
    const A good{a.data(), b.data(), dst.data(), a.step(), b.step(), dst.step(), {width, 4}};
    expectCheckOrder(good, faults, [](const A& f) {
        return Functions<TypeParam>::diff(f.src1, f.src1Step, f.src2, f.src2Step, f.dst, f.dstStep, f.size);
    });
    std::erase_if(faults, [](const Fault<A>& fault) { return std::strstr(fault.what, "src2") != nullptr; });
    expectCheckOrder(good, faults, [](const A& f) {
        return Functions<TypeParam>::diffC(f.src1, f.src1Step, f.dst, f.dstStep, f.size, 1);
    });
    EXPECT_TRUE(dst.untouched());
}

} // namespace
