// Opening, closing, top hat, black hat and gradient against their definition.
#include "morph/masks.h"

using namespace zeltest;

// The fields that the library promises.
struct ZeliMorphAdvState {
    ZeliMorphState *stateForward, *stateReflected;
    Zel8u* tempImage;
    Zel32s tempSize, reserved;
};

namespace {

enum Operation { kOpen, kClose, kTophat, kBlackhat, kGradient, kOperations };

template <class M>
class MorphAdvanced : public testing::Test {};
TYPED_TEST_SUITE(MorphAdvanced, Layouts);

struct Release {
    void operator()(ZeliMorphAdvState* state) const { zeliMorphAdvFree(state); }
};
using State = std::unique_ptr<ZeliMorphAdvState, Release>;

template <class M>
State make(ZeliSize roi, const Mask& mask)
{
    ZeliMorphAdvState* state = nullptr;
    EXPECT_EQ(zelStatusOk, M::advancedInitAlloc(&state, roi, mask.bytes.data(), mask.size, mask.anchor));
    return State(state);
}

std::vector<Mask> masks()
{
    Random random(8);
    return {Mask({"#"}), Mask({"...", "..."}), Mask({"##"}, {0, 0}), Mask({"###", "###"}, {2, 0}), Mask({"...", "..#"}, {0, 0}),
            disc(5), Mask({".#.", "###", ".#."}, {1, 0}), Mask({"#.#", ".#."}, {2, 1}), randomMask(random, {9, 6}, 40)};
}

template <class M>
void expectDefinition(Random& random, ZeliSize size, const Mask& mask, ZeliMorphAdvState* state, const std::string& what)
{
    using T = typename M::T;
    const bool general = state->stateForward->shape == zeliMorphShapeGeneral;
    EXPECT_EQ(general, state->stateReflected->shape == zeliMorphShapeGeneral);
    auto src = image<M>(random, size);
    if (std::is_floating_point_v<T> && general) // differences may be NaN
        src.set(size.width * M::kChannels / 2, size.height / 2, T(NAN));
    src.mark();
    const auto extreme = [&](const Mask& m, bool largest, const Image<T>& from) {
        auto to = image<M>(random, size);
        to.fill([&](int x, int y) { return extremeUnder(m, largest, general, from, M::kChannels, x, y); });
        return to;
    };
    const auto eroded = extreme(mask, false, src), dilated = extreme(mask, true, src);
    const auto opened = extreme(mask.turned(), true, eroded), closed = extreme(mask.turned(), false, dilated);
    const auto wanted = [&](int operation, int x, int y) -> T {
        const auto difference = [](T a, T b) { return a - b < 0 ? T(0) : T(a - b); };
        switch (operation) {
        case kOpen: return opened.at(x, y);
        case kClose: return closed.at(x, y);
        case kTophat: return difference(src.at(x, y), opened.at(x, y));
        case kBlackhat: return difference(closed.at(x, y), src.at(x, y));
        default: return difference(dilated.at(x, y), eroded.at(x, y));
        }
    };
    for (int operation = 0; operation < kOperations; ++operation) {
        auto dst = image<M>(random, size);
        ASSERT_EQ(zelStatusOk, call(M::operations[operation], src, dst, size, zeliBorderReplicate, state)) << what;
        dst.expect([&](int x, int y) { return wanted(operation, x, y); }, what + ", operation " + std::to_string(operation));
    }
    EXPECT_TRUE(src.untouched());
}

TYPED_TEST(MorphAdvanced, EqualsDefinition)
{
    using M = TypeParam;
    Random random(1);
    int index = 0;
    for (const Mask& mask : masks()) {
        const std::string what = "mask " + std::to_string(index++);
        for (ZeliSize size : withSeams({{1, 1}, {3, 7}, {21, 9}, {40, 2}})) {
            if (size.width > 129) continue;
            expectDefinition<M>(random, size, mask, make<M>(size, mask).get(), what);

            int bytes = 0;
            ASSERT_EQ(zelStatusOk, M::advancedSize(size, mask.bytes.data(), mask.size, &bytes));
            Buffer block(random, bytes, 8);
            auto* const state = reinterpret_cast<ZeliMorphAdvState*>(block.data());
            ASSERT_EQ(zelStatusOk, M::advancedInit(state, size, mask.bytes.data(), mask.size, mask.anchor));
            expectDefinition<M>(random, size, mask, state, what + ", in place");
        }
        if (this->HasFailure()) return;
    }
    EXPECT_EQ(0, blocks);
}

TYPED_TEST(MorphAdvanced, LaysDownStates)
{
    using M = TypeParam;
    const Mask ramp({"#..", "##.", "###"}, {0, 2});
    const ZeliSize size{21, 10};
    const int tempStep = (21 * M::kPixelBytes + 31) / 32 * 32;
    const auto expectParts = [&](const ZeliMorphAdvState& state, ZeliMorphShape shape) {
        EXPECT_EQ(tempStep * 10, state.tempSize);
        EXPECT_EQ(0, state.reserved);
        const ZeliMorphState &forward = *state.stateForward, &reflected = *state.stateReflected;
        EXPECT_EQ(shape, forward.shape);
        EXPECT_EQ(shape, reflected.shape);
        EXPECT_EQ(0, forward.anchorX);
        EXPECT_EQ(2, reflected.anchorX);
        EXPECT_EQ(2, forward.anchorY);
        EXPECT_EQ(0, reflected.anchorY);
        EXPECT_EQ(ramp.bytes, std::vector<Zel8u>(forward.mask, forward.mask + 9));
        EXPECT_EQ(ramp.turned().bytes, std::vector<Zel8u>(reflected.mask, reflected.mask + 9));
    };
    expectParts(*make<M>(size, ramp), zeliMorphShapeRowRuns);

    int bytes = 0;
    EXPECT_EQ(zelStatusOk, M::advancedSize(size, ramp.bytes.data(), ramp.size, &bytes));
    alignas(32) Zel8u block[16384];
    auto* const state = reinterpret_cast<ZeliMorphAdvState*>(block);
    EXPECT_EQ(zelStatusOk, M::advancedInit(state, size, ramp.bytes.data(), ramp.size, ramp.anchor));
    expectParts(*state, zeliMorphShapeGeneral); // row runs are no shape there
    const int each = 16 + 2 * 3 * (((21 + 3) * M::kPixelBytes + 15) / 16 * 16) + 112;
    EXPECT_EQ(each, state->stateForward->totalSize);
    EXPECT_EQ(tempStep * 10 + 2 * each + 96, bytes);
    const auto roundUp = [](std::ptrdiff_t n) { return (n + 31) / 32 * 32; };
    const auto offset = [&](const void* part) { return static_cast<const Zel8u*>(part) - block; };
    EXPECT_EQ(32, offset(state->stateForward));
    EXPECT_EQ(roundUp(32 + each), offset(state->stateReflected));
    EXPECT_EQ(roundUp(roundUp(32 + each) + each), offset(state->tempImage));
}

// A region of more bytes than the state's passes, and finds room; one of fewer does not.
TYPED_TEST(MorphAdvanced, TakesLargerRegionsOnly)
{
    using M = TypeParam;
    Random random(2);
    const Mask mask = disc(3);
    Buffer block(random, 1 << 16, 8);
    auto* const state = reinterpret_cast<ZeliMorphAdvState*>(block.data());
    const ZeliSize size{20, 9};
    ASSERT_EQ(zelStatusOk, M::advancedInit(state, size, mask.bytes.data(), mask.size, mask.anchor));
    for (ZeliSize other : {ZeliSize{20, 10}, {20, 400}, {4, 180}}) expectDefinition<M>(random, other, mask, state, "larger");
    auto src = image<M>(random, {21, 400}), dst = image<M>(random, {21, 400});
    for (auto operation : M::operations) {
        for (ZeliSize other : {ZeliSize{20, 8}, {21, 9}})
            EXPECT_EQ(zelStatusBadSize, call(operation, src, dst, other, zeliBorderReplicate, state));
        allocationsLeft = 0;
        EXPECT_EQ(zelStatusNoMemory, call(operation, src, dst, ZeliSize{20, 400}, zeliBorderReplicate, state));
        allocationsLeft = -1;
    }
    EXPECT_TRUE(dst.untouched());
    EXPECT_EQ(0, blocks);
}

TYPED_TEST(MorphAdvanced, ChecksInOrder)
{
    using M = TypeParam;
    Random random(3);
    const ZeliSize size{20, 4};
    const Mask mask = disc(3);
    const State good = make<M>(size, mask), narrow = make<M>({19, 4}, mask), high = make<M>({20, 5}, mask);
    auto src = image<M>(random, size), dst = image<M>(random, size);
    for (auto operation : M::operations) {
        Checks checks(operation, src, dst, size, zeliBorderReplicate, good.get());
        checks.usual().values(5, zelStatusBadArgument, {0, 2, 3, 6, 0x11});
        for (auto* other : {narrow.get(), high.get()})
            checks.fault("size", zelStatusBadSize, [=](auto& a) { if (std::get<6>(a)) std::get<6>(a) = other; });
        checks.expect();
    }

    int bytes = 0;
    Checks sizes(M::advancedSize, size, mask.bytes.data(), mask.size, &bytes);
    sizes.fault("height", zelStatusBadSize, [](auto& a) { std::get<0>(a).height = 0; }).nulls({3, 1});
    sizes.fault("width", zelStatusBadSize, [](auto& a) { std::get<0>(a).width = 0; });
    sizes.fault("mask", zelStatusBadSize, [](auto& a) { std::get<2>(a).height = 0; }).expect();
    const auto expectChecks = [&](auto function, auto* state, bool heightFirst) {
        Checks checks(function, state, size, mask.bytes.data(), mask.size, mask.anchor);
        if (!heightFirst) checks.nulls({0});
        checks.fault("height", zelStatusBadSize, [](auto& a) { std::get<1>(a).height = 0; });
        if (heightFirst) checks.nulls({0});
        checks.nulls({2});
        checks.fault("width", zelStatusBadSize, [](auto& a) { std::get<1>(a).width = 0; });
        checks.fault("mask", zelStatusBadSize, [](auto& a) { std::get<3>(a).width = 0; });
        checks.fault("anchor", zelStatusBadAnchor, [](auto& a) { std::get<4>(a).x = 3; }).expect();
    };
    alignas(32) Zel8u block[16384];
    expectChecks(M::advancedInit, reinterpret_cast<ZeliMorphAdvState*>(block), true);
    ZeliMorphAdvState* made = nullptr;
    expectChecks(M::advancedInitAlloc, &made, false);
    zeliMorphAdvFree(made);
    EXPECT_EQ(zelStatusNullPointer, zeliMorphAdvFree(nullptr));
}

TYPED_TEST(MorphAdvanced, FailsWithoutMemory)
{
    const Mask mask = disc(3);
    ZeliMorphAdvState* made = nullptr;
    const auto initAlloc = [&](ZeliSize size) {
        return TypeParam::advancedInitAlloc(&made, size, mask.bytes.data(), mask.size, mask.anchor);
    };
    for (int left = 0; left < 8; ++left) { // three for each mask, the image, the record
        allocationsLeft = left;
        EXPECT_EQ(zelStatusNoMemory, initAlloc({20, 4})) << left;
        EXPECT_EQ(0, blocks);
    }
    allocationsLeft = 8;
    EXPECT_EQ(zelStatusOk, initAlloc({20, 4}));
    EXPECT_EQ(0, allocationsLeft);
    allocationsLeft = -1;
    zeliMorphAdvFree(made);
    made = nullptr;
    EXPECT_EQ(zelStatusNoMemory, initAlloc({1 << 20, 1 << 12})); // the image wraps to 0 bytes
    EXPECT_EQ(nullptr, made);
    EXPECT_EQ(0, blocks);
}

} // namespace
