// Arithmetic in the gallery: absolute differences.
#include "gallery/chapters.h"
#include "operations/arith.h"
#include "operations/filter.h"
#include "pictures/display.h"

namespace app {

namespace {

Section differencesSection(const Source& source)
{
    Section section{"differences", "Absolute difference", "How far two pictures are apart, pixel by pixel.", {}};
    section.add("Moved picture", "The gray picture and the same moved by 3 pixels to the right and 2 down.",
                [&](Calls& calls) { return pictureDifference(calls, source.gray, moved(source.gray, 3, 2)); });
    section.add("Moved picture in colour", "The same with three channels.",
                [&](Calls& calls) { return pictureDifference(calls, source.colour, moved(source.colour, 3, 2)); });
    const auto blurred = [&] {
        Calls unmeasured;
        const std::vector<Zel16s> nine(9, 1);
        const Kernel<Zel16s> kernel{.row = nine, .column = nine, .rowDivisor = 1, .columnDivisor = 81};
        return separable(unmeasured, kRows8u16s, kColumns16s8u, source.gray.view(), kernel, Outside<Zel8u>{});
    };
    section.add(
        "What a blur takes away, 16u", "The gray picture and its mean of 9 by 9, in 16 bits; shown three times as bright.",
        [=, &source](Calls& calls) {
            const auto a = inRangeOf<Zel16u>(source.gray), b = inRangeOf<Zel16u>(blurred());
            return brightness(absDiff(calls, ZELCV_FUNCTION(zeliAbsDiff_16u_C1R), a, b), 3 / kUnit<Zel16u>);
        });
    section.add("What a blur takes away, 32f", "The same in single precision.", [=, &source](Calls& calls) {
        const auto a = inRangeOf<Zel32f>(source.gray), b = inRangeOf<Zel32f>(blurred());
        return brightness(absDiff(calls, ZELCV_FUNCTION(zeliAbsDiff_32f_C1R), a, b), 3 / kUnit<Zel32f>);
    });
    section.add(
        "Distance from middle gray", "The gray picture and the constant 128; shown twice as bright.",
        [&](Calls& calls) { return brightness(absDiffC(calls, ZELCV_FUNCTION(zeliAbsDiffC_8u_C1R), source.gray, 128), 2); });
    section.add("Distance from black, 16u", "16-bit pixels and the constant 0: the picture itself.", [&](Calls& calls) {
        const auto src = inRangeOf<Zel16u>(source.gray);
        return brightness(absDiffC(calls, ZELCV_FUNCTION(zeliAbsDiffC_16u_C1R), src, 0), 1 / kUnit<Zel16u>);
    });
    section.add("Distance from white, 32f", "Single precision and the constant 1: the negative.", [&](Calls& calls) {
        const auto src = inRangeOf<Zel32f>(source.gray);
        return brightness(absDiffC(calls, ZELCV_FUNCTION(zeliAbsDiffC_32f_C1R), src, 1.0f), 1 / kUnit<Zel32f>);
    });
    return section;
}

} // namespace

Chapter arithChapter(const Source& source)
{
    return {"arith", "Arithmetic", {differencesSection(source), sequencesSection(source)}};
}

} // namespace app
