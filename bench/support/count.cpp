#include "support/count.h"

#include <algorithm>
#include <cstdio>
#include <regex>
#include <valgrind/callgrind.h>

namespace zelbench {
namespace {

// So many calls are prepared at a time: to switch the counting on and off takes longer than most of them.
constexpr std::size_t kTogether = 32;

} // namespace

int countInstructions(const std::vector<Call>& calls, ZeliSize size, const char* filter)
{
    if (!RUNNING_ON_VALGRIND) {
        std::fprintf(stderr, "zelcv_bench: instructions are counted under valgrind only: see scripts/bench\n");
        return 1;
    }
    std::printf("%.4s\n", zelcvGetLibVersion()->targetCode);
    std::vector<Call> wanted;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(wanted), [pattern = std::regex(filter)](const Call& call) {
        return call.threads == 1 && std::regex_search(call.name, pattern);
    });
    for (std::size_t first = 0; first < wanted.size(); first += kTogether) {
        const std::size_t last = std::min(first + kTogether, wanted.size());
        std::vector<std::function<void()>> work;
        for (std::size_t i = first; i < last; ++i) {
            work.push_back(prepare(wanted[i], size));
            work.back()(); // binds symbols, and has what is made once made
        }
        CALLGRIND_START_INSTRUMENTATION;
        for (std::size_t i = first; i < last; ++i) {
            CALLGRIND_ZERO_STATS;
            work[i - first]();
            CALLGRIND_DUMP_STATS_AT(wanted[i].name.c_str());
        }
        CALLGRIND_STOP_INSTRUMENTATION;
    }
    return 0;
}

} // namespace zelbench
