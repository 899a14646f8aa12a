// Morphological reconstruction in the gallery.
#include "gallery/chapters.h"
#include "operations/reconstruct.h"
#include "pictures/display.h"

namespace app {

Section reconstructSection(const Source& source)
{
    Section section{"reconstruction",
                    "Reconstruction",
                    "A marker grows under a mask image until nothing changes. What the marker is decides what comes out.",
                    {}};
    section.add("Holes filled", "A bright marker shrinks from the border of the picture onto it: dark places that are closed "
                                "in become as bright as their rim.",
                [&](Calls& calls) { return fillHoles(calls, source.gray, Zel8u(255), zeliNormInf); });
    section.add("What was filled", "The same less the picture, three times as bright.", [&](Calls& calls) {
        return brightness(subtract(fillHoles(calls, source.gray, Zel8u(255), zeliNormInf), source.gray), 3);
    });
    section.add("Border cleared", "What hangs together with the border is taken away.",
                [&](Calls& calls) { return brightness(clearBorder(calls, source.gray, zeliNormInf), 2); });
    for (const int height : {10, 40})
        section.add("Domes of height " + std::to_string(height),
                    "What stands out of its surroundings: the marker is the picture, lowered. White is the whole height.",
                    [&, height](Calls& calls) {
                        return brightness(domes(calls, source.gray, Zel8u(height), zeliNormInf), 255.0 / height);
                    });
    section.add("Domes cut off", "The marker after its growth: the picture without tops of less than 40 gray levels.",
                [&](Calls& calls) { return subtract(source.gray, domes(calls, source.gray, Zel8u(40), zeliNormInf)); });
    const auto inType = [&]<class T>(T, const char* type) {
        for (const ZeliNormType norm : {ZeliNormType(zeliNormL1), ZeliNormType(zeliNormInf)})
            section.add(std::string("In ") + type + (norm == zeliNormL1 ? ", four neighbours" : ", eight neighbours"),
                        "Upper half: holes filled. Lower half: domes of height 40.", [&source, norm](Calls& calls) {
                            const Image<T> src = convert<T>(source.gray);
                            Picture dst = brightness(fillHoles(calls, src, T(255), norm));
                            const Picture lower = brightness(domes(calls, src, T(40), norm), 6);
                            for (int y = dst.size().height / 2; y < dst.size().height; ++y)
                                std::copy_n(lower.row(y), dst.size().width, dst.row(y));
                            return dst;
                        });
    };
    inType(Zel8u(), "8u");
    inType(Zel16u(), "16u");
    inType(Zel32f(), "32f");
    inType(Zel64f(), "64f");
    return section;
}

} // namespace app
