// Filters in the gallery: derivatives, separable kernels, and what stands outside of a picture.
#include "gallery/chapters.h"
#include "operations/filter.h"
#include "pictures/display.h"

#include <numeric>

namespace app {

namespace {

using Taps = std::vector<Zel16s>;

const ZeliSize kDetail = {320, 240}; // the middle of a picture, for figures that come in large numbers
const Taps kBinomial7 = {1, 6, 15, 20, 15, 6, 1};

Picture detail(const Picture& picture) { return cut(picture, middle(picture.size(), kDetail)); }

Section derivativesSection(const Source& source)
{
    Section section{
        "derivatives", "Derivative filters", "Eight filters of 3 by 3 pixels. Results have a sign: middle gray is zero.", {}};
    for (const DerivativeFamily& family : derivativeFamilies())
        section.add(family.name, family.meaning,
                    [&](Calls& calls) { return aroundGray(family.to16s(calls, source.gray, {})); });
    return section;
}

Section typesSection(const Source& source)
{
    Section section{
        "types",
        "Derivative filters in all sizes and types",
        "The middle of each result. 8u to 16s is exact, 8u to 8s divides so that everything fits, 32f is single precision.",
        {}};
    section.folded = true;
    for (const DerivativeFamily& family : derivativeFamilies())
        for (int wide = 0; wide <= int(family.hasMasks); ++wide) {
            const DerivativeOptions options{.mask = wide ? zeliMask5x5 : zeliMask3x3, .divisor = 2 * family.weights[wide]};
            const std::string name = family.name + std::string(wide ? ", 5 by 5" : ", 3 by 3");
            if (wide)
                section.add(name + ", 8u to 16s", "Exact integers.", [&, options](Calls& calls) {
                    return detail(aroundGray(family.to16s(calls, source.gray, options)));
                });
            section.add(name + ", 8u to 8s", "Divided by " + std::to_string(options.divisor) + ".",
                        [&, options](Calls& calls) { return detail(aroundGray(family.to8s(calls, source.gray, options))); });
            section.add(name + ", 32f", "Single precision.", [&, options](Calls& calls) {
                return detail(aroundGray(family.in32f(calls, convert<Zel32f>(source.gray), options)));
            });
        }
    return section;
}

Section kernelsSection(const Source& source)
{
    Section section{
        "kernels",
        "Separable kernels",
        "The row pipeline filters along the rows, the column pipeline combines the rows. The kernel is the caller's.",
        {}};
    struct Row {
        const char *title, *sentence;
        Taps row, column;
        int divisor; // in the column half: rows in between hold whole sums
        ZeliBorderType border;
        bool aroundZero;
    };
    const Row rows[] = {
        {"Mean", "Nine equal taps in both directions.", Taps(9, 1), Taps(9, 1), 81, zeliBorderReflectEdge, false},
        {"Binomial blur", "The taps 1 6 15 20 15 6 1 in both directions, close to a Gauss curve.", kBinomial7, kBinomial7,
         4096, zeliBorderReflectEdge, false},
        {"Sharpen",
         "The taps -1 6 -1 in both directions make contours steeper.",
         {-1, 6, -1},
         {-1, 6, -1},
         16,
         zeliBorderReplicate,
         false},
        {"Emboss",
         "Differences along the rows, blurred down the columns, around middle gray: a relief in light from the side.",
         {-1, 0, 1},
         {1, 2, 1},
         1,
         zeliBorderReplicate,
         true},
        {"Motion blur",
         "A mean of 61 pixels along the rows. What leaves on one side comes in on the other.",
         Taps(61, 1),
         {1},
         61,
         zeliBorderWrap,
         false},
        {"Falling",
         "A mean of 41 pixels above each pixel, by an anchor at the end of the kernel.",
         {1},
         Taps(41, 1),
         41,
         zeliBorderReplicate,
         false},
        {"Second derivative",
         "The taps 1 -2 1 along the rows and 1 2 1 down the columns, around middle gray.",
         {1, -2, 1},
         {1, 2, 1},
         1,
         zeliBorderReplicate,
         true}};
    for (const Row& row : rows)
        section.add(row.title, row.sentence, [&source, row](Calls& calls) {
            Kernel<Zel16s> kernel{.row = row.row, .column = row.column, .rowDivisor = 1, .columnDivisor = row.divisor};
            if (row.column.size() == 41) kernel.columnAnchor = 40;
            const Outside<Zel8u> outside{row.border, {}};
            if (row.aroundZero)
                return aroundGray(separable(calls, kRows8u16s, kColumns16s, source.colour.view(), kernel, outside));
            return separable(calls, kRows8u16s, kColumns16s8u, source.colour.view(), kernel, outside);
        });
    return section;
}

Section pipelinesSection(const Source& source)
{
    Section section{"pipelines",
                    "The pipelines in all types and layouts",
                    "One blur, 1 6 15 20 15 6 1 in both directions, through every pair of halves. The middle of each result.",
                    {}};
    section.folded = true;
    const auto add = [&]<class S, class M, class D>(const char* title, const char* sentence, const RowHalves<S, M>& rows,
                                                    const ColumnHalves<M, D>& columns, Kernel<M> kernel, double gain) {
        for (const bool colour : {false, true})
            section.add(title + std::string(colour ? ", three channels" : ", one channel"), sentence,
                        [&source, &rows, &columns, kernel, gain, colour](Calls& calls) {
                            const Image<S> src = convert<S>(colour ? source.colour : source.gray);
                            return detail(
                                brightness(separable(calls, rows, columns, src.view(), kernel, Outside<S>{}), gain));
                        });
    };
    const auto kernel = [](int rowDivisor, int columnDivisor) {
        return Kernel<Zel16s>{
            .row = kBinomial7, .column = kBinomial7, .rowDivisor = rowDivisor, .columnDivisor = columnDivisor};
    };
    Kernel<Zel32f> inFloat{{kBinomial7.begin(), kBinomial7.end()}, {kBinomial7.begin(), kBinomial7.end()}};
    for (Zel32f& tap : inFloat.row) tap /= 64;
    for (Zel32f& tap : inFloat.column) tap /= 64;
    add("8u, 16s rows, 8u", "Whole sums in between, divided once at the end.", kRows8u16s, kColumns16s8u, kernel(1, 4096), 1);
    add("8u, 16s rows, 8s", "Divided by twice as much, so that it fits; shown twice as bright.", kRows8u16s, kColumns16s8s,
        kernel(1, 8192), 2);
    add("16s", "16-bit pixels throughout, with limits.", kRows16s, kColumns16s, kernel(64, 64), 1);
    add("16s in wrapping fixed point", "16-bit pixels throughout, without limits.", kRowsLow16s, kColumnsLow16s,
        kernel(64, 64), 1);
    add("32f", "Single precision throughout.", kRows32f, kColumns32f, inFloat, 1);
    return section;
}

struct BorderKind {
    const char* name;
    ZeliBorderType border;
    const char* meaning;
};
const BorderKind kBorderKinds[] = {
    {"constant", zeliBorderConstant, "a fixed value"},
    {"replicate", zeliBorderReplicate, "the nearest pixel"},
    {"wrap", zeliBorderWrap, "the picture again, as on a wallpaper"},
    {"reflect", zeliBorderReflect, "the picture in a mirror that stands on the edge pixel"},
    {"reflect edge", zeliBorderReflectEdge, "the picture in a mirror that stands behind the edge pixel"},
    {"in memory", zeliBorderInMemory, "the real pixels around the region"}};

Section bordersSection(const Source& source)
{
    Section section{"borders",
                    "Borders",
                    "What a filter sees outside of the picture. A small part of the picture serves as the whole.",
                    {}};
    const auto small = [&](int width, int height) { return middle(source.gray.size(), {width, height}); };
    const std::span plain(kBorderKinds, 5); // those that the pipelines take
    const Outside<Zel8u> outside{zeliBorderConstant, {70, 130, 180}};

    for (const BorderKind& kind : plain) {
        const Outside<Zel8u> own{kind.border, outside.value};
        section.add("Outside: " + std::string(kind.name),
                    std::string("A kernel with one tap at its end moves the picture to the right and down. On the left and "
                                "at the top comes in ") +
                        kind.meaning + ".",
                    [&, small, own](Calls& calls) {
                        const ZeliRect rect = small(120, 90);
                        Kernel<Zel16s> kernel{Taps(std::size_t(rect.width / 3 + 1)), Taps(std::size_t(rect.height / 3 + 1))};
                        kernel.row[0] = kernel.column[0] = 1;
                        kernel.rowAnchor = rect.width / 3;
                        kernel.columnAnchor = rect.height / 3;
                        return separable(calls, kRows8u16s, kColumns16s8u, source.colour.view().part(rect), kernel, own);
                    });
    }
    for (const BorderKind& kind : plain) {
        const Outside<Zel8u> own{kind.border, outside.value};
        section.add(
            "Blur at the edge: " + std::string(kind.name),
            std::string("A mean of 31 by 31 pixels lets in ") + kind.meaning + ".", [&, small, own](Calls& calls) {
                const Kernel<Zel16s> kernel{.row = Taps(31, 1), .column = Taps(31, 1), .rowDivisor = 1, .columnDivisor = 961};
                return separable(calls, kRows8u16s, kColumns16s8u, source.colour.view().part(small(120, 90)), kernel, own);
            });
    }
    for (const BorderKind& kind : kBorderKinds)
        section.add("Derivative at the edge: " + std::string(kind.name),
                    std::string("SobelNegVert 5 by 5 on a few pixels. Outside is ") + kind.meaning + ".",
                    [&, small, kind](Calls& calls) {
                        // Real pixels around the region must exist. A picture that is hardly larger has none.
                        const ZeliRect rect = small(32, 24);
                        const bool surrounded = rect.x >= 2 && rect.y >= 2;
                        const bool real = kind.border == zeliBorderInMemory;
                        const DerivativeOptions options{.mask = zeliMask5x5,
                                                        .border = real && !surrounded ? zeliBorderReplicate : kind.border};
                        const DerivativeFamily& family = derivativeFamily("SobelNegVert");
                        return aroundGray(family.to16s(calls, source.gray.view().part(rect), options), 6000);
                    });
    return section;
}

template <class T>
std::vector<T> sobelTaps(Calls& calls, int size, int order)
{
    std::vector<T> taps(std::size_t(size), 0);
    if constexpr (std::is_same_v<T, Zel16s>)
        calls(ZELCV_FUNCTION(zeliGenSobelKernel_16s), taps.data(), size, order, 1);
    else
        calls(ZELCV_FUNCTION(zeliGenSobelKernel_32f), taps.data(), size, order, 1);
    return taps;
}

Section generatedSection(const Source& source)
{
    Section section{"generated",
                    "Kernels of any size",
                    "Taps of derivative filters of any odd size and order, and what they do to the picture.",
                    {}};
    constexpr int shortKernel = 9, longKernel = 33, applied = 15;
    const auto add = [&]<class T>(T, int size, int order, const char* type) {
        section.add("Order " + std::to_string(order) + ", " + std::to_string(size) + " taps, " + type, "", [=](Calls& calls) {
            const std::vector<T> taps = sobelTaps<T>(calls, size, order);
            Content content;
            content.plot.assign(taps.begin(), taps.end());
            return content;
        });
    };
    for (int order = 0; order <= 4; ++order) add(Zel16s(), shortKernel, order, "16s");
    for (int order = 0; order <= 4; ++order) add(Zel32f(), longKernel, order, "32f");

    struct Row {
        int right, down;
        const char* sentence;
    };
    const Row rows[] = {{0, 0, "A blur."},
                        {1, 0, "First derivative to the right."},
                        {0, 1, "First derivative downwards."},
                        {2, 0, "Second derivative to the right."},
                        {1, 1, "Mixed second derivative."},
                        {0, 2, "Second derivative downwards."},
                        {4, 0, "Fourth derivative to the right."},
                        {2, 2, "Second derivative of the second derivative."}};
    for (const Row& row : rows)
        section.add("Orders " + std::to_string(row.right) + " and " + std::to_string(row.down) + ", 15 by 15", row.sentence,
                    [&source, row](Calls& calls) {
                        Kernel<Zel32f> kernel{sobelTaps<Zel32f>(calls, applied, row.right),
                                              sobelTaps<Zel32f>(calls, applied, row.down)};
                        const bool blur = row.right + row.down == 0;
                        const auto result = separable(calls, kRows32f, kColumns32f, convert<Zel32f>(source.gray).view(),
                                                      kernel, Outside<Zel32f>{zeliBorderReflect, {}});
                        const double sum = std::accumulate(kernel.row.begin(), kernel.row.end(), 0.0);
                        return blur ? brightness(result, 1 / (sum * sum)) : aroundGray(result);
                    });
    return section;
}

} // namespace

Chapter filterChapter(const Source& source)
{
    return {"filter",
            "Filters",
            {derivativesSection(source), typesSection(source), kernelsSection(source), pipelinesSection(source),
             bordersSection(source), generatedSection(source), rankSection(source)}};
}

} // namespace app
