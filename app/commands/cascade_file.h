// Cascades: stages of classifiers in a text file, see docs/cascade-format.md.
#pragma once

#include "operations/image.h"

#include <string>
#include <vector>

namespace app {

// One stage in the form that the library takes: rectangles and weights one behind the other.
struct Stage {
    Zel32f threshold = 0;
    std::vector<ZeliRect> rects;
    std::vector<Zel32f> weights, thresholds, values1, values2;
    std::vector<Zel32s> rectCounts;
};

struct Cascade {
    ZeliSize window = {0, 0};
    float contrast = 0; // windows of a smaller deviation are not looked at
    std::vector<Stage> stages;
};

// Throws Error with the number of the line that is wrong.
Cascade readCascade(const std::string& path);

} // namespace app
