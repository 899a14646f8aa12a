// What the definitions of the statistics share: lanes, bands, results that may be NaN.
#pragma once

#include "support/calls.h"

#include <cmath>

namespace zeltest {

// The sum of a row in double precision, in eight lanes.
template <class Term>
double eightLanes(int width, const Term& term)
{
    double lane[8] = {};
    for (int x = 0; x < width; ++x) lane[x % 8] += term(x);
    return ((lane[0] + lane[4]) + (lane[2] + lane[6])) + ((lane[1] + lane[5]) + (lane[3] + lane[7]));
}

// fold(result so far, ofRows(first, last)) over equal bands, of which the last one has the rows left over.
template <class OfRows, class Fold>
auto overBands(int height, int bands, const OfRows& ofRows, const Fold& fold)
{
    const int rows = height / bands;
    auto result = ofRows(0, bands == 1 ? height : rows);
    for (int band = 1; band < bands; ++band)
        result = fold(result, ofRows(band * rows, band == bands - 1 ? height : (band + 1) * rows));
    return result;
}

// As many bands as threads from 2^shift pixels for each thread on.
inline int bandsPerThread(ZeliSize size, int shift)
{
    const int threads = ownGetNumThreads();
    return size.width * size.height >= threads << shift && !omp_in_parallel() ? threads : 1;
}

inline void expectSame(double wanted, double got, const std::string& what)
{
    if (std::isnan(wanted))
        EXPECT_TRUE(std::isnan(got)) << what << ": there is " << got;
    else
        EXPECT_EQ(wanted, got) << what;
}

} // namespace zeltest
