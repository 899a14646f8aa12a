// Dilation and erosion by masks of numbers, in the gallery.
#include "gallery/chapters.h"
#include "operations/gray_morph.h"
#include "pictures/display.h"

namespace app {

Section graySection(const Source& source)
{
    Section section{"gray-morphology",
                    "Masks of numbers",
                    "Each number of the mask is added to the pixel under it, and the largest (smallest) sum is the result.",
                    {}};
    struct Row {
        const char *title, *sentence;
        GrayMask<Zel8u> mask;
    };
    const Row rows[] = {
        {"paraboloid of 11 pixels", "The numbers fall by 60 towards the sides: spots get rounded slopes.",
         GrayMask<Zel8u>::paraboloid(11, 60)},
        {"cone of 31 pixels", "The numbers fall by 4 a pixel.",
         GrayMask<Zel8u>::of(31, [](double u, double v) { return -60 * std::hypot(u, v); })},
        {"flat square of 7 pixels", "All numbers are 0: a maximum or minimum filter.", GrayMask<Zel8u>::paraboloid(7, 0)},
        {"single number", "One number is added to all pixels: 50.", {1, {50}}}};
    for (const Row& row : rows) {
        section.add("Dilation by a " + std::string(row.title), row.sentence, [&source, row](Calls& calls) {
            return grayMorph(calls, GrayOperation::dilate, source.gray, row.mask);
        });
        section.add("Erosion by a " + std::string(row.title), "The numbers are negated, so that dark spots grow.",
                    [&source, row](Calls& calls) {
                        return grayMorph(calls, GrayOperation::erode, source.gray, row.mask.negated());
                    });
    }
    section.add("In single precision", "Dilation by a paraboloid of 15 pixels, less erosion by it.", [&](Calls& calls) {
        const auto mask = GrayMask<Zel32f>::paraboloid(15, 80);
        const Image<Zel32f> src = convert<Zel32f>(source.gray);
        Image<Zel32f> high = grayMorph(calls, GrayOperation::dilate, src, mask);
        const Image<Zel32f> low = grayMorph(calls, GrayOperation::erode, src, mask.negated());
        for (int y = 0; y < high.size().height; ++y)
            for (int x = 0; x < high.size().width; ++x) high.row(y)[x] -= low.row(y)[x];
        return brightness(high, 2);
    });
    section.add("With a state in the program's own memory", "Upper half: dilation in 8u. Lower half: in 32f.",
                [&](Calls& calls) {
                    const auto mask = GrayMask<Zel8u>::paraboloid(9, 40);
                    Picture dst = grayMorph(calls, GrayOperation::dilate, source.gray, mask, true);
                    const Picture inFloat = brightness(grayMorph(calls, GrayOperation::dilate, convert<Zel32f>(source.gray),
                                                                 GrayMask<Zel32f>::paraboloid(9, 40), true));
                    for (int y = dst.size().height / 2; y < dst.size().height; ++y)
                        std::copy_n(inFloat.row(y), dst.size().width, dst.row(y));
                    return dst;
                });
    return section;
}

} // namespace app
