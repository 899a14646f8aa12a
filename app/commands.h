// The commands of the program. Each adds its subcommand, with its options and what is to be done.
#pragma once

#include "display.h"
#include "files.h"
#include "operations.h"
#include "scene.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace app {

void addEdgesCommand(CLI::App& program);
void addGradientCommand(CLI::App& program);
void addDiffCommand(CLI::App& program);
void addFilterCommand(CLI::App& program);
void addAverageCommand(CLI::App& program);
void addLocalDeviationCommand(CLI::App& program);
void addCascadeCommand(CLI::App& program);
void addInfoCommand(CLI::App& program);
void addGalleryCommand(CLI::App& program);

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

// A picture that says which pixels of others count.
struct MaskOption {
    std::string file;

    void addTo(CLI::App& command)
    {
        command.add_option("--mask", file, "A picture of the same size: only pixels that are not black there count")
            ->type_name("FILE");
    }
    bool given() const { return !file.empty(); }

    // Without a file all pixels count.
    Picture read(ZeliSize size) const
    {
        if (!given()) return filled(size, 255);
        Picture mask = toGray(readPicture(file));
        if (!sameSize(mask.size(), size))
            throw Error("the mask " + file + " is " + sizeText(mask.size()) + ", not " + sizeText(size));
        return mask;
    }
};

} // namespace app
