// A picture for measurements whose cost depends on what there is to see.
#pragma once

#include "zelcv.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zelbench {

// A synthetic photograph: soft shading, discs and beams with sharp and soft rims, mild noise.
inline std::vector<float> photograph(ZeliSize size)
{
    const auto width = std::size_t(size.width), pixels = width * std::size_t(size.height);
    std::vector<float> picture(pixels);
    unsigned state = 12345;
    const auto random = [&] { return float((state = state * 1664525u + 1013904223u) >> 8) / 16777216.f; };
    struct Disc {
        float x, y, radius, softness, level;
    };
    std::vector<Disc> discs(pixels / 3200);
    for (Disc& disc : discs)
        disc = {random() * float(size.width), random() * float(size.height), 8 + 60 * random() * random(),
                1 + 9 * random() * random(), 120 * random() - 60};
    const auto at = [&](int x, int y) -> float& { return picture[std::size_t(y) * width + std::size_t(x)]; };
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            at(x, y) = 128 + 40 * std::sin(float(x) / 170) * std::cos(float(y) / 120) + 8 * (random() + random() - 1);
    for (const Disc& disc : discs) {
        const float reach = disc.radius + disc.softness;
        for (int y = std::max(0, int(disc.y - reach)); y < std::min(size.height, int(disc.y + reach)); ++y)
            for (int x = std::max(0, int(disc.x - reach)); x < std::min(size.width, int(disc.x + reach)); ++x) {
                const float inside = (disc.radius - std::hypot(float(x) - disc.x, float(y) - disc.y)) / disc.softness;
                at(x, y) += disc.level * std::clamp(inside + 0.5f, 0.f, 1.f);
            }
    }
    for (float& value : picture) value = std::round(std::clamp(value, 0.f, 255.f));
    return picture;
}

} // namespace zelbench
