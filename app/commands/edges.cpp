// zelcv edges: derivatives, then Canny.
#include "commands/commands.h"
#include "operations/features.h"
#include "operations/filter.h"

namespace app {

namespace {

struct Options {
    InputAndOutput files;
    float low = 0, high = 0;
    int aperture = 3;
    CLI::Option *lowGiven = nullptr, *highGiven = nullptr;
};

void run(Options options)
{
    // A step of 25 gray levels has a strength of 100 under the 3 by 3 filters and twelve times that under the 5 by 5 ones.
    const float usual = options.aperture == 5 ? 1200.0f : 100.0f;
    if (options.lowGiven->empty()) options.low = options.highGiven->empty() ? usual : options.high / 2;
    if (options.highGiven->empty()) options.high = 2 * options.low;
    if (!(options.low >= 0) || !(options.high >= options.low) || !std::isfinite(options.high))
        throw Error("the thresholds must be 0 <= low <= high");

    Calls calls;
    const Picture gray = toGray(options.files.read());
    const auto [dx, dy] = gradientFamilies(false);
    const DerivativeOptions derivative{.mask = maskOfAperture(options.aperture)};
    writePng(options.files.out,
             canny(calls, dx.to16s(calls, gray, derivative), dy.to16s(calls, gray, derivative), options.low, options.high));
}

} // namespace

void addEdgesCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("edges", "Find edges: derivative filters, then Canny; white edges on black");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    options->lowGiven = command->add_option(
        "--low", options->low,
        "Weakest gradient |dx| + |dy| that may continue an edge (default: half of --high, or 100; 1200 with aperture 5)");
    options->highGiven =
        command->add_option("--high", options->high, "Gradient from which on an edge may begin (default: twice --low)");
    command->add_option("--aperture", options->aperture, "Size of the Sobel filters: 3 or 5")
        ->check(CLI::IsMember({3, 5}))
        ->capture_default_str();
    command->callback([=] { run(*options); });
}

} // namespace app
