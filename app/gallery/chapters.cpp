#include "gallery/chapters.h"

#include "pictures/pictures.h"

namespace app {

namespace {

Chapter pictureChapter(const Source& source)
{
    Section section{"picture", "", "", {}};
    section.add("As it is", "", [&](Calls&) { return toColour(source.colour); }, Width::all);
    return {"picture", "The picture", {section}};
}

} // namespace

std::vector<Chapter> planChapters(const Source& source)
{
    return {pictureChapter(source), arithChapter(source), statsChapter(source),   integralChapter(source),
            filterChapter(source),  morphChapter(source), featuresChapter(source)};
}

} // namespace app
