// ownSort_64f: quicksort on an explicit stack. The longer part of each split waits on the stack and the shorter one is sorted
// next, so that 64 entries are enough for any length.
#include "rows.h"

namespace zelcv {
namespace {

struct Segment {
    Zel64f* first;
    Zel64f* end; // behind the last element

    std::ptrdiff_t length() const { return end - first; }
};

constexpr int kSelectionLength = 9;

// Moves the largest element to the end, again and again; of equal ones the leftmost.
void selectionSort(Segment segment)
{
    for (Zel64f* end = segment.end; end - segment.first > 1; --end) {
        Zel64f* largest = segment.first;
        for (Zel64f* p = segment.first + 1; p < end; ++p)
            if (*p > *largest) largest = p;
        std::swap(*largest, *(end - 1));
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
    Zel64f* const end = segment.end;
    Zel64f* const middle = first + (segment.length() >> 1);
    orderPair(*first, *middle);
    orderPair(*middle, *(end - 1));
    orderPair(*first, *middle);
    const Zel64f pivot = *middle;

    Zel64f* left = first + 1; // all before it are not above the pivot
    Zel64f* right = end;      // it and all behind it are above the pivot
    for (;;) {
        while (left < right && !(*left > pivot)) ++left;
        while (left < right && *(right - 1) > pivot) --right;
        if (left == right) break;
        std::swap(*left, *(right - 1));
    }
    while (left > first && *(left - 1) >= pivot) --left;
    if (left == end) --left; // a NaN got here, and the segment must shrink all the same
    lower = {first, left};
    upper = {right, end};
}

} // namespace

ZelStatus ownSort_64f(Zel64f* values, int len)
{
    if (auto status = checkRow(values, len)) return status;
    Segment stack[64];
    int depth = 1;
    stack[0] = {values, values + len};
    while (depth > 0) {
        const Segment segment = stack[--depth];
        if (segment.length() <= kSelectionLength) {
            selectionSort(segment);
            continue;
        }
        Segment lower, upper;
        partition(segment, lower, upper);
        const bool lowerIsLonger = lower.length() > upper.length();
        stack[depth++] = lowerIsLonger ? lower : upper;
        stack[depth++] = lowerIsLonger ? upper : lower;
    }
    return zelStatusOk;
}

} // namespace zelcv
