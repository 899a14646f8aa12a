// zelcv gallery: everything that can be shown for one picture, on one page.
#include "commands/commands.h"
#include "commands/library.h"
#include "gallery/chapters.h"
#include "gallery/page.h"

#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace app {

namespace fs = std::filesystem;

namespace {

constexpr int kLongestSide = 1600;

// One line on the terminal that tells how far things are. Silent elsewhere.
class Progress {
public:
    explicit Progress(std::size_t total) : total_(total), visible_(isatty(STDERR_FILENO)) {}
    ~Progress()
    {
        if (visible_) std::fputs("\r\x1b[K", stderr);
    }
    void next(const std::string& what)
    {
        if (visible_) std::fprintf(stderr, "\r\x1b[K%3zu of %zu  %s", ++count_, total_, what.c_str());
    }

private:
    std::size_t total_, count_ = 0;
    bool visible_;
};

// Large pictures are made smaller first: the page is to be looked at.
std::string makeFit(Picture& picture)
{
    const ZeliSize size = picture.size();
    const int factor = (std::max(size.width, size.height) + kLongestSide - 1) / kLongestSide;
    std::string origin = sizeText(size) + " pixels, " + (picture.channels() == 3 ? "colour" : "gray");
    if (factor > 1) {
        picture = shrunk(picture, factor);
        origin += ", shown and filtered at " + sizeText(picture.size());
    }
    return origin + ".";
}

struct Options {
    std::vector<std::string> places; // a picture, or none, and a folder
    int threads = 1;
};

void run(const Options& options)
{
    const std::vector<std::string>& places = options.places;
    if (const ZelStatus status = zelSetNumThreads(options.threads))
        throw Error("--threads " + std::to_string(options.threads) + ": " + zelGetStatusString(status));
    const fs::path folder = places.back();
    Picture picture = places.size() == 2 ? readPicture(places.front()) : drawScene();
    const std::string origin = makeFit(picture);
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (!fs::is_directory(folder))
        throw Error(folder.string() + ": " + (failure ? failure.message() : "this is not a folder"));

    const Source source{toColour(picture), toGray(picture)};
    const std::vector<Chapter> chapters = planChapters(source);
    const std::string heading = places.size() == 2 ? fs::path(places.front()).filename().string() : "A bay in the evening";
    GalleryPage page{heading, origin, libraryVariant(), chapters, {}, {}};
    std::size_t total = 0;
    for (const Chapter& chapter : chapters)
        for (const Section& section : chapter.sections) total += section.figures.size();
    {
        Progress progress(total);
        for (const Chapter& chapter : chapters)
            for (const Section& section : chapter.sections)
                for (std::size_t i = 0; i < section.figures.size(); ++i) {
                    progress.next(section.figures[i].title);
                    const std::string id = figureId(section, i);
                    page.figures[id] = drawFigure(section.figures[i], id, folder, page.functions);
                }
    }
    writeFile((folder / "index.html").string(), galleryHtml(page));
    std::printf("The page is at %s (%zu figures).\n", (folder / "index.html").string().c_str(), total);
}

} // namespace

void addGalleryCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "gallery",
        "Show everything that the library can do with one picture on one HTML page, with the functions used and their times");
    const auto options = std::make_shared<Options>();
    command
        ->add_option("PLACES", options->places,
                     "A PNG or JPEG file, then the folder to write index.html and the pictures to. With a folder alone the "
                     "program draws a scene of its own")
        ->required()
        ->expected(1, 2)
        ->type_name("[PICTURE] DIR");
    command->footer("zelcv gallery photo.jpg page    shows photo.jpg at page/index.html\nzelcv gallery page              "
                    "shows the program's own scene there");
    command->add_option("--threads", options->threads, "Threads that the library may use")->capture_default_str();
    command->callback([=] { run(*options); });
}

} // namespace app
