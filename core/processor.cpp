// What can be learned about the processor.
#include "zelcore.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <limits>
#include <set>
#include <string>
#include <thread>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#define ZELCORE_HAS_CPUID 1
#endif
#if defined(__linux__)
#include <unistd.h>
#endif

namespace {

constexpr Zel32s kFallbackCacheBytes = 1 << 20;

// Largest cache of the deterministic cache parameters: leaf 4, and its twin on processors that keep it elsewhere. 0 where the
// processor cannot be asked.
uint64_t largestCache([[maybe_unused]] unsigned leaf)
{
    uint64_t largest = 0;
#if defined(ZELCORE_HAS_CPUID)
    unsigned a, b, c, d;
    for (unsigned index = 0; index < 16; ++index) {
        if (!__get_cpuid_count(leaf, index, &a, &b, &c, &d)) break;
        const unsigned type = a & 31; // 0 none, 1 data, 2 instructions, 3 both
        if (type == 0) break;
        if (type == 2) continue;
        const uint64_t ways = (b >> 22) + 1, partitions = ((b >> 12) & 1023) + 1, line = (b & 4095) + 1;
        largest = std::max(largest, ways * partitions * line * (uint64_t(c) + 1));
    }
#endif
    return largest;
}

Zel32s readCacheBytes()
{
    const uint64_t bytes = std::max(largestCache(4), largestCache(0x8000001D));
    if (bytes == 0) return kFallbackCacheBytes;
    return static_cast<Zel32s>(std::min<uint64_t>(bytes, std::numeric_limits<Zel32s>::max()));
}

// Reads one number of the topology of processor `cpu`; -1 where there is none.
int topology(int cpu, const char* what)
{
    std::ifstream file("/sys/devices/system/cpu/cpu" + std::to_string(cpu) + "/topology/" + what);
    int value = -1;
    return file >> value ? value : -1;
}

// Distinct cores on the die that processor 0 belongs to. Where the system does not tell: all processors. A processor that is
// switched off has no topology.
int readCoresOnDie()
{
    const int all = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    int configured = all;
#if defined(__linux__)
    configured = std::max(all, static_cast<int>(sysconf(_SC_NPROCESSORS_CONF)));
#endif
    const int package = topology(0, "physical_package_id"), die = topology(0, "die_id");
    std::set<int> cores;
    for (int cpu = 0; cpu < configured; ++cpu) {
        const int core = topology(cpu, "core_id");
        if (core >= 0 && topology(cpu, "physical_package_id") == package && topology(cpu, "die_id") == die)
            cores.insert(core);
    }
    return cores.empty() ? all : static_cast<int>(cores.size());
}

// Reads a fact on first use; threads that come at the same time may read it twice. Not a static variable of a function: its
// guard would stay shut for ever in the child of a fork that came while another thread was reading.
template <class Read>
Zel32s readOnce(std::atomic<Zel32s>& fact, const Read& read)
{
    Zel32s value = fact.load(std::memory_order_relaxed);
    if (value == 0) {
        value = read();
        fact.store(value, std::memory_order_relaxed);
    }
    return value;
}

std::atomic<Zel32s> cacheBytes{0}, coresOnDie{0}; // 0: not read yet

} // namespace

ZelStatus zelGetMaxCacheSizeB(Zel32s* bytes)
{
    if (!bytes) return zelStatusNullPointer;
    *bytes = readOnce(cacheBytes, readCacheBytes);
    return zelStatusOk;
}

Zel32s zelGetNumCoresOnDie(void)
{
    return readOnce(coresOnDie, readCoresOnDie);
}
