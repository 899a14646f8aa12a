// Figures drawn and measured.
#pragma once

#include "gallery/figures.h"

#include <filesystem>
#include <map>

namespace app {

// A figure after a few runs: times are medians.
struct Drawn {
    std::string file;       // of the picture, below the page's folder
    ZeliSize size = {0, 0}; // of that picture
    Table table;
    std::vector<double> plot;
    std::vector<std::string> functions;
    ZeliSize worked = {0, 0}; // the region that the functions worked on
    double nanoseconds = 0;   // of all of them together, without those that only size memory
};

// What all calls of one function on the largest region took.
struct FunctionTimes {
    ZeliSize size = {0, 0};
    std::vector<double> nanoseconds;
    std::string figure; // where to see it
};

// Draws a figure, its picture into the folder, and adds to the times of the functions.
Drawn drawFigure(const Figure& figure, const std::string& id, const std::filesystem::path& folder,
                 std::map<std::string, FunctionTimes>& times);

double median(std::vector<double> values);

} // namespace app
