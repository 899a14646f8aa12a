// Minimum and maximum filters in the gallery.
#include "gallery/chapters.h"
#include "operations/arith.h"
#include "operations/rank.h"
#include "pictures/display.h"

namespace app {

namespace {

const char* nameOf(Extreme extreme) { return extreme == Extreme::smallest ? "Minimum" : "Maximum"; }

// Three channels and, as a fourth, what they are in gray.
Picture fourChannels(const Source& source)
{
    Picture four(source.colour.size(), 4);
    for (int y = 0; y < four.size().height; ++y)
        for (int x = 0; x < four.size().width; ++x) {
            std::copy_n(source.colour.row(y) + 3 * x, 3, four.row(y) + 4 * x);
            four.row(y)[4 * x + 3] = source.gray.row(y)[x];
        }
    return four;
}

// The first three channels, and beside them the fourth.
Picture besideFourth(const Picture& four)
{
    const ZeliSize size = four.size();
    Picture both({2 * size.width, size.height}, 3);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const Zel8u* pixel = four.row(y) + 4 * x;
            std::copy_n(pixel, 3, both.row(y) + 3 * x);
            std::fill_n(both.row(y) + 3 * (size.width + x), 3, pixel[3]);
        }
    return both;
}

} // namespace

Section rankSection(const Source& source)
{
    Section section{"rank", "Minimum and maximum of rectangles",
                    "The darkest or brightest value around each pixel. The time hardly grows with the rectangle.", {}};
    struct Row {
        const char* sentence;
        int width, height;
    };
    const Row rows[] = {{"A small square: fine dark lines close under the maximum, fine bright ones under the minimum.", 5, 5},
                        {"A large square leaves the large shapes only.", 31, 31},
                        {"A line along the rows.", 41, 1},
                        {"A line down the columns.", 1, 41}};
    for (const Row& row : rows)
        for (const Extreme extreme : {Extreme::largest, Extreme::smallest})
            section.add(nameOf(extreme) + (" of " + std::to_string(row.width) + " by " + std::to_string(row.height)),
                        row.sentence, [&source, row, extreme](Calls& calls) {
                            return extremes(calls, source.colour, extreme, Rectangle({row.width, row.height}));
                        });
    section.add("Contours", "Maximum less minimum of 3 by 3: how much the picture changes there; shown twice as bright.",
                [&](Calls& calls) {
                    const Rectangle square({3, 3});
                    return brightness(pictureDifference(calls, extremes(calls, source.gray, Extreme::largest, square),
                                                        extremes(calls, source.gray, Extreme::smallest, square)),
                                      2);
                });
    section.add("Even light", "The picture less what is left of it by a minimum and then a maximum of 25 by 25: small bright "
                              "things on black.",
                [&](Calls& calls) {
                    const Rectangle square({25, 25});
                    const Picture lowest = extremes(calls, source.gray, Extreme::smallest, square);
                    return brightness(
                        pictureDifference(calls, source.gray, extremes(calls, lowest, Extreme::largest, square)), 2);
                });
    section.add("Anchor", "A maximum of 41 by 21 with the anchor in its lower right corner: bright things grow to the right "
                          "and downwards.",
                [&](Calls& calls) {
                    Rectangle rectangle({41, 21});
                    rectangle.anchor = {40, 20};
                    return extremes(calls, source.colour, Extreme::largest, rectangle);
                });
    for (const Extreme extreme : {Extreme::largest, Extreme::smallest}) {
        const auto add = [&](const char* layout, const char* sentence, auto make) {
            section.add(std::string(nameOf(extreme)) + " of 9 by 9, " + layout, sentence, make);
        };
        const char* const fourth = "The fourth channel, on the right, is the gray picture.";
        const Rectangle square({9, 9});
        add("8u, four channels", fourth, [&source, extreme, square](Calls& calls) {
            return besideFourth(extremes(calls, fourChannels(source), extreme, square));
        });
        add("32f", "Single precision.", [&source, extreme, square](Calls& calls) {
            return brightness(extremes(calls, convert<Zel32f>(source.gray), extreme, square));
        });
        add("32f, three channels", "Single precision.", [&source, extreme, square](Calls& calls) {
            return brightness(extremes(calls, convert<Zel32f>(source.colour), extreme, square));
        });
        add("32f, four channels", fourth, [&source, extreme, square](Calls& calls) {
            return besideFourth(brightness(extremes(calls, convert<Zel32f>(fourChannels(source)), extreme, square)));
        });
    }
    return section;
}

} // namespace app
