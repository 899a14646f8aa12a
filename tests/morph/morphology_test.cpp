// States of masks, dilation and erosion against their definition.
#include "morph/masks.h"

using namespace zeltest;

namespace {

template <class M>
class Morphology : public testing::Test {};
TYPED_TEST_SUITE(Morphology, Layouts);

struct Release {
    void operator()(ZeliMorphState* state) const { zeliMorphologyFree(state); }
};
using State = std::unique_ptr<ZeliMorphState, Release>;

template <class M>
State make(int roiWidth, const Mask& mask)
{
    ZeliMorphState* state = nullptr;
    EXPECT_EQ(zelStatusOk, M::initAlloc(roiWidth, mask.bytes.data(), mask.size, mask.anchor, &state));
    return State(state);
}

// ---- masks of all shapes

const std::vector<std::string> kPlus = {".#.", "###", ".#."}, kGap = {"..#..", ".....", ".###.", ".....", "..#.."};

std::vector<Mask> masks()
{
    Random random(9);
    std::vector<Mask> list = {
        Mask({"#"}), Mask({"...", "...", "..."}), Mask({"#####"}, {4, 0}), Mask({"#", "#", "#"}, {0, 0}),
        Mask({"###", "###", "###"}), Mask({".....", ".....", ".....", "...##", "...##"}, {0, 0}), // anchors outside
        Mask({"##...", "##...", ".....", ".....", "....."}, {4, 4}), Mask({"#....", "....."}, {4, 1}),
        Mask({"....", "...#", "...."}, {0, 1}), Mask(kPlus), Mask(kPlus, {0, 0}), Mask(kPlus, {1, 0}), Mask(kGap),
        Mask(kGap, {2, 3}), Mask(kGap, {1, 2}), disc(5), disc(11), disc(17), Mask({"##.", "###", ".##"}),
        Mask({"..##", "..#.", "####", ".##."}, {2, 1}), Mask({"#.#", "...", "#.#"}), Mask({"#.#"}, {2, 0}),
        Mask({"#", ".", "#"}, {0, 2}), Mask({"######.", "..#....", "..#####"}, {2, 0}),
        randomMask(random, {5, 5}, 12), randomMask(random, {11, 11}, 33), randomMask(random, {24, 23}, 60)};
    list.push_back(Mask({40, 3}, {20, 1}, [](int x, int y) { return y == 1 || x == 20; }));  // wider than most regions
    list.push_back(Mask({3, 40}, {1, 39}, [](int x, int y) { return x == 1 || y == 37; }));  // higher
    list.push_back(Mask({2, 31}, {1, 3}, [](int x, int y) { return (x ^ y) & 1; }));
    return list;
}

// Dilation and erosion of one image with a state, against the definition.
template <class M>
void expectDefinition(Random& random, ZeliSize size, const Mask& mask, ZeliMorphState* state, const std::string& what)
{
    using T = typename M::T;
    const bool general = state->shape == zeliMorphShapeGeneral;
    // Under other masks than general ones the result is open with NaN.
    const bool open = std::is_floating_point_v<T> && !general;
    auto src = image<M>(random, size, open || random.between(0, 1) ? Texture::Noise : Texture::Extremes);
    if (open && random.between(0, 1)) {
        const T infinite = std::numeric_limits<T>::infinity();
        const T few[] = {infinite, -infinite, T(0), T(-0.0)};
        const int first = 2 * random.between(0, 1); // infinities alone, or zeros alone
        src.fill([&](int, int) { return few[first + random.between(0, 1)]; });
    }
    for (const bool largest : {true, false}) {
        auto dst = image<M>(random, size);
        ASSERT_EQ(zelStatusOk, call(largest ? M::dilate : M::erode, src, dst, size, zeliBorderReplicate, state));
        dst.expect([&](int x, int y) { return extremeUnder(mask, largest, general, src, M::kChannels, x, y); },
                   what + (largest ? ", dilation" : ", erosion"));
    }
    EXPECT_TRUE(src.untouched());
}

// In memory of exactly the size that the state tells, and with all bytes of that memory bad.
template <class M>
void expectInExactMemory(Random& random, ZeliSize size, const Mask& mask, const std::string& what)
{
    Buffer block(random, make<M>(size.width, mask)->totalSize, 8);
    auto* const state = reinterpret_cast<ZeliMorphState*>(block.data());
    ASSERT_EQ(zelStatusOk, M::init(size.width, mask.bytes.data(), mask.size, mask.anchor, state));
    expectDefinition<M>(random, size, mask, state, what);
}

TYPED_TEST(Morphology, EqualsDefinitionUnderMasksOfAllShapes)
{
    Random random(1);
    int index = 0;
    for (const Mask& mask : masks()) {
        const std::string what = "mask " + std::to_string(index++);
        for (ZeliSize size : {ZeliSize{1, 1}, {2, 1}, {1, 3}, {3, 9}, {17, 5}, {37, 11}, {70, 26}})
            expectInExactMemory<TypeParam>(random, size, mask, what);
        if (this->HasFailure()) return;
    }
}

TYPED_TEST(Morphology, EqualsDefinitionOnAllWidths)
{
    Random random(2);
    for (const Mask& mask : {disc(7), Mask({"####", "####"}, {3, 0}), Mask({"#.#..", "..#.."}), Mask(kPlus, {1, 2})}) {
        for (ZeliSize size : withSeams({})) expectInExactMemory<TypeParam>(random, size, mask, "");
        for (int width = 1; width < 12; ++width) expectInExactMemory<TypeParam>(random, {width, 2}, mask, "");
    }
}

// Built for small pixels, or for a wide region, and used for others: the work area may be too small, and is not exceeded.
TYPED_TEST(Morphology, TakesStatesOfOtherForms)
{
    Random random(3);
    for (const Mask& mask : masks())
        for (int width : {3, 21}) {
            Buffer block(random, make<C1_Zel8u>(21, mask)->totalSize, 8);
            auto* const state = reinterpret_cast<ZeliMorphState*>(block.data());
            ASSERT_EQ(zelStatusOk, C1_Zel8u::init(21, mask.bytes.data(), mask.size, mask.anchor, state));
            expectDefinition<TypeParam>(random, {width, 4}, mask, state, "state of 8u_C1R");
        }
}

TYPED_TEST(Morphology, ChecksInOrder)
{
    Random random(4);
    const ZeliSize size{20, 4};
    auto src = image<TypeParam>(random, size), dst = image<TypeParam>(random, size);
    for (const auto& rows : {kPlus, kGap, {"##"}, {"."}, {"#.#"}}) {
        const Mask mask(rows);
        const State state = make<TypeParam>(20, mask), narrow = make<TypeParam>(19, mask);
        for (auto function : {TypeParam::dilate, TypeParam::erode}) {
            Checks checks(function, src, dst, size, zeliBorderReplicate, state.get());
            checks.usual().values(5, zelStatusBadArgument, {0, 2, 3, 6, 0x11, -1});
            checks.fault("too wide", zelStatusBadSize, [&](auto& a) { if (std::get<6>(a)) std::get<6>(a) = narrow.get(); });
            checks.expect();
        }
    }
}

// ---- states

struct Wanted {
    Mask mask;
    ZeliMorphShape shape;
    ZeliSize size;
    ZeliPoint anchor;
    std::vector<Zel32s> rowOffset, lengthIndex, runLength, runAnchor;
};

const std::vector<Wanted> kWanted = {
    {Mask({"..", "..", ".."}, {1, 2}), zeliMorphShapeEmpty, {2, 3}, {0, 0}, {}, {}, {}, {}},
    {Mask({".....", ".....", ".....", "...##", "...##"}, {0, 0}), zeliMorphShapeRectangle, {2, 2}, {-3, -3}, {}, {}, {}, {}},
    {Mask({"##...", "##...", "....."}, {4, 2}), zeliMorphShapeRectangle, {2, 2}, {4, 2}, {}, {}, {}, {}},
    {Mask({"..#"}, {2, 0}), zeliMorphShapeRectangle, {1, 1}, {0, 0}, {}, {}, {}, {}},
    {Mask(kPlus), zeliMorphShapeRowRuns, {3, 3}, {1, 1}, {0, 1, 2}, {1, 0, 1}, {3, 1}, {1, 0}},
    {Mask(kPlus, {0, 0}), zeliMorphShapeGeneral, {3, 3}, {0, 0}, {}, {}, {}, {}},
    {Mask(kPlus, {1, 0}), zeliMorphShapeRowRuns, {3, 3}, {1, 0}, {0, 1, 2}, {1, 0, 1}, {3, 1}, {1, 0}},
    {Mask(kGap, {2, 3}), zeliMorphShapeRowRuns, {3, 5}, {1, 3}, {0, 2, 4}, {1, 0, 1}, {3, 1}, {1, 0}},
    {Mask(kGap, {1, 2}), zeliMorphShapeGeneral, {5, 5}, {1, 2}, {}, {}, {}, {}},
    {Mask({".....", "..##.", ".....", "..##.", "....."}, {3, 2}), zeliMorphShapeRowRuns, {2, 3}, {1, 1},
     {0, 2}, {0, 0}, {2}, {1}},
    {Mask({"...", ".#.", "###"}, {1, 0}), zeliMorphShapeGeneral, {3, 3}, {1, 0}, {}, {}, {}, {}}, // anchor row above
    {Mask({".#.", "###", "..."}, {1, 2}), zeliMorphShapeGeneral, {3, 3}, {1, 2}, {}, {}, {}, {}}, // and below
    {Mask({"##.", ".##"}, {1, 0}), zeliMorphShapeGeneral, {3, 2}, {1, 0}, {}, {}, {}, {}}, // one length, two places
    {Mask({"##.", "###", "..."}, {2, 1}), zeliMorphShapeGeneral, {3, 3}, {2, 1}, {}, {}, {}, {}}, // beside a run
    {Mask({".##.", "####", "#...", "##.."}, {1, 1}), zeliMorphShapeGeneral, {4, 4}, {1, 1}, {}, {}, {}, {}},
    {Mask({"##..", "####", "###.", "##.."}, {1, 1}), zeliMorphShapeRowRuns, {4, 4}, {1, 1},
     {0, 1, 2, 3}, {2, 0, 1, 2}, {4, 3, 2}, {1, 1, 1}},
    {Mask({"###", "#.#", "###"}), zeliMorphShapeGeneral, {3, 3}, {1, 1}, {}, {}, {}, {}},
    {Mask({"#.#"}), zeliMorphShapeGeneral, {3, 1}, {1, 0}, {}, {}, {}, {}}};

// The size of the block, by its formulas.
int blockSize(const Wanted& wanted, int roiWidth, int pixelBytes)
{
    const int w = wanted.mask.size.width, h = wanted.mask.size.height, rh = wanted.size.height, s = (w * h + 15) / 16 * 16;
    const int rows = int(wanted.rowOffset.size()), lengths = int(wanted.runLength.size());
    switch (wanted.shape) {
    case zeliMorphShapeEmpty: return s + 96;
    case zeliMorphShapeRectangle: return s + 2 * rh * (roiWidth * pixelBytes + 32) + 4 * rh * 8 + 32 + 128;
    case zeliMorphShapeRowRuns:
        return s + (rh * lengths + 1) * (roiWidth * pixelBytes + 32) + 5 * rh * 8 + 40 + (rows + lengths) * 8 + 160;
    default: return s + 2 * h * (((roiWidth + w) * pixelBytes + 15) / 16 * 16) + 112;
    }
}

TYPED_TEST(Morphology, RecordsWhatAMaskIs)
{
    using M = TypeParam;
    constexpr int pixelBytes = M::kChannels * int(sizeof(typename M::T));
    for (std::size_t i = 0; i < kWanted.size(); ++i) {
        SCOPED_TRACE(i);
        const Wanted& wanted = kWanted[i];
        const Mask& mask = wanted.mask;
        const int wantedSize = blockSize(wanted, 45, pixelBytes);
        const State state = make<M>(45, mask);
        EXPECT_EQ(std::uint64_t(wantedSize), lastAllocation);
        EXPECT_EQ(wantedSize, state->totalSize);
        const auto fields = [](const ZeliMorphState& s) {
            return std::vector<Zel32s>{s.shape, s.maskWidth, s.maskHeight, s.anchorX, s.anchorY, s.dataType, s.channels,
                                       s.roiWidthLimit, s.reservedMark};
        };
        EXPECT_EQ((std::vector<Zel32s>{wanted.shape, wanted.size.width, wanted.size.height, wanted.anchor.x, wanted.anchor.y,
                                       M::kDataType, M::kChannels, 45, -1}),
                  fields(*state));
        const bool general = wanted.shape == zeliMorphShapeGeneral;
        EXPECT_EQ(general ? mask.size.width - mask.anchor.x - 1 : 0, state->rightExtent);
        EXPECT_EQ(general ? mask.size.height - mask.anchor.y - 1 : 0, state->bottomExtent);
        EXPECT_EQ(general ? ((45 + mask.size.width) * pixelBytes + 15) / 16 * 16 : 0, state->bufferStep);
        EXPECT_EQ(general ? state->mask : nullptr, state->maskAlias1);
        EXPECT_EQ(general ? state->mask : nullptr, state->maskAlias2);
        EXPECT_EQ(general, state->rowRuns == nullptr);
        EXPECT_EQ(wanted.shape == zeliMorphShapeEmpty, state->work == nullptr);
        EXPECT_EQ(mask.bytes, std::vector<Zel8u>(state->mask, state->mask + mask.bytes.size()));
        if (general || wanted.shape == zeliMorphShapeEmpty) continue;

        const ZeliMorphRowRuns& runs = *state->rowRuns;
        EXPECT_EQ((std::vector<Zel32s>{wanted.size.width, wanted.size.height, wanted.anchor.x, wanted.anchor.y}),
                  (std::vector<Zel32s>{runs.width, runs.height, runs.anchorX, runs.anchorY}));
        if (wanted.shape == zeliMorphShapeRectangle) continue;
        const auto table = [](const Zel32s* from, Zel32s count) { return std::vector<Zel32s>(from, from + count); };
        EXPECT_EQ(wanted.rowOffset, table(runs.rowOffset, runs.rowCount));
        EXPECT_EQ(wanted.lengthIndex, table(runs.lengthIndex, runs.rowCount));
        EXPECT_EQ(wanted.runLength, table(runs.runLength, runs.lengthCount));
        EXPECT_EQ(wanted.runAnchor, table(runs.runAnchor, runs.lengthCount));
    }
    EXPECT_EQ(0, blocks);
}

// For the anchor in the middle, whatever another anchor would make of the mask.
TYPED_TEST(Morphology, TellsSizes)
{
    const Mask plus(kPlus);
    int size = 0;
    EXPECT_EQ(zelStatusOk, TypeParam::size(45, plus.bytes.data(), plus.size, &size));
    EXPECT_EQ(make<TypeParam>(45, plus)->totalSize, size);
    EXPECT_NE(make<TypeParam>(45, Mask(kPlus, {0, 0}))->totalSize, size);
    Checks checks(TypeParam::size, 45, plus.bytes.data(), plus.size, &size);
    checks.nulls({1}).values(0, zelStatusBadSize, {0, -5}).sizes().nulls({3}).expect();
    // A size that wraps is told, and not built.
    EXPECT_EQ(zelStatusOk, TypeParam::size(0x7fffffff, plus.bytes.data(), plus.size, &size));
    ZeliMorphState* state = nullptr;
    EXPECT_EQ(zelStatusNoMemory, TypeParam::initAlloc(0x7fffffff, plus.bytes.data(), plus.size, plus.anchor, &state));
    EXPECT_EQ(nullptr, state);
}

TYPED_TEST(Morphology, StatesFailInOrder)
{
    const Mask plus(kPlus);
    const State good = make<TypeParam>(45, plus);
    const int blocksBefore = blocks;
    const auto expectChecks = [&](auto function, auto* state) {
        Checks checks(function, 45, plus.bytes.data(), plus.size, plus.anchor, state);
        checks.nulls({1}).values(0, zelStatusBadSize, {0, -5}).sizes();
        for (ZeliPoint anchor : {ZeliPoint{-1, 1}, {3, 1}, {1, -1}, {1, 3}})
            checks.fault("anchor", zelStatusBadAnchor, [=](auto& a) { std::get<3>(a) = anchor; });
        checks.nulls({4}).expect();
    };
    expectChecks(TypeParam::init, good.get());
    ZeliMorphState* made = nullptr;
    expectChecks(TypeParam::initAlloc, &made);
    zeliMorphologyFree(made);
    EXPECT_EQ(zelStatusNullPointer, zeliMorphologyFree(nullptr));

    for (allocationsLeft = 0; allocationsLeft < 3;) { // of two for the analysis and one for the block
        const int left = allocationsLeft;
        made = good.get();
        EXPECT_EQ(zelStatusNoMemory, TypeParam::initAlloc(45, plus.bytes.data(), plus.size, plus.anchor, &made)) << left;
        EXPECT_EQ(good.get(), made);
        int size = -1;
        allocationsLeft = left;
        EXPECT_EQ(left < 2 ? zelStatusNoMemory : zelStatusOk, TypeParam::size(45, plus.bytes.data(), plus.size, &size));
        allocationsLeft = left < 2 ? left : -1;
        if (left < 2) { // the analysis comes before the pointer that is to be written
            EXPECT_EQ(zelStatusNoMemory, TypeParam::initAlloc(45, plus.bytes.data(), plus.size, plus.anchor, nullptr));
        }
        allocationsLeft = left + 1;
    }
    allocationsLeft = -1;
    EXPECT_EQ(blocksBefore, blocks);
}

} // namespace
