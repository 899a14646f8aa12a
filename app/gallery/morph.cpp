// Morphology in the gallery.
#include "gallery/chapters.h"

namespace app {

Chapter morphChapter(const Source&) { return {"morphology", "Morphology", {}}; }

} // namespace app
