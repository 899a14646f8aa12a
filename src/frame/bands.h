// Row bands: a region cut into horizontal bands, one for each thread of a team, each computed as its rows would be in a
// serial call. Nothing in a region allocates, fails or throws; threads share nothing but what each alone writes.
#pragma once

#include "gates.h"
#include "scratch.h"

#include <algorithm>
#include <type_traits>

namespace zelcv {

// The rows of one thread.
struct Band {
    int first; // row
    int last;  // row behind the band
    int index; // 0..count - 1
    int count; // bands in all: the size of the team

    int rows() const { return last - first; }
};

// Equal bands; the rows left over go to the last one.
constexpr Band cutBand(int height, int count, int index)
{
    const int rows = height / count, first = index * rows;
    return {first, index == count - 1 ? height : first + rows, index, count};
}

// The team to ask for under `gate`: at most what zelcore says can be had now. One where OpenMP would not fork: a call from
// inside an active parallel region.
inline int planTeam(ZeliSize roi, Gate gate)
{
    const int limit = gate.teamLimit(roi, Host());
    if (limit == Gate::kSerial || omp_get_active_level() >= omp_get_max_active_levels()) return 1;
    return std::max(1, std::min(limit, int(ownGetNumThreads())));
}

// Runs body(Band) over all rows of a region with a team of at most `team`.
template <class Body>
void runTeam(int height, int team, const Body& body)
{
    if (team == 1) {
        body(cutBand(height, 1, 0));
        return;
    }
#pragma omp parallel num_threads(team)
    body(cutBand(height, omp_get_num_threads(), omp_get_thread_num()));
}

// No more threads than rows: a band without rows would do nothing, and the last one would have them all.
template <class Body>
void forBands(ZeliSize roi, Gate gate, const Body& body)
{
    runTeam(roi.height, std::min(planTeam(roi, gate), roi.height), body);
}

// Runs `body`, which returns the partial result of its band, and folds the results in the order of the bands:
// fold(running, next) for the second band on. Bands without rows count too, so the team is as planned. Slots stand on the
// stack for up to 32 threads; a larger team is cut to that when there is no memory for its slots.
template <class Partial, class Body, class Fold>
Partial reduceBands(ZeliSize roi, Gate gate, const Body& body, const Fold& fold)
{
    static_assert(std::is_trivially_destructible_v<Partial>);
    constexpr int kStackSlots = 32;
    Partial stackSlots[kStackSlots] = {};
    Partial* slots = stackSlots;
    OwnedBlock heapSlots;
    int team = planTeam(roi, gate), used = 1;
    if (team > kStackSlots) {
        heapSlots = OwnedBlock(ownMalloc_8u(std::int64_t(sizeof(Partial)) * team));
        if (heapSlots)
            slots = new (heapSlots.get()) Partial[team]();
        else
            team = kStackSlots;
    }
    runTeam(roi.height, team, [&](Band band) {
        if (band.index == 0) used = band.count;
        slots[band.index] = body(band);
    });
    Partial result = slots[0];
    for (int i = 1; i < used; ++i) result = fold(result, slots[i]);
    return result;
}

} // namespace zelcv
