// The accumulators against their definition.
#include "support/images.h"

#include <cmath>

using namespace zeltest;

namespace {

// The members of one source type; a null pointer where there is none.
template <class T>
struct Members {
    using One = ZelStatus (*)(const T*, int, Zel32f*, int, ZeliSize);
    using OneMasked = ZelStatus (*)(const T*, int, const Zel8u*, int, Zel32f*, int, ZeliSize);
    using Two = ZelStatus (*)(const T*, int, const T*, int, Zel32f*, int, ZeliSize);
    using TwoMasked = ZelStatus (*)(const T*, int, const T*, int, const Zel8u*, int, Zel32f*, int, ZeliSize);
    using WithAlpha = ZelStatus (*)(const T*, int, Zel32f*, int, ZeliSize, Zel32f);
    using WithAlphaMasked = ZelStatus (*)(const T*, int, const Zel8u*, int, Zel32f*, int, ZeliSize, Zel32f);
    One add, square;
    OneMasked addMasked, squareMasked;
    Two product;
    TwoMasked productMasked;
    WithAlpha weighted;
    WithAlphaMasked weightedMasked;
};

template <class T>
const Members<T> kMembers{};
#define MEMBERS(T, token)                                                                                              \
    template <>                                                                                                        \
    const Members<T> kMembers<T>{zeliAdd_##token##_C1IR, zeliAddSquare_##token##_C1IR, zeliAdd_##token##_C1IMR,        \
                                 zeliAddSquare_##token##_C1IMR, zeliAddProduct_##token##_C1IR,                         \
                                 zeliAddProduct_##token##_C1IMR, zeliAddWeighted_##token##_C1IR,                       \
                                 zeliAddWeighted_##token##_C1IMR};
MEMBERS(Zel8u, 8u32f)
MEMBERS(Zel8s, 8s32f)
MEMBERS(Zel16u, 16u32f)
template <>
const Members<Zel32f> kMembers<Zel32f>{nullptr, zeliAddSquare_32f_C1IR, zeliAdd_32f_C1IMR, zeliAddSquare_32f_C1IMR,
                                       zeliAddProduct_32f_C1IR, zeliAddProduct_32f_C1IMR, zeliAddWeighted_32f_C1IR,
                                       zeliAddWeighted_32f_C1IMR};

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
    const Members<T>& members = kMembers<T>;
    Random random(1);
    for (Texture texture : {Texture::Noise, Texture::Extremes})
        for (ZeliSize size : {ZeliSize{1, 1}, {3, 2}, {8, 3}, {29, 4}, {512, 511}, {512, 512}}) {
            Image<T> a(random, size.width, size.height, texture), b(random, size.width, size.height, texture);
            Image<Zel8u> mask(random, size.width, size.height, Texture::Extremes);
            mask.set(0, 0, 1);
            const float alpha = 0.3f;
            // call(dst) runs a member, wanted(x, y, old) is its definition.
            const auto compare = [&](const char* what, const auto& call, const auto& wanted) {
                const auto once = [&] {
                    Image<Zel32f> dst(random, size.width, size.height, texture);
                    EXPECT_EQ(zelStatusOk, call(dst)) << what;
                    dst.expect([&](int x, int y) { return wanted(x, y, dst.before(x, y)); }, what);
                };
                if (size.height == 512) underAllThreadings(once);
                else once();
            };
            const auto m = [&](int x, int y) { return mask.at(x, y) != 0 ? 1.0f : 0.0f; };
            if (members.add)
                compare("add", [&](auto& d) { return members.add(a.data(), a.step(), d.data(), d.step(), size); },
                        [&](int x, int y, float old) { return old + float(a.at(x, y)); });
            compare("add masked", [&](auto& d) {
                return members.addMasked(a.data(), a.step(), mask.data(), mask.step(), d.data(), d.step(), size);
            }, [&](int x, int y, float old) { return m(x, y) * float(a.at(x, y)) + old; });
            compare("square", [&](auto& d) { return members.square(a.data(), a.step(), d.data(), d.step(), size); },
                    [&](int x, int y, float old) { return old + multiplied(a.at(x, y), a.at(x, y)); });
            compare("square masked", [&](auto& d) {
                return members.squareMasked(a.data(), a.step(), mask.data(), mask.step(), d.data(), d.step(), size);
            }, [&](int x, int y, float old) { return multiplied(a.at(x, y), a.at(x, y)) * m(x, y) + old; });
            compare("product", [&](auto& d) {
                return members.product(a.data(), a.step(), b.data(), b.step(), d.data(), d.step(), size);
            }, [&](int x, int y, float old) { return old + multiplied(a.at(x, y), b.at(x, y)); });
            compare("product masked", [&](auto& d) {
                return members.productMasked(a.data(), a.step(), b.data(), b.step(), mask.data(), mask.step(), d.data(),
                                             d.step(), size);
            }, [&](int x, int y, float old) { return multiplied(a.at(x, y), b.at(x, y)) * m(x, y) + old; });
            compare("weighted", [&](auto& d) {
                return members.weighted(a.data(), a.step(), d.data(), d.step(), size, alpha);
            }, [&](int x, int y, float old) { return old + (float(a.at(x, y)) - old) * alpha; });
            compare("weighted masked", [&](auto& d) {
                return members.weightedMasked(a.data(), a.step(), mask.data(), mask.step(), d.data(), d.step(), size, alpha);
            }, [&](int x, int y, float old) { return (float(a.at(x, y)) - old) * (m(x, y) != 0 ? alpha : 0.0f) + old; });
        }
}

TEST(AddWeighted32f, WritesElsewhere)
{
    Random random(2);
    const ZeliSize size = {531, 509};
    Image<Zel32f> s1(random, size.width, size.height), s2(random, size.width, size.height), dst(random, size.width, size.height);
    EXPECT_EQ(zelStatusOk, zeliAddWeighted_32f_C1R(s1.data(), s1.step(), s2.data(), s2.step(), dst.data(), dst.step(), size,
                                                   0.7f));
    dst.expect([&](int x, int y) { return s2.at(x, y) + (s1.at(x, y) - s2.at(x, y)) * 0.7f; }, "weighted into dst");
    EXPECT_EQ(zelStatusStepNotAligned, zeliAddWeighted_32f_C1R(s1.data(), s1.step(), s2.data(), s2.step() + 1, dst.data(),
                                                               dst.step(), size, 1));
}

TEST(Accumulate8s, HoldsWhatTheTablesPromise)
{
    const Zel8s lowest = -128;
    const Zel8u none = 0, highest = 255;
    const Zel32f nan = std::numeric_limits<Zel32f>::quiet_NaN();
    Zel32f sum = 0;
    zeliAddSquare_8s32f_C1IR(&lowest, 1, &sum, 4, {1, 1});
    EXPECT_EQ(16384.0f, sum);
    zeliAddSquare_8u32f_C1IR(&highest, 1, &sum, 4, {1, 1});
    EXPECT_EQ(16384.0f + 65025.0f, sum);
    zeliAdd_32f_C1IMR(&nan, 4, &none, 1, &sum, 4, {1, 1});
    EXPECT_TRUE(std::isnan(sum)) << "a NaN under a mask of zero shows";
    sum = -0.0f;
    zeliAdd_8u32f_C1IMR(&highest, 1, &none, 1, &sum, 4, {1, 1});
    EXPECT_FALSE(std::signbit(sum));
}

template <class T>
struct Arguments {
    T *src1, *src2;
    Zel8u* mask;
    Zel32f* dst;
    int src1Step, src2Step, maskStep, dstStep;
    ZeliSize size;
};

// The product with a mask has every plane that the others have, in the same order.
TYPED_TEST(Accumulate, ChecksInOrder)
{
    using T = TypeParam;
    using A = Arguments<T>;
    Random random(3);
    const int width = 12, row = width * int(sizeof(T));
    Image<T> a(random, width, 3), b(random, width, 3);
    Image<Zel8u> mask(random, width, 3);
    Image<Zel32f> dst(random, width, 3);
    const Fault<A> mask11{"maskStep", zelStatusBadStep, [=](A& f) { f.maskStep = width - 1; }};
    const Fault<A> shortDst{"dstStep", zelStatusBadStep, [=](A& f) { f.dstStep = 4 * width - 4; }};
    const Fault<A> oddDst{"dstStep odd", zelStatusStepNotAligned, [=](A& f) { f.dstStep = 4 * width + 2; }};
    const Fault<A> odd1{"src1Step odd", zelStatusStepNotAligned, [=](A& f) { f.src1Step = row + 1; }};
    const Fault<A> odd2{"src2Step odd", zelStatusStepNotAligned, [=](A& f) { f.src2Step = row + 1; }};
    std::vector<Fault<A>> faults = {
        {"null src1", zelStatusNullPointer, [](A& f) { f.src1 = nullptr; }},
        {"null src2", zelStatusNullPointer, [](A& f) { f.src2 = nullptr; }},
        {"null mask", zelStatusNullPointer, [](A& f) { f.mask = nullptr; }},
        {"null dst", zelStatusNullPointer, [](A& f) { f.dst = nullptr; }},
        {"width 0", zelStatusBadSize, [](A& f) { f.size.width = 0; }},
        {"height 0", zelStatusBadSize, [](A& f) { f.size.height = 0; }},
        {"src1Step", zelStatusBadStep, [=](A& f) { f.src1Step = row - 1; }},
        {"src2Step", zelStatusBadStep, [=](A& f) { f.src2Step = row - 1; }},
    };
    if (std::is_same_v<T, Zel16u>)
        faults.insert(faults.end(), {odd1, odd2, mask11, shortDst, oddDst});
    else if (sizeof(T) == 4)
        faults.insert(faults.end(), {mask11, shortDst, odd1, odd2, oddDst});
    else
        faults.insert(faults.end(), {mask11, shortDst, oddDst});
    expectCheckOrder(A{a.data(), b.data(), mask.data(), dst.data(), a.step(), b.step(), mask.step(), dst.step(), {width, 3}},
                     faults, [](const A& f) {
                         return kMembers<T>.productMasked(f.src1, f.src1Step, f.src2, f.src2Step, f.mask, f.maskStep, f.dst,
                                                          f.dstStep, f.size);
                     });
    EXPECT_TRUE(dst.untouched());
    EXPECT_EQ(zelStatusNullPointer, kMembers<T>.weighted(nullptr, row, dst.data(), dst.step(), {width, 3}, 1));
    EXPECT_EQ(zelStatusBadStep, kMembers<T>.square(a.data(), row, dst.data(), 4 * width - 4, {width, 3}));
}

} // namespace
