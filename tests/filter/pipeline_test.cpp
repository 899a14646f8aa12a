// The row and column pipelines against their definition.
#include "support/images.h"

#include <algorithm>
#include <cmath>

using namespace zeltest;

namespace {

enum class Arithmetic { Clipped8u, Clipped, ClippedC3, Low, LowC3, LowColumn, ClippedColumn, Float };

template <class S_, class D_, int Channels, Arithmetic arithmetic, auto function, auto bufferSize>
struct Member {
    using S = S_;
    using D = D_;
    using Tap = std::conditional_t<std::is_same_v<S, Zel32f>, Zel32f, Zel16s>;
    static constexpr int kChannels = Channels;
    static constexpr Arithmetic kArithmetic = arithmetic;
    static constexpr auto kFunction = function, kBufferSize = bufferSize;

    static int size(ZeliSize roi, int kernelSize)
    {
        int bytes = -1;
        EXPECT_EQ(zelStatusOk, bufferSize(roi, kernelSize, &bytes));
        return bytes;
    }
};

template <class M>
struct Arguments {
    const typename M::S* src;
    typename M::D* dst;
    int step; // of the source in the row half, of the destination in the column half
    typename M::D** dstRows;
    const typename M::S** srcRows;
    ZeliSize roi;
    const typename M::Tap* kernel;
    int kernelSize, anchor;
    ZeliBorderType border;
    const typename M::S* value;
    int divisor;
    Zel8u* buffer;
};

template <class M>
ZelStatus callRow(const Arguments<M>& a)
{
    const auto call = [&](auto value, auto... divisor) {
        return M::kFunction(a.src, a.step, a.dstRows, a.roi, a.kernel, a.kernelSize, a.anchor, a.border, value, divisor...,
                            a.buffer);
    };
    const auto withValue = [&](auto... divisor) {
        if constexpr (M::kChannels == 1)
            return call(*a.value, divisor...);
        else
            return call(a.value, divisor...);
    };
    if constexpr (M::kArithmetic == Arithmetic::Float)
        return withValue();
    else
        return withValue(a.divisor);
}

template <class M>
ZelStatus callColumn(const Arguments<M>& a)
{
    if constexpr (M::kArithmetic == Arithmetic::Float)
        return M::kFunction(a.srcRows, a.dst, a.step, a.roi, a.kernel, a.kernelSize, a.buffer);
    else
        return M::kFunction(a.srcRows, a.dst, a.step, a.roi, a.kernel, a.kernelSize, a.divisor, a.buffer);
}

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

// The pixel that stands at `i` of a row of `width`, or -1 for the border value. Step by step, as one would do it on paper.
int standIn(int i, int width, ZeliBorderType border)
{
    if (border == zeliBorderReflect && width == 1) border = zeliBorderReplicate;
    while (i < 0 || i >= width) {
        if (border == zeliBorderConstant) return -1;
        if (border == zeliBorderReplicate) i += i < 0 ? 1 : -1;
        if (border == zeliBorderWrap) i += i < 0 ? width : -width;
        if (border == zeliBorderReflect) i = i < 0 ? -i : 2 * width - 2 - i;
        if (border == zeliBorderReflectEdge) i = i < 0 ? -1 - i : 2 * width - 1 - i;
    }
    return i;
}

// Small taps as filters have them, any taps, and taps that make sums wrap and clip.
template <class Tap>
std::vector<Tap> randomKernel(Random& random, int size)
{
    const int kind = random.between(0, 2);
    std::vector<Tap> kernel(size);
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
    Member<S, D, C, A, zeliFilterRowBorderPipeline_##name, zeliFilterRowBorderPipelineGetBufferSize_##name>
#define COLUMN(S, D, C, A, name) \
    Member<S, D, C, A, zeliFilterColumnPipeline_##name, zeliFilterColumnPipelineGetBufferSize_##name>
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

template <class T>
std::vector<T*> rowsOf(Image<std::remove_const_t<T>>& image)
{
    std::vector<T*> rows;
    for (int y = 0; y < image.height(); ++y)
        rows.push_back(reinterpret_cast<T*>(reinterpret_cast<char*>(image.data()) + std::ptrdiff_t(y) * image.step()));
    return rows;
}

// Images and arguments of one call, all at random but what is given.
template <class M>
struct Case {
    using S = typename M::S;
    Case(Random& random, ZeliSize roi, int kernelSize, bool column)
        : src(random, roi.width * M::kChannels, roi.height + (column ? kernelSize - 1 : 0), kTextures[random.between(0, 2)]),
          dst(random, roi.width * M::kChannels, roi.height), buffer(random, M::size(roi, kernelSize)),
          exactBuffer(std::size_t(M::size(roi, kernelSize)) + 1), kernel(randomKernel<typename M::Tap>(random, kernelSize)),
          srcRows(rowsOf<const S>(src)), dstRows(rowsOf<typename M::D>(dst))
    {
        for (S& element : value) element = randomElement<S>(random, Texture::Noise, 0, 0);
        arguments = {src.data(), dst.data(), column ? dst.step() : src.step(), dstRows.data(), srcRows.data(), roi,
                     kernel.data(), kernelSize, random.between(0, kernelSize - 1), random.between(0, 4), value,
                     kDivisors[random.between(0, 8)], random.between(0, 1) ? buffer.data() : exactBuffer.data() + 1};
    }
    Image<S> src;
    Image<typename M::D> dst;
    Buffer buffer;
    std::vector<Zel8u> exactBuffer; // behind it nothing may be read either, as the address sanitizer sees
    std::vector<typename M::Tap> kernel;
    std::vector<const S*> srcRows;
    std::vector<typename M::D*> dstRows;
    S value[3];
    Arguments<M> arguments;
};

TYPED_TEST(RowPipeline, EqualsDefinition)
{
    Random random(1);
    constexpr int channels = TypeParam::kChannels;
    for (int kernelSize : kKernelSizes)
        for (int width : {1, 2, 3, kernelSize - 1, kernelSize, kernelSize + 1, 15, 16, 33, 50, 97})
            for (ZeliBorderType border = 0; border <= 4 && width > 0; ++border)
                for (int anchor : {0, kernelSize / 2, kernelSize - 1}) {
                    Case<TypeParam> c(random, {width, 2}, kernelSize, false);
                    c.arguments.border = border;
                    c.arguments.anchor = anchor;
                    const int divisor = c.arguments.divisor;
                    ASSERT_EQ(zelStatusOk, callRow(c.arguments));
                    c.dst.expect([&](int x, int y) {
                        return define<TypeParam>(c.kernel, divisor, [&](int j) {
                            const int from = standIn(x / channels - anchor + j, width, border);
                            return from < 0 ? c.value[x % channels] : c.src.at(from * channels + x % channels, y);
                        });
                    }, std::to_string(kernelSize) + " taps, anchor " + std::to_string(anchor) + ", border " +
                           std::to_string(border) + ", divisor " + std::to_string(divisor));
                    ASSERT_FALSE(testing::Test::HasFailure());
                }
}

TYPED_TEST(ColumnPipeline, EqualsDefinitionAlsoIntoItsFirstRow)
{
    using M = TypeParam;
    Random random(2);
    for (int kernelSize : kKernelSizes)
        for (int width : {1, 2, 5, 10, 15, 16, 17, 31, 32, 33, 49, 97})
            for (int height : {1, 4}) {
                Case<M> c(random, {width, height}, kernelSize, true);
                c.srcRows[c.srcRows.size() / 2] = c.srcRows.back(); // one row in several places
                const auto rows = c.srcRows;
                const auto wanted = [&](int x, int y) {
                    return define<M>(c.kernel, c.arguments.divisor, [&](int j) { return rows[y + j][x]; });
                };
                const std::string what = std::to_string(kernelSize) + " taps, " + std::to_string(c.arguments.divisor);
                ASSERT_EQ(zelStatusOk, callColumn(c.arguments));
                c.dst.expect(wanted, what);
                if constexpr (std::is_same_v<typename M::S, typename M::D>)
                    if (height == 1) {
                        for (int x = 0; x < c.dst.width(); ++x) c.dst.set(x, 0, rows[0][x]);
                        c.srcRows[0] = c.dst.data();
                        ASSERT_EQ(zelStatusOk, callColumn(c.arguments));
                        c.dst.expect(wanted, what + ", in place");
                    }
                ASSERT_FALSE(testing::Test::HasFailure());
            }
}

// The serial result, which the tests above check, for a region above the gate of 8 threads.
template <class M, class Call>
void expectSameBitsUnderAllThreadings(bool column, const Call& call)
{
    Random random(3);
    for (int kernelSize : {3, 4, 7}) {
        const ZeliSize roi = {509, 531};
        Case<M> c(random, roi, kernelSize, column);
        {
            ThreadSetting one(1);
            ASSERT_EQ(zelStatusOk, call(c.arguments));
        }
        const auto serial = c.dst;
        underAllThreadings([&] {
            Image<typename M::D> dst(random, roi.width * M::kChannels, roi.height);
            Buffer buffer(random, M::size(roi, kernelSize));
            auto rows = rowsOf<typename M::D>(dst);
            auto arguments = c.arguments;
            arguments.dst = dst.data();
            arguments.step = column ? dst.step() : arguments.step;
            arguments.dstRows = rows.data();
            arguments.buffer = buffer.data();
            ASSERT_EQ(zelStatusOk, call(arguments));
            dst.expect([&](int x, int y) { return serial.at(x, y); }, "threads");
        });
    }
}
TYPED_TEST(RowPipeline, ThreadsChangeNothing) { expectSameBitsUnderAllThreadings<TypeParam>(false, callRow<TypeParam>); }
TYPED_TEST(ColumnPipeline, ThreadsChangeNothing) { expectSameBitsUnderAllThreadings<TypeParam>(true, callColumn<TypeParam>); }

TYPED_TEST(RowPipeline, StopsTheBandAtANullRow)
{
    using M = TypeParam;
    Random random(4);
    for (int threads : {1, 3}) {
        ThreadSetting setting(threads);
        Case<M> whole(random, {700, 300}, 7, false);
        ASSERT_EQ(zelStatusOk, callRow(whole.arguments));
        const auto full = whole.dst;
        Image<typename M::D> dst(random, 700 * M::kChannels, 300);
        auto rows = rowsOf<typename M::D>(dst);
        rows[130] = rows[170] = nullptr; // in the middle one of three bands
        whole.arguments.dstRows = rows.data();
        EXPECT_EQ(zelStatusNullPointer, callRow(whole.arguments));
        const int resumed = threads == 1 ? 300 : 200;
        dst.expect([&](int x, int y) { return y < 130 || y >= resumed ? full.at(x, y) : dst.before(x, y); }, "null row");
    }
}

template <class M, class Call>
void expectChecks(bool column, const Call& call)
{
    using F = Arguments<M>;
    Random random(5);
    Case<M> c(random, {20, 4}, 3, column);
    const int element = column ? sizeof(typename M::D) : sizeof(typename M::S), row = 20 * M::kChannels * element;
    auto holed = c.srcRows;
    holed.back() = nullptr; // read by the last row of the output alone
    std::vector<Fault<F>> faults;
    const auto add = [&](bool applies, const char* what, ZelStatus status, std::function<void(F&)> apply) {
        if (applies) faults.push_back({what, status, apply});
    };
    add(!column, "null src", zelStatusNullPointer, [](F& f) { f.src = nullptr; });
    add(!column, "null dstRows", zelStatusNullPointer, [](F& f) { f.dstRows = nullptr; });
    add(column, "null srcRows", zelStatusNullPointer, [](F& f) { f.srcRows = nullptr; });
    add(column, "null dst", zelStatusNullPointer, [](F& f) { f.dst = nullptr; });
    add(true, "null kernel", zelStatusNullPointer, [](F& f) { f.kernel = nullptr; });
    add(!column, "null buffer", zelStatusNullPointer, [](F& f) { f.buffer = nullptr; });
    add(true, "width 0", zelStatusBadSize, [](F& f) { f.roi.width = 0; });
    add(true, "height -1", zelStatusBadSize, [](F& f) { f.roi.height = -1; });
    add(true, "kernelSize 0", zelStatusBadSize, [](F& f) { f.kernelSize = 0; });
    for (int anchor : {3, -1}) add(!column, "anchor", zelStatusBadAnchor, [=](F& f) { f.anchor = anchor; });
    add(true, "step short", zelStatusBadStep, [=](F& f) { f.step = row - 1; });
    add(element > 1, "step odd", zelStatusStepNotAligned, [=](F& f) { f.step = row + 1; });
    add(column, "null buffer", zelStatusNullPointer, [](F& f) { f.buffer = nullptr; });
    for (ZeliBorderType border : {-1, 5, 6, 0x41})
        add(!column, "border", zelStatusBadArgument, [=](F& f) { f.border = border; });
    add(!column && M::kChannels == 3, "null value", zelStatusNullPointer, [](F& f) { f.border = 0, f.value = nullptr; });
    add(M::kArithmetic != A::Float, "divisor 0", zelStatusBadArgument, [](F& f) { f.divisor = 0; });
    add(column, "null row", zelStatusNullPointer, [&](F& f) { if (f.srcRows) f.srcRows = holed.data(); });
    expectCheckOrder(c.arguments, faults, call);
    EXPECT_TRUE(c.dst.untouched());
    c.arguments.border = zeliBorderWrap;
    if (M::kChannels == 3) c.arguments.value = nullptr; // needed for the constant border only
    EXPECT_EQ(zelStatusOk, call(c.arguments));

    int bytes = -1;
    EXPECT_EQ(zelStatusNullPointer, M::kBufferSize({0, 0}, 0, nullptr));
    EXPECT_EQ(zelStatusBadSize, M::kBufferSize({0, 1}, 1, &bytes));
    EXPECT_EQ(zelStatusBadSize, M::kBufferSize({1, 0}, 1, &bytes));
    EXPECT_EQ(zelStatusBadSize, M::kBufferSize({1, 1}, 0, &bytes));
    EXPECT_EQ(-1, bytes);
}
TYPED_TEST(RowPipeline, ChecksInOrder) { expectChecks<TypeParam>(false, callRow<TypeParam>); }
TYPED_TEST(ColumnPipeline, ChecksInOrder) { expectChecks<TypeParam>(true, callColumn<TypeParam>); }

TEST(PipelineBufferSize, IsTheOneTold)
{
    const auto sizes = [](int threads, int height, int kernelSize) {
        ThreadSetting setting(threads);
        std::vector<int> all;
        const auto add = [&](auto... functions) {
            for (auto size : {functions...}) EXPECT_EQ(zelStatusOk, size({9, height}, kernelSize, &all.emplace_back()));
        };
        add(zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R, zeliFilterRowBorderPipelineGetBufferSize_8u16s_C3R,
            zeliFilterRowBorderPipelineGetBufferSize_16s_C1R, zeliFilterRowBorderPipelineGetBufferSize_16s_C3R,
            zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C1R, zeliFilterRowBorderPipelineGetBufferSize_Low_16s_C3R,
            zeliFilterRowBorderPipelineGetBufferSize_32f_C1R, zeliFilterRowBorderPipelineGetBufferSize_32f_C3R,
            zeliFilterColumnPipelineGetBufferSize_16s8s_C1R, zeliFilterColumnPipelineGetBufferSize_16s8s_C3R,
            zeliFilterColumnPipelineGetBufferSize_16s8u_C1R, zeliFilterColumnPipelineGetBufferSize_16s8u_C3R,
            zeliFilterColumnPipelineGetBufferSize_16s_C1R, zeliFilterColumnPipelineGetBufferSize_16s_C3R,
            zeliFilterColumnPipelineGetBufferSize_Low_16s_C1R, zeliFilterColumnPipelineGetBufferSize_Low_16s_C3R,
            zeliFilterColumnPipelineGetBufferSize_32f_C1R, zeliFilterColumnPipelineGetBufferSize_32f_C3R);
        return all;
    };
    using Sizes = std::vector<int>;
    EXPECT_EQ(sizes(1, 1, 1), (Sizes{84, 92, 176, 108, 136, 320, 256, 272, 84, 84, 84, 84, 84, 84, 80, 80, 32, 32}));
    EXPECT_EQ(sizes(4, 100, 7), (Sizes{3792, 4016, 5216, 4464, 4480, 9632, 7456, 9056, 3792, 3792, 3792, 3792, 3792, 3792,
                                       3680, 3680, 32, 32}));
    EXPECT_EQ(sizes(1, 0x7fffffff, 3)[0], 92); // wraps: 32 + 8 * 0x80000002 + 44
}

} // namespace
