// The thread setting, and how many threads a call may ask OpenMP for: what the user set, as far as the machine has a use for
// them and the process can have them. An OpenMP runtime ends the process when it cannot start a thread, and waits for ever
// for threads that a fork has left behind, so both are found out before it is asked.
#include "zelcore.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>

#include <omp.h>

#if defined(__unix__)
#include <pthread.h>
#include <sched.h>
#include <sys/mman.h>
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

// A thread that came through a fork, see below.
thread_local bool severed = false;

#if defined(__unix__)

// In the child of a fork there is no thread but the one that forked, while OpenMP may still count on those that this thread
// led. So it works alone from then on, and so do its own children, unless the process had no other thread when it forked. A
// thread that the child starts knows nothing of this and has teams.
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

// Whether there is address space for so many threads, with a stack and, where a runtime allocates on them, a heap for each,
// and as much again for what else the process does.
bool haveRoom(int threads)
{
    constexpr std::size_t heapBytes = 64 << 20;
    std::size_t stackBytes = 8 << 20;
#if defined(__GLIBC__)
    pthread_attr_t attributes;
    if (pthread_getattr_default_np(&attributes) == 0) {
        pthread_attr_getstacksize(&attributes, &stackBytes);
        pthread_attr_destroy(&attributes);
    }
#endif
    const std::size_t bytes = 2 * (stackBytes + heapBytes) * std::size_t(threads);
    void* space = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return space != MAP_FAILED && munmap(space, bytes) == 0;
}

// The number of threads of this process; 0 where the system does not tell.
long threadsAlive()
{
    struct stat tasks;
    return stat("/proc/self/task", &tasks) == 0 ? long(tasks.st_nlink) - 2 : 0; // a directory has two links of its own
}

void* waitFor(void* mutex)
{
    const std::lock_guard<std::mutex> untilReleased(*static_cast<std::mutex*>(mutex));
    return nullptr;
}

// Starts up to `wanted` threads that do nothing, with small stacks, and tells how many there could be at once.
int tryThreads(int wanted)
{
    const std::unique_ptr<pthread_t[]> threads(new (std::nothrow) pthread_t[std::size_t(wanted)]);
    if (!threads) return 0;
    const long before = threadsAlive();
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, 1 << 18);
    std::mutex hold;
    hold.lock();
    int started = 0, error = 0;
    while (started < wanted && (error = pthread_create(&threads[std::size_t(started)], &small, waitFor, &hold)) == 0)
        ++started;
    hold.unlock();
    for (int i = 0; i < started; ++i) pthread_join(threads[std::size_t(i)], nullptr);
    pthread_attr_destroy(&small);
    // A thread that was joined counts against limits until the system has cleared it away.
    for (int i = 0; i < 1000 && threadsAlive() > before; ++i) sched_yield();
    return error == 0 || error == EAGAIN ? started : wanted; // other errors tell nothing of limits
}

// The threads that this process can start, `wanted` at most. Where it cannot start all of them a part is left for other
// things.
int threadsToBeHad(int wanted)
{
    while (wanted > 1 && !haveRoom(wanted)) wanted /= 2;
    const int started = wanted > 1 ? tryThreads(wanted) : wanted;
    return started == wanted ? wanted : started / 2;
}

#else

int threadsToBeHad(int wanted)
{
    return wanted;
}

#endif

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

// Each thread has a team of its own, so each finds out for itself, once for a size that it has not had before.
Zel32s ownGetNumThreads(void)
{
    thread_local int available = 1;
    thread_local unsigned refusedUnder = 0; // the setting, by its count, under which threads were refused
    if (severed) return 1;
    const int wanted = std::min(threadSetting.load(std::memory_order_relaxed), largestTeam);
    if (wanted <= available) return wanted;
    const unsigned setting = settingsMade.load(std::memory_order_relaxed);
    if (refusedUnder != setting) {
        available = std::max(available, threadsToBeHad(wanted));
        if (available < wanted) refusedUnder = setting;
    }
    return std::min(wanted, available);
}
