#include "operations/corners.h"

#include "pictures/display.h"

#include <algorithm>
#include <cstdlib>

namespace app {

namespace {

constexpr Paint kMark = {255, 64, 32}, kAcross = {255, 220, 0}, kAlong = {0, 200, 255};

void drawStroke(Picture& picture, ZeliPoint middle, double dx, double dy, double length, Paint paint)
{
    for (double t = -length; t <= length; t += 0.5) {
        const int x = middle.x + int(std::lround(t * dx)), y = middle.y + int(std::lround(t * dy));
        drawFrame(picture, {x, y, 1, 1}, paint);
    }
}

} // namespace

std::vector<ZeliPoint> strongestCorners(const Image<Zel32f>& strength, int count, int distance)
{
    const auto at = [&](ZeliPoint point) { return strength.row(point.y)[point.x]; };
    std::vector<ZeliPoint> candidates, corners;
    float strongest = 0;
    for (int y = 0; y < strength.size().height; ++y)
        for (int x = 0; x < strength.size().width; ++x) strongest = std::max(strongest, at({x, y}));
    for (int y = 0; y < strength.size().height; ++y)
        for (int x = 0; x < strength.size().width; ++x)
            if (at({x, y}) > strongest / 100) candidates.push_back({x, y});
    std::stable_sort(candidates.begin(), candidates.end(), [&](ZeliPoint a, ZeliPoint b) { return at(a) > at(b); });

    // What lies too near to a corner is taken out of the way, so that each candidate is looked at once.
    Picture taken(strength.size(), 1);
    for (const ZeliPoint point : candidates) {
        if (int(corners.size()) >= count) break;
        if (taken.row(point.y)[point.x]) continue;
        corners.push_back(point);
        const ZeliSize size = taken.size();
        for (int y = std::max(0, point.y - distance + 1); y < std::min(size.height, point.y + distance); ++y)
            for (int x = std::max(0, point.x - distance + 1); x < std::min(size.width, point.x + distance); ++x)
                taken.row(y)[x] = 1;
    }
    return corners;
}

Picture markCorners(const Picture& src, const std::vector<ZeliPoint>& corners)
{
    constexpr int reach = 4;
    Picture dst = toColour(src);
    for (const ZeliPoint corner : corners)
        drawFrame(dst, {corner.x - reach, corner.y - reach, 2 * reach + 1, 2 * reach + 1}, kMark);
    return dst;
}

Picture drawVectors(const Picture& src, const Image<Zel32f>& vectors, const std::vector<ZeliPoint>& corners)
{
    Picture dst = toColour(src);
    for (const ZeliPoint corner : corners) {
        const Zel32f* numbers = vectors.row(corner.y) + 6 * corner.x;
        drawStroke(dst, corner, numbers[2], numbers[3], 7, kAcross);
        drawStroke(dst, corner, numbers[4], numbers[5], 3, kAlong);
    }
    return dst;
}

} // namespace app
