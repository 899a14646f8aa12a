// zelcv diff: the absolute difference of two pictures.
#include "commands/commands.h"
#include "operations/arith.h"

namespace app {

namespace {

struct Options {
    TwoPictures pictures;
    std::string out;
    double gain = 1;
};

void run(const Options& options)
{
    const auto [a, b] = options.pictures.read("diff");
    Calls calls;
    writePng(options.out, brightness(pictureDifference(calls, a, b), options.gain));
}

} // namespace

void addDiffCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "diff",
        "Absolute difference of two pictures of one size, in colour when both are. Without pictures: the program's own scene "
        "and the same moved by one pixel");
    const auto options = std::make_shared<Options>();
    options->pictures.addTo(*command);
    command->add_option("-o,--output", options->out, "The PNG file to write")->required()->type_name("FILE");
    command->add_option("--gain", options->gain, "Multiply the differences, so that small ones are seen")
        ->check(within(0, 1e6))
        ->capture_default_str();
    command->callback([=] { run(*options); });
}

} // namespace app
