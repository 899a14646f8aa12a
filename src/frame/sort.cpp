// ownSort_64f: quicksort on an explicit stack. The longer part of each split waits on the stack and the shorter one is sorted
// next, so that 64 entries are enough for any length.
#include "rows.h"

namespace zelcv {
namespace {

struct Segment {
    Zel64f* first;
    Zel64f* last; // the last element itself
};

constexpr int kSelectionLength = 9;

// Moves the largest element to the end, again and again; of equal ones the leftmost.
void selectionSort(Segment segment)
{
    for (Zel64f* end = segment.last; end > segment.first; --end) {
        Zel64f* largest = segment.first;
        for (Zel64f* p = segment.first + 1; p <= end; ++p)
            if (*p > *largest) largest = p;
        std::swap(*largest, *end);
    }
}

void orderPair(Zel64f& a, Zel64f& b)
{
    if (a > b) std::swap(a, b);
}

// Splits around the middle of three: elements of `lower` are at most those of `upper`, and the run equal to the pivot, which
// is in its place, belongs to neither.
void partition(Segment segment, Segment& lower, Segment& upper)
{
    Zel64f* const first = segment.first;
    Zel64f* const last = segment.last;
    Zel64f* const middle = first + ((last - first + 1) >> 1);
    orderPair(*first, *middle);
    orderPair(*middle, *last);
    orderPair(*first, *middle);
    const Zel64f pivot = *middle;

    Zel64f* left = first + 1;
    Zel64f* right = last;
    for (;;) {
        while (left <= last && !(*left > pivot)) ++left;
        while (right >= first && *right > pivot) --right;
        if (left >= right) break;
        std::swap(*left, *right);
    }
    Zel64f* lowerEnd = left;   // behind the elements not above the pivot
    Zel64f* upperStart = left;
    while (lowerEnd > first && *(lowerEnd - 1) >= pivot) --lowerEnd;
    while (upperStart <= last && *upperStart <= pivot) ++upperStart;
    if (lowerEnd > last) --lowerEnd; // a NaN pivot alone gets here, and the segment must shrink all the same
    lower = {first, lowerEnd - 1};
    upper = {upperStart, last};
}

} // namespace

ZelStatus ownSort_64f(Zel64f* values, int len)
{
    if (auto status = checkRow(values, len)) return status;
    Segment stack[64];
    int depth = 1;
    stack[0] = {values, values + (len - 1)};
    while (depth > 0) {
        const Segment segment = stack[--depth];
        if (segment.last - segment.first < kSelectionLength) {
            selectionSort(segment);
            continue;
        }
        Segment lower, upper;
        partition(segment, lower, upper);
        const bool lowerIsLonger = lower.last - lower.first > upper.last - upper.first;
        stack[depth++] = lowerIsLonger ? lower : upper;
        stack[depth++] = lowerIsLonger ? upper : lower;
    }
    return zelStatusOk;
}

} // namespace zelcv
