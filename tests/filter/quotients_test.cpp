// The quotients of derivative filters: both ways against the formula, for all sums.
#include "filter/quotients.h"
#include "support/images.h"

#include <algorithm>

using namespace zelcv;

namespace {

constexpr int kLargestSum = (1 << 14) - 1;

template <class Way>
void expectQuotients(int divisor)
{
    constexpr int block = 2 * kLanes<Zel16s>;
    const Way way(divisor);
    for (int first = -kLargestSum; first <= kLargestSum; first += block) {
        Zel16s sums[block];
        for (int i = 0; i < block; ++i) sums[i] = Zel16s(std::min(first + i, kLargestSum));
        Zel8s quotients[block];
        store(quotients, way({load(sums), load(sums + kLanes<Zel16s>)}));
        for (int i = 0; i < block; ++i) {
            const float quotient = std::clamp(float(sums[i]) * (1.0f / float(divisor)), -128.0f, 127.0f);
            ASSERT_EQ(int(quotient), quotients[i]) << sums[i] << " / " << divisor;
        }
    }
}

TEST(Quotients, AreThoseOfTheFormulaForAllSums)
{
    int exact = 0, others = 0;
    for (int size = 1; size < 40000; size += size < 600 ? 1 : 397)
        for (const int divisor : {size, -size}) {
            const bool takesProduct = QuotientsByProduct::isExact(divisor);
            ++(takesProduct ? exact : others);
            if (takesProduct) expectQuotients<QuotientsByProduct>(divisor);
            expectQuotients<QuotientsByFloat>(divisor);
        }
    EXPECT_TRUE(QuotientsByProduct::isExact(1 << 14) && !QuotientsByProduct::isExact(41)); // 41 / 41 is below 1 there
    EXPECT_GT(exact, others);
    expectQuotients<QuotientsByFloat>(std::numeric_limits<int>::min());
}

} // namespace
