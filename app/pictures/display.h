// Planes of all types made visible, and pictures put beside each other and drawn on.
#pragma once

#include "pictures/pictures.h"

#include <array>
#include <initializer_list>
#include <tuple>
#include <vector>

namespace app {

template <class T>
Image<T> convert(const Picture& src)
{
    return mapElements<T>(src, [](Zel8u value) { return T(value); });
}

// The range of a type that black to white is spread over: from `black`, `unit` for each gray level.
template <class T>
constexpr double kBlack = std::is_same_v<T, Zel8s> ? -128 : 0;
template <class T>
constexpr double kUnit = std::is_same_v<T, Zel16u> ? 257 : std::is_same_v<T, Zel32f> ? 1 / 255.0 : 1;

template <class T>
Image<T> inRangeOf(const Picture& src)
{
    return mapElements<T>(src, [](Zel8u value) { return T(kBlack<T> + kUnit<T> * value); });
}

// Brightness times `gain`.
template <class T>
Picture brightness(const Image<T>& src, double gain = 1)
{
    return mapElements<Zel8u>(src, [=](T value) { return toByte(gain * value); });
}

// The value that only few elements exceed in size: what a display should still tell from black and white.
template <class T>
double largeMagnitude(const Image<T>& src)
{
    std::vector<float> magnitudes;
    for (int y = 0; y < src.size().height; ++y)
        for (int i = 0; i < src.view().elements(); ++i) magnitudes.push_back(std::fabs(float(src.row(y)[i])));
    const auto rank = magnitudes.begin() + std::ptrdiff_t(double(magnitudes.size() - 1) * 0.99);
    std::nth_element(magnitudes.begin(), rank, magnitudes.end());
    const double high = *rank;
    return high > 0 ? high : std::max(1.0, double(*std::max_element(rank, magnitudes.end())));
}

// A signed plane around middle gray, which stands for zero. `full` is shown as white and -full as black.
template <class T>
Picture aroundGray(const Image<T>& src, double full)
{
    return mapElements<Zel8u>(src, [=](T value) { return toByte(128 + value * 127.0 / full); });
}
template <class T>
Picture aroundGray(const Image<T>& src)
{
    return aroundGray(src, largeMagnitude(src));
}

// A plane of values that are not negative, from black for 0 to white for `white`.
struct Scaled {
    Picture picture;
    double white;
};
template <class T>
Scaled scaledToWhite(const Image<T>& src)
{
    const double white = largeMagnitude(src);
    return {brightness(src, 255 / white), white};
}

// The strength of a gradient as Canny measures it: |dx| + |dy|.
template <class T>
Image<Zel32f> gradientStrength(const Image<T>& dx, const Image<T>& dy)
{
    Image<Zel32f> dst(dx.size(), 1);
    for (int y = 0; y < dx.size().height; ++y)
        for (int x = 0; x < dx.size().width; ++x)
            dst.row(y)[x] = std::fabs(float(dx.row(y)[x])) + std::fabs(float(dy.row(y)[x]));
    return dst;
}

// So many significant digits.
std::string numberText(double value, int digits = 6);

// Gray pictures of one height beside each other, with a thin light gap between.
Picture sideBySide(std::initializer_list<const Picture*> pictures);

// One picture of several of the same size: a strip of each from left to right, with thin light lines between.
Picture strips(const std::vector<Picture>& pictures);

// The same of what `draw` makes with each function of a tuple.
template <class... Functions, class Draw>
Picture inStrips(const std::tuple<Functions...>& functions, Draw draw)
{
    std::vector<Picture> pictures;
    std::apply([&](const auto&... function) { (pictures.push_back(draw(function)), ...); }, functions);
    return strips(pictures);
}

// Draws a frame into a colour picture; what lies outside of the picture is left out.
using Paint = std::array<Zel8u, 3>;
void drawFrame(Picture& picture, ZeliRect rect, Paint paint);

} // namespace app
