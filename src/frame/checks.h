// The argument checks that every family makes. Each returns the first failing status, or zelStatusOk; a driver calls them in
// the order that its callers are promised.
#pragma once

#include "plane.h"
#include "wrapping.h"

namespace zelcv {

template <class... Pointers>
ZelStatus checkPointers(const Pointers*... pointers)
{
    return ((pointers == nullptr) || ...) ? zelStatusNullPointer : zelStatusOk;
}

inline ZelStatus checkSize(ZeliSize roi)
{
    return roi.width < 1 || roi.height < 1 ? zelStatusBadSize : zelStatusOk;
}

// Every step holds a row of `elements` elements.
template <class... T>
ZelStatus checkStepSizes(int elements, Plane<T>... planes)
{
    return ((planes.step < wrappingProduct(elements, sizeof(T))) || ...) ? zelStatusBadStep : zelStatusOk;
}

// Every step is a multiple of its plane's element size.
template <class... T>
ZelStatus checkStepAlignment(Plane<T>... planes)
{
    return ((planes.step % int(sizeof(T)) != 0) || ...) ? zelStatusStepNotAligned : zelStatusOk;
}

// The usual pair: all sizes, then all alignments.
template <class... T>
ZelStatus checkSteps(int elements, Plane<T>... planes)
{
    if (auto status = checkStepSizes(elements, planes...)) return status;
    return checkStepAlignment(planes...);
}

} // namespace zelcv
