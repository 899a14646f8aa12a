// zelcv diff: the absolute difference of two pictures.
#include "commands.h"

namespace app {

namespace {

struct Options {
    std::string a, b, out;
    double gain = 1;
};

void run(const Options& options)
{
    if (options.a.empty() != options.b.empty()) throw UsageError("diff takes two pictures, or none");
    const bool own = options.a.empty();
    Picture a = own ? drawScene() : readPicture(options.a);
    Picture b = own ? moved(a, 1, 0) : readPicture(options.b);
    if (!sameSize(a.size(), b.size()))
        throw Error("the pictures differ in size: " + options.a + " is " + sizeText(a.size()) + ", " + options.b + " is " +
                    sizeText(b.size()));
    if (a.channels() != b.channels()) {
        a = toGray(a);
        b = toGray(b);
    }
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
    command->add_option("A", options->a, "The first PNG or JPEG file");
    command->add_option("B", options->b, "The second one");
    command->add_option("-o,--output", options->out, "The PNG file to write")->required()->type_name("FILE");
    command->add_option("--gain", options->gain, "Multiply the differences, so that small ones are seen")
        ->check(CLI::Range(0.0, 1e6))
        ->capture_default_str();
    command->callback([=] { run(*options); });
}

} // namespace app
