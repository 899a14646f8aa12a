// Morphology in the gallery.
#include "gallery/chapters.h"

namespace app {

Chapter morphChapter(const Source& source)
{
    return {"morphology", "Morphology", {graySection(source), reconstructSection(source)}};
}

} // namespace app
