// zelcv rank: the smallest or largest value of a rectangle around each pixel.
#include "commands/commands.h"
#include "operations/arith.h"
#include "operations/rank.h"

namespace app {

namespace {

// No picture is larger, and scratch memory grows with the height.
constexpr int kLargestSide = 10000;

struct Options {
    InputAndOutput files;
    std::string operation;
    int width = 0, height = 0, anchorX = 0, anchorY = 0;
    CLI::Option *heightGiven = nullptr, *anchorXGiven = nullptr, *anchorYGiven = nullptr;
    bool inFloat = false;
};

template <class T>
Image<T> apply(Calls& calls, const Image<T>& src, const std::string& operation, const Rectangle& rectangle)
{
    return extremes(calls, src, operation == "min" ? Extreme::smallest : Extreme::largest, rectangle);
}

void run(const Options& options)
{
    Rectangle rectangle({options.width, options.heightGiven->empty() ? options.width : options.height});
    const auto place = [](const CLI::Option& given, int value, int side, int& anchor) {
        if (given.empty()) return;
        if (value >= side)
            throw Error(given.get_name() + " " + std::to_string(value) + " lies outside a rectangle of " +
                        std::to_string(side) + " pixels, which are counted from 0");
        anchor = value;
    };
    place(*options.anchorXGiven, options.anchorX, rectangle.size.width, rectangle.anchor.x);
    place(*options.anchorYGiven, options.anchorY, rectangle.size.height, rectangle.anchor.y);

    Calls calls;
    const Picture src = options.files.read();
    const auto result = [&](const std::string& operation) {
        if (!options.inFloat) return apply(calls, src, operation, rectangle);
        return brightness(apply(calls, convert<Zel32f>(src), operation, rectangle));
    };
    writePng(options.files.out, options.operation == "range" ? pictureDifference(calls, result("max"), result("min"))
                                                             : result(options.operation));
}

} // namespace

void addRankCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "rank", "The smallest or largest value of a rectangle around each pixel, or how far the two are apart. Colour is "
                "filtered channel by channel; outside the picture its edge is repeated");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--op", options->operation, "What to take of the rectangle: min, max or range")
        ->required()
        ->check(CLI::IsMember({"min", "max", "range"}));
    command->add_option("--width", options->width, "Width of the rectangle")
        ->required()
        ->check(CLI::Range(1, kLargestSide))
        ->type_name("N");
    options->heightGiven = command->add_option("--height", options->height, "Its height (default: the width)")
                               ->check(CLI::Range(1, kLargestSide))
                               ->type_name("N");
    const auto addAnchor = [&](const char* name, int& anchor, const char* what) {
        return command->add_option(name, anchor, what)->check(CLI::Range(0, kLargestSide))->type_name("N");
    };
    options->anchorXGiven =
        addAnchor("--anchor-x", options->anchorX, "Its column that lies on the pixel, counted from 0 (default: the middle)");
    options->anchorYGiven = addAnchor("--anchor-y", options->anchorY, "Its row that lies on the pixel");
    command->add_flag("--float", options->inFloat, "Compute in single precision");
    command->callback([=] { run(*options); });
}

} // namespace app
