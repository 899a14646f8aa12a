// Counting the instructions of calls, under Valgrind's callgrind.
#pragma once

#include "support/measure.h"

#include <vector>

namespace zelbench {

// Counts the second call of each whose name matches the regular expression and that runs on one thread. Prints which build
// of the library was loaded; the counts are callgrind's to write, one dump a call, named after it. Returns an exit status.
int countInstructions(const std::vector<Call>& calls, ZeliSize size, const char* filter);

} // namespace zelbench
