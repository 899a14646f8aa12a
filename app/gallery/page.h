// The gallery as a page of HTML.
#pragma once

#include "gallery/drawing.h"

namespace app {

struct GalleryPage {
    std::string heading; // the picture's name
    std::string origin;  // a sentence on the picture
    std::string variant; // of the library
    const std::vector<Chapter>& chapters;
    std::map<std::string, Drawn> figures; // by their identifiers
    std::map<std::string, FunctionTimes> functions;
};

std::string galleryHtml(const GalleryPage& page);

} // namespace app
