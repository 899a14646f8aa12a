// What happens to the process of a caller: forks, thread settings out of all proportion, no memory for threads. A call of
// each kind of gate must compute what it computes on one thread. Whatever may hang or end does so in a child, under an
// alarm.
#include "support/images.h"

#include <array>
#include <atomic>
#include <climits>
#include <fstream>
#include <memory>
#include <thread>

#include <sys/resource.h>
#include <sys/single_threaded.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using zeltest::ThreadSetting;

template <class T>
std::vector<T> randomElements(std::size_t count)
{
    zeltest::Random random(unsigned(sizeof(T)));
    std::vector<T> elements(count);
    for (T& element : elements) element = zeltest::randomElement<T>(random, zeltest::Texture::Noise, 0, 0);
    return elements;
}

// One call for each kind of gate, on the same images. 512 by 512 pixels open every gate for two threads.
class Calls {
public:
    explicit Calls(int width = 512, int height = 512)
        : size_{width, height}, serial_((ThreadSetting(1), results()))
    {
    }

    // They compute under the present setting what they compute on one thread.
    bool right() const
    {
        const Results now = results();
        for (std::size_t i = 0; i < now.size(); ++i)
            if (now[i] != serial_[i] && now[i] != kNoScratch) return false;
        return true;
    }

private:
    // A number for a status and all that was written.
    using Results = std::array<std::uint64_t, 7>;
    static constexpr std::uint64_t kNoScratch = 0; // the scratch for so many threads is larger than any buffer
    template <class T>
    static std::uint64_t result(ZelStatus status, const std::vector<T>& written)
    {
        std::uint64_t sum = std::uint64_t(status) + 1;
        for (const T& element : written) sum = (sum ^ std::hash<T>()(element)) * 0x9e3779b97f4a7c15u;
        return sum;
    }
    template <class Call>
    std::uint64_t filtered(int scratchBytes, const Call& call) const
    {
        if (scratchBytes <= 0) return kNoScratch;
        const std::unique_ptr<void, decltype(&zelFree)> scratch(zelMalloc(Zel32u(scratchBytes)), zelFree);
        std::vector<Zel16s> dst(a_.size());
        const ZelStatus status = call(dst.data(), static_cast<Zel8u*>(scratch.get()));
        return result(status, dst);
    }

    Results results() const
    {
        const int step = size_.width;
        std::vector<Zel8u> difference(a_.size());
        const ZelStatus ofDifference =
            zeliAbsDiff_8u_C1R(a_.data(), step, b_.data(), step, difference.data(), step, size_);

        Zel32f extremes[2] = {};
        ZeliPoint at[2] = {};
        const ZelStatus ofExtremes =
            zeliMinMaxIndx_8u_C1R(a_.data(), step, size_, &extremes[0], &extremes[1], &at[0], &at[1]);

        Zel64f mean = 0, norm = 0;
        const ZelStatus ofMean = zeliMean_16u_C1MR(wide_.data(), 2 * step, a_.data(), step, size_, &mean);
        const ZelStatus ofNorm =
            zeliNormRel_L1_16u_C1MR(wide_.data(), 2 * step, wide_.data() + 1, 2 * step, a_.data(), step, size_, &norm);

        std::vector<Zel32f> deviation(a_.size());
        const ZelStatus ofDeviation = zeliRectStdDev_32f_C1R(sums_.data(), 4 * step, squares_.data(), 8 * step,
                                                             deviation.data(), 4 * step, size_, {0, 0, 5, 5});

        int pipelineScratch = 0, sobelScratch = 0;
        zeliFilterRowBorderPipelineGetBufferSize_8u16s_C1R(size_, 7, &pipelineScratch);
        zeliFilterSobelVertGetBufferSize_8u16s_C1R(size_, zeliMask5x5, &sobelScratch);
        return {
            result(ofDifference, difference),
            result(ofExtremes, std::vector<double>{extremes[0], extremes[1], double(at[0].x), double(at[0].y),
                                                   double(at[1].x), double(at[1].y)}),
            result(ofMean, std::vector<double>{mean}),
            result(ofNorm, std::vector<double>{norm}),
            result(ofDeviation, deviation),
            filtered(pipelineScratch,
                     [&](Zel16s* dst, Zel8u* scratch) {
                         const Zel16s taps[7] = {1, -2, 3, -4, 5, -6, 7};
                         std::vector<Zel16s*> rows;
                         for (int y = 0; y < size_.height; ++y) rows.push_back(dst + y * step);
                         return zeliFilterRowBorderPipeline_8u16s_C1R(a_.data(), step, rows.data(), size_, taps, 7, 3,
                                                                      zeliBorderReplicate, 0, 3, scratch);
                     }),
            filtered(sobelScratch,
                     [&](Zel16s* dst, Zel8u* scratch) {
                         return zeliFilterSobelVertBorder_8u16s_C1R(a_.data(), step, dst, 2 * step, size_, zeliMask5x5,
                                                                    zeliBorderReplicate, 0, scratch);
                     }),
        };
    }

    ZeliSize size_;
    std::size_t pixels_ = std::size_t(size_.width) * std::size_t(size_.height);
    std::vector<Zel8u> a_ = randomElements<Zel8u>(pixels_), b_{a_.rbegin(), a_.rend()};
    std::vector<Zel16u> wide_ = randomElements<Zel16u>(pixels_ + 1);
    std::vector<Zel32f> sums_ = randomElements<Zel32f>(pixels_ + 5 * std::size_t(size_.width + 1));
    std::vector<Zel64f> squares_ = randomElements<Zel64f>(pixels_ + 5 * std::size_t(size_.width + 1));
    Results serial_;
};

constexpr unsigned kPatience = 20; // seconds

// Whether a child comes to an end in which test() is true.
template <class Test>
bool inChild(const Test& test)
{
    const auto runTest = [&]() noexcept -> bool { return test(); };
    const pid_t child = fork();
    if (child == 0) {
        alarm(kPatience);
        _exit(runTest() ? 0 : 1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// The first tests start from a process without other threads.

TEST(Process, ThatForksBeforeItHasThreadsLeavesTheChildItsTeams)
{
    ASSERT_TRUE(__libc_single_threaded);
    ThreadSetting setting(2);
    const Calls calls;
    EXPECT_TRUE(inChild([&] { return ownGetNumThreads() == 2 && calls.right(); }));
}

TEST(Process, ThatMayNotStartThreadsComputesOnThoseThatItHas)
{
    ASSERT_TRUE(__libc_single_threaded);
    const Calls calls;
    ThreadSetting setting(60);
#if !defined(__SANITIZE_ADDRESS__) // which takes more address space than any limit allows
    for (rlim_t free : {40, 100, 200, 400, 800, 1600}) // MiB; the calls themselves take some
        EXPECT_TRUE(inChild([&] {
            long pages = 0;
            std::ifstream("/proc/self/statm") >> pages;
            const rlim_t most = rlim_t(pages * sysconf(_SC_PAGESIZE)) + (free << 20);
            const rlimit limit = {most, most};
            return setrlimit(RLIMIT_AS, &limit) == 0 && calls.right() && ownGetNumThreads() < 30;
        })) << free << " MiB";
#endif
    for (rlim_t threads : {1, 2, 3, 12})
        EXPECT_TRUE(inChild([&] {
            const rlimit limit = {threads, threads}; // of the user; the superuser is exempt
            if (geteuid() == 0 && setuid(60000 + uid_t(threads)) != 0) return false;
            return setrlimit(RLIMIT_NPROC, &limit) == 0 && calls.right() && ownGetNumThreads() < 7;
        })) << threads << " threads";
}

TEST(Process, SurvivesAnyThreadSetting)
{
    for (int size : {64, 512})
        for (int threads : {65, 40000, 100000, INT_MAX}) {
            const Calls calls(size, size);
            ThreadSetting setting(threads);
            EXPECT_TRUE(calls.right()) << threads << " threads, " << size << " by " << size;
        }
}

TEST(Process, ForksAfterItHadTeams)
{
    ThreadSetting setting(2);
    const Calls calls;
    const auto right = [&] { return calls.right(); };
    ASSERT_TRUE(right());
    EXPECT_EQ(ownGetNumThreads(), 2);
    ASSERT_TRUE(inChild([&] { return ownGetNumThreads() == 1 && right(); }));
    EXPECT_TRUE(inChild([&] { return right() && inChild(right) && right(); })) << "child of a child";
    EXPECT_TRUE(inChild([&] {
        bool inThread = false;
        std::thread([&] { inThread = ownGetNumThreads() == 2 && right() && inChild(right); }).join();
        return inThread && right();
    })) << "thread of a child";
    EXPECT_TRUE(right());
}

TEST(Process, ForksWhileThreadsCompute)
{
    ThreadSetting setting(2);
    const Calls calls;
    const auto right = [&] { return calls.right(); };
    ASSERT_TRUE(right());
    std::atomic<bool> enough{false};
    bool allRight = true;
    std::thread other([&] {
        while (!enough) allRight = allRight && right();
    });
    bool childrenToo = true;
    for (int i = 0; i < 20 && childrenToo; ++i) childrenToo = inChild(right);
    enough = true;
    other.join();
    EXPECT_TRUE(childrenToo && allRight);

    int children = 0;
#pragma omp parallel num_threads(3) reduction(+ : children)
    children += inChild(right);
    EXPECT_EQ(children, 3) << "from inside a parallel region";
}

} // namespace
