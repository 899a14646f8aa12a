#include "gallery/drawing.h"

#include "pictures/files.h"

#include <algorithm>

namespace app {

namespace {

constexpr int kRuns = 5;

} // namespace

std::string figureId(const Section& section, std::size_t index)
{
    const std::string number = std::to_string(index + 1);
    return section.id + (number.size() < 2 ? "-0" : "-") + number;
}

Drawn drawFigure(const Figure& figure, const std::string& id, const std::filesystem::path& folder,
                 std::map<std::string, FunctionTimes>& times)
{
    Drawn drawn;
    std::vector<double> totals;
    for (int run = 0; run < kRuns; ++run) {
        Calls calls;
        const Content content = figure.make(calls);
        if (run == 0) {
            drawn.table = content.table;
            drawn.plot = content.plot;
            if (content.picture) {
                drawn.size = content.picture->size();
                drawn.file = id + ".png";
                writePng((folder / drawn.file).string(), *content.picture);
            }
        }
        totals.push_back(0);
        const auto area = [](ZeliSize size) { return std::int64_t(size.width) * size.height; };
        for (const Call& call : calls.list()) {
            if (!isSizeFunction(call.name)) {
                totals.back() += call.nanoseconds;
                if (area(call.size) > area(drawn.worked)) drawn.worked = call.size;
                if (std::find(drawn.functions.begin(), drawn.functions.end(), call.name) == drawn.functions.end())
                    drawn.functions.push_back(call.name);
            }
            FunctionTimes& entry = times[call.name];
            if (entry.figure.empty() || area(call.size) > area(entry.size)) entry = {call.size, {}, id};
            if (area(call.size) == area(entry.size)) entry.nanoseconds.push_back(call.nanoseconds);
        }
        if (calls.list().empty()) break;
    }
    drawn.nanoseconds = median(totals);
    return drawn;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace app
