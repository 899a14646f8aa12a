// zelcv compare: how far two pictures are apart.
#include "commands/commands.h"
#include "operations/arith.h"
#include "operations/stats.h"

#include <cstdio>

namespace app {

namespace {

struct Options {
    TwoPictures pictures;
    std::string out;
    MaskOption mask;
};

struct Comparison {
    Norms difference, relative;
};

Comparison compare(Calls& calls, const Picture& a, const Picture& b, const Picture& mask, int channel)
{
    Comparison c;
    const std::tuple<const Picture&, const Picture&, const Picture&> images(a, b, mask);
    const auto norm = [&](auto gray, auto colour, double& value) { onChannel(calls, gray, colour, channel, images, &value); };
    norm(ZELCV_FUNCTION(zeliNormDiff_Inf_8u_C1MR), ZELCV_FUNCTION(zeliNormDiff_Inf_8u_C3CMR), c.difference.inf);
    norm(ZELCV_FUNCTION(zeliNormDiff_L1_8u_C1MR), ZELCV_FUNCTION(zeliNormDiff_L1_8u_C3CMR), c.difference.l1);
    norm(ZELCV_FUNCTION(zeliNormDiff_L2_8u_C1MR), ZELCV_FUNCTION(zeliNormDiff_L2_8u_C3CMR), c.difference.l2);
    norm(ZELCV_FUNCTION(zeliNormRel_Inf_8u_C1MR), ZELCV_FUNCTION(zeliNormRel_Inf_8u_C3CMR), c.relative.inf);
    norm(ZELCV_FUNCTION(zeliNormRel_L1_8u_C1MR), ZELCV_FUNCTION(zeliNormRel_L1_8u_C3CMR), c.relative.l1);
    norm(ZELCV_FUNCTION(zeliNormRel_L2_8u_C1MR), ZELCV_FUNCTION(zeliNormRel_L2_8u_C3CMR), c.relative.l2);
    return c;
}

void run(const Options& options)
{
    const auto [a, b] = options.pictures.read("compare");
    const Picture mask = options.mask.read(a.size());
    const double pixels = double(countMasked(mask));

    Calls calls;
    std::vector<Comparison> list;
    double largest = 0;
    for (int channel = 1; channel <= a.channels(); ++channel) {
        list.push_back(compare(calls, a, b, mask, channel));
        largest = std::max(largest, list.back().difference.inf);
    }
    if (!options.out.empty()) {
        Picture difference = brightness(pictureDifference(calls, a, b), largest > 0 ? 255 / largest : 1);
        dimOutside(difference, mask, 0);
        writePng(options.out, difference);
    }

    // Relative to a black picture a difference is infinite, and the difference of two is nothing at all.
    const auto ratio = [](double value) { return std::isnan(value) ? "-" : numberText(value); };
    std::printf("%-8s %6s %12s %12s %12s %12s %12s %10s\n", "channel", "Inf", "L1", "L2", "rel. Inf", "rel. L1", "rel. L2",
                "PSNR dB");
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto& [difference, relative] = list[i];
        const double psnr = 20 * std::log10(255 * std::sqrt(pixels) / difference.l2);
        std::printf("%-8s %6g %12.8g %12.8g %12s %12s %12s %10.5g\n", channelName(a, int(i) + 1), difference.inf,
                    difference.l1, difference.l2, ratio(relative.inf).c_str(), ratio(relative.l1).c_str(),
                    ratio(relative.l2).c_str(), psnr);
    }
}

} // namespace

void addCompareCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "compare",
        "Norms of the difference of two pictures of one size, the same relative to the norms of B, and the PSNR, channel by "
        "channel when both are in colour. Without pictures: the program's own scene and the same moved by one pixel");
    const auto options = std::make_shared<Options>();
    options->pictures.addTo(*command);
    options->mask.addTo(*command);
    command
        ->add_option("-o,--output", options->out,
                     "Write a PNG file that shows where they differ: the absolute difference, the largest one in white")
        ->type_name("FILE");
    command->callback([=] { run(*options); });
}

} // namespace app
