// Statistics in the gallery: extrema, means and norms, in all types and layouts.
#include "gallery/chapters.h"
#include "pictures/display.h"

namespace app {

namespace {

constexpr int kChannel = 2; // of the functions that read one channel of three
const std::vector<std::string> kTypes = {"8u", "8s", "16u", "32f"};

// A member of a family for each type.
#define ZELCV_ALL_TYPES(family, layout)                                                                                      \
    std::tuple(ZELCV_FUNCTION(family##_8u_##layout), ZELCV_FUNCTION(family##_8s_##layout),                                   \
               ZELCV_FUNCTION(family##_16u_##layout), ZELCV_FUNCTION(family##_32f_##layout))

// Members of all types that take the same arguments.
template <bool Masked, bool Coloured, class... Functions>
struct Members {
    static constexpr bool masked = Masked, coloured = Coloured;
    const char* name;
    std::tuple<Functions...> functions;
};
template <bool Masked, bool Coloured, class... Functions>
Members<Masked, Coloured, Functions...> members(const char* name, std::tuple<Functions...> functions)
{
    return {name, functions};
}

// What the members are called with: the picture, or that and the same moved a little.
struct Subject {
    explicit Subject(const Source& from) : source(from), moved{app::moved(from.colour, 3, 2), app::moved(from.gray, 3, 2)} {}
    const Source& source;
    Source moved;
    Picture mask = ellipse(source.gray.size());
};

template <int Pictures, class M, class F, class... Results>
void measure(Calls& calls, const Subject& subject, const M&, Function<F> function, Results... results)
{
    using T = SourceOf<Function<F>>;
    const auto picked = [](const Source& source) { return inRangeOf<T>(M::coloured ? source.colour : source.gray); };
    const Image<T> first = picked(subject.source);
    const auto more = std::tuple_cat(onlyIf<M::masked>(subject.mask.view()), std::tuple(first.size()),
                                     onlyIf<M::coloured>(kChannel), std::tuple(results...));
    if constexpr (Pictures == 2)
        std::apply([&, second = picked(subject.moved)](auto... a) { callWith(calls, function, first, second, a...); }, more);
    else
        std::apply([&](auto... a) { callWith(calls, function, first, a...); }, more);
}

// A row for each group of members and a column for each type.
template <class... M, class Cell>
Table tabulate(Cell cell, const M&... groups)
{
    Table table{kTypes, {}};
    const auto row = [&](const auto& group) {
        table.rows.push_back({group.name, {}});
        const auto add = [&](auto function) { table.rows.back().cells.push_back(cell(group, function)); };
        std::apply([&](auto... function) { (add(function), ...); }, group.functions);
    };
    (row(groups), ...);
    return table;
}

Content justTable(Table table)
{
    Content content;
    content.table = std::move(table);
    return content;
}

// The picture with a frame around the places, and a table of what each type says.
template <class M>
Content extrema(Calls& calls, const Subject& subject, const M& group)
{
    constexpr Paint blue = {70, 150, 255}, orange = {255, 140, 40};
    Content content(toColour(M::coloured ? subject.source.colour : subject.source.gray));
    if (M::masked) dimOutside(*content.picture, subject.mask, 0.5);
    content.table.columns = {"minimum", "at", "maximum", "at"};
    const auto add = [&](auto function) {
        Zel32f values[2];
        ZeliPoint places[2];
        measure<1>(calls, subject, group, function, &values[0], &values[1], &places[0], &places[1]);
        content.table.rows.push_back({kTypes[content.table.rows.size()], {}});
        for (int i = 0; i < 2; ++i) {
            const auto [x, y] = places[i];
            auto& cells = content.table.rows.back().cells;
            cells.push_back(numberText(values[i], 5));
            cells.push_back(std::to_string(x) + ", " + std::to_string(y));
            drawFrame(*content.picture, {x - 16, y - 16, 33, 33}, i == 0 ? blue : orange);
        }
    };
    std::apply([&](auto... function) { (add(function), ...); }, group.functions);
    return content;
}

template <class M>
void addExtrema(Section& section, const std::shared_ptr<const Subject>& subject, const M& group, const char* sentence)
{
    section.add(group.name, sentence, [=](Calls& calls) { return extrema(calls, *subject, group); });
}

void addMeans(Section& section, const std::shared_ptr<const Subject>& subject)
{
    section.add(
        "Mean and standard deviation", "Both from one call, and the mean alone, which exists with a mask only.",
        [=](Calls& calls) {
            const auto both = [&](const auto& group, auto function) {
                double mean = 0, deviation = 0;
                measure<1>(calls, *subject, group, function, &mean, &deviation);
                return numberText(mean, 5) + " ± " + numberText(deviation, 5);
            };
            const auto alone = [&](const auto& group, auto function) {
                double mean = 0;
                measure<1>(calls, *subject, group, function, &mean);
                return numberText(mean, 5);
            };
            Table table = tabulate(both, members<false, false>("gray", ZELCV_ALL_TYPES(zeliMean_StdDev, C1R)),
                                   members<true, false>("gray, masked", ZELCV_ALL_TYPES(zeliMean_StdDev, C1MR)),
                                   members<false, true>("green", ZELCV_ALL_TYPES(zeliMean_StdDev, C3CR)),
                                   members<true, true>("green, masked", ZELCV_ALL_TYPES(zeliMean_StdDev, C3CMR)));
            const Table means = tabulate(alone, members<true, false>("alone, gray", ZELCV_ALL_TYPES(zeliMean, C1MR)),
                                         members<true, true>("alone, green", ZELCV_ALL_TYPES(zeliMean, C3CMR)));
            table.rows.insert(table.rows.end(), means.rows.begin(), means.rows.end());
            return justTable(table);
        },
        Width::two);
}

// A figure for a family of norms: the largest value, the sum and the root of the sum of squares, gray and green.
template <int Pictures, class... M>
void addNorms(Section& section, const std::shared_ptr<const Subject>& subject, const char* title, const char* sentence,
              const M&... groups)
{
    section.add(
        title, sentence,
        [=](Calls& calls) {
            const auto norm = [&](const auto& group, auto function) {
                double value = 0;
                measure<Pictures>(calls, *subject, group, function, &value);
                return numberText(value, 6);
            };
            return justTable(tabulate(norm, groups...));
        },
        Width::two);
}
#define ZELCV_NORMS(family)                                                                                                  \
    members<true, false>("Inf, gray", ZELCV_ALL_TYPES(family##_Inf, C1MR)),                                                  \
        members<true, true>("Inf, green", ZELCV_ALL_TYPES(family##_Inf, C3CMR)),                                             \
        members<true, false>("L1, gray", ZELCV_ALL_TYPES(family##_L1, C1MR)),                                                \
        members<true, true>("L1, green", ZELCV_ALL_TYPES(family##_L1, C3CMR)),                                               \
        members<true, false>("L2, gray", ZELCV_ALL_TYPES(family##_L2, C1MR)),                                                \
        members<true, true>("L2, green", ZELCV_ALL_TYPES(family##_L2, C3CMR))

Section statisticsSection(const Source& source)
{
    Section section{
        "statistics",
        "",
        "Numbers that describe the gray picture or the green channel of the coloured one, whole or inside of a "
        "mask. 8s pixels are the 8u ones less 128, 16u ones are 257 times as large, 32f ones lie between 0 and 1.",
        {}};
    const auto subject = std::make_shared<const Subject>(source);
    addExtrema(section, subject, members<false, false>("Darkest and brightest pixel", ZELCV_ALL_TYPES(zeliMinMaxIndx, C1R)),
               "Blue frame: the minimum, orange frame: the maximum, of several the uppermost and in its row the leftmost.");
    addMeans(section, subject);
    addExtrema(section, subject,
               members<true, false>("Darkest and brightest inside of a mask", ZELCV_ALL_TYPES(zeliMinMaxIndx, C1MR)),
               "The dark part does not count.");
    addNorms<1>(section, subject, "Norms",
                "Of the pixels inside of the mask: Inf is the largest value, L1 the sum, L2 the root of the sum of squares.",
                ZELCV_NORMS(zeliNorm));
    addExtrema(section, subject, members<false, true>("Least and most green", ZELCV_ALL_TYPES(zeliMinMaxIndx, C3CR)),
               "One channel of three.");
    addNorms<2>(section, subject, "Norms of the difference",
                "Of the picture and the same moved by 3 pixels to the right and 2 down, inside of the mask.",
                ZELCV_NORMS(zeliNormDiff));
    addExtrema(section, subject,
               members<true, true>("Least and most green inside of a mask", ZELCV_ALL_TYPES(zeliMinMaxIndx, C3CMR)),
               "One channel of three, and the dark part does not count.");
    addNorms<2>(section, subject, "Relative norms", "The norms of that difference over those of the moved picture.",
                ZELCV_NORMS(zeliNormRel));
    return section;
}

} // namespace

Chapter statsChapter(const Source& source) { return {"stats", "Statistics", {statisticsSection(source)}}; }

} // namespace app
