// zelcv smooth: box averages, the Gauss filter, and what both take away, the Laplacian.
#include "commands/borders.h"
#include "commands/commands.h"
#include "operations/smooth.h"

namespace app {

namespace {

constexpr int kLongestKernel = 999;

struct Options {
    InputAndOutput files;
    std::string kind = "gauss", border = "replicate";
    int size = 0;
    float sigma = 2;
    CLI::Option *sizeGiven = nullptr, *sigmaGiven = nullptr;
};

Picture smooth(Calls& calls, const Options& options, const Picture& src)
{
    const ZeliBorderType border = borderNamed(options.border);
    if (options.kind == "gauss") {
        const int taps = options.sizeGiven->empty() ? GaussOptions::tapsFor(options.sigma) : options.size;
        if (taps < 3 || taps % 2 == 0) throw Error("--size must be odd, and 3 or more");
        if (taps > kLongestKernel)
            throw Error("--sigma " + numberText(options.sigma) + " asks for too many taps: give --size");
        return channelByChannel(src, [&](const Picture& plane) {
            return brightness(gauss(calls, convert<Zel32f>(plane), {options.sigma, taps, border}));
        });
    }
    if (!options.sigmaGiven->empty()) throw UsageError("--sigma is for --kind gauss");
    const int size = options.sizeGiven->empty() ? 3 : options.size;
    if (size != 3 && size != 5) throw Error("--size must be 3 or 5 for --kind " + options.kind);
    const DerivativeOptions mask{.mask = maskOfAperture(size), .border = border};
    if (options.kind == "laplacian") return aroundGray(kMaskFilters.laplacian16s(calls, toGray(src), mask));
    return channelByChannel(src, [&](const Picture& plane) { return kMaskFilters.box8u(calls, plane, mask); });
}

} // namespace

void addSmoothCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "smooth", "Smooth a picture, channel by channel; or show the Laplacian of the gray picture around middle gray");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--kind", options->kind, "box, gauss or laplacian")
        ->check(CLI::IsMember({"box", "gauss", "laplacian"}))
        ->capture_default_str();
    options->sizeGiven = command
                             ->add_option("--size", options->size,
                                          "Width and height of the filter: 3 or 5; gauss: any odd number (default: 3, and "
                                          "three times --sigma on each side)")
                             ->check(CLI::Range(1, kLongestKernel))
                             ->type_name("N");
    options->sigmaGiven = command->add_option("--sigma", options->sigma, "Standard deviation of gauss, in pixels")
                              ->check(within(0.1, 1000))
                              ->capture_default_str();
    command
        ->add_option("--border", options->border,
                     "What stands outside the picture: constant (black), replicate, wrap, reflect or reflect-edge")
        ->type_name("KIND")
        ->capture_default_str();
    command->callback([=] {
        Calls calls;
        writePng(options->files.out, smooth(calls, *options, options->files.read()));
    });
}

} // namespace app
