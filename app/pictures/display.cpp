#include "pictures/display.h"

#include <cstdio>

namespace app {

namespace {

constexpr Zel8u kGapShade = 236; // between pictures

} // namespace

std::string numberText(double value, int digits)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    return text;
}

Picture sideBySide(std::initializer_list<const Picture*> pictures)
{
    constexpr int gap = 6;
    ZeliSize size = {-gap, 0};
    for (const Picture* picture : pictures) size = {size.width + gap + picture->size().width, picture->size().height};
    Picture dst(size, 1);
    for (int y = 0; y < size.height; ++y) {
        std::fill_n(dst.row(y), size.width, kGapShade);
        Zel8u* place = dst.row(y);
        for (const Picture* picture : pictures) place = std::copy_n(picture->row(y), picture->size().width, place) + gap;
    }
    return dst;
}

Picture strips(const std::vector<Picture>& pictures)
{
    const auto begin = [&](std::size_t strip) {
        return int(strip * std::size_t(pictures[0].size().width) / pictures.size());
    };
    const int channels = pictures[0].channels();
    Picture dst(pictures[0].size(), channels);
    for (std::size_t strip = 0; strip < pictures.size(); ++strip)
        for (int y = 0; y < dst.size().height; ++y) {
            const int first = begin(strip) * channels, last = begin(strip + 1) * channels;
            std::copy(pictures[strip].row(y) + first, pictures[strip].row(y) + last, dst.row(y) + first);
            if (strip > 0 && dst.size().width > 100) std::fill_n(dst.row(y) + first, channels, kGapShade);
        }
    return dst;
}

void drawFrame(Picture& picture, ZeliRect rect, Paint paint)
{
    const ZeliSize size = picture.size();
    const int thickness = std::max(2, std::min(size.width, size.height) / 250);
    const int left = std::max(0, rect.x), right = std::min(size.width, rect.x + rect.width);
    const int top = std::max(0, rect.y), bottom = std::min(size.height, rect.y + rect.height);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            if (std::min({x - left, y - top, right - 1 - x, bottom - 1 - y}) < thickness)
                std::copy(paint.begin(), paint.end(), picture.row(y) + 3 * x);
}

} // namespace app
