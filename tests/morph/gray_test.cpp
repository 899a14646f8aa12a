// Gray dilation and erosion against their definition. This program brings its own zelMalloc, which can be told to fail.
#include "support/calls.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

using namespace zeltest;

namespace {
bool noMemory = false;
int blocks = 0;
std::uint64_t lastAllocation = 0;
} // namespace

void* zelMalloc(uint64_t bytes)
{
    lastAllocation = bytes;
    if (noMemory) return nullptr;
    ++blocks;
    return std::aligned_alloc(64, (bytes + 63) / 64 * 64);
}
void zelFree(void* block)
{
    blocks -= block != nullptr;
    std::free(block);
}

namespace {

struct Gray8u {
    using Pixel = Zel8u;
    using Element = Zel32s;
    static constexpr auto getSize = zeliMorphGrayGetSize_8u_C1R;
    static constexpr auto init = zeliMorphGrayInit_8u_C1R;
    static constexpr auto initAlloc = zeliMorphGrayInitAlloc_8u_C1R;
    static constexpr auto release = zeliMorphGrayFree_8u_C1R;
    static constexpr auto dilate = zeliGrayDilateBorder_8u_C1R;
    static constexpr auto erode = zeliGrayErodeBorder_8u_C1R;
    static Zel32s sum(Zel8u pixel, Zel32s element) { return Zel32s(Zel32u(pixel) + Zel32u(element)); }
    static constexpr Zel32s kLowest = 0, kHighest = 255;
};
struct Gray32f {
    using Pixel = Zel32f;
    using Element = Zel32f;
    static constexpr auto getSize = zeliMorphGrayGetSize_32f_C1R;
    static constexpr auto init = zeliMorphGrayInit_32f_C1R;
    static constexpr auto initAlloc = zeliMorphGrayInitAlloc_32f_C1R;
    static constexpr auto release = zeliMorphGrayFree_32f_C1R;
    static constexpr auto dilate = zeliGrayDilateBorder_32f_C1R;
    static constexpr auto erode = zeliGrayErodeBorder_32f_C1R;
    static Zel32f sum(Zel32f pixel, Zel32f element) { return pixel + element; }
    static constexpr Zel32f kLowest = -3.4028235e38f, kHighest = 3.4028235e38f;
};

template <class G>
struct Mask {
    ZeliSize size;
    ZeliPoint anchor;
    std::vector<typename G::Element> elements;
};

// Kinds of masks, by what their elements are like.
enum class Elements { paraboloid, few, bytes, anything, edges, zeros, kinds };

template <class G>
Mask<G> makeMask(Random& random, ZeliSize size, Elements kind)
{
    using E = typename G::Element;
    Mask<G> mask{size, {random.between(0, size.width - 1), random.between(0, size.height - 1)}, {}};
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const int u = 2 * x - size.width + 1, v = 2 * y - size.height + 1;
            const auto from = [&](std::vector<E> list) { return list[std::size_t(random.between(0, int(list.size()) - 1))]; };
            constexpr E low = std::numeric_limits<E>::lowest(), high = std::numeric_limits<E>::max();
            const auto value = [&]() -> E {
                switch (kind) {
                case Elements::paraboloid: return E(-(u * u + v * v));
                case Elements::few: return E(random.between(-2, 2) * 40);
                case Elements::bytes: return E(random.between(-256, 256));
                case Elements::anything: return randomElement<E>(random, Texture::Noise, x, y);
                case Elements::edges: return from({0, -1, 255, 256, -255, -256, -300, low, high, E(high - 255), E(high - 100)});
                case Elements::zeros: return from({E(0), E(-0.0), E(-0.0), E(-1)});
                default: return randomElement<E>(random, Texture::Extremes, x, y);
                }
            };
            mask.elements.push_back(value());
        }
    return mask;
}

template <class G>
void expectDefinition(Random& random, const Mask<G>& mask, ZeliSize size, Texture texture)
{
    using T = typename G::Pixel;
    Image<T> src(random, size, texture);
    if (!std::numeric_limits<T>::is_integer && random.between(0, 1)) // zeros of both signs
        src.fill([&](int x, int y) {
            return random.between(0, 2) ? std::copysign(T(0), T(random.between(0, 1)) - T(0.5)) : src.at(x, y);
        });
    ZeliMorphGrayState* state = nullptr;
    ASSERT_EQ(zelStatusOk, G::initAlloc(&state, size, mask.elements.data(), mask.size, mask.anchor));
    for (const bool dilates : {true, false}) {
        Image<T> dst(random, size);
        EXPECT_EQ(zelStatusOk, call(dilates ? G::dilate : G::erode, src, dst, size, zeliBorderReplicate, state));
        dst.expect([&](int x, int y) {
            auto best = dilates ? G::kLowest : G::kHighest;
            for (int j = 0; j < mask.size.height; ++j)
                for (int i = 0; i < mask.size.width; ++i) {
                    const T pixel = src.at(std::clamp(x + i - mask.anchor.x, 0, size.width - 1),
                                           std::clamp(y + j - mask.anchor.y, 0, size.height - 1));
                    const auto sum = G::sum(pixel, mask.elements[std::size_t(j * mask.size.width + i)]);
                    if (dilates ? sum > best : sum < best) best = sum;
                }
            return T(std::numeric_limits<T>::is_integer ? std::clamp<decltype(best)>(best, 0, 255) : best);
        }, (dilates ? "dilation by " : "erosion by ") + std::to_string(mask.size.width) + " x " +
               std::to_string(mask.size.height));
    }
    EXPECT_TRUE(src.untouched());
    EXPECT_EQ(zelStatusOk, G::release(state));
}

template <class G>
class Gray : public testing::Test {};
using Types = testing::Types<Gray8u, Gray32f>;
TYPED_TEST_SUITE(Gray, Types);

TYPED_TEST(Gray, EqualsDefinition)
{
    Random random(1);
    const ZeliSize masks[] = {{1, 1}, {3, 3}, {5, 5}, {2, 7}, {9, 8}, {17, 1}, {1, 70}, {65, 2}, {40, 3}};
    for (ZeliSize size : withSeams({{1, 1}, {2, 3}, {3, 2}, {7, 9}, {40, 5}, {66, 4}, {70, 30}}))
        for (const ZeliSize maskSize : masks) {
            const auto kind = Elements(random.between(0, int(Elements::kinds)));
            const auto texture = Texture(random.between(0, 2));
            expectDefinition<TypeParam>(random, makeMask<TypeParam>(random, maskSize, kind), size, texture);
        }
    for (int kind = 0; kind <= int(Elements::kinds); ++kind)
        for (Texture texture : {Texture::Noise, Texture::Extremes, Texture::Smooth})
            for (int turn = 0; turn < 4; ++turn)
                expectDefinition<TypeParam>(random, makeMask<TypeParam>(random, {4, 3}, Elements(kind)), {37, 9}, texture);
}

TYPED_TEST(Gray, StateInTheCallersMemory)
{
    using E = typename TypeParam::Element;
    Random random(2);
    const auto mask = makeMask<TypeParam>(random, {5, 3}, Elements::few);
    const ZeliSize size{30, 8};
    Zel32s bytes = 0;
    EXPECT_EQ(zelStatusOk, TypeParam::getSize(size, mask.elements.data(), mask.size, &bytes));
    EXPECT_EQ(4 * 15 + 32, bytes);
    std::vector<std::uint64_t> memory(std::size_t(bytes) / 8 + 2, ~std::uint64_t(0));
    auto* const state = reinterpret_cast<ZeliMorphGrayState*>(memory.data());
    std::vector<E> given = mask.elements;
    EXPECT_EQ(zelStatusOk, TypeParam::init(state, size, given.data(), mask.size, mask.anchor));
    EXPECT_EQ(~std::uint64_t(0), memory.back()) << "the state is longer than told";
    std::fill(given.begin(), given.end(), E(1000)); // the state has its own copy
    Image<typename TypeParam::Pixel> src(random, size), one(random, size), other(random, size);
    ZeliMorphGrayState* allocated = nullptr;
    const int before = blocks;
    EXPECT_EQ(zelStatusOk, TypeParam::initAlloc(&allocated, size, mask.elements.data(), mask.size, mask.anchor));
    EXPECT_EQ(std::uint64_t(bytes), lastAllocation);
    EXPECT_EQ(zelStatusOk, call(TypeParam::dilate, src, one, size, zeliBorderReplicate, state));
    EXPECT_EQ(zelStatusOk, call(TypeParam::dilate, src, other, size, zeliBorderReplicate, allocated));
    one.expect([&](int x, int y) { return other.at(x, y); }, "the state in the caller's memory");
    EXPECT_EQ(zelStatusOk, TypeParam::release(allocated));
    EXPECT_EQ(before, blocks);
    EXPECT_EQ(zelStatusNullPointer, TypeParam::release(nullptr));
    EXPECT_EQ(zelStatusOk, TypeParam::getSize(size, mask.elements.data(), {40000, 30000}, &bytes));
    EXPECT_EQ(int(4800000032u), bytes) << "wraps at 32 bits";
}

TYPED_TEST(Gray, ChecksInOrder)
{
    using E = typename TypeParam::Element;
    Random random(3);
    const ZeliSize size{20, 4}, maskSize{3, 2};
    const E elements[6] = {};
    Zel32s bytes = 0;
    Checks(TypeParam::getSize, size, &elements[0], maskSize, &bytes).nulls().sizes().expect();

    std::uint64_t memory[8] = {};
    auto* const state = reinterpret_cast<ZeliMorphGrayState*>(memory);
    using Init = std::tuple<ZeliMorphGrayState*, ZeliSize, const E*, ZeliSize, ZeliPoint>;
    std::vector<Fault<Init>> faults = {
        {"null state", zelStatusNullPointer, [](Init& a) { std::get<0>(a) = nullptr; }},
        {"null mask", zelStatusNullPointer, [](Init& a) { std::get<2>(a) = nullptr; }},
        {"roi width 0", zelStatusBadSize, [](Init& a) { std::get<1>(a).width = 0; }},
        {"roi height -1", zelStatusBadSize, [](Init& a) { std::get<1>(a).height = -1; }},
        {"mask width 0", zelStatusBadSize, [](Init& a) { std::get<3>(a).width = 0; }},
        {"mask height -1", zelStatusBadSize, [](Init& a) { std::get<3>(a).height = -1; }}};
    for (const ZeliPoint anchor : {ZeliPoint{-1, 0}, {3, 0}, {0, -1}, {0, 2}})
        faults.push_back({"anchor", zelStatusBadAnchor, [=](Init& a) { std::get<4>(a) = anchor; }});
    const Init good{state, size, elements, maskSize, {2, 1}};
    expectCheckOrder(good, faults, [&](const Init& a) {
        const ZelStatus status = std::apply(TypeParam::init, a);
        EXPECT_TRUE(std::all_of(memory, memory + 8, [](std::uint64_t word) { return word == 0; }));
        return status;
    });
    noMemory = true; // found out last
    faults.push_back({"no memory", zelStatusNoMemory, [](Init&) {}});
    expectCheckOrder(good, faults, [&](const Init& a) {
        ZeliMorphGrayState* made = nullptr;
        const ZelStatus status = TypeParam::initAlloc(std::get<0>(a) ? &made : nullptr, std::get<1>(a), std::get<2>(a),
                                                      std::get<3>(a), std::get<4>(a));
        EXPECT_EQ(nullptr, made);
        return status;
    });
    noMemory = false;

    EXPECT_EQ(zelStatusOk, std::apply(TypeParam::init, good));
    std::uint64_t ofNarrow[8];
    auto* const narrow = reinterpret_cast<ZeliMorphGrayState*>(ofNarrow);
    EXPECT_EQ(zelStatusOk, TypeParam::init(narrow, {19, 4}, elements, maskSize, {0, 0}));
    Image<typename TypeParam::Pixel> src(random, size), dst(random, size);
    for (const auto function : {TypeParam::dilate, TypeParam::erode}) {
        Checks checks(function, src, dst, size, int(zeliBorderReplicate), state);
        checks.usual().values(5, zelStatusBadArgument, {0, 2, 3, 4, 6, 0x11});
        using P = typename TypeParam::Pixel;
        using A = std::tuple<const P*, int, P*, int, ZeliSize, int, const ZeliMorphGrayState*>;
        checks.fault("wider than the state", zelStatusBadSize, [&](A& a) { std::get<6>(a) = narrow; });
        checks.fault("taller than the state", zelStatusBadSize, [](A& a) { std::get<4>(a).height = 5; });
        checks.expect();
    }
}

} // namespace
