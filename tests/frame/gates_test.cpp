// Every kind of gate at its threshold, one below and one above.
#include "gates.h"

#include <gtest/gtest.h>

#include <climits>

using namespace zelcv;

namespace {

constexpr int kNoLimit = Gate::kNoLimit, kNever = INT_MAX;
constexpr auto kSeveral = Gate::Cores::Several;

// A machine made up, which counts the questions.
struct FakeHost {
    int threadSetting, coreCount, team;
    mutable int asked = 0;

    int threads() const { return ++asked, threadSetting; }
    int cores() const { return ++asked, coreCount; }
    int callerTeam() const { return ++asked, team; }
};

TEST(Gates, ThatLookAtTheAreaOpenAtTheirThreshold)
{
    struct Case {
        const char* what;
        Gate gate;
        FakeHost host;
        int threshold;
    };
    const Case cases[] = {
        {"serial", Gate::serial(), {8, 8, 8}, kNever},
        {"area", Gate::area(0x40000), {1, 1, 1}, 0x40000},
        {"small area", Gate::area(0x4000), {8, 8, 1}, 0x4000},
        {"per thread 15", Gate::areaPerThread(15), {1, 1, 1}, 0x8000},
        {"per thread 16", Gate::areaPerThread(16), {3, 1, 1}, 0x30000},
        {"per thread 17", Gate::areaPerThread(17, kSeveral), {3, 2, 1}, 0x60000},
        {"per thread 18", Gate::areaPerThread(18, kSeveral), {3, 1, 1}, kNever},
        {"per thread 19", Gate::areaPerThread(19, kSeveral), {3, 0, 1}, kNever},
        {"per thread 19, shifted out of 32 bits", Gate::areaPerThread(19), {1 << 13 | 1, 1, 1}, 1 << 19},
        {"two levels, several cores", Gate::twoLevel(), {2, 2, 1}, 0x10000},
        {"two levels, one core", Gate::twoLevel(), {2, 1, 1}, 0x40000},
        {"row pipeline", Gate::pipeline(), {2, 1, 1}, 0x10000},
        {"pipeline of 3 taps, several cores", Gate::pipeline(3), {2, 2, 1}, 0x10000},
        {"pipeline of 3 taps, one core", Gate::pipeline(3), {2, 1, 1}, kNever},
        {"pipeline of 5 taps, one core", Gate::pipeline(5), {2, 0, 1}, kNever},
        {"pipeline of 4 taps, one core", Gate::pipeline(4), {2, 1, 1}, 0x10000},
    };
    for (const Case& c : cases) {
        const auto limit = [&](int area) { return c.gate.teamLimit({area, 1}, c.host); };
        EXPECT_EQ(limit(c.threshold - 1), Gate::kSerial) << c.what;
        EXPECT_EQ(limit(c.threshold), c.threshold == kNever ? Gate::kSerial : kNoLimit) << c.what;
        EXPECT_EQ(c.gate.teamLimit({0x8000, 0x10000}, c.host), Gate::kSerial) << c.what << ", area that wraps to a negative";
        if (c.threshold == kNever) continue;
        EXPECT_EQ(limit(c.threshold + 1), kNoLimit) << c.what;
    }
}

TEST(Gates, ThatLookAtMoreGiveTheLargestTeam)
{
    const Gate border = Gate::borderFilter(), bands = Gate::bandCount(), capped = Gate::bandCountCapped();
    struct Case {
        Gate gate;
        ZeliSize roi;
        FakeHost host;
        int limit;
    };
    const Case cases[] = {
        // width, height
        {border, {255, 256}, {2, 4, 1}, 1}, {border, {256, 256}, {2, 4, 1}, 2}, {border, {257, 256}, {2, 4, 1}, 2},
        {border, {256, 255}, {2, 4, 1}, 1}, {border, {256, 257}, {2, 4, 1}, 2},
        // five rows a thread
        {border, {256, 259}, {52, 4, 1}, 1}, {border, {256, 260}, {52, 4, 1}, 2}, {border, {256, 261}, {52, 4, 1}, 2},
        // threads, cores
        {border, {256, 256}, {1, 4, 1}, 1}, {border, {256, 256}, {3, 4, 1}, 2},
        {border, {256, 256}, {2, 0, 1}, 1}, {border, {256, 256}, {2, 1, 1}, 1}, {border, {256, 256}, {2, 2, 1}, 2},
        // 128 rows in each band, a core for each
        {border, {256, 383}, {2, 4, 1}, 2}, {border, {256, 384}, {2, 4, 1}, 3}, {border, {256, 9999}, {2, 4, 1}, 4},
        // 16 rows and 1024 pixels a band, the team of the caller
        {bands, {1024, 31}, {8, 8, 4}, 1}, {bands, {1024, 32}, {8, 8, 4}, 2}, {bands, {1024, 33}, {8, 8, 4}, 2},
        {bands, {2047, 1}, {8, 8, 4}, 1}, {bands, {31, 66}, {8, 8, 4}, 1}, {bands, {32, 64}, {8, 8, 4}, 2},
        {bands, {1024, 999}, {8, 8, 4}, 4}, {bands, {1024, 999}, {8, 8, 2}, 2}, {bands, {1024, 999}, {8, 8, 1}, 1},
        // 1024 pixels a band, the thread setting, 32
        {capped, {2047, 1}, {8, 1, 1}, 1}, {capped, {2048, 1}, {8, 1, 1}, 2}, {capped, {2049, 1}, {8, 1, 1}, 2},
        {capped, {8191, 1}, {8, 1, 1}, 7}, {capped, {8192, 9}, {8, 1, 1}, 8}, {capped, {8192, 9}, {1, 1, 1}, 1},
        {capped, {8192, 9}, {31, 1, 1}, 31}, {capped, {8192, 9}, {32, 1, 1}, 32}, {capped, {8192, 9}, {33, 1, 1}, 32},
        {capped, {0x8000, 0x10000}, {8, 1, 1}, 1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.gate.teamLimit(c.roi, c.host), c.limit)
            << c.roi.width << " by " << c.roi.height << ", threads " << c.host.threadSetting << ", cores " << c.host.coreCount
            << ", caller's team " << c.host.team;
}

TEST(Gates, AskNothingAboutASmallImageThatItsSizeCanTell)
{
    const FakeHost host{2, 2, 2};
    for (Gate gate : {Gate::serial(), Gate::area(0x4000), Gate::borderFilter(), Gate::bandCount(), Gate::bandCountCapped()})
        EXPECT_EQ(gate.teamLimit({96, 15}, host), Gate::kSerial);
    EXPECT_EQ(host.asked, 0);
    for (Gate gate : {Gate::areaPerThread(15, kSeveral), Gate::pipeline(3)})
        EXPECT_EQ(gate.teamLimit({96, 96}, host), Gate::kSerial);
    EXPECT_EQ(host.asked, 2) << "the thread setting";
}

} // namespace
