// zelcv localdev: how much the brightness varies around each pixel.
#include "commands/commands.h"
#include "operations/integral.h"

#include <cstdio>

namespace app {

namespace {

// The largest window of white pixels whose sum fits 32 bits.
constexpr int kLargestWindow = 2901;

struct Options {
    InputAndOutput files;
    int window = 0;
};

void run(const Options& options)
{
    if (options.window % 2 == 0)
        throw Error("--window must be odd, so that the window has a pixel in its middle");
    const Picture gray = toGray(options.files.read());
    if (options.window > std::min(gray.size().width, gray.size().height))
        throw Error("a window of " + std::to_string(options.window) + " is larger than the picture of " +
                    sizeText(gray.size()));
    Calls calls;
    const IntegralPair integral = integralPair(calls, padded(gray, options.window / 2));
    const auto [picture, white] = scaledToWhite(windowDeviation(calls, integral, {options.window, options.window}));
    writePng(options.files.out, picture);
    std::printf("%s: white stands for a deviation of %.4g\n", options.files.out.c_str(), white);
}

} // namespace

void addLocalDeviationCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "localdev", "Local standard deviation of the gray picture in a window around each pixel, scaled so that large ones "
                    "are white. Outside the picture its edge is repeated");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--window", options->window, "Width and height of the window, an odd number of pixels")
        ->required()
        ->check(CLI::Range(1, kLargestWindow))
        ->type_name("N");
    command->callback([=] { run(*options); });
}

} // namespace app
