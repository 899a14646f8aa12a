// zelcore: memory, the thread setting, the processor, sentences. Started with --threads the program prints the thread setting
// and nothing else: what it is by default can be seen in a new process only.
#include "zelcore.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <set>
#include <string>
#include <thread>

#include <sched.h>
#include <unistd.h>

namespace {

std::string program;

TEST(Memory, IsAlignedAndAllThere)
{
    for (uint64_t bytes : {1, 7, 64, 65, 4096, 1000003}) {
        auto* block = static_cast<unsigned char*>(zelMalloc(bytes));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 64, 0u);
        std::memset(block, 0x5a, bytes);
        zelFree(block);
    }
    zelFree(nullptr);
}

TEST(Memory, IsNullWhenItIsNotToBeHad)
{
    for (uint64_t bytes : {uint64_t(0), UINT64_MAX, UINT64_MAX - 63, UINT64_MAX - 71, UINT64_MAX / 2, uint64_t(1) << 62})
        EXPECT_EQ(zelMalloc(bytes), nullptr) << bytes;
}

TEST(Memory, CountsWith64Bits)
{
    constexpr uint64_t bytes = (uint64_t(1) << 32) + 5; // 5 in 32 bits
    auto* block = static_cast<unsigned char*>(zelMalloc(bytes));
    if (!block) GTEST_SKIP() << "this machine has not 4 GiB to give";
    block[0] = 1;
    block[bytes - 1] = 2;
    EXPECT_EQ(block[0] + block[bytes - 1], 3);
    zelFree(block);
}

TEST(Threads, KeepTheSettingWhenToldNonsenseOrMoreThanATeamHas)
{
    Zel32s before = 0, now = 0;
    ASSERT_EQ(zelGetNumThreads(&before), zelStatusOk);
    EXPECT_EQ(zelSetNumThreads(37), zelStatusOk);
    for (Zel32s nonsense : {0, -1, INT32_MIN}) EXPECT_EQ(zelSetNumThreads(nonsense), zelStatusBadArgument);
    EXPECT_EQ(zelGetNumThreads(nullptr), zelStatusNullPointer);
    EXPECT_EQ(zelGetNumThreads(&now), zelStatusOk);
    EXPECT_EQ(now, 37);
    EXPECT_EQ(ownGetNumThreads(), 37);
    const int largestTeam = std::max(64, 2 * omp_get_num_procs());
    for (int setting : {64, largestTeam + 1, INT32_MAX}) {
        EXPECT_EQ(zelSetNumThreads(setting), zelStatusOk);
        EXPECT_EQ(zelGetNumThreads(&now), zelStatusOk);
        EXPECT_EQ(now, setting);
        EXPECT_EQ(ownGetNumThreads(), std::min(setting, largestTeam));
    }
    zelSetNumThreads(before);
}

// What a new process gets under `environment`, words of the shell in front of the program.
int threadsUnder(const std::string& environment)
{
    const std::string command = "env -u OMP_NUM_THREADS -u OMP_PROC_BIND " + environment + " " + program + " --threads";
    FILE* pipe = popen(command.c_str(), "r");
    int count = -1;
    if (!pipe || std::fscanf(pipe, "%d", &count) != 1 || pclose(pipe) != 0)
        ADD_FAILURE() << "no answer under " << environment;
    return count;
}

TEST(Threads, DefaultToTheEnvironmentOrTheProcessorsAllowed)
{
    cpu_set_t set;
    ASSERT_EQ(sched_getaffinity(0, sizeof set, &set), 0);
    const int allowed = CPU_COUNT(&set);
    int one = 0;
    while (!CPU_ISSET(one, &set)) ++one;
    const std::string pinned = "taskset -c " + std::to_string(one);
    const std::pair<std::string, int> cases[] = {
        {"", allowed}, {pinned, 1},
        {"OMP_PROC_BIND=true", allowed}, // OpenMP binds the first thread to one processor then
        {"OMP_NUM_THREADS=3", 3}, {"OMP_NUM_THREADS=3 " + pinned, 3}, {"OMP_NUM_THREADS=4,2", 4},
        {"OMP_NUM_THREADS=' 5 '", 5},
        {"OMP_NUM_THREADS=", allowed}, {"OMP_NUM_THREADS=many", allowed}, {"OMP_NUM_THREADS=3x", allowed},
        {"OMP_NUM_THREADS=0", allowed}, {"OMP_NUM_THREADS=-4", allowed}, {"OMP_NUM_THREADS=99999999999", allowed},
    };
    for (const auto& [environment, wanted] : cases) EXPECT_EQ(threadsUnder(environment), wanted) << environment;
}

TEST(Processor, HasTheCacheAndCoresThatTheSystemTells)
{
    Zel32s cache = 0;
    EXPECT_EQ(zelGetMaxCacheSizeB(nullptr), zelStatusNullPointer);
    EXPECT_EQ(zelGetMaxCacheSizeB(&cache), zelStatusOk);
    int largest = 0; // KiB
    for (int index = 0, size = 0; index < 8; ++index)
        if (std::ifstream("/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(index) + "/size") >> size)
            largest = std::max(largest, size);
    if (largest > 0)
        EXPECT_EQ(cache, largest * 1024);
    else
        EXPECT_GE(cache, 1 << 14);

    EXPECT_GE(zelGetNumCoresOnDie(), 1);
    EXPECT_LE(zelGetNumCoresOnDie(), sysconf(_SC_NPROCESSORS_CONF));
    EXPECT_EQ(zelGetNumCoresOnDie(), zelGetNumCoresOnDie());
}

TEST(Status, HasASentenceForEachNumber)
{
    const std::set<int> known = {38, 33, 12, 6, 0, -2, -5, -6, -7, -8, -9, -11, -12, -14, -33, -34, -52, -53, -56, -108,
                                 -9999};
    std::set<std::string> sentences;
    for (int status = -10100; status <= 100; ++status) {
        const std::string sentence = zelGetStatusString(status);
        EXPECT_EQ(sentence != "Unknown status.", known.count(status) == 1) << status;
        EXPECT_EQ(sentence.back(), '.') << status;
        sentences.insert(sentence);
    }
    EXPECT_EQ(sentences.size(), known.size() + 1);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--threads") == 0) return std::printf("%d\n", int(ownGetNumThreads())) < 0;
    program = argv[0];
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
