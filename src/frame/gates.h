// Gates: whether a call runs on several threads, and on how many at most. Every kind of gate in the library stands here.
#pragma once

#include "machine.h"
#include "wrapping.h"

#include <algorithm>
#include <limits>
#include <omp.h>

namespace zelcv {

// What gates look at besides the region.
struct Host {
    int threads;    // the thread setting
    int cores;      // on the die
    int callerTeam; // size of the OpenMP team that the call is made from, 1 in serial code

    bool severalCores() const { return cores != 0 && cores != 1; }
    static Host current() { return {ownGetThreadCount(), zelGetNumCoresOnDie(), omp_get_num_threads()}; }
};

class Gate {
public:
    enum class Cores { Any, Several };

    static constexpr int kSerial = 1;
    static constexpr int kNoLimit = std::numeric_limits<int>::max();

    // Never parallel.
    static constexpr Gate serial() { return Gate(Kind::Serial); }
    // From `pixels` on.
    static constexpr Gate area(int pixels) { return Gate(Kind::Area, pixels); }
    // From 2^shift pixels for each thread on; where told, only with several cores.
    static constexpr Gate areaPerThread(int shift, Cores cores = Cores::Any)
    {
        return Gate(Kind::AreaPerThread, shift, cores);
    }
    // From 2^15 pixels for each thread on with several cores, from 2^17 on anyway.
    static constexpr Gate twoLevel() { return Gate(Kind::TwoLevel); }
    // The row pipelines, and those that fork for kernels of 3 and 5 taps only with several cores.
    static constexpr Gate pipeline() { return areaPerThread(15); }
    static constexpr Gate pipeline(int kernelSize)
    {
        return areaPerThread(15, kernelSize == 3 || kernelSize == 5 ? Cores::Several : Cores::Any);
    }
    // Filters with border: 256 by 256 pixels and 5 rows a thread, at least 128 rows in each band, a core for each.
    static constexpr Gate borderFilter() { return Gate(Kind::BorderFilter); }
    // As many bands as 16 rows and 1024 pixels each allow, within the team of the caller.
    static constexpr Gate bandCount() { return Gate(Kind::BandCount); }
    // As many bands as 1024 pixels each allow, within the thread setting and 32.
    static constexpr Gate bandCountCapped() { return Gate(Kind::BandCountCapped); }

    // The largest team that the region may have; kSerial when it stays on the calling thread.
    constexpr int teamLimit(ZeliSize roi, const Host& host) const
    {
        const int area = wrappingProduct(roi.width, roi.height);
        const auto perThread = [&](int shift) { return area >= wrappingShift(host.threads, shift); };
        const auto when = [](bool parallel, int limit = kNoLimit) { return parallel ? limit : kSerial; };
        switch (kind_) {
        case Kind::Serial: break;
        case Kind::Area: return when(area >= value_);
        case Kind::AreaPerThread:
            return when(perThread(value_) && (cores_ == Cores::Any || host.severalCores()));
        case Kind::TwoLevel: return when((perThread(15) && host.severalCores()) || perThread(17));
        case Kind::BorderFilter:
            return when(wrappingProduct(5, host.threads) <= roi.height && roi.width >= 256 && roi.height >= 256 &&
                            host.threads >= 2 && host.severalCores(),
                        std::min(roi.height / 128, host.cores));
        case Kind::BandCount: return std::max(kSerial, std::min({host.callerTeam, roi.height >> 4, area >> 10}));
        case Kind::BandCountCapped: return std::max(kSerial, std::min({host.threads, area >> 10, 32}));
        }
        return kSerial;
    }

private:
    enum class Kind { Serial, Area, AreaPerThread, TwoLevel, BorderFilter, BandCount, BandCountCapped };

    explicit constexpr Gate(Kind kind, int value = 0, Cores cores = Cores::Any)
        : kind_(kind), value_(value), cores_(cores)
    {
    }

    Kind kind_;
    int value_;
    Cores cores_;
};

} // namespace zelcv
