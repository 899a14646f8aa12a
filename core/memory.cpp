// Aligned memory: a block starts on a cache line, and the pointer to hand back to the system stands just before it.
#include "zelcore.h"

#include <cstdlib>
#include <cstring>

namespace {
constexpr uint64_t kAlignment = 64;
}

void* zelMalloc(uint64_t bytes)
{
    constexpr uint64_t overhead = kAlignment + sizeof(void*);
    if (bytes == 0 || bytes > SIZE_MAX - overhead) return nullptr;
    void* system = std::malloc(bytes + overhead);
    if (!system) return nullptr;
    const uintptr_t start = (reinterpret_cast<uintptr_t>(system) + overhead - 1) & ~uintptr_t(kAlignment - 1);
    void* block = reinterpret_cast<void*>(start);
    std::memcpy(static_cast<char*>(block) - sizeof(void*), &system, sizeof(void*));
    return block;
}

void zelFree(void* block)
{
    if (!block) return;
    void* system;
    std::memcpy(&system, static_cast<char*>(block) - sizeof(void*), sizeof(void*));
    std::free(system);
}
