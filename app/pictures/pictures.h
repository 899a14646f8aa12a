// Pictures made of others, element by element or as a whole, and masks of them.
#pragma once

#include "operations/image.h"

#include <algorithm>
#include <cmath>

namespace app {

// An image of the same shape with `function` applied to each element.
template <class D, class S, class F>
Image<D> mapElements(View<const S> src, F function)
{
    Image<D> dst(src.size, src.channels);
    for (int y = 0; y < src.size.height; ++y) std::transform(src.row(y), src.row(y) + src.elements(), dst.row(y), function);
    return dst;
}
template <class D, class S, class F>
Image<D> mapElements(const Image<S>& src, F function)
{
    return mapElements<D>(src.view(), function);
}

// Rounded and limited; black where the value is not a number.
inline Zel8u toByte(double value) { return value > 0 ? Zel8u(std::lround(std::min(value, 255.0))) : Zel8u(0); }

Picture toGray(const Picture& src);
Picture toColour(const Picture& src);

// Gray of one value all over.
Picture filled(ZeliSize size, Zel8u value);

// A mask: white in an ellipse in the middle, black around it.
Picture ellipse(ZeliSize size);

// Multiplies what a mask leaves out by `gain`.
void dimOutside(Picture& picture, const Picture& mask, double gain);

// How many pixels of a mask are not black.
std::int64_t countMasked(const Picture& mask);

// The picture with noise of a camera in bad light: normal, of that standard deviation, the same for the same seed.
Picture noisy(const Picture& src, double deviation, unsigned seed);

// The picture moved by so many pixels; what comes in from outside repeats the edge.
Picture moved(const Picture& src, int right, int down);

// The picture with its edge repeated `margin` times on all four sides.
Picture padded(const Picture& src, int margin);

// A smaller picture of any size: each pixel is the average of the area that it stands for. Gray only.
Picture resized(const Picture& src, ZeliSize size);

// The average of each factor x factor pixels; what is left over on the right and at the bottom is dropped.
Picture shrunk(const Picture& src, int factor);

Picture copyOf(const Picture& src);

// A copy of the middle of a picture, not larger than `size`; the rectangle of it.
ZeliRect middle(ZeliSize whole, ZeliSize size);
Picture cut(const Picture& src, ZeliRect rect);

} // namespace app
