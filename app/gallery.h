// The parts of zelcv gallery: figures that are planned from a table, what came of drawing them, and the page that shows them.
#pragma once

#include "operations.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace app {

// A picture to make, or a plot of some numbers.
struct Figure {
    std::string title, sentence;
    std::function<Picture(Calls&)> draw = {};
    std::function<std::vector<double>(Calls&)> plot = {}; // instead of draw
    bool large = false;                                   // shown over the whole width
};
struct Section {
    std::string id, title, introduction;
    std::vector<Figure> figures;

    void add(std::string name, std::string sentence, std::function<Picture(Calls&)> draw)
    {
        figures.push_back({std::move(name), std::move(sentence), std::move(draw)});
    }
};

// Everything that there is to show for a picture. The figures refer to what is in `source`.
struct Source {
    Picture colour, gray;
};
std::vector<Section> planFigures(const Source& source);

// A figure after a few runs: times are medians.
struct Drawn {
    std::string file;            // of the picture, below the page's folder
    ZeliSize size = {0, 0};      // of that picture
    std::vector<double> numbers; // of a plot
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

struct GalleryPage {
    std::string heading; // the picture's name
    std::string origin;  // a sentence on the picture
    const std::vector<Section>& sections;
    std::vector<std::vector<Drawn>> drawn; // in the same order
    std::map<std::string, FunctionTimes> functions;
};

double median(std::vector<double> values);

// The identifier of a figure on the page.
std::string figureId(const Section& section, std::size_t index);

std::string galleryHtml(const GalleryPage& page);

} // namespace app
