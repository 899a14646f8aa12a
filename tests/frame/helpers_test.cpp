// Rows, sorting, checks, wrapping arithmetic, scratch.
#include "checks.h"
#include "map.h"
#include "rows.h"
#include "scratch.h"
#include "support/images.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <set>

using namespace zelcv;
using zeltest::Random;

namespace {

// `call(dst, len)` gives `wanted` to the elements it is told and to no other, and refuses null and lengths below 1.
template <class T, class Call>
void expectRow(T wanted, const Call& call)
{
    T row[6] = {9, 9, 9, 9, 9, 9};
    EXPECT_EQ(call(static_cast<T*>(nullptr), 0), zelStatusNullPointer);
    EXPECT_EQ(call(row + 1, 0), zelStatusBadSize);
    EXPECT_EQ(call(row + 1, -3), zelStatusBadSize);
    EXPECT_EQ(call(row + 1, 4), zelStatusOk);
    EXPECT_TRUE(row[0] == 9 && row[5] == 9 && std::all_of(row + 1, row + 5, [=](T v) { return v == wanted; }));
}

TEST(Rows, FillAndCopyWhatTheyAreTold)
{
    expectRow<Zel8u>(0, ownZero_8u);
    expectRow<Zel16s>(0, ownZero_16s);
    expectRow<Zel32s>(0, ownZero_32s);
    expectRow<Zel32f>(0, ownZero_32f);
    expectRow<Zel8u>(200, [](Zel8u* dst, int len) { return ownSet_8u(200, dst, len); });
    expectRow<Zel32f>(-0.5f, [](Zel32f* dst, int len) { return ownSet_32f(-0.5f, dst, len); });
    const Zel32f src[4] = {7, 7, 7, 7};
    expectRow<Zel32f>(7, [&](Zel32f* dst, int len) { return ownCopy_32f(src, dst, len); });
    Zel32f dst = 0;
    EXPECT_EQ(ownCopy_32f(nullptr, &dst, 0), zelStatusNullPointer);
}

TEST(Sort, OrdersEveryPattern)
{
    Random random(7);
    const std::function<double(int, int)> patterns[] = { // value at i of n
        [](int, int) { return 2.5; },
        [](int i, int) { return i; },
        [](int i, int n) { return n - i; },
        [](int i, int n) { return std::min(i, n - i); },
        [&](int, int) { return random.between(0, 3); },
        [&](int, int) { return random.between(-1000000, 1000000) / 1000.0; },
        [&](int i, int) { return i % 3 ? random.between(0, 9) : i % 2 ? INFINITY : -INFINITY; },
    };
    for (const auto& pattern : patterns)
        for (int n : {1, 2, 3, 9, 10, 11, 19, 64, 1000, 4097}) {
            std::vector<double> values;
            for (int i = 0; i < n; ++i) values.push_back(pattern(i, n));
            std::vector<double> wanted = values;
            std::sort(wanted.begin(), wanted.end());
            EXPECT_EQ(ownSort_64f(values.data(), n), zelStatusOk);
            EXPECT_EQ(values, wanted) << "pattern " << &pattern - patterns;
        }
    EXPECT_EQ(ownSort_64f(nullptr, 0), zelStatusNullPointer);
    EXPECT_EQ(ownSort_64f(std::vector<double>(1).data(), 0), zelStatusBadSize);
}

std::multiset<double> numbers(std::vector<double> values)
{
    std::erase_if(values, [](double value) { return std::isnan(value); });
    return {values.begin(), values.end()};
}

TEST(Sort, EndsAndKeepsAllValuesWithNanAmongThem)
{
    Random random(8);
    for (int n : {9, 10, 33, 500})
        for (int percent : {1, 3, 10, 100}) { // of numbers
            std::vector<double> values;
            for (int i = 0; i < n; ++i) values.push_back(random.between(1, 100) > percent ? NAN : i);
            const auto before = numbers(values);
            EXPECT_EQ(ownSort_64f(values.data(), n), zelStatusOk);
            EXPECT_EQ(numbers(values), before) << n << " elements, " << percent << " percent numbers";
        }
}

TEST(Checks, FollowTheirOrderAndWrap)
{
    short element = 0;
    const auto steps = [&](int width, int a, int b) {
        return checkSteps(width, Plane<short>{&element, a}, Plane<short>{&element, b});
    };
    EXPECT_EQ(checkSize({1, INT_MIN}), zelStatusBadSize);
    EXPECT_EQ(steps(3, 7, 5), zelStatusBadStep) << "sizes come before alignments";
    EXPECT_EQ(steps(3, 8, 7), zelStatusStepNotAligned);
    EXPECT_EQ(steps(INT_MAX, 0, 0), zelStatusOk) << "the product wraps to -2";
}

TEST(Plane, HasRowsFurtherApartThan32BitsTell)
{
    const auto at = [](std::intptr_t address) { return reinterpret_cast<const short*>(address); };
    const Plane<const short> plane{at(std::intptr_t(1) << 40), 1 << 30};
    EXPECT_EQ(plane.row(3), at((std::intptr_t(1) << 40) + (std::intptr_t(3) << 30)));
    EXPECT_EQ(plane.row(-3), at((std::intptr_t(1) << 40) - (std::intptr_t(3) << 30)));
}

TEST(Wrapping, IsModulo32Bits)
{
    EXPECT_EQ(wrappingProduct(46341, 46341), -2147479015);
    EXPECT_EQ(wrappingProduct(0x10000, 0x10000, 3), 0);
    EXPECT_EQ(wrappingProduct(-1, INT_MIN), INT_MIN);
    EXPECT_EQ(wrappingSum(INT_MAX, 1), INT_MIN);
    EXPECT_EQ(wrappingShift(3, 30), -0x40000000);
    EXPECT_EQ((Wrapped(INT_MAX) * 2 + 5).value(), 3);
    EXPECT_EQ(Wrapped(17).roundedUp(16).value(), 32);
    EXPECT_EQ(Wrapped(32).roundedUp(16).value(), 32);
    EXPECT_EQ(Wrapped(INT_MAX).roundedUp(16).value(), INT_MIN);
}

TEST(Scratch, CountsElementsAndCarvesAlignedPieces)
{
    constexpr std::int64_t wrapsTo4Bytes = (std::int64_t(1) << 62) + 1;
    EXPECT_EQ(ownMalloc_8u(0), nullptr);
    EXPECT_EQ(ownMalloc_32s(-1), nullptr);
    EXPECT_EQ(ownMalloc_32f(wrapsTo4Bytes), nullptr);
    EXPECT_EQ(ownMalloc_64f(wrapsTo4Bytes / 2), nullptr);
    const OwnedBlock block(ownMalloc_64f(100));
    ASSERT_TRUE(block);
    std::memset(block.get(), 1, 800);

    for (int offset = 0; offset < 64; ++offset) {
        Carver carver(static_cast<Zel8u*>(block.get()) + offset);
        const auto start = static_cast<const Zel8u*>(block.get());
        const auto at = [=](const void* piece) { return static_cast<const Zel8u*>(piece) - start; };
        const auto bytes = at(carver.take<Zel8u>(3)), words = at(carver.take<Zel32s>(2));
        const auto wide = at(carver.take<Zel16s>(5, 32));
        EXPECT_EQ(bytes, offset);
        EXPECT_EQ(words, (offset + 3 + 3) / 4 * 4);
        EXPECT_EQ(wide, (words + 8 + 31) / 32 * 32);
        EXPECT_EQ(at(carver.take<Zel8u>(0)), wide + 10);
    }
}

TEST(LongRows, HoldAllRowsOfABandOnceAndNoMorePixelsThan32BitsCount)
{
    struct Case {
        int width;
        bool gapless;
        int atOnce;
    };
    for (const Case c : {Case{7, true, 100}, {7, true, 3}, {7, false, 100}, {1 << 30, true, 100}, {1 << 30, false, 1}}) {
        const Band band = {2, 13, 0, 1};
        int next = band.first;
        forLongRows(band, c.width, c.gapless, c.atOnce, [&](int y, int count) {
            EXPECT_EQ(next, y);
            EXPECT_GT(count, 0);
            EXPECT_EQ(count % c.width, 0);
            EXPECT_LE(count / c.width, c.gapless ? c.atOnce : 1);
            next += count / c.width;
        });
        EXPECT_EQ(next, band.last) << c.width;
    }
}

} // namespace
