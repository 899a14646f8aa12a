// Files: PNG and JPEG in, PNG out, and texts.
#pragma once

#include "operations/image.h"

#include <string>
#include <string_view>

namespace app {

// Reads a PNG or JPEG file, whichever it holds: gray pictures as one channel, all others as red, green and blue. 16-bit
// samples are cut to 8 bits, transparent pixels laid on white. Throws Error.
Picture readPicture(const std::string& path);

// Reads a whole file. Throws Error.
std::string readFile(const std::string& path);

// Writes a file under another name beside it first, so that either the whole file appears or none. Throws Error.
void writeFile(const std::string& path, std::string_view bytes);
void writePng(const std::string& path, const Picture& picture);

} // namespace app
