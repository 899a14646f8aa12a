// zelcv info: which library this is and what it knows about the machine.
#include "commands/commands.h"
#include "commands/library.h"

#include <cstdio>

namespace app {

namespace {

void run()
{
    const ZelLibVersion& version = *zelcvGetLibVersion();
    Zel32s threads = 0, cache = 0;
    zelGetNumThreads(&threads);
    zelGetMaxCacheSizeB(&cache);
    std::printf("version        %s (%d.%d, build %d.%d)\n", version.version, version.major, version.minor, version.majorBuild,
                version.build);
    std::printf("build          %s of %s, target code %.4s\n", version.name, version.buildDate, version.targetCode);
    std::printf("variant        %s\n", libraryVariant());
    std::printf("library        %s\n", libraryPath().c_str());
    std::printf("threads        %d\n", threads);
    std::printf("cores on die   %d\n", zelGetNumCoresOnDie());
    std::printf("largest cache  %.1f MiB\n", cache / 1048576.0);
    std::printf("exports        %d of %d listed functions\n", countExports(), int(listedExports().size()));
}

} // namespace

void addInfoCommand(CLI::App& program)
{
    program.add_subcommand("info", "Tell about the library in use: version, variant, file, threads, exported functions")
        ->callback(run);
}

} // namespace app
