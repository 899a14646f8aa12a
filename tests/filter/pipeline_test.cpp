// The row and column pipelines against their definition.
#include "support/borders.h"
#include "support/calls.h"

#include <algorithm>
#include <cfenv>
#include <cmath>

using namespace zeltest;

namespace {

enum class Arithmetic { Clipped8u, Clipped, ClippedC3, Low, LowC3, LowColumn, ClippedColumn, Float };

template <bool Column, class S_, class D_, int Channels, Arithmetic arithmetic, auto function, auto bufferSize>
struct Member {
    using S = S_;
    using D = D_;
    using Tap = std::conditional_t<std::is_same_v<S, Zel32f>, Zel32f, Zel16s>;
    static constexpr bool kColumn = Column;
    static constexpr int kChannels = Channels;
    static constexpr Arithmetic kArithmetic = arithmetic;
    static constexpr auto kFunction = function, kBufferSize = bufferSize;

    static int bufferBytes(ZeliSize roi, int kernelSize)
    {
        int bytes = -1;
        EXPECT_EQ(zelStatusOk, bufferSize(roi, kernelSize, &bytes));
        return bytes;
    }
};

template <class M>
typename M::D limited(float value)
{
    using Limits = std::numeric_limits<typename M::D>;
    return typename M::D(std::clamp(value, float(Limits::min()), float(Limits::max())));
}

// One output element; pixel(j) is what tap j meets.
template <class M, class Pixel>
typename M::D define(const std::vector<typename M::Tap>& kernel, int divisor, const Pixel& pixel)
{
    using A = Arithmetic;
    constexpr A arithmetic = M::kArithmetic;
    const int n = int(kernel.size());
    const float recip = 1.0f / float(divisor);
    const bool prescaled = arithmetic == A::Clipped && n != 3 && n != 5;
    std::uint32_t wrapping = 0;
    float s = 0;
    for (int j = 0; j < n; ++j) {
        const float tap = prescaled ? float(kernel[j]) * recip : float(kernel[j]);
        s += float(pixel(j)) * tap;
        if constexpr (arithmetic != A::Float) wrapping += std::uint32_t(int(pixel(j)) * int(kernel[j]));
    }
    const auto sum = std::int32_t(wrapping);
    if constexpr (arithmetic == A::Float) return s;
    if (arithmetic == A::ClippedColumn || arithmetic == A::Clipped || (arithmetic == A::ClippedC3 && (n == 3 || n == 5)))
        return limited<M>(prescaled ? s : s * recip);
    if (arithmetic == A::Clipped8u || arithmetic == A::ClippedC3) return limited<M>(float(sum) * recip);
    if (arithmetic == A::LowColumn || (arithmetic == A::Low && n == 5))
        return typename M::D(std::int64_t(float(sum) * recip));
    const std::int32_t m = std::int16_t(16384.0f / float(divisor));
    return typename M::D(std::int32_t(wrapping * std::uint32_t(m)) >> 14);
}

// Small taps as filters have them, any taps, taps that make sums wrap and clip, and taps that add up to a limit or to one more:
// the sums of bytes that fit 16 bits, and those of 16 bits that fit a single-precision number.
template <class Tap>
std::vector<Tap> randomKernel(Random& random, int size)
{
    const int kind = random.between(0, 3);
    std::vector<Tap> kernel(size, 1);
    if (kind == 3) {
        const int limits[] = {128, 129, 512, 513};
        kernel[random.between(0, size - 1)] = Tap(limits[random.between(0, 3)] - (size - 1));
        return kernel;
    }
    for (Tap& tap : kernel)
        tap = kind == 0 ? Tap(random.between(-20, 60)) : kind == 1 ? Tap(random.between(-30000, 30000)) / Tap(16)
                        : Tap(random.between(0, 2) ? -32768 : 32767);
    return kernel;
}

constexpr int kKernelSizes[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 33};
constexpr int kDivisors[] = {1, 3, -1, 16, 255, -8, 16384, 16385, 65536};
constexpr Texture kTextures[] = {Texture::Noise, Texture::Extremes, Texture::Smooth};

using A = Arithmetic;
#define ROW(S, D, C, A, name) \
    Member<false, S, D, C, A, zeliFilterRowBorderPipeline_##name, zeliFilterRowBorderPipelineGetBufferSize_##name>
#define COLUMN(S, D, C, A, name) \
    Member<true, S, D, C, A, zeliFilterColumnPipeline_##name, zeliFilterColumnPipelineGetBufferSize_##name>
using RowMembers = testing::Types<
    ROW(Zel8u, Zel16s, 1, A::Clipped8u, 8u16s_C1R), ROW(Zel8u, Zel16s, 3, A::Clipped8u, 8u16s_C3R),
    ROW(Zel16s, Zel16s, 1, A::Clipped, 16s_C1R), ROW(Zel16s, Zel16s, 3, A::ClippedC3, 16s_C3R),
    ROW(Zel16s, Zel16s, 1, A::Low, Low_16s_C1R), ROW(Zel16s, Zel16s, 3, A::LowC3, Low_16s_C3R),
    ROW(Zel32f, Zel32f, 1, A::Float, 32f_C1R), ROW(Zel32f, Zel32f, 3, A::Float, 32f_C3R)>;
using ColumnMembers = testing::Types<
    COLUMN(Zel16s, Zel8s, 1, A::ClippedColumn, 16s8s_C1R), COLUMN(Zel16s, Zel8s, 3, A::ClippedColumn, 16s8s_C3R),
    COLUMN(Zel16s, Zel8u, 1, A::ClippedColumn, 16s8u_C1R), COLUMN(Zel16s, Zel8u, 3, A::ClippedColumn, 16s8u_C3R),
    COLUMN(Zel16s, Zel16s, 1, A::ClippedColumn, 16s_C1R), COLUMN(Zel16s, Zel16s, 3, A::ClippedColumn, 16s_C3R),
    COLUMN(Zel16s, Zel16s, 1, A::LowColumn, Low_16s_C1R), COLUMN(Zel16s, Zel16s, 3, A::LowColumn, Low_16s_C3R),
    COLUMN(Zel32f, Zel32f, 1, A::Float, 32f_C1R), COLUMN(Zel32f, Zel32f, 3, A::Float, 32f_C3R)>;

template <class M>
class RowPipeline : public testing::Test {};
TYPED_TEST_SUITE(RowPipeline, RowMembers);
template <class M>
class ColumnPipeline : public testing::Test {};
TYPED_TEST_SUITE(ColumnPipeline, ColumnMembers);

// Images and arguments of one call, all at random but what is given.
template <class M>
struct Case {
    using S = typename M::S;
    using D = typename M::D;

    Case(Random& random, ZeliSize roi_, int kernelSize_)
        : roi(roi_), kernelSize(kernelSize_), anchor(random.between(0, kernelSize - 1)), border(random.between(0, 4)),
          divisor(kDivisors[random.between(0, 8)]), kernel(randomKernel<typename M::Tap>(random, kernelSize)),
          src(random, roi.width * M::kChannels, roi.height + (M::kColumn ? kernelSize - 1 : 0),
              kTextures[random.between(0, 2)]),
          dst(random, roi.width * M::kChannels, roi.height), buffer(random, M::bufferBytes(roi, kernelSize)),
          scratch(buffer.data())
    {
        for (S& element : value) element = randomElement<S>(random, Texture::Noise, 0, 0);
        for (int y = 0; y < src.height(); ++y) srcRows.push_back(row(src, y));
        for (int y = 0; y < roi.height; ++y) dstRows.push_back(row(dst, y));
    }
    template <class T>
    static T* row(Image<T>& image, int y)
    {
        return reinterpret_cast<T*>(reinterpret_cast<char*>(image.data()) + std::ptrdiff_t(y) * image.step());
    }

    // use(arguments...) with those of the member.
    template <class Use>
    auto with(const Use& use)
    {
        const auto scaled = [&](auto&&... given) {
            if constexpr (M::kArithmetic == Arithmetic::Float) return use(given..., scratch);
            else return use(given..., divisor, scratch);
        };
        if constexpr (M::kColumn) {
            return scaled(srcRows.data(), dst, roi, kernel.data(), kernelSize);
        } else {
            std::conditional_t<M::kChannels == 1, S, const S*> borderValue;
            if constexpr (M::kChannels == 1) borderValue = *value;
            else borderValue = value;
            return scaled(src, dstRows.data(), roi, kernel.data(), kernelSize, anchor, border, borderValue);
        }
    }
    ZelStatus run()
    {
        return with([](auto&... given) { return call(M::kFunction, given...); });
    }

    ZeliSize roi;
    int kernelSize, anchor;
    ZeliBorderType border;
    int divisor;
    std::vector<typename M::Tap> kernel;
    Image<S> src;
    Image<D> dst;
    Buffer buffer;
    Zel8u* scratch;
    std::vector<const S*> srcRows;
    std::vector<D*> dstRows;
    S value[3];
};

template <class M>
void expectDefinition(Case<M>& c)
{
    constexpr int channels = M::kChannels;
    ASSERT_EQ(zelStatusOk, c.run());
    c.dst.expect([&](int x, int y) {
        return define<M>(c.kernel, c.divisor, [&](int j) {
            const int from = standIn(x / channels - c.anchor + j, c.roi.width, c.border, false, false);
            return from == kConstant ? c.value[x % channels] : c.src.at(from * channels + x % channels, y);
        });
    }, std::to_string(c.kernelSize) + " taps, anchor " + std::to_string(c.anchor) + ", border " + std::to_string(c.border) +
           ", divisor " + std::to_string(c.divisor));
}

TYPED_TEST(RowPipeline, EqualsDefinition)
{
    Random random(1);
    for (int kernelSize : kKernelSizes) {
        for (ZeliSize size : withSeams({})) {
            Case<TypeParam> c(random, size, kernelSize);
            expectDefinition(c);
        }
        for (int width : {1, 2, 3, kernelSize - 1, kernelSize, kernelSize + 1, 15, 16, 33, 50, 97})
            for (ZeliBorderType border = 0; border <= 4 && width > 0; ++border)
                for (int anchor : {0, kernelSize / 2, kernelSize - 1}) {
                    Case<TypeParam> c(random, {width, 2}, kernelSize);
                    c.border = border;
                    c.anchor = anchor;
                    expectDefinition(c);
                    ASSERT_FALSE(testing::Test::HasFailure());
                }
    }
}

TYPED_TEST(ColumnPipeline, EqualsDefinitionAlsoIntoItsFirstRow)
{
    using M = TypeParam;
    Random random(2);
    for (int kernelSize : kKernelSizes)
        for (ZeliSize size : withSeams({{1, 4}, {2, 4}, {5, 4}, {10, 4}, {49, 4}, {97, 4}}))
            for (int height : {1, size.height}) {
                Case<M> c(random, {size.width, height}, kernelSize);
                c.srcRows[c.srcRows.size() / 2] = c.srcRows.back(); // one row in several places
                const auto rows = c.srcRows;
                const auto expect = [&](const std::string& where) {
                    ASSERT_EQ(zelStatusOk, c.run());
                    c.dst.expect([&](int x, int y) {
                        return define<M>(c.kernel, c.divisor, [&](int j) { return rows[y + j][x]; });
                    }, std::to_string(kernelSize) + " taps, divisor " + std::to_string(c.divisor) + where);
                };
                expect("");
                if constexpr (std::is_same_v<typename M::S, typename M::D>)
                    if (height == 1) {
                        for (int x = 0; x < c.dst.width(); ++x) c.dst.set(x, 0, rows[0][x]);
                        c.srcRows[0] = c.dst.data();
                        expect(", in place");
                    }
                ASSERT_FALSE(testing::Test::HasFailure());
            }
}

// Partial sums pass 24 bits at the last two taps, so that single precision loses what integers keep: 2^24 + 5 - 5.
TYPED_TEST(ColumnPipeline, RoundsSumsAbove24Bits)
{
    using M = TypeParam;
    if constexpr (std::is_same_v<typename M::S, Zel16s>) {
        Random random(3);
        Case<M> c(random, {40, 1}, 10);
        c.kernel = {-64, -64, -64, -64, -64, -64, -64, -64, 1, 1};
        c.divisor = 1 << 18;
        c.src.fill([](int, int y) { return y < 8 ? -32768 : y == 8 ? 5 : -5; });
        c.with([&](auto srcRows, auto& dst, auto roi, auto, auto... rest) {
            ASSERT_EQ(zelStatusOk, call(M::kFunction, srcRows, dst, roi, c.kernel.data(), rest...));
        });
        c.dst.expect([](int, int) { return M::kArithmetic == Arithmetic::LowColumn ? 64 : 63; }, "sums above 24 bits");
    }
}

// Numbers left in the scratch may be slow to add: not even sums that nobody sees are to be made of them. Signalling ones tell.
TEST(RowPipelineOfFloats, AddsNothingThatTheScratchHeld)
{
    Random random(6);
    for (int kernelSize : {3, 4, 9})
        for (int width : {1, 5, 20, 100}) {
            using M = ROW(Zel32f, Zel32f, 1, A::Float, 32f_C1R);
            Case<M> c(random, {width, 2}, kernelSize);
            std::vector<Zel32u> scratch(std::size_t(M::bufferBytes(c.roi, kernelSize)) / 4 + 1, 0x7fa00000);
            c.scratch = reinterpret_cast<Zel8u*>(scratch.data());
            c.src.fill([&](int, int) { return Zel32f(random.between(-99, 99)); }); // no infinities
            std::feclearexcept(FE_ALL_EXCEPT);
            ASSERT_EQ(zelStatusOk, c.run());
            EXPECT_FALSE(std::fetestexcept(FE_INVALID)) << kernelSize << " taps, width " << width;
        }
}

// The serial result, which the tests above check, for a region above the gate of 8 threads.
template <class M>
void expectSameBitsUnderAllThreadings()
{
    for (int kernelSize : {3, 4, 7, 33}) {
        Random random{unsigned(kernelSize)};
        ThreadSetting one(1);
        const ZeliSize few = {1 << 15, 8}; // rows leave little in a buffer that is not used
        Case<M> c(random, kernelSize == 33 ? few : ZeliSize{509, 531}, kernelSize);
        EXPECT_EQ(zelStatusOk, c.run());
        const auto serial = c.dst;
        underAllThreadings([&] {
            Buffer buffer(random, M::bufferBytes(c.roi, kernelSize));
            c.scratch = buffer.data();
            c.dst.fill([](int, int) { return 0; });
            EXPECT_EQ(zelStatusOk, c.run());
            c.dst.expect([&](int x, int y) { return serial.at(x, y); }, "threads");
        });
    }
}
TYPED_TEST(RowPipeline, ThreadsChangeNothing) { expectSameBitsUnderAllThreadings<TypeParam>(); }
TYPED_TEST(ColumnPipeline, ThreadsChangeNothing) { expectSameBitsUnderAllThreadings<TypeParam>(); }

// Runs with null rows and expects all rows but those from the first null one to `resumed`.
template <class M>
void expectBandsToStop(ZeliSize roi, int kernelSize, const std::vector<int>& nulls, int resumed)
{
    Random random(4);
    Case<M> c(random, roi, kernelSize);
    ASSERT_EQ(zelStatusOk, c.run());
    const auto full = c.dst;
    c.dst.fill([&](int, int) { return random.between(0, 99); });
    for (int row : nulls) c.dstRows[row] = nullptr;
    EXPECT_EQ(zelStatusNullPointer, c.run());
    c.dst.expect([&](int x, int y) { return y < nulls[0] || y >= resumed ? full.at(x, y) : c.dst.before(x, y); },
                 "null row, " + std::to_string(kernelSize) + " taps");
}

TYPED_TEST(RowPipeline, StopsTheBandAtANullRow)
{
    for (int threads : {1, 3}) {
        ThreadSetting setting(threads);
        expectBandsToStop<TypeParam>({700, 300}, 7, {130, 170}, threads == 1 ? 300 : 200); // in the middle of 3 bands
        expectBandsToStop<TypeParam>({700, 300}, 7, {299}, 300);
    }
}

// From 2^15 pixels a thread on there are bands, of which the one with the null row stops alone.
TYPED_TEST(RowPipeline, RunsInBandsFromItsGateOn)
{
    using M = TypeParam;
    ThreadSetting setting(3);
    for (int kernelSize : {1, 2, 3, 4, 5, 6}) {
        const bool small = kernelSize == 3 || kernelSize == 5, oneCore = zelGetNumCoresOnDie() <= 1;
        const bool serial = (M::kArithmetic == A::Clipped && kernelSize <= 3) ||
                            (M::kArithmetic == A::Float && M::kChannels == 1 && small && oneCore);
        expectBandsToStop<M>({(1 << 15) - 1, 3}, kernelSize, {1}, 3);
        expectBandsToStop<M>({1 << 15, 3}, kernelSize, {1}, serial ? 3 : 2);
    }
}

template <class M>
void expectBufferSizeChecks()
{
    int bytes = -1;
    Checks(M::kBufferSize, ZeliSize{1, 1}, 1, &bytes).usual().values(1, zelStatusBadSize, {0}).expect();
}

TYPED_TEST(RowPipeline, ChecksInOrder)
{
    using M = TypeParam;
    Random random(5);
    Case<M> c(random, {20, 4}, 3);
    c.with([&](auto&... given) {
        Checks checks(M::kFunction, given...);
        checks.watch(c.dst).nulls({0, 2, 4, -1}).sizes().values(5, zelStatusBadSize, {0});
        checks.values(6, zelStatusBadAnchor, {3, -1}).shortSteps().oddSteps();
        checks.values(7, zelStatusBadArgument, {-1, 5, 6, 0x41});
        if constexpr (M::kChannels == 3)
            checks.fault("null value", zelStatusNullPointer, [](auto& a) {
                std::get<7>(a) = zeliBorderConstant;
                std::get<8>(a) = nullptr;
            });
        if (M::kArithmetic != A::Float) checks.values(-2, zelStatusBadArgument, {0});
        checks.expect();
        if constexpr (M::kChannels == 3) { // needed for the constant border only
            auto arguments = std::tuple_cat(zeltest::arguments(given)...);
            std::get<7>(arguments) = zeliBorderWrap;
            std::get<8>(arguments) = nullptr;
            EXPECT_EQ(zelStatusOk, std::apply(M::kFunction, arguments));
        }
    });
    expectBufferSizeChecks<M>();
}

TYPED_TEST(ColumnPipeline, ChecksInOrder)
{
    using M = TypeParam;
    Random random(5);
    Case<M> c(random, {20, 4}, 3);
    auto holed = c.srcRows;
    holed.back() = nullptr; // read by the last row of the output alone
    c.with([&](auto&... given) {
        Checks checks(M::kFunction, given...);
        checks.nulls({0, 1, 4}).sizes().values(5, zelStatusBadSize, {0}).shortSteps().oddSteps().nulls({-1});
        if (M::kArithmetic != A::Float) checks.values(-2, zelStatusBadArgument, {0});
        checks.fault("null row", zelStatusNullPointer, [&](auto& a) { std::get<0>(a) = holed.data(); });
        checks.expect();
    });
    expectBufferSizeChecks<M>();
}

template <class... Members>
std::vector<int> bufferSizes(testing::Types<Members...>, ZeliSize roi, int kernelSize)
{
    return {Members::bufferBytes(roi, kernelSize)...};
}

TEST(PipelineBufferSize, IsTheOneTold)
{
    const auto sizes = [](int threads, int height, int kernelSize) {
        ThreadSetting setting(threads);
        auto all = bufferSizes(RowMembers(), {9, height}, kernelSize);
        const auto ofColumns = bufferSizes(ColumnMembers(), {9, height}, kernelSize);
        all.insert(all.end(), ofColumns.begin(), ofColumns.end());
        return all;
    };
    using Sizes = std::vector<int>;
    EXPECT_EQ(sizes(1, 1, 1), (Sizes{84, 92, 176, 108, 136, 320, 256, 272, 84, 84, 84, 84, 84, 84, 80, 80, 32, 32}));
    EXPECT_EQ(sizes(4, 100, 7), (Sizes{3792, 4016, 5216, 4464, 4480, 9632, 7456, 9056, 3792, 3792, 3792, 3792, 3792, 3792,
                                       3680, 3680, 32, 32}));
    EXPECT_EQ(sizes(1, 0x7fffffff, 3)[0], 92); // wraps: 32 + 8 * 0x80000002 + 44
}

} // namespace
