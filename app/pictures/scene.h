#pragma once

#include "operations/image.h"

namespace app {

// The program's own picture, 640 x 480 in colour, the same on every call: a bay with a lighthouse, for when no picture is
// given.
Picture drawScene();

} // namespace app
