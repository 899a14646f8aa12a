// Scratch memory: pieces carved from a buffer of the caller's, and blocks of zelcore's that free themselves.
#pragma once

#include "zelcv.h"

#include <cstdint>
#include <memory>
#include <new>

namespace zelcv {

// Null for a count below 1 or when there is no memory. Counts are in elements.
inline Zel8u* ownMalloc_8u(std::int64_t count) { return count < 1 ? nullptr : static_cast<Zel8u*>(zelMalloc(count)); }
inline Zel32s* ownMalloc_32s(std::int64_t count)
{
    return count < 1 ? nullptr : static_cast<Zel32s*>(zelMalloc(4 * std::uint64_t(count)));
}
inline Zel32f* ownMalloc_32f(std::int64_t count)
{
    return count < 1 ? nullptr : static_cast<Zel32f*>(zelMalloc(4 * std::uint64_t(count)));
}
inline Zel64f* ownMalloc_64f(std::int64_t count)
{
    return count < 1 ? nullptr : static_cast<Zel64f*>(zelMalloc(8 * std::uint64_t(count)));
}
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
