// zelcv gallery: everything that can be shown for one picture, on one page.
#include "gallery.h"

#include "commands.h"

#include <cstdio>
#include <filesystem>
#include <set>
#include <unistd.h>

namespace app {

namespace fs = std::filesystem;

namespace {

constexpr int kRuns = 5;
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

Drawn drawFigure(const Figure& figure, const std::string& id, const fs::path& folder,
                 std::map<std::string, FunctionTimes>& times)
{
    Drawn drawn;
    std::vector<double> totals;
    for (int run = 0; run < kRuns; ++run) {
        Calls calls;
        const Content content = figure.make(calls);
        if (run == 0) {
            drawn.table = content.table;
            drawn.plot = content.plot;
            if (content.picture) {
                drawn.size = content.picture->size();
                drawn.file = id + ".png";
                writePng((folder / drawn.file).string(), *content.picture);
            }
        }
        totals.push_back(0);
        const auto area = [](ZeliSize size) { return std::int64_t(size.width) * size.height; };
        for (const Call& call : calls.list()) {
            if (!isSizeFunction(call.name)) {
                totals.back() += call.nanoseconds;
                if (area(call.size) > area(drawn.worked)) drawn.worked = call.size;
                if (std::find(drawn.functions.begin(), drawn.functions.end(), call.name) == drawn.functions.end())
                    drawn.functions.push_back(call.name);
            }
            FunctionTimes& entry = times[call.name];
            if (entry.figure.empty() || area(call.size) > area(entry.size)) entry = {call.size, {}, id};
            if (area(call.size) == area(entry.size)) entry.nanoseconds.push_back(call.nanoseconds);
        }
        if (calls.list().empty()) break;
    }
    drawn.nanoseconds = median(totals);
    return drawn;
}

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
    const std::vector<Section> sections = planFigures(source);
    GalleryPage page{
        places.size() == 2 ? fs::path(places.front()).filename().string() : "A bay in the evening", origin, sections, {}, {}};
    std::size_t total = 0;
    for (const Section& section : sections) total += section.figures.size();
    {
        Progress progress(total);
        for (const Section& section : sections) {
            page.drawn.emplace_back();
            for (std::size_t i = 0; i < section.figures.size(); ++i) {
                progress.next(section.figures[i].title);
                page.drawn.back().push_back(drawFigure(section.figures[i], figureId(section, i), folder, page.functions));
            }
        }
    }
    writeFile((folder / "index.html").string(), galleryHtml(page));
    std::printf("The page is at %s (%zu figures).\n", (folder / "index.html").string().c_str(), total);
}

} // namespace

double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::string figureId(const Section& section, std::size_t index)
{
    const std::string number = std::to_string(index + 1);
    return section.id + (number.size() < 2 ? "-0" : "-") + number;
}

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
