// zelcv: image processing on the command line with the zelcv library.
#include "commands/commands.h"

#include <cstdio>
#include <utility>

namespace {

int complain(const std::string& message, int status)
{
    std::fprintf(stderr, "zelcv: %s\n", message.substr(0, message.find('\n')).c_str());
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App program("Image processing with the zelcv library: PNG and JPEG in, PNG out.", "zelcv");
    program.footer(
        "zelcv COMMAND --help tells more about a command. Without a picture every command works on a scene that it draws "
        "itself.\n"
        "Exit status: 0 done, 1 not possible (one line on standard error says why), 2 a mistake in the command line.");
    program.require_subcommand(1);
    app::addEdgesCommand(program);
    app::addGradientCommand(program);
    app::addCornersCommand(program);
    app::addColourGradientCommand(program);
    app::addGrayMorphCommand(program);
    app::addReconstructCommand(program);
    app::addDiffCommand(program);
    app::addFilterCommand(program);
    app::addSmoothCommand(program);
    app::addRankCommand(program);
    app::addMorphCommand(program);
    app::addAverageCommand(program);
    app::addStatsCommand(program);
    app::addCompareCommand(program);
    app::addLocalDeviationCommand(program);
    app::addCascadeCommand(program);
    app::addGalleryCommand(program);
    app::addInfoCommand(program);
    const auto named = [&](const CLI::App* command) { return command->get_name() == argv[1]; };
    if (argc > 1 && argv[1][0] != '-' && std::as_const(program).get_subcommands(named).empty())
        return complain("there is no command '" + std::string(argv[1]) + "' (zelcv --help lists them)", 2);
    try {
        program.parse(argc, argv);
        return 0;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return program.exit(error); // --help
        return complain(error.what() + std::string(" (zelcv --help tells more)"), 2);
    } catch (const app::UsageError& error) {
        return complain(error.what(), 2);
    } catch (const std::bad_alloc&) {
        return complain("not enough memory", 1);
    } catch (const std::exception& error) {
        return complain(error.what(), 1);
    }
}
