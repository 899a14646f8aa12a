// Facts about the library that is loaded. What is particular to the dynamic loader stays here.
#pragma once

#include <string>
#include <vector>

namespace app {

std::string libraryPath();
const char* libraryVariant();

// The names that the library should export, and how many of them it has.
std::vector<std::string> listedExports();
int countExports();

} // namespace app
