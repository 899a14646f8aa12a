// Smoothing in the gallery: averages, Gauss filters and Laplacians.
#include "gallery/chapters.h"
#include "operations/smooth.h"
#include "pictures/display.h"

namespace app {

Section smoothingSection(const Source& source)
{
    Section section{"smoothing",
                    "Smoothing and Laplacians",
                    "Averages and Gauss filters take fine detail away, channel by channel; Laplacians show it: where the "
                    "picture is darker or brighter than around.",
                    {}};
    const Picture& colour = source.colour;
    for (const int size : {3, 5}) {
        const DerivativeOptions options{.mask = maskOfAperture(size)};
        const std::string name = std::to_string(size) + " by " + std::to_string(size);
        section.add("Box, " + name, "The average of the pixels under the mask, 8u.", [=, &colour](Calls& calls) {
            return channelByChannel(colour, [&](const Picture& plane) { return kMaskFilters.box8u(calls, plane, options); });
        });
        section.add("Box, " + name + ", of a noisy picture",
                    "Noise of 20 gray levels on the left, its average on the right, in single precision.",
                    [=, &source](Calls& calls) {
                        std::vector<Picture> halves;
                        halves.push_back(noisy(source.gray, 20, 1));
                        halves.push_back(brightness(kMaskFilters.box32f(calls, convert<Zel32f>(halves[0]), options)));
                        return strips(halves);
                    });
    }
    for (const GaussOptions options : {GaussOptions{.sigma = 1}, {.sigma = 2.5}, {.sigma = 8}})
        section.add("Gauss, sigma " + numberText(options.sigma), std::to_string(options.taps) + " taps in both directions.",
                    [=, &colour](Calls& calls) {
                        return channelByChannel(colour, [&](const Picture& plane) {
                            return brightness(gauss(calls, convert<Zel32f>(plane), options));
                        });
                    });
    section.add("What a Gauss filter takes away", "The picture less its Gauss average, sigma 2.5, around middle gray.",
                [&](Calls& calls) {
                    const Image<Zel32f> src = convert<Zel32f>(source.gray);
                    Image<Zel32f> less = gauss(calls, src, {.sigma = 2.5});
                    for (int y = 0; y < less.size().height; ++y)
                        for (int x = 0; x < less.size().width; ++x) less.row(y)[x] = src.row(y)[x] - less.row(y)[x];
                    return aroundGray(less);
                });
    for (const int size : {3, 5}) {
        const DerivativeOptions options{.mask = maskOfAperture(size), .divisor = size == 3 ? 16 : 112};
        const std::string name = "Laplacian, " + std::to_string(size) + " by " + std::to_string(size);
        section.add(name, "Exact integers, 8u to 16s.", [=, &source](Calls& calls) {
            return aroundGray(kMaskFilters.laplacian16s(calls, source.gray, options));
        });
        section.add(name + ", 8u to 8s", "Divided by " + std::to_string(options.divisor) + ", so that everything fits.",
                    [=, &source](Calls& calls) {
                        return aroundGray(kMaskFilters.laplacian8s(calls, source.gray, options));
                    });
        section.add(name + ", 32f", "Single precision.", [=, &source](Calls& calls) {
            return aroundGray(kMaskFilters.laplacian32f(calls, convert<Zel32f>(source.gray), options));
        });
    }
    return section;
}

} // namespace app
