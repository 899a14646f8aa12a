// zelcv morph: dilation, erosion and what is built of them, under a mask of any shape.
#include "commands/commands.h"
#include "operations/morph.h"

#include <sstream>

namespace app {

namespace {

constexpr int kLargestMask = 255;

struct Options {
    InputAndOutput files;
    std::string operation = "open", shape = "ellipse";
    int size = 5;
    CLI::Option* sizeGiven = nullptr;
};

// Rows of characters: # and 1 are set, . and 0 are not.
MorphMask parseMask(const std::string& path, const std::string& text)
{
    MorphMask mask{{0, 0}, {}};
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() && mask.size.height > 0) break;
        const std::string where = path + ": line " + std::to_string(++mask.size.height) + ": ";
        const std::size_t wrong = line.find_first_not_of("#1.0");
        if (line.empty() || wrong != line.npos)
            throw Error(where + "neither a picture nor a row of a mask, which consists of # or 1 and . or 0");
        if (mask.size.height > 1 && int(line.size()) != mask.size.width)
            throw Error(where + "has " + std::to_string(line.size()) + " characters, not " + std::to_string(mask.size.width));
        mask.size.width = int(line.size());
        for (const char c : line) mask.bytes.push_back(c == '#' || c == '1' ? 255 : 0);
    }
    if (mask.size.height == 0) throw Error(path + ": the file is empty");
    return mask;
}

// A picture, of which what is not black is set, or a text.
MorphMask readMask(const std::string& path)
{
    const std::string content = readFile(path);
    const bool isPicture = content.starts_with("\x89PNG") || content.starts_with("\xff\xd8");
    MorphMask mask{{0, 0}, {}};
    if (isPicture) {
        const Picture picture = toGray(readPicture(path));
        mask.size = picture.size();
        for (int y = 0; y < mask.size.height; ++y)
            mask.bytes.insert(mask.bytes.end(), picture.row(y), picture.row(y) + mask.size.width);
    } else {
        mask = parseMask(path, content);
    }
    if (std::max(mask.size.width, mask.size.height) > kLargestMask)
        throw Error("the mask " + path + " is " + sizeText(mask.size) + ": at most " + std::to_string(kLargestMask) + " x " +
                    std::to_string(kLargestMask) + " is possible");
    return mask;
}

template <std::size_t n>
int indexOf(const char* const (&names)[n], const std::string& name)
{
    return int(std::find(names, names + n, name) - names);
}

void run(const Options& options)
{
    const int operation = indexOf(kMorphOperations, options.operation), shape = indexOf(kMorphShapes, options.shape);
    const bool isFile = shape == int(std::size(kMorphShapes));
    if (isFile && !options.sizeGiven->empty()) throw UsageError("--size is for the shapes that the program knows");
    const MorphMask mask = isFile ? readMask(options.shape) : makeMask(MorphShape(shape), options.size);
    Calls calls;
    writePng(options.files.out, morph(calls, MorphOperation(operation), options.files.read(), mask));
}

} // namespace

void addMorphCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "morph", "Dilation, erosion, opening, closing, top hat, black hat or gradient under a mask, channel by channel");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command
        ->add_option("--op", options->operation, "dilate, erode, open, close, tophat, blackhat or gradient")
        ->check(CLI::IsMember(std::vector<std::string>(std::begin(kMorphOperations), std::end(kMorphOperations))))
        ->type_name("NAME")
        ->capture_default_str();
    command
        ->add_option("--shape", options->shape,
                     "The mask: rect, ellipse, cross, diamond, or a file: a picture, in which what is not black belongs to the "
                     "mask, or rows of # and .")
        ->type_name("SHAPE")
        ->capture_default_str();
    options->sizeGiven = command->add_option("--size", options->size, "Width and height of the mask, without a file")
                             ->check(CLI::Range(1, kLargestMask))
                             ->capture_default_str();
    command->callback([=] { run(*options); });
}

} // namespace app
