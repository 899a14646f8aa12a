// zelcv gradient: both derivative planes and their strength beside each other.
#include "commands/commands.h"
#include "operations/filter.h"

namespace app {

namespace {

struct Options {
    InputAndOutput files;
    int aperture = 3;
    bool scharr = false;
};

void run(const Options& options)
{
    if (options.scharr && options.aperture != 3) throw Error("the Scharr filters have no aperture but 3");
    Calls calls;
    const Picture gray = toGray(options.files.read());
    const auto [dx, dy] = gradientFamilies(options.scharr);
    const DerivativeOptions derivative{.mask = maskOfAperture(options.aperture)};
    const Image<Zel16s> right = dx.to16s(calls, gray, derivative), down = dy.to16s(calls, gray, derivative);
    const Image<Zel32f> strength = gradientStrength(right, down);
    const double full = std::max(largeMagnitude(right), largeMagnitude(down)); // one scale, so that the two compare
    const Picture planes[] = {aroundGray(right, full), aroundGray(down, full),
                              brightness(strength, 255 / largeMagnitude(strength))};
    writePng(options.files.out, sideBySide({&planes[0], &planes[1], &planes[2]}));
}

} // namespace

void addGradientCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "gradient",
        "Show the gradient: the derivatives to the right and downwards around middle gray, and their strength on black");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--aperture", options->aperture, "Size of the Sobel filters: 3 or 5")
        ->check(CLI::IsMember({3, 5}))
        ->capture_default_str();
    command->add_flag("--scharr", options->scharr, "Scharr filters instead of Sobel");
    command->callback([=] { run(*options); });
}

} // namespace app
