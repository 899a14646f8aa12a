// Registering benchmarks: a call under its exported name, to be measured at several sizes, and beside it a memcpy that moves
// as many bytes.
#pragma once

#include "zelcv.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

namespace zelbench {

// Prepares the planes of one size and returns the call to measure; it owns what it needs.
using Prepare = std::function<std::function<void()>(ZeliSize size)>;

// `bytesPerPixel`: what one call must read and write at the least, for each pixel. A name may carry a remark behind a slash.
// The thread setting is 1; with `threads` it is that number.
void measure(const std::string& name, double bytesPerPixel, Prepare prepare, int threads = 1);

struct Call {
    std::string name;
    double bytesPerPixel;
    Prepare prepare;
    int threads;
};

std::string toString(ZeliSize size);
// Sets the number of threads, and hands out the call as it is to be measured.
std::function<void()> prepare(const Call& call, ZeliSize size);

// A plane of zelMalloc memory, filled with a smooth random texture, with steps of whole cache lines. In measurements of
// small regions rows follow each other without gaps, so that one pass over all pixels may pay.
template <class T>
class Plane {
public:
    Plane(ZeliSize size, int channels = 1);
    T* data() const { return static_cast<T*>(memory_.get()); }
    int step() const { return step_; }
    T* row(int y) const { return reinterpret_cast<T*>(static_cast<char*>(memory_.get()) + std::ptrdiff_t(y) * step_); }

private:
    int step_;
    std::shared_ptr<void> memory_;
};

inline std::shared_ptr<Zel8u> scratch(int bytes)
{
    return {static_cast<Zel8u*>(zelMalloc(std::uint64_t(bytes))), zelFree};
}

// Ends the program when a measured call fails: there is nothing to measure then.
void require(ZelStatus status);

} // namespace zelbench
