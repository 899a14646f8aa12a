// Corners in the gallery: how much of a corner each pixel is, and where the strongest ones are.
#include "gallery/chapters.h"
#include "operations/corners.h"
#include "pictures/display.h"

namespace app {

Section cornersSection(const Source& source)
{
    Section section{"corners",
                    "Corners",
                    "The structure tensor averages the products of the derivatives. Its larger eigenvalue tells of contours, "
                    "its smaller one of corners, where contours of two directions meet.",
                    {}};
    constexpr int count = 100, distance = 9;
    const Picture& gray = source.gray;
    struct Row {
        const char* name;
        CornerOptions options;
    };
    for (const Row& row : {Row{"Sobel 3 by 3, averages of 3 by 3", {}}, {"Sobel 5 by 5, averages of 5 by 5", {false, 5, 5}},
                           {"Scharr, averages of 5 by 5", {true, 3, 5}}})
        section.add(std::string("Smaller eigenvalue, ") + row.name, "Bright at corners.", [=, &gray](Calls& calls) {
            return scaledToWhite(cornerStrength(calls, gray, row.options)).picture;
        });
    section.add("Strongest corners", "The hundred strongest ones, at least 9 pixels apart; measured in single precision.",
                [&](Calls& calls) {
                    return markCorners(source.colour, strongestCorners(cornerStrength(calls, convert<Zel32f>(gray), {}),
                                                                       count, distance));
                });
    section.add("Larger eigenvalue", "Bright at contours of any direction. Edges without a corner in them are left out.",
                [&](Calls& calls) {
                    const Image<Zel32f> both = eigenvaluesAndVectors(calls, convert<Zel32f>(gray), {.window = 5});
                    Image<Zel32f> larger(both.size(), 1);
                    for (int y = 0; y < larger.size().height; ++y)
                        for (int x = 0; x < larger.size().width; ++x) larger.row(y)[x] = both.row(y)[6 * x];
                    return scaledToWhite(larger).picture;
                });
    section.add("Eigenvectors at the strongest corners",
                "The long stroke lies across the stronger contour, the short one along it.", [&](Calls& calls) {
                    const CornerOptions options{.window = 5};
                    const auto corners = strongestCorners(cornerStrength(calls, gray, options), count, distance);
                    return drawVectors(source.colour, eigenvaluesAndVectors(calls, gray, options), corners);
                });
    return section;
}

} // namespace app
