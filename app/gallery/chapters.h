// Everything that there is to show for a picture: one chapter a subsystem, each in a file of that name.
#pragma once

#include "gallery/figures.h"

namespace app {

// What is shown. The figures refer to it.
struct Source {
    Picture colour, gray;
};

// All chapters, in the order of the page.
std::vector<Chapter> planChapters(const Source& source);

Chapter arithChapter(const Source& source);
Chapter statsChapter(const Source& source);
Chapter integralChapter(const Source& source);
Chapter filterChapter(const Source& source);
Chapter morphChapter(const Source& source);
Chapter featuresChapter(const Source& source);

// Sections of them that stand in files of their own.
Section sequencesSection(const Source& source);
Section haarSection(const Source& source);
Section rankSection(const Source& source);

} // namespace app
