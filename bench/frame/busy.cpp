// Times of single calls beside busy programs: the median, the 95th of 100 and the longest, which averages hide. What a call
// waits for then depends on how OpenMP waits: set OMP_WAIT_POLICY, GOMP_SPINCOUNT or OMP_DYNAMIC and compare.
//
// usage: zelcv_busy PROGRAMS THREADS [SECONDS]
#include "zelcv.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include <signal.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

template <class Call>
void measure(const char* what, double seconds, Milliseconds pause, const Call& call)
{
    std::vector<double> times;
    call();
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (times.size() < 5000 && Clock::now() < end) {
        if (pause.count() > 0) std::this_thread::sleep_for(pause);
        const auto start = Clock::now();
        call();
        times.push_back(Milliseconds(Clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    std::printf("%-36s median %7.3f   95%% %7.3f   longest %7.3f ms   (%zu calls)\n", what, times[times.size() / 2],
                times[times.size() * 95 / 100], times.back(), times.size());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) return std::fprintf(stderr, "usage: %s PROGRAMS THREADS [SECONDS]\n", argv[0]), 2;
    const double seconds = argc > 3 ? std::atof(argv[3]) : 2;
    std::vector<pid_t> programs;
    for (int i = 0; i < std::atoi(argv[1]); ++i) {
        const pid_t program = fork();
        if (program == 0)
            for (volatile unsigned n = 0;;) n = n + 1;
        programs.push_back(program);
    }
    zelSetNumThreads(std::atoi(argv[2]));

    const ZeliSize small = {640, 480}, large = {1920, 1080};
    const std::size_t pixels = std::size_t(large.width) * std::size_t(large.height);
    std::vector<Zel8u> a(pixels, 3), b(pixels, 9), difference(pixels);
    std::vector<Zel16s> edges(pixels);
    int scratchBytes = 0;
    zeliFilterSobelVertGetBufferSize_8u16s_C1R(large, zeliMask3x3, &scratchBytes);
    std::vector<Zel8u> scratch(static_cast<std::size_t>(scratchBytes));
    const auto absDiff = [&] {
        zeliAbsDiff_8u_C1R(a.data(), small.width, b.data(), small.width, difference.data(), small.width, small);
    };
    const auto sobel = [&] {
        zeliFilterSobelVertBorder_8u16s_C1R(a.data(), large.width, edges.data(), 2 * large.width, large, zeliMask3x3,
                                            zeliBorderReplicate, 0, scratch.data());
    };
    measure("AbsDiff 640x480, call upon call", seconds, Milliseconds(0), absDiff);
    measure("Sobel 1920x1080, call upon call", seconds, Milliseconds(0), sobel);
    measure("Sobel 1920x1080, one every 5 ms", seconds, Milliseconds(5), sobel);
    for (pid_t program : programs) kill(program, SIGKILL);
}
