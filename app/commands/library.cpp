#include "commands/library.h"

#include "export_names.h"
#include "zelcv.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>

namespace app {

std::string libraryPath()
{
    Dl_info info;
    if (!dladdr(dlsym(RTLD_DEFAULT, "zelcvGetLibVersion"), &info)) return "unknown";
    std::error_code failure;
    const auto path = std::filesystem::canonical(info.dli_fname, failure);
    return failure ? info.dli_fname : path.string();
}

const char* libraryVariant() { return std::string(zelcvGetLibVersion()->targetCode) == "v3" ? "x86-64-v3" : "baseline"; }

std::vector<std::string> listedExports() { return {std::begin(kExportNames), std::end(kExportNames)}; }

int countExports()
{
    return int(std::count_if(std::begin(kExportNames), std::end(kExportNames),
                             [](const char* name) { return dlsym(RTLD_DEFAULT, name) != nullptr; }));
}

} // namespace app
