// Which pixel stands in for one outside, by hand.
#include "border.h"

#include <gtest/gtest.h>

#include <vector>

using namespace zelcv;

namespace {

TEST(Border, IndexIsTheOneDrawnByHand)
{
    constexpr int K = kConstantPixel;
    struct Case {
        ZeliBorderType kind;
        int length;
        std::vector<int> wanted; // from position -7 on
    };
    const Case cases[] = {
        {zeliBorderConstant, 3, {K, K, K, K, K, K, K, 0, 1, 2, K, K, K, K, K, K, K}},
        {zeliBorderReplicate, 3, {0, 0, 0, 0, 0, 0, 0, 0, 1, 2, 2, 2, 2, 2, 2, 2, 2}},
        {zeliBorderWrap, 3, {2, 0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2, 0}},
        {zeliBorderReflect, 3, {1, 2, 1, 0, 1, 2, 1, 0, 1, 2, 1, 0, 1, 2, 1, 0, 1}},
        {zeliBorderReflectEdge, 3, {0, 0, 1, 2, 2, 1, 0, 0, 1, 2, 2, 1, 0, 0, 1, 2, 2}},
        {zeliBorderReplicate, 1, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {zeliBorderWrap, 1, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {zeliBorderReflect, 1, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {zeliBorderReflectEdge, 1, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
        {zeliBorderReflect, 2, {1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1, 0, 1}},
    };
    for (const Case& c : cases)
        for (int i = 0; i < int(c.wanted.size()); ++i)
            EXPECT_EQ(borderIndex(i - 7, c.length, c.kind), c.wanted[std::size_t(i)])
                << "kind " << c.kind << ", position " << i - 7 << " of " << c.length;
    constexpr int far = std::numeric_limits<int>::max();
    EXPECT_EQ(borderIndex(far, far, zeliBorderReflect), far - 2); // 32 bits would not hold its period
    EXPECT_EQ(borderIndex(-far, far, zeliBorderReflectEdge), far - 1);
}

} // namespace
