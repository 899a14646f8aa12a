// Bands, teams and reductions: every row once, in the band that the cut gives it, whatever team comes out.
#include "bands.h"
#include "support/images.h"

#include <dlfcn.h>

using namespace zelcv;
using zeltest::ThreadSetting;

// Stands before zelcore's, so that memory can be refused.
static bool memoryRefused = false;
void* zelMalloc(uint64_t bytes)
{
    static const auto real = reinterpret_cast<void* (*)(uint64_t)>(dlsym(RTLD_NEXT, "zelMalloc"));
    return memoryRefused ? nullptr : real(bytes);
}

namespace {

constexpr Gate kOpen = Gate::area(1);
constexpr int kAnyTeam = 0;

TEST(Bands, CutGivesTheRestToTheLast)
{
    const auto rows = [](int height, int count, int index) {
        const Band band = cutBand(height, count, index);
        return std::pair(band.first, band.last);
    };
    EXPECT_EQ(rows(10, 4, 0), std::pair(0, 2));
    EXPECT_EQ(rows(10, 4, 2), std::pair(4, 6));
    EXPECT_EQ(rows(10, 4, 3), std::pair(6, 10));
    EXPECT_EQ(rows(3, 8, 0), std::pair(0, 0));
    EXPECT_EQ(rows(3, 8, 7), std::pair(0, 3));
}

TEST(Bands, TeamFollowsTheGateTheSettingAndWhetherAForkIsAllowed)
{
    ThreadSetting setting(8);
    const Gate gate = Gate::area(0x40000);
    EXPECT_EQ(planTeam({511, 512}, gate), 1);
    EXPECT_EQ(planTeam({512, 512}, gate), 8);
    EXPECT_EQ(planTeam({3000, 1}, Gate::bandCountCapped()), 2);
#pragma omp parallel num_threads(2)
    {
        EXPECT_EQ(planTeam({512, 512}, gate), 1);
        omp_set_max_active_levels(2);
        EXPECT_EQ(planTeam({512, 512}, gate), 8);
        EXPECT_EQ(planTeam({512, 512}, Gate::bandCount()), 2);
        omp_set_max_active_levels(1);
    }
#pragma omp parallel num_threads(1) // not active
    EXPECT_EQ(planTeam({512, 512}, gate), 8);
}

// What one band saw; folding tells whether the bands came in order and without a gap.
struct Seen {
    int first, last, bands;
    bool inOrder;
};

void expectEveryRowOnce(int height, int wantedTeam)
{
    SCOPED_TRACE(testing::Message() << height << " rows");
    std::vector<int> visits(std::size_t(height), 0), owner(std::size_t(height), -1);
    const auto seen = reduceBands<Seen>(
        {1, height}, kOpen,
        [&](Band band) {
            for (int y = band.first; y < band.last; ++y) {
                ++visits[std::size_t(y)];
                owner[std::size_t(y)] = band.index;
            }
            return Seen{band.first, band.last, 1, true};
        },
        [](Seen a, Seen b) { return Seen{a.first, b.last, a.bands + b.bands, a.inOrder && b.inOrder && a.last == b.first}; });
    EXPECT_TRUE(seen.inOrder);
    EXPECT_EQ(seen.first, 0);
    EXPECT_EQ(seen.last, height);
    EXPECT_TRUE(seen.bands == wantedTeam || wantedTeam == kAnyTeam) << seen.bands << " bands";
    for (int y = 0; y < height; ++y) {
        EXPECT_EQ(visits[std::size_t(y)], 1) << "row " << y;
        EXPECT_EQ(owner[std::size_t(y)],
                  std::min(seen.bands - 1, height < seen.bands ? seen.bands : y / (height / seen.bands)));
    }
}

TEST(Bands, CoverEveryRowOnceAndReduceInOrder)
{
    for (int threads : {1, 2, 3, 8, 32, 33, 64}) {
        ThreadSetting setting(threads);
        SCOPED_TRACE(testing::Message() << threads << " threads");
        for (int height : {1, 7, 64, 1001}) {
            expectEveryRowOnce(height, threads);
#pragma omp parallel num_threads(2)
            expectEveryRowOnce(height, 1);
        }
    }
    ThreadSetting setting(60);
    memoryRefused = true; // of which a team of more than 32 needs some
    expectEveryRowOnce(1001, 32);
    memoryRefused = false;
    // OpenMP may give fewer threads than were asked for.
    omp_set_dynamic(1);
    expectEveryRowOnce(1000, kAnyTeam);
    omp_set_dynamic(0);
}

TEST(Bands, AreNoMoreThanRowsWhereTheyNeedNotBe)
{
    ThreadSetting setting(8);
    for (auto [height, wanted] : {std::pair(1, 1), std::pair(3, 3), std::pair(7, 7), std::pair(9, 8)}) {
        std::vector<int> rows(8, 0);
        int count = 0;
        forBands({1000, height}, kOpen, [&](Band band) {
            if (band.index == 0) count = band.count;
            rows[std::size_t(band.index)] = band.rows();
        });
        EXPECT_EQ(count, wanted);
        EXPECT_EQ(rows[std::size_t(wanted) - 1], 1 + height - wanted);
    }
}

} // namespace
