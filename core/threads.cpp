// The thread setting, and how many threads a call may ask OpenMP for: what the user set, as far as the machine has a use for
// them and the process can have them. An OpenMP runtime ends the process when it cannot start a thread, and waits for ever for
// threads that a fork has left behind, so both are found out before it is asked.
#include "zelcore.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include <omp.h>

#if defined(__unix__)
#include <pthread.h>
#include <sys/stat.h>
#endif
#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#endif

namespace {

// OMP_NUM_THREADS is a positive number or a list of them, one for each nesting level: the first one counts here.
int defaultThreads()
{
    if (const char* text = std::getenv("OMP_NUM_THREADS")) {
        while (*text == ' ' || *text == '\t') ++text;
        int count = 0;
        const char* end = text + std::strlen(text);
        const auto parsed = std::from_chars(text, end, count);
        const char* rest = parsed.ptr;
        while (rest != end && (*rest == ' ' || *rest == '\t')) ++rest;
        if (parsed.ec == std::errc() && count >= 1 && (rest == end || *rest == ',')) return count;
    }
    return std::max(1, omp_get_num_procs());
}

// Read when the library is loaded: later the calling thread may be bound to a few of the processors. OpenMP binds even the
// first thread before that when the environment asks for it, but still knows how many processors the process had.
std::atomic<int> threadSetting{defaultThreads()};

// The largest team: beyond it threads only take turns on the processors.
const int largestTeam = std::max(64, 2 * omp_get_num_procs());

// Fork. In the child there is no thread but the one that forked, while OpenMP may still count on those that this thread led. So
// it works alone from then on, and so do its own children, unless the process had no other thread when it forked. A thread that
// the child starts knows nothing of this and has teams.
thread_local bool severed = false;

#if defined(__unix__)
thread_local bool othersAtFork = true;

void beforeFork()
{
#if __has_include(<sys/single_threaded.h>)
    othersAtFork = !__libc_single_threaded;
#endif
}

void inChild()
{
    severed = severed || othersAtFork;
}

[[maybe_unused]] const int watchingForks = pthread_atfork(beforeFork, nullptr, inChild);
#endif

// The number of threads of this process; 0 where the system does not tell.
long threadsAlive()
{
#if defined(__linux__)
    struct stat tasks;
    if (stat("/proc/self/task", &tasks) == 0) return long(tasks.st_nlink) - 2; // a directory has two links of its own
#endif
    return 0;
}

// Starts `wanted` threads that do nothing but wait for the last one, and tells how many there could be.
int tryThreads(int wanted)
{
    const long before = threadsAlive();
    std::mutex finish;
    std::unique_lock<std::mutex> notYet(finish);
    std::vector<std::thread> threads;
    try {
        threads.reserve(std::size_t(wanted));
        while (int(threads.size()) < wanted) threads.emplace_back([&finish] { std::lock_guard<std::mutex> wait(finish); });
    } catch (const std::exception&) { // no more threads, or no memory
    }
    notYet.unlock();
    for (std::thread& thread : threads) thread.join();
    // A thread that was joined counts against limits until the system has cleared it away.
    for (int i = 0; i < 1000 && threadsAlive() > before; ++i) std::this_thread::yield();
    return int(threads.size());
}

// Counts the calls of zelSetNumThreads.
std::atomic<unsigned> settingsMade{1};

} // namespace

ZelStatus zelGetNumThreads(Zel32s* count)
{
    if (!count) return zelStatusNullPointer;
    *count = threadSetting.load(std::memory_order_relaxed);
    return zelStatusOk;
}

ZelStatus zelSetNumThreads(Zel32s count)
{
    if (count < 1) return zelStatusBadArgument;
    threadSetting.store(count, std::memory_order_relaxed);
    settingsMade.fetch_add(1, std::memory_order_relaxed);
    return zelStatusOk;
}

// Each thread has a team of its own, so each finds out for itself, once for a size that it has not had before. One thread more
// than needed is tried, for what else may start meanwhile.
Zel32s ownGetNumThreads(void)
{
    thread_local int available = 1;
    thread_local unsigned refusedUnder = 0; // the setting, by its count, under which threads were refused
    if (severed) return 1;
    const int wanted = std::min(threadSetting.load(std::memory_order_relaxed), largestTeam);
    if (wanted <= available) return wanted;
    const unsigned setting = settingsMade.load(std::memory_order_relaxed);
    if (refusedUnder != setting) {
        available = std::max(available, tryThreads(wanted));
        if (available < wanted) refusedUnder = setting;
    }
    return std::min(wanted, available);
}
