// zelcv corners: where contours of two directions meet.
#include "commands/commands.h"
#include "operations/corners.h"

namespace app {

namespace {

struct Options {
    InputAndOutput files;
    CornerOptions measure;
    int count = 100, distance = 9;
    bool strength = false, vectors = false;
};

void run(const Options& options)
{
    if (options.measure.scharr && options.measure.aperture != 3) throw Error("the Scharr filters have no aperture but 3");
    if (options.strength && options.vectors) throw UsageError("--strength and --vectors are two different pictures");
    Calls calls;
    const Picture src = options.files.read(), gray = toGray(src);
    const Image<Zel32f> strength = cornerStrength(calls, gray, options.measure);
    if (options.strength) return writePng(options.files.out, scaledToWhite(strength).picture);
    const std::vector<ZeliPoint> corners = strongestCorners(strength, options.count, options.distance);
    if (options.vectors)
        writePng(options.files.out, drawVectors(src, eigenvaluesAndVectors(calls, gray, options.measure), corners));
    else
        writePng(options.files.out, markCorners(src, corners));
}

} // namespace

void addCornersCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("corners", "Find corners of the gray picture, and mark the strongest ones");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_flag("--strength", options->strength,
                      "Show the measure instead, the smaller eigenvalue of the structure tensor, scaled so that large ones "
                      "are white");
    command->add_flag("--vectors", options->vectors,
                      "Draw the eigenvectors as crosses: the long stroke lies across the stronger contour");
    command->add_option("--count", options->count, "How many corners at the most")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    command->add_option("--distance", options->distance, "How near corners may be to each other, in pixels")
        ->check(CLI::Range(1, 10000))
        ->capture_default_str();
    command->add_option("--aperture", options->measure.aperture, "Size of the derivative filters: 3 or 5")
        ->check(CLI::IsMember({3, 5}))
        ->capture_default_str();
    command->add_option("--window", options->measure.window, "Size of the averages: 3 or 5")
        ->check(CLI::IsMember({3, 5}))
        ->capture_default_str();
    command->add_flag("--scharr", options->measure.scharr, "Scharr filters instead of Sobel");
    command->callback([=] { run(*options); });
}

} // namespace app
