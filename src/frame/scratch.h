// Scratch memory: pieces carved from a buffer of the caller's, and blocks of zelcore's that free themselves.
#pragma once

#include "zelcv.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <new>

namespace zelcv {

// `count` elements. Null for a count below 1, and when the memory is not to be had.
template <class T>
T* ownMalloc(std::int64_t count)
{
    if (count < 1 || count > std::numeric_limits<std::int64_t>::max() / std::int64_t(sizeof(T))) return nullptr;
    return static_cast<T*>(zelMalloc(std::uint64_t(count) * sizeof(T)));
}

inline Zel8u* ownMalloc_8u(std::int64_t count) { return ownMalloc<Zel8u>(count); }
inline Zel32s* ownMalloc_32s(std::int64_t count) { return ownMalloc<Zel32s>(count); }
inline Zel32f* ownMalloc_32f(std::int64_t count) { return ownMalloc<Zel32f>(count); }
inline Zel64f* ownMalloc_64f(std::int64_t count) { return ownMalloc<Zel64f>(count); }
inline void ownFree(void* block) { zelFree(block); }

struct OwnedBlockDeleter {
    void operator()(void* block) const { ownFree(block); }
};

// A block of zelcore's that is released when it goes out of scope.
using OwnedBlock = std::unique_ptr<void, OwnedBlockDeleter>;

// Hands out pieces of a buffer one behind the other, each aligned as asked. The caller of a function has been told the size;
// nothing here can check it.
class Carver {
public:
    explicit Carver(Zel8u* buffer) : next_(buffer) {}

    template <class T>
    T* take(std::int64_t count, std::uintptr_t alignment = alignof(T))
    {
        const auto address = reinterpret_cast<std::uintptr_t>(next_);
        next_ += ((address + alignment - 1) & ~(alignment - 1)) - address;
        T* piece = reinterpret_cast<T*>(next_);
        next_ += count * std::int64_t(sizeof(T));
        return piece;
    }

private:
    Zel8u* next_;
};

} // namespace zelcv
