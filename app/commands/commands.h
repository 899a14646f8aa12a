// The commands of the program. Each adds its subcommand, with its options and what is to be done.
#pragma once

#include "pictures/display.h"
#include "pictures/files.h"
#include "pictures/scene.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <memory>

namespace app {

void addEdgesCommand(CLI::App& program);
void addGradientCommand(CLI::App& program);
void addCornersCommand(CLI::App& program);
void addColourGradientCommand(CLI::App& program);
void addGrayMorphCommand(CLI::App& program);
void addReconstructCommand(CLI::App& program);
void addDiffCommand(CLI::App& program);
void addFilterCommand(CLI::App& program);
void addSmoothCommand(CLI::App& program);
void addRankCommand(CLI::App& program);
void addMorphCommand(CLI::App& program);
void addAverageCommand(CLI::App& program);
void addStatsCommand(CLI::App& program);
void addCompareCommand(CLI::App& program);
void addLocalDeviationCommand(CLI::App& program);
void addCascadeCommand(CLI::App& program);
void addInfoCommand(CLI::App& program);
void addGalleryCommand(CLI::App& program);

// A check of an option's number. CLI::Range alone lets a NaN through.
inline CLI::Validator within(double low, double high)
{
    const auto complain = [](const std::string& text) {
        return std::isnan(std::strtod(text.c_str(), nullptr)) ? "Value " + text + " is not a number" : std::string();
    };
    return CLI::Range(low, high) & CLI::Validator(complain, "");
}

// What most commands take: a picture, or none for the program's own scene, and the file to write.
struct InputAndOutput {
    std::string picture, out;

    void addTo(CLI::App& command)
    {
        command.add_option("PICTURE", picture, "A PNG or JPEG file; without it the program draws a scene of its own");
        command.add_option("-o,--output", out, "The PNG file to write")->required()->type_name("FILE");
    }
    Picture read() const { return picture.empty() ? drawScene() : readPicture(picture); }
};

// Two pictures of one size; without files the program's own scene, and the same moved by one pixel.
struct TwoPictures {
    std::string a, b;

    void addTo(CLI::App& command)
    {
        command.add_option("A", a, "The first PNG or JPEG file");
        command.add_option("B", b, "The second one");
    }
    // In colour when both are.
    std::pair<Picture, Picture> read(const std::string& command) const
    {
        if (a.empty() != b.empty()) throw UsageError(command + " takes two pictures, or none");
        Picture first = a.empty() ? drawScene() : readPicture(a);
        Picture second = a.empty() ? moved(first, 1, 0) : readPicture(b);
        if (!sameSize(first.size(), second.size()))
            throw Error("the pictures differ in size: " + a + " is " + sizeText(first.size()) + ", " + b + " is " +
                        sizeText(second.size()));
        if (first.channels() == second.channels()) return {std::move(first), std::move(second)};
        return {toGray(first), toGray(second)};
    }
};

// A picture that says which pixels of others count.
struct MaskOption {
    std::string file;

    void addTo(CLI::App& command)
    {
        command.add_option("--mask", file, "A picture of the same size: only pixels that are not black there count")
            ->type_name("FILE");
    }
    bool given() const { return !file.empty(); }

    // Without a file all pixels count. Throws where none does.
    Picture read(ZeliSize size) const
    {
        if (!given()) return filled(size, 255);
        Picture mask = toGray(readPicture(file));
        if (!sameSize(mask.size(), size))
            throw Error("the mask " + file + " is " + sizeText(mask.size()) + ", not " + sizeText(size));
        if (countMasked(mask) == 0) throw Error("the mask " + file + " is black all over");
        return mask;
    }
};

} // namespace app
