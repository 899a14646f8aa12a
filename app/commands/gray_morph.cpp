// zelcv gray-morph: dilation and erosion by a paraboloid.
#include "commands/commands.h"
#include "operations/gray_morph.h"

namespace app {

namespace {

struct Options {
    InputAndOutput files;
    std::string operation = "dilate";
    int size = 9;
    double depth = 60;
};

void run(const Options& options)
{
    Calls calls;
    const Picture gray = toGray(options.files.read());
    const auto mask = GrayMask<Zel8u>::paraboloid(options.size, options.depth);
    writePng(options.files.out, options.operation == "dilate" ? grayMorph(calls, GrayOperation::dilate, gray, mask)
                                                              : grayMorph(calls, GrayOperation::erode, gray, mask.negated()));
}

} // namespace

void addGrayMorphCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "gray-morph", "Dilate or erode by a paraboloid: bright (dark) spots grow rounded slopes; the result is gray");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--op", options->operation, "dilate or erode")
        ->check(CLI::IsMember({"dilate", "erode"}))
        ->capture_default_str();
    command->add_option("--size", options->size, "Side of the paraboloid in pixels")
        ->check(CLI::Range(1, 99))
        ->capture_default_str();
    command->add_option("--depth", options->depth, "By how many gray levels it falls towards its sides")
        ->check(within(0, 255))
        ->capture_default_str();
    command->callback([=] { run(*options); });
}

} // namespace app
