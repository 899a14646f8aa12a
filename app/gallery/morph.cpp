// Morphology in the gallery.
#include "gallery/chapters.h"
#include "operations/morph.h"
#include "pictures/display.h"

namespace app {

namespace {

const ZeliSize kDetail = {320, 240}; // the middle of a picture, for figures that come in large numbers

Section shapesSection(const Source& source)
{
    Section section{"shapes",
                    "Dilation and erosion",
                    "The largest or the smallest value under a mask. Bright or dark spots take the shape of the mask.",
                    {}};
    struct Row {
        const char* name;
        MorphMask mask;
        const char* kind;
    };
    const Row rows[] = {{"a square", makeMask(MorphShape::rect, 9), "A rectangle, which costs the same in every size."},
                        {"a disc", makeMask(MorphShape::ellipse, 13), "One run in each row."},
                        {"a diamond", makeMask(MorphShape::diamond, 13), "One run in each row."},
                        {"a cross", makeMask(MorphShape::cross, 13), "Runs of two lengths."},
                        {"two points", {{13, 1}, {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}}, "A mask of any shape."},
                        {"nothing", {{3, 3}, std::vector<Zel8u>(9, 0)}, "An empty mask copies."}};
    for (const Row& row : rows)
        for (const MorphOperation operation : {MorphOperation::dilate, MorphOperation::erode})
            section.add((operation == MorphOperation::dilate ? "Dilation by " : "Erosion by ") + std::string(row.name),
                        row.kind, [&source, row, operation](Calls& calls) {
                            return morph(calls, operation, source.colour, row.mask);
                        });
    return section;
}

struct Compound {
    MorphOperation operation;
    const char *title, *sentence;
    double gain;
};
const Compound kCompounds[] = {
    {MorphOperation::open, "Opening", "Erosion, then dilation: bright spots smaller than the mask are gone.", 1},
    {MorphOperation::close, "Closing", "Dilation, then erosion: dark spots smaller than the mask are gone.", 1},
    {MorphOperation::tophat, "Top hat", "What opening takes away, three times as bright.", 3},
    {MorphOperation::blackhat, "Black hat", "What closing adds, three times as bright.", 3},
    {MorphOperation::gradient, "Gradient", "Dilation less erosion, twice as bright.", 2}};

Section compoundsSection(const Source& source)
{
    Section section{"compounds", "Opening, closing and their like", "Two steps under a disc of 9 pixels.", {}};
    for (const Compound& compound : kCompounds)
        section.add(compound.title, compound.sentence, [&](Calls& calls) {
            const MorphMask disc = makeMask(MorphShape::ellipse, 9);
            return brightness(morph(calls, compound.operation, source.colour, disc), compound.gain);
        });
    return section;
}

// The picture with other channels: of a fourth one black, and back.
template <class T>
Image<T> withChannels(const Image<T>& src, int channels)
{
    Image<T> dst(src.size(), channels);
    for (int y = 0; y < src.size().height; ++y)
        for (int x = 0; x < src.size().width; ++x)
            std::copy_n(src.row(y) + std::ptrdiff_t(x) * src.channels(), std::min(channels, src.channels()),
                        dst.row(y) + std::ptrdiff_t(x) * channels);
    return dst;
}

Section morphTypesSection(const Source& source)
{
    Section section{"morph-types",
                    "Morphology in all types and layouts",
                    "The middle of each result, under a disc of 9 pixels. States are allocated by the library, or built in "
                    "memory of the program's own.",
                    {}};
    section.folded = true;
    const auto addMember = [&]<class T>(T, const std::string& type, int channels, int index) {
        const MorphOperation operation = MorphOperation(index);
        const auto draw = [&source, channels, operation](Calls& calls, StateMemory memory) {
            const Picture& picture = channels == 1 ? source.gray : source.colour;
            const Image<T> src = withChannels(convert<T>(picture), channels);
            const Image<T> result = morph(calls, operation, src, makeMask(MorphShape::ellipse, 9), memory);
            return cut(brightness(withChannels(result, picture.channels())), middle(picture.size(), kDetail));
        };
        const bool both = operation == MorphOperation::dilate || operation == MorphOperation::open;
        const char* const layouts[] = {"one channel", "", "three channels", "four channels"};
        const std::string title = std::string(kMorphOperations[index]) + ", " + type + ", " + layouts[channels - 1];
        const auto add = [&](const std::string& name, const char* sentence, StateMemory memory) {
            section.add(name, sentence, [=](Calls& calls) { return draw(calls, memory); });
        };
        add(title, "The library allocates the state.", StateMemory::library);
        if (both) add(title + ", own memory", "The state lies in a block of the program's.", StateMemory::own);
    };
    for (const int channels : {1, 3, 4})
        for (int operation = 0; operation < int(std::size(kMorphOperations)); ++operation) {
            addMember(Zel8u(), "8u", channels, operation);
            addMember(Zel32f(), "32f", channels, operation);
        }
    return section;
}

} // namespace

Chapter morphChapter(const Source& source)
{
    return {"morphology",
            "Morphology",
            {shapesSection(source), compoundsSection(source), morphTypesSection(source), graySection(source),
             reconstructSection(source)}};
}

} // namespace app
