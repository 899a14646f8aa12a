// zelcv reconstruct: fills holes, clears the border, finds domes.
#include "commands/commands.h"
#include "operations/reconstruct.h"

namespace app {

namespace {

struct Options {
    InputAndOutput files;
    std::string operation;
    int height = 40, neighbours = 8;
};

Picture make(const Options& options, const Picture& gray)
{
    Calls calls;
    const ZeliNormType norm = options.neighbours == 8 ? zeliNormInf : zeliNormL1;
    if (options.operation == "fill-holes") return fillHoles(calls, gray, Zel8u(255), norm);
    if (options.operation == "clear-border") return clearBorder(calls, gray, norm);
    return brightness(domes(calls, gray, Zel8u(options.height), norm), 255.0 / options.height);
}

} // namespace

void addReconstructCommand(CLI::App& program)
{
    CLI::App* command =
        program.add_subcommand("reconstruct", "Fill holes, clear what touches the border, or show the domes of a picture, by "
                                              "morphological reconstruction; the result is gray");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--op", options->operation, "fill-holes, clear-border or h-domes")
        ->check(CLI::IsMember({"fill-holes", "clear-border", "h-domes"}))
        ->required();
    command->add_option("--height", options->height, "Height of the domes in gray levels, which is shown as white")
        ->check(CLI::Range(1, 255))
        ->capture_default_str();
    command->add_option("--neighbours", options->neighbours, "4 or 8")
        ->check(CLI::IsMember({4, 8}))
        ->capture_default_str();
    command->callback([=] { writePng(options->files.out, make(*options, toGray(options->files.read()))); });
}

} // namespace app
