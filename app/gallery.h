// The parts of zelcv gallery: figures that are planned from a table, what came of drawing them, and the page that shows them.
#pragma once

#include "operations.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace app {

// Numbers in rows and columns.
struct Table {
    struct Row {
        std::string name;
        std::vector<std::string> cells;
    };
    std::vector<std::string> columns; // their headings
    std::vector<Row> rows;
};

// What a figure shows: a plot of some numbers, or a picture, a table or both.
struct Content {
    std::optional<Picture> picture;
    Table table;
    std::vector<double> plot;

    Content() = default;
    Content(Picture made) : picture(std::move(made)) {}
};

// How many columns of the page a figure takes.
enum class Width { one, two, all };
struct Figure {
    std::string title, sentence;
    std::function<Content(Calls&)> make;
    Width width;
};
struct Section {
    std::string id, title, introduction;
    std::vector<Figure> figures;

    void add(std::string name, std::string sentence, std::function<Content(Calls&)> make, Width width = Width::one)
    {
        figures.push_back({std::move(name), std::move(sentence), std::move(make), width});
    }
};

// Everything that there is to show for a picture. The figures refer to what is in `source`.
struct Source {
    Picture colour, gray;
};
std::vector<Section> planFigures(const Source& source);

// Sections of it that stand in files of their own.
Section sequencesSection(const Source& source);
Section statisticsSection(const Source& source);
Section integralsSection(const Source& source);
Section haarSection(const Source& source);

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
