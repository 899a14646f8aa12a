// What a page of the gallery consists of: chapters of sections of figures, each figure with what makes it.
#pragma once

#include "operations/calls.h"

#include <functional>
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
    std::string id;
    std::string title; // none where the figures stand for the whole chapter
    std::string introduction;
    std::vector<Figure> figures;
    bool folded = false; // the figures are many, and open on a click

    void add(std::string name, std::string sentence, std::function<Content(Calls&)> make, Width width = Width::one)
    {
        figures.push_back({std::move(name), std::move(sentence), std::move(make), width});
    }
};
struct Chapter {
    std::string id, title;
    std::vector<Section> sections;
};

// The identifier of a figure on the page.
std::string figureId(const Section& section, std::size_t index);

} // namespace app
