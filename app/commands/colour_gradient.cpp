// zelcv colour-gradient: the gradients of red, green and blue as one.
#include "commands/commands.h"
#include "operations/colour_gradient.h"

#include <map>

namespace app {

namespace {

const std::map<std::string, ZeliNormType> kNorms = {{"inf", zeliNormInf}, {"l1", zeliNormL1}, {"l2", zeliNormL2}};

struct Options {
    InputAndOutput files;
    std::string norm = "l2";
};

} // namespace

void addColourGradientCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "colour-gradient", "Show how strongly the colour changes: the gradients of the three channels folded into one");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--norm", options->norm, "inf, l1 or l2: the largest of the three, their mean, or root mean square")
        ->check(CLI::IsMember({"inf", "l1", "l2"}))
        ->capture_default_str();
    command->callback([=] {
        Calls calls;
        const auto gradients = channelGradients<Zel8u>(calls, toColour(options->files.read()));
        writePng(options->files.out, foldChannels(calls, gradients, kNorms.at(options->norm)));
    });
}

} // namespace app
