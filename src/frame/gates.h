// Gates: whether a call runs on several threads, and on how many at most. Every kind of gate in the library stands here.
#pragma once

#include "machine.h"
#include "wrapping.h"

#include <algorithm>
#include <limits>
#include <omp.h>

namespace zelcv {

// What gates look at besides the region. They ask when they need to know: most calls are decided by the region alone.
struct Host {
    int threads() const { return ownGetThreadCount(); }       // the thread setting
    int cores() const { return zelGetNumCoresOnDie(); }       // on the die
    int callerTeam() const { return omp_get_num_threads(); } // size of the OpenMP team that calls, 1 in serial code
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
    // Two threads, from so many rows and columns on.
    static constexpr Gate pairFrom(int side) { return Gate(Kind::Pair, side); }
    // As many bands as 1024 pixels each allow, within the thread setting and 32.
    static constexpr Gate bandCountCapped() { return Gate(Kind::BandCountCapped); }

    // The largest team that the region may have; kSerial when it stays on the calling thread. `host` is a Host, or another
    // that answers the same questions.
    template <class Asked>
    constexpr int teamLimit(ZeliSize roi, const Asked& host) const
    {
        const int area = wrappingProduct(roi.width, roi.height);
        const auto perThread = [&](int shift) { return area >= wrappingShift(host.threads(), shift); };
        const auto severalCores = [&] { return host.cores() != 0 && host.cores() != 1; };
        const auto when = [](bool parallel) { return parallel ? kNoLimit : kSerial; };
        switch (kind_) {
        case Kind::Serial: break;
        case Kind::Area: return when(area >= value_);
        case Kind::AreaPerThread: return when(perThread(value_) && (cores_ == Cores::Any || severalCores()));
        case Kind::TwoLevel: return when((perThread(15) && severalCores()) || perThread(17));
        case Kind::BorderFilter:
            if (roi.width < 256 || roi.height < 256) break;
            if (host.threads() < 2 || wrappingProduct(5, host.threads()) > roi.height || !severalCores()) break;
            return std::min(roi.height / 128, host.cores());
        case Kind::BandCount: {
            const int bands = std::min(roi.height >> 4, area >> 10);
            return bands > 1 ? std::min(bands, host.callerTeam()) : kSerial;
        }
        case Kind::Pair: return roi.width >= value_ && roi.height >= value_ ? 2 : kSerial;
        case Kind::BandCountCapped: {
            const int bands = std::min(area >> 10, 32);
            return bands > 1 ? std::min(bands, host.threads()) : kSerial;
        }
        }
        return kSerial;
    }

private:
    enum class Kind { Serial, Area, AreaPerThread, TwoLevel, BorderFilter, Pair, BandCount, BandCountCapped };

    explicit constexpr Gate(Kind kind, int value = 0, Cores cores = Cores::Any)
        : kind_(kind), value_(value), cores_(cores)
    {
    }

    Kind kind_;
    int value_;
    Cores cores_;
};

} // namespace zelcv
