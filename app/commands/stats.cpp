// zelcv stats: numbers that describe a picture.
#include "commands/commands.h"
#include "operations/stats.h"

#include <cstdio>

namespace app {

namespace {

struct Options {
    std::string picture;
    MaskOption mask;
    int channel = 0; // 0: all
    bool json = false;
};

// The library works on one thread as long as this lives.
class OnOneThread {
public:
    OnOneThread()
    {
        zelGetNumThreads(&before_);
        zelSetNumThreads(1);
    }
    ~OnOneThread() { zelSetNumThreads(before_); }
    OnOneThread(const OnOneThread&) = delete;

private:
    Zel32s before_ = 1;
};

struct Extremum {
    Zel32f value = 0;
    ZeliPoint place = {0, 0};
};
struct Statistics {
    double mean = 0, deviation = 0;
    Norms norms;
    Extremum least, greatest;
};

Statistics statistics(Calls& calls, const Picture& src, const Picture* mask, int channel)
{
    Statistics s;
    const std::tuple<const Picture&> whole(src);
    const Picture ones = mask ? Picture({1, 1}, 1) : filled(src.size(), 1); // the norms are masked in any case
    const std::tuple<const Picture&, const Picture&> masked(src, mask ? *mask : ones);
    if (mask) {
        onChannel(calls, ZELCV_FUNCTION(zeliMean_StdDev_8u_C1MR), ZELCV_FUNCTION(zeliMean_StdDev_8u_C3CMR), channel, masked,
                  &s.mean, &s.deviation);
        // Several threads would count a band without a masked pixel as a 0.
        const OnOneThread guard;
        onChannel(calls, ZELCV_FUNCTION(zeliMinMaxIndx_8u_C1MR), ZELCV_FUNCTION(zeliMinMaxIndx_8u_C3CMR), channel, masked,
                  &s.least.value, &s.greatest.value, &s.least.place, &s.greatest.place);
    } else {
        onChannel(calls, ZELCV_FUNCTION(zeliMean_StdDev_8u_C1R), ZELCV_FUNCTION(zeliMean_StdDev_8u_C3CR), channel, whole,
                  &s.mean, &s.deviation);
        onChannel(calls, ZELCV_FUNCTION(zeliMinMaxIndx_8u_C1R), ZELCV_FUNCTION(zeliMinMaxIndx_8u_C3CR), channel, whole,
                  &s.least.value, &s.greatest.value, &s.least.place, &s.greatest.place);
    }
    onChannel(calls, ZELCV_FUNCTION(zeliNorm_Inf_8u_C1MR), ZELCV_FUNCTION(zeliNorm_Inf_8u_C3CMR), channel, masked,
              &s.norms.inf);
    onChannel(calls, ZELCV_FUNCTION(zeliNorm_L1_8u_C1MR), ZELCV_FUNCTION(zeliNorm_L1_8u_C3CMR), channel, masked, &s.norms.l1);
    onChannel(calls, ZELCV_FUNCTION(zeliNorm_L2_8u_C1MR), ZELCV_FUNCTION(zeliNorm_L2_8u_C3CMR), channel, masked, &s.norms.l2);
    return s;
}

void printTable(const std::vector<std::pair<const char*, Statistics>>& list)
{
    const auto row = [&](const char* title, auto text) {
        std::printf("%-10s", title);
        for (const auto& [channel, s] : list) std::printf(" %16s", std::string(text(s)).c_str());
        std::printf("\n");
    };
    const auto number = [](double value) { return numberText(value, 8); };
    const auto place = [](ZeliPoint at) { return std::to_string(at.x) + "," + std::to_string(at.y); };
    std::printf("%-10s", "channel");
    for (const auto& [channel, s] : list) std::printf(" %16s", channel);
    std::printf("\n");
    row("mean", [&](const Statistics& s) { return number(s.mean); });
    row("deviation", [&](const Statistics& s) { return number(s.deviation); });
    row("norm Inf", [&](const Statistics& s) { return number(s.norms.inf); });
    row("norm L1", [&](const Statistics& s) { return number(s.norms.l1); });
    row("norm L2", [&](const Statistics& s) { return number(s.norms.l2); });
    row("minimum", [&](const Statistics& s) { return number(s.least.value); });
    row("  at x,y", [&](const Statistics& s) { return place(s.least.place); });
    row("maximum", [&](const Statistics& s) { return number(s.greatest.value); });
    row("  at x,y", [&](const Statistics& s) { return place(s.greatest.place); });
}

void printJson(ZeliSize size, std::int64_t pixels, const std::vector<std::pair<const char*, Statistics>>& list)
{
    const auto extremum = [](const char* name, const Extremum& e, const char* end) {
        std::printf("     \"%s\": {\"value\": %g, \"x\": %d, \"y\": %d}%s", name, e.value, e.place.x, e.place.y, end);
    };
    std::printf("{\"width\": %d, \"height\": %d, \"pixels\": %lld, \"channels\": [\n", size.width, size.height,
                static_cast<long long>(pixels));
    for (const auto& [channel, s] : list) {
        std::printf("    {\"channel\": \"%s\", \"mean\": %.17g, \"deviation\": %.17g,\n", channel, s.mean, s.deviation);
        std::printf("     \"inf\": %.17g, \"l1\": %.17g, \"l2\": %.17g,\n", s.norms.inf, s.norms.l1, s.norms.l2);
        extremum("minimum", s.least, ",\n");
        extremum("maximum", s.greatest, channel == list.back().first ? "}\n" : "},\n");
    }
    std::printf("]}\n");
}

void run(const Options& options)
{
    const Picture src = options.picture.empty() ? drawScene() : readPicture(options.picture);
    if (options.channel > src.channels())
        throw Error("there is no channel " + std::to_string(options.channel) + " in a gray picture");
    const Picture mask = options.mask.read(src.size());
    const std::int64_t pixels = countMasked(mask);

    Calls calls;
    std::vector<std::pair<const char*, Statistics>> list;
    for (int channel = 1; channel <= src.channels(); ++channel)
        if (options.channel == 0 || options.channel == channel)
            list.push_back(
                {channelName(src, channel), statistics(calls, src, options.mask.given() ? &mask : nullptr, channel)});
    if (options.json)
        printJson(src.size(), pixels, list);
    else
        printTable(list);
}

} // namespace

void addStatsCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "stats", "Mean, standard deviation, norms and extrema of a picture, channel by channel. Of extrema that occur more "
                 "than once the uppermost, leftmost is told");
    const auto options = std::make_shared<Options>();
    command->add_option("PICTURE", options->picture, "A PNG or JPEG file; without it the program draws a scene of its own");
    options->mask.addTo(*command);
    command->add_option("--channel", options->channel, "One channel only: 1 red or gray, 2 green, 3 blue")
        ->check(CLI::Range(1, 3))
        ->type_name("N");
    command->add_flag("--json", options->json, "Print JSON instead of a table");
    command->callback([=] { run(*options); });
}

} // namespace app
