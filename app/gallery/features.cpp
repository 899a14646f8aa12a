// Features in the gallery: edges. Corners stand in a file of their own.
#include "gallery/chapters.h"
#include "operations/features.h"
#include "operations/filter.h"
#include "pictures/display.h"

namespace app {

namespace {

Section edgesSection(const Source& source)
{
    Section section{
        "edges",
        "Edges",
        "Two derivative filters give the gradient. Canny keeps the ridges of its strength |dx| + |dy|: those above the high "
        "threshold, and all above the low one that are linked to them.",
        {}};
    section.add("Strength of the gradient", "What the thresholds below are compared with, from the Sobel filters 3 by 3.",
                [&](Calls& calls) {
                    const auto [dx, dy] = gradientFamilies(false);
                    const auto strength =
                        gradientStrength(dx.to16s(calls, source.gray, {}), dy.to16s(calls, source.gray, {}));
                    return brightness(strength, 255 / largeMagnitude(strength));
                });
    struct Row {
        const char* title;
        bool scharr;
        ZeliMaskSize mask;
        float low, high;
        bool inFloat;
    };
    const Row rows[] = {{"Fine detail", false, zeliMask3x3, 40, 80, false},
                        {"Contours", false, zeliMask3x3, 100, 200, false},
                        {"Strong contours only", false, zeliMask3x3, 200, 400, false},
                        {"Wide filters, contours", false, zeliMask5x5, 1200, 2400, false},
                        {"Wide filters, strong contours only", false, zeliMask5x5, 2400, 4800, false},
                        {"Scharr filters", true, zeliMask3x3, 400, 800, false},
                        {"In single precision", false, zeliMask3x3, 100, 200, true}};
    for (const Row& row : rows)
        section.add(row.title,
                    std::string(row.scharr ? "Scharr" : "Sobel") + (row.mask == zeliMask5x5 ? " 5 by 5" : " 3 by 3") +
                        ", thresholds " + numberText(row.low) + " and " + numberText(row.high) + ".",
                    [&source, row](Calls& calls) {
                        const auto [dx, dy] = gradientFamilies(row.scharr);
                        const DerivativeOptions options{.mask = row.mask};
                        if (!row.inFloat)
                            return canny(calls, dx.to16s(calls, source.gray, options), dy.to16s(calls, source.gray, options),
                                         row.low, row.high);
                        const Image<Zel32f> src = convert<Zel32f>(source.gray);
                        return canny(calls, dx.in32f(calls, src, options), dy.in32f(calls, src, options), row.low, row.high);
                    });
    return section;
}

} // namespace

Chapter featuresChapter(const Source& source)
{
    return {"features", "Features", {edgesSection(source), cornersSection(source), colourGradientSection(source)}};
}

} // namespace app
