// Haar classifier stages against their definition. This program brings its own zelMalloc, which can be told to fail.
#include "support/calls.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <numeric>

using namespace zeltest;

namespace {
int allocationsLeft = -1; // none fails while this is negative
int blocks = 0;           // allocated and not yet freed
std::uint64_t lastAllocation = 0;
} // namespace

void* zelMalloc(uint64_t bytes)
{
    lastAllocation = bytes;
    if (allocationsLeft == 0) return nullptr;
    if (allocationsLeft > 0) --allocationsLeft;
    ++blocks;
    return std::aligned_alloc(64, (bytes + 63) / 64 * 64);
}

void zelFree(void* block)
{
    blocks -= block != nullptr;
    std::free(block);
}

namespace {

// ---- definition

using Corners = std::array<ZeliPoint, 4>;

template <class N>
struct Classifier {
    std::vector<Corners> corners;
    std::vector<N> weights;
    N threshold, value1, value2;
    bool tilted, grouped;
    int index;
};

// The four points of a tilted box with its top at (x, y).
Corners diamond(int x, int y, int w, int h)
{
    return {{{x + w - h, y + w + h}, {x - h, y + h}, {x + w, y + w}, {x, y}}};
}

// What the caller passes to create a stage.
template <class N>
struct Stage {
    std::vector<ZeliRect> rects;
    std::vector<N> weights, thresholds, values1, values2;
    std::vector<Zel32s> counts;

    std::vector<Classifier<N>> classifiers(bool tilted) const
    {
        std::vector<Classifier<N>> all;
        std::size_t next = 0;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            Classifier<N> c{{}, {}, thresholds[i], values1[i], values2[i], tilted, !tilted, int(i)};
            for (int j = 0; j < counts[i]; ++j, ++next) {
                const auto [x, y, w, h] = rects[next];
                c.corners.push_back(tilted ? diamond(x, y, w, h)
                                           : Corners{{{x + w, y + h}, {x, y + h}, {x + w, y}, {x, y}}});
                c.weights.push_back(weights[next]);
            }
            all.push_back(c);
        }
        const auto group = [](const auto& c) { return c.weights.size() == 2 ? 0 : c.weights.size() == 3 ? 1 : 2; };
        if (!tilted)
            std::stable_sort(all.begin(), all.end(), [&](const auto& a, const auto& b) { return group(a) < group(b); });
        return all;
    }
};

// Numbers whose sums depend on their order and products that wrap.
template <class N>
N number(Random& random, int size)
{
    if constexpr (std::is_integral_v<N>) return random.between(0, 2) ? random.between(-size, size) : N(random.next());
    return random.between(0, 2) ? N(random.between(-4 * size, 4 * size)) / 4 : N(random.between(0, 1) ? 3e8 : -3e8);
}

template <class N>
Stage<N> randomStage(Random& random, const std::vector<Zel32s>& counts)
{
    Stage<N> stage;
    stage.counts = counts;
    for (int count : counts) {
        for (int j = 0; j < count; ++j) {
            const int x = random.between(3, 6);
            stage.rects.push_back({x, random.between(0, 5), random.between(1, 4), random.between(1, 4)});
            stage.weights.push_back(number<N>(random, 3));
            if (j == 2 && random.between(0, 1)) { // takes the one before away again
                stage.rects.back() = stage.rects.end()[-2];
                stage.weights.back() = N(0) - stage.weights.end()[-2];
            }
        }
        stage.thresholds.push_back(number<N>(random, 5));
        stage.values1.push_back(number<N>(random, 9));
        stage.values2.push_back(number<N>(random, 9));
    }
    return stage;
}

Zel32s low32(std::int64_t v) { return Zel32s(Zel32u(std::uint64_t(v))); }

// Whether classifier `c` decides for its first value.
template <class E, class N, bool Mixed>
bool decides(const Classifier<N>& c, const Image<E>& src, const Image<E>& tilt, int x, int y, N norm, int scaleFactor)
{
    std::vector<N> products;
    for (std::size_t j = 0; j < c.corners.size(); ++j) {
        const auto at = [&](int k) {
            const ZeliPoint p = c.corners[j][std::size_t(k)];
            return Mixed && c.tilted ? tilt.at(x + p.x + 1, y + p.y + 1) : src.at(x + p.x, y + p.y);
        };
        if constexpr (std::is_floating_point_v<E>) {
            products.push_back((at(0) - at(1) - at(2) + at(3)) * c.weights[j]);
        } else {
            const Zel32s box = low32(std::int64_t(at(0)) - at(1) - at(2) + at(3));
            if constexpr (std::is_integral_v<N>) products.push_back(low32(std::int64_t(box) * c.weights[j]));
            else products.push_back(N(box) * c.weights[j]);
        }
    }
    if (!Mixed && std::is_floating_point_v<E> && c.grouped && products.size() == 3)
        std::rotate(products.begin(), products.begin() + 1, products.end()); // the first comes last
    if constexpr (std::is_floating_point_v<N>) {
        return c.threshold * norm > std::accumulate(products.begin(), products.end(), N(0));
    } else {
        std::int64_t total = std::accumulate(products.begin(), products.end(), std::int64_t(0));
        const std::int64_t limit = std::int64_t(c.threshold) * norm;
        if (!Mixed) return low32(total) < low32(limit);
        for (int i = std::max(scaleFactor, -64); i < 0; ++i) total = std::int64_t(std::uint64_t(total) * 2);
        return total < limit;
    }
}

// ---- the six members

template <class N>
struct Kind;
#define KIND(N, token)                                                                                                 \
    template <>                                                                                                        \
    struct Kind<N> {                                                                                                   \
        using State = ZeliHaarClassifier_##token;                                                                      \
        static constexpr auto upright = zeliHaarClassifierInitAlloc_##token;                                           \
        static constexpr auto tilted = zeliTiltedHaarClassifierInitAlloc_##token;                                      \
        static constexpr auto release = zeliHaarClassifierFree_##token;                                                \
        static constexpr auto size = zeliGetHaarClassifierSize_##token;                                                \
        static constexpr auto tilt = zeliTiltHaarFeatures_##token;                                                     \
    };
KIND(Zel32f, 32f)
KIND(Zel32s, 32s)

template <class E_, class N_, auto function, bool Mixed>
struct Member {
    using E = E_;
    using N = N_;
    static constexpr bool kMixed = Mixed;

    // use(arguments...) with those of the member.
    template <class Src, class Norm, class Mask, class Use>
    static auto with(Src& src, Src& tilt, Norm& norm, Mask& mask, ZeliSize size, Zel32s* positive, N threshold,
                     const typename Kind<N>::State* state, int scaleFactor, const Use& use)
    {
        const auto scaled = [&](auto&... images) {
            if constexpr (std::is_integral_v<N>)
                return use(function, images..., norm, mask, size, positive, threshold, state, scaleFactor);
            else
                return use(function, images..., norm, mask, size, positive, threshold, state);
        };
        if constexpr (Mixed) return scaled(src, tilt);
        else return scaled(src);
    }
};

using Members = testing::Types<Member<Zel32f, Zel32f, zeliApplyHaarClassifier_32f_C1R, false>,
                               Member<Zel32s, Zel32f, zeliApplyHaarClassifier_32s32f_C1R, false>,
                               Member<Zel32s, Zel32s, zeliApplyHaarClassifier_32s_C1RSfs, false>,
                               Member<Zel32f, Zel32f, zeliApplyMixedHaarClassifier_32f_C1R, true>,
                               Member<Zel32s, Zel32f, zeliApplyMixedHaarClassifier_32s32f_C1R, true>,
                               Member<Zel32s, Zel32s, zeliApplyMixedHaarClassifier_32s_C1RSfs, true>>;

constexpr auto kCall = [](auto function, auto&... given) { return call(function, given...); };

template <class N>
struct Free {
    void operator()(typename Kind<N>::State* state) const { EXPECT_EQ(zelStatusOk, Kind<N>::release(state)); }
};
template <class N>
using Owned = std::unique_ptr<typename Kind<N>::State, Free<N>>;

template <class N>
Owned<N> make(const Stage<N>& s, bool tilted)
{
    typename Kind<N>::State* state = nullptr;
    EXPECT_EQ(zelStatusOk, (tilted ? Kind<N>::tilted : Kind<N>::upright)(
                               &state, s.rects.data(), s.weights.data(), s.thresholds.data(), s.values1.data(),
                               s.values2.data(), s.counts.data(), int(s.counts.size())));
    const auto rects = std::accumulate(s.counts.begin(), s.counts.end(), std::uint64_t(0));
    EXPECT_EQ(56 + 32 * s.counts.size() + 36 * rects, lastAllocation);
    return Owned<N>(state);
}

// Pixels that classifiers read around a region; their second plane has a row and a column more in front.
template <class N>
Margin marginOf(const std::vector<Classifier<N>>& classifiers)
{
    Margin margin = {0, 0, 1, 1};
    for (const auto& c : classifiers)
        for (const auto& corners : c.corners)
            for (const auto [x, y] : corners)
                margin = {std::max(margin.left, -x), std::max(margin.top, -y), std::max(margin.right, x + c.tilted),
                          std::max(margin.bottom, y + c.tilted)};
    return margin;
}

// Runs one stage on random images and compares mask and count. Returns the number of survivors.
template <class M>
int expectDefinition(Random& random, const std::vector<Classifier<typename M::N>>& classifiers,
                     const Owned<typename M::N>& state, ZeliSize size, Texture texture, int density,
                     typename M::N threshold, int scaleFactor = 0)
{
    using E = typename M::E;
    using N = typename M::N;
    const Margin margin = marginOf(classifiers);
    Image<E> src(random, size, texture, margin), tilt(random, size, texture, margin);
    Image<N> norm(random, size, texture);
    Image<Zel8u> mask = makeMask(random, size, density);
    Zel32s positive = -1, wanted = 0;
    EXPECT_EQ(zelStatusOk, M::with(src, tilt, norm, mask, size, &positive, threshold, state.get(), scaleFactor, kCall));
    mask.expect([&](int x, int y) {
        if (mask.before(x, y) == 0) return Zel8u(0);
        N sum = 0;
        for (const auto& c : classifiers) {
            const bool first = decides<E, N, M::kMixed>(c, src, tilt, x, y, norm.at(x, y), scaleFactor);
            const N value = first ? c.value1 : c.value2;
            if constexpr (std::is_integral_v<N>)
                sum = low32(std::int64_t(sum) + value);
            else
                sum += value;
        }
        wanted += !(threshold > sum);
        return threshold > sum ? Zel8u(0) : mask.before(x, y);
    }, "mask");
    EXPECT_EQ(wanted, positive);
    EXPECT_TRUE(src.untouched() && tilt.untouched() && norm.untouched());
    return positive;
}

// No test leaves a block behind.
class Haar : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(0, blocks); }
};
template <class M>
class HaarApply : public Haar {};
TYPED_TEST_SUITE(HaarApply, Members);

TYPED_TEST(HaarApply, EqualsDefinition)
{
    using N = typename TypeParam::N;
    Random random(1);
    int survivors = 0, pixels = 0;
    for (int round = 0; round < 12; ++round) {
        const auto stage = randomStage<N>(random, {1, 3, 2, 4, 3, 2, 7, 2, 3, 1});
        for (const bool tilted : {false, true}) {
            const auto state = make(stage, tilted);
            for (Texture texture : {Texture::Noise, Texture::Extremes, Texture::Smooth})
                for (int width : {1, 3, 4, 7, 8, 9, 15, 16, 17, 31, 33, 50})
                    for (int density : {0, 3, 30, 95, 100}) {
                        survivors += expectDefinition<TypeParam>(random, stage.classifiers(tilted), state, {width, 3},
                                                                 texture, density, number<N>(random, 30));
                        pixels += width * 3 * density / 100;
                    }
            if (round == 0)
                for (ZeliSize size : withSeams({}))
                    expectDefinition<TypeParam>(random, stage.classifiers(tilted), state, size, Texture::Noise,
                                                random.between(1, 100), number<N>(random, 30));
        }
    }
    EXPECT_GT(survivors, pixels / 5);
    EXPECT_LT(survivors, pixels / 5 * 4);

    std::vector<Zel32s> counts(120, 2); // more rectangles than a detector's stages have
    for (std::size_t i = 0; i < counts.size(); ++i) counts[i] += i % 3 == 0;
    const auto stage = randomStage<N>(random, counts);
    for (const bool tilted : {false, true})
        expectDefinition<TypeParam>(random, stage.classifiers(tilted), make(stage, tilted), {50, 3}, Texture::Noise,
                                    70, 0);
}

TYPED_TEST(HaarApply, KnowsEmptyStagesAndNotANumber)
{
    using N = typename TypeParam::N;
    Random random(2);
    const ZeliSize size = {20, 5};
    Stage<N> stage = randomStage<N>(random, {2});
    if constexpr (std::is_floating_point_v<N>) {
        stage.values1 = stage.values2 = {std::numeric_limits<N>::quiet_NaN()};
        const auto state = make(stage, false);
        const auto classifiers = stage.classifiers(false);
        EXPECT_EQ(100, expectDefinition<TypeParam>(random, classifiers, state, size, Texture::Noise, 100, 1));
    }
    stage.counts.clear();
    const auto state = make(stage, false);
    EXPECT_EQ(100, expectDefinition<TypeParam>(random, {}, state, size, Texture::Noise, 100, 0));
    EXPECT_EQ(0, expectDefinition<TypeParam>(random, {}, state, size, Texture::Noise, 100, 1));
    ZeliSize extent = {7, 7};
    EXPECT_EQ(zelStatusOk, Kind<N>::size(state.get(), &extent));
    EXPECT_EQ(0, extent.width + extent.height);
}

TYPED_TEST(HaarApply, ScalesInTheMixedIntegerMemberAlone)
{
    if constexpr (std::is_integral_v<typename TypeParam::N>) {
        Random random(3);
        const auto stage = randomStage<Zel32s>(random, {2, 3, 1, 5, 2});
        const auto state = make(stage, false);
        const auto classifiers = stage.classifiers(false);
        for (int scaleFactor : {0, -1, -3, -31, -32, -63, -64, -1000, std::numeric_limits<int>::min()})
            for (Texture texture : {Texture::Smooth, Texture::Extremes})
                expectDefinition<TypeParam>(random, classifiers, state, {41, 3}, texture, 80, 3, scaleFactor);
        if (!TypeParam::kMixed)
            expectDefinition<TypeParam>(random, classifiers, state, {41, 3}, Texture::Smooth, 80, 3, 1);
    }
}

// The kinds tilt differently.
template <class N>
void tiltByDefinition(Classifier<N>& c, int flag)
{
    for (auto& corners : c.corners) {
        const auto [x, y] = corners[3];
        const int w = corners[0].x - x, h = corners[0].y - y;
        if (std::is_integral_v<N>)
            corners = flag ? diamond(x, y, w, w)
                           : Corners{{{x, y + h}, {x - w, y + h - w}, {x + w, y + h - w}, {x, y + h - 2 * w}}};
        else
            corners = flag ? diamond(x, y, w, h)
                           : Corners{{{x, y + h}, {x - h, y}, {x + w, y + h - w}, {x + w - h, y - w}}};
    }
}

TYPED_TEST(HaarApply, TiltsChosenClassifiersOnce)
{
    using N = typename TypeParam::N;
    Random random(4);
    for (int flag : {0, 1, -7})
        for (int round = 0; round < 8; ++round) {
            const auto stage = randomStage<N>(random, {1, 3, 2, 2, 4, 3});
            const auto state = make(stage, false);
            auto classifiers = stage.classifiers(false);
            Zel8u chosen[6] = {};
            EXPECT_EQ(zelStatusOk, Kind<N>::tilt(chosen, flag, state.get())); // none, so another call may follow
            for (auto& byte : chosen) byte = Zel8u(random.between(0, 2));
            chosen[round % 6] = 200;
            EXPECT_EQ(zelStatusOk, Kind<N>::tilt(chosen, flag, state.get()));
            ZeliSize wanted = {0, 0}, size;
            for (auto& c : classifiers) {
                if (chosen[c.index]) tiltByDefinition(c, flag), c.tilted = true;
                for (const auto& corners : c.corners)
                    wanted = {std::max(wanted.width, corners[2].x), std::max(wanted.height, corners[0].y)};
            }
            EXPECT_EQ(zelStatusOk, Kind<N>::size(state.get(), &size));
            EXPECT_EQ(wanted.width, size.width);
            EXPECT_EQ(wanted.height, size.height);
            expectDefinition<TypeParam>(random, classifiers, state, {37, 4}, Texture::Noise, 70, 1);
            EXPECT_EQ(zelStatusBadArgument, Kind<N>::tilt(chosen, flag, state.get()));
        }
    const auto tilted = make(randomStage<N>(random, {1, 2}), true);
    EXPECT_EQ(zelStatusBadArgument, Kind<N>::tilt(reinterpret_cast<const Zel8u*>("none"), 0, tilted.get()));
}

// A plane that is no image.
template <class T>
struct Memory {
    T* data;
    int step;
    friend auto arguments(Memory& plane) { return std::make_tuple(plane.data, plane.step); }
};

// The integral image ends right behind what the surviving pixels read, on either side.
TYPED_TEST(HaarApply, ReadsForSurvivorsOnly)
{
    using E = typename TypeParam::E;
    using N = typename TypeParam::N;
    Stage<N> stage;
    stage.rects = {{0, 0, 2, 1}, {1, 0, 1, 1}};
    stage.weights = {1, -1};
    stage.thresholds = stage.values1 = stage.values2 = {1};
    stage.counts = {2};
    const auto state = make(stage, false);
    Random random(7);
    for (int first = 0; first < 20; ++first)
        for (int last = first; last < 40; last += 3) {
            const int readable = last + 3 - first;
            Image<E> src(random, 40 + readable, 1), tilt(random, 1, 1); // two rows
            Image<N> norm(random, last + 1 - first, 1);
            Image<Zel8u> mask(random, 40, 1);
            src.fill([](int, int) { return 0; });
            norm.fill([](int, int) { return 0; });
            int marked = 0;
            mask.fill([&](int x, int) {
                const bool marks = x == first || x == last || (x > first && x < last && x % 5 > 1);
                marked += marks;
                return marks;
            });
            Zel32s positive = 0;
            Memory<E> srcPlane{src.data() - first, 160}, tiltPlane{tilt.data(), 160};
            Memory<N> normPlane{norm.data() - first, 160};
            Memory<Zel8u> maskPlane{mask.data(), 40};
            EXPECT_EQ(zelStatusOk, TypeParam::with(srcPlane, tiltPlane, normPlane, maskPlane, {40, 1}, &positive, 1,
                                                   state.get(), 0, kCall));
            EXPECT_EQ(marked, positive);
        }
}

TYPED_TEST(HaarApply, ChecksInOrder)
{
    using N = typename TypeParam::N;
    Random random(5);
    const ZeliSize size{20, 4};
    const auto state = make(randomStage<N>(random, {2}), false);
    Image<typename TypeParam::E> src(random, size, Texture::Noise, Margin::all(16)), tilt(random, size);
    Image<N> norm(random, size);
    Image<Zel8u> mask(random, size);
    Zel32s positive = -1;
    TypeParam::with(src, tilt, norm, mask, size, &positive, 0, state.get(), 0, [](auto function, auto&... given) {
        Checks checks(function, given...);
        checks.usual();
        if (TypeParam::kMixed && std::is_integral_v<N>) checks.values(-1, zelStatusBadArgument, {1});
        checks.expect();
    });
}

TYPED_TEST(HaarApply, DoesNothingWithoutMemory)
{
    using N = typename TypeParam::N;
    Random random(6);
    const ZeliSize size{20, 4};
    const auto stage = randomStage<N>(random, {2, 3, 1});
    const auto state = make(stage, false);
    allocationsLeft = 0;
    if (TypeParam::kMixed) {
        expectDefinition<TypeParam>(random, stage.classifiers(false), state, size, Texture::Noise, 100, 0);
    } else {
        Image<typename TypeParam::E> src(random, size, Texture::Noise, Margin::all(16));
        Image<N> norm(random, size);
        Image<Zel8u> mask(random, size);
        Zel32s positive = -1;
        EXPECT_EQ(zelStatusOk, TypeParam::with(src, src, norm, mask, size, &positive, 0, state.get(), 0, kCall));
        EXPECT_TRUE(mask.untouched());
        EXPECT_EQ(-1, positive);
    }
    allocationsLeft = -1;
}

// ---- creation

template <class N>
class HaarState : public Haar {};
using Numbers = testing::Types<Zel32f, Zel32s>;
TYPED_TEST_SUITE(HaarState, Numbers);

TYPED_TEST(HaarState, CreationFailsInOrder)
{
    using N = TypeParam;
    using State = typename Kind<N>::State;
    struct A {
        Stage<N> stage;
        int null = 0, count = 3;
        bool noMemory = false;
    };
    Random random(7);
    char elsewhere;
    for (const bool tilted : {false, true}) {
        const bool early = !tilted && std::is_same_v<N, Zel32f>; // looks at the rectangles before it allocates
        State* const before = reinterpret_cast<State*>(&elsewhere);
        State* state = before;
        const auto call = [&](const A& a) {
            state = before;
            allocationsLeft = a.noMemory ? 0 : -1;
            const auto given = [&](int i, auto* pointer) { return a.null == i ? nullptr : pointer; };
            const ZelStatus status = (tilted ? Kind<N>::tilted : Kind<N>::upright)(
                given(1, &state), given(2, a.stage.rects.data()), given(3, a.stage.weights.data()),
                given(4, a.stage.thresholds.data()), given(5, a.stage.values1.data()), given(6, a.stage.values2.data()),
                given(7, a.stage.counts.data()), a.count);
            allocationsLeft = -1;
            EXPECT_EQ(status == zelStatusBadArgument && !early ? nullptr : before, state) << status;
            return status;
        };
        std::vector<Fault<A>> faults;
        for (int i = 1; i <= 7; ++i) faults.push_back({"null pointer", zelStatusNullPointer, [=](A& a) { a.null = i; }});
        faults.push_back({"count -1", zelStatusBadSize, [](A& a) { a.count = -1; }});
        faults.push_back({"no rectangles", zelStatusBadSize, [](A& a) { a.stage.counts[2] = 0; }});
        // of the classifier of three, so that that of two has been written before
        std::vector<ZeliRect> bad = {{-1, 3, 2, 2}, {3, -1, 2, 2}, {3, 3, 0, 2}, {3, 3, 2, 0}};
        if (tilted) bad.push_back({3, 3, 1, 5}); // beyond the left edge
        for (const ZeliRect rect : bad)
            faults.push_back({"rectangle", zelStatusBadArgument, [=](A& a) { a.stage.rects[2] = rect; }});
        const Fault<A> noMemory = {"no memory", zelStatusNoMemory, [](A& a) { a.noMemory = true; }};
        faults.insert(early ? faults.end() : faults.begin() + 9, noMemory);
        expectCheckOrder(A{randomStage<N>(random, {1, 3, 2})}, faults, call);
    }
    auto stage = randomStage<N>(random, {1});
    if (std::is_same_v<N, Zel32s>) { // more rectangles than can be counted: none is read, and no memory asked for
        const Zel32s counts[] = {std::numeric_limits<Zel32s>::max(), 1};
        State* state = nullptr;
        lastAllocation = 0;
        EXPECT_EQ(zelStatusNoMemory, Kind<N>::upright(&state, stage.rects.data(), stage.weights.data(), stage.weights.data(),
                                                      stage.weights.data(), stage.weights.data(), counts, 2));
        EXPECT_EQ(0u, lastAllocation);
    }
    stage.rects[0] = {3, 3, 1, 4};
    make(stage, true); // touches the left edge
    ZeliSize size;
    EXPECT_EQ(zelStatusNullPointer, Kind<N>::release(nullptr));
    EXPECT_EQ(zelStatusNullPointer, Kind<N>::size(nullptr, &size));
    EXPECT_EQ(zelStatusNullPointer, Kind<N>::size(make(stage, false).get(), nullptr));
    EXPECT_EQ(zelStatusNullPointer, Kind<N>::tilt(nullptr, 0, make(stage, false).get()));
    EXPECT_EQ(zelStatusNullPointer, Kind<N>::tilt(reinterpret_cast<const Zel8u*>(""), 0, nullptr));
}

} // namespace
