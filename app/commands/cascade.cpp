// zelcv cascade: windows of all sizes that pass the stages of a cascade.
#include "commands/cascade_file.h"
#include "commands/commands.h"
#include "operations/integral.h"

#include <cstdio>

namespace app {

namespace {

constexpr std::size_t kMostHits = 100000;
constexpr Paint kFrame = {60, 255, 80};

struct Options {
    InputAndOutput files;
    std::string stages;
    double scale = 1.2;
    int hits = 3;
};

struct Box {
    double x, y, width, height;
};

// Similar boxes taken together: their mean, and how many they are.
struct Group {
    Box box;
    int hits;

    void add(const Box& other)
    {
        const auto average = [&](double& mean, double value) { mean += (value - mean) / (hits + 1); };
        average(box.x, other.x);
        average(box.y, other.y);
        average(box.width, other.width);
        average(box.height, other.height);
        ++hits;
    }
};

// A stage in the library's form.
class Classifier {
public:
    Classifier(Calls& calls, const Stage& stage) : threshold_(stage.threshold)
    {
        ZeliHaarClassifier_32f* state = nullptr;
        calls(ZELCV_FUNCTION(zeliHaarClassifierInitAlloc_32f), &state, stage.rects.data(), stage.weights.data(),
              stage.thresholds.data(), stage.values1.data(), stage.values2.data(), stage.rectCounts.data(),
              int(stage.rectCounts.size()));
        state_.reset(state);
    }
    // Clears the mask where a window fails, and returns how many are left.
    int apply(Calls& calls, const IntegralPair& integral, const Image<Zel32f>& deviation, Picture& mask) const
    {
        int left = 0;
        callWith(calls, ZELCV_FUNCTION(zeliApplyHaarClassifier_32s32f_C1R), integral.sums, deviation, mask, mask.size(),
                 &left, threshold_, static_cast<const ZeliHaarClassifier_32f*>(state_.get()));
        return left;
    }

private:
    struct Free {
        void operator()(ZeliHaarClassifier_32f* state) const { zeliHaarClassifierFree_32f(state); }
    };
    Zel32f threshold_;
    std::unique_ptr<ZeliHaarClassifier_32f, Free> state_;
};

// The windows that pass all stages, in pixels of the picture. The picture is made smaller from scale to scale and the cascade
// stays as it is: its rectangles have whole pixels, and keep their proportions only so.
std::vector<Box> search(const Picture& gray, const Cascade& cascade, double factor)
{
    Calls calls;
    std::vector<Classifier> stages;
    for (const Stage& stage : cascade.stages) stages.emplace_back(calls, stage);

    std::vector<Box> hits;
    for (double scale = 1;; scale *= factor) {
        const ZeliSize size{int(gray.size().width / scale), int(gray.size().height / scale)};
        if (size.width < cascade.window.width || size.height < cascade.window.height) return hits;
        const IntegralPair integral = integralPair(calls, resized(gray, size));
        const Image<Zel32f> deviation = windowDeviation(calls, integral, cascade.window);
        Picture mask = mapElements<Zel8u>(deviation, [&](Zel32f value) { return value >= cascade.contrast ? 255 : 0; });
        for (const Classifier& stage : stages)
            if (stage.apply(calls, integral, deviation, mask) == 0) break;

        const double across = double(gray.size().width) / size.width, down = double(gray.size().height) / size.height;
        for (int y = 0; y < mask.size().height; ++y)
            for (int x = 0; x < mask.size().width; ++x)
                if (mask.row(y)[x] != 0)
                    hits.push_back({x * across, y * down, cascade.window.width * across, cascade.window.height * down});
        if (hits.size() > kMostHits)
            throw Error("more than " + std::to_string(kMostHits) + " windows pass the cascade: its thresholds are too low");
    }
}

double commonArea(const Box& a, const Box& b)
{
    const double width = std::min(a.x + a.width, b.x + b.width) - std::max(a.x, b.x);
    const double height = std::min(a.y + a.height, b.y + b.height) - std::max(a.y, b.y);
    return width > 0 && height > 0 ? width * height : 0;
}

// Boxes that have half of their area in common become one; of groups that lie on each other the one with most hits stays.
std::vector<Group> merge(const std::vector<Box>& hits, int fewest)
{
    std::vector<Group> groups;
    for (const Box& hit : hits) {
        const auto similar = std::find_if(groups.begin(), groups.end(), [&](const Group& group) {
            const double common = commonArea(group.box, hit);
            return 2 * common > group.box.width * group.box.height + hit.width * hit.height - common;
        });
        if (similar == groups.end())
            groups.push_back({hit, 1});
        else
            similar->add(hit);
    }
    std::stable_sort(groups.begin(), groups.end(), [](const Group& a, const Group& b) { return a.hits > b.hits; });
    std::vector<Group> kept;
    for (const Group& group : groups) {
        const auto hides = [&](const Group& other) {
            const double smaller = std::min(group.box.width * group.box.height, other.box.width * other.box.height);
            return 2 * commonArea(group.box, other.box) > smaller;
        };
        if (group.hits >= fewest && std::none_of(kept.begin(), kept.end(), hides)) kept.push_back(group);
    }
    return kept;
}

void run(const Options& options)
{
    const Cascade cascade = readCascade(options.stages);
    const Picture picture = options.files.read();
    const std::vector<Group> found = merge(search(toGray(picture), cascade, options.scale), options.hits);
    Picture marked = toColour(picture);
    for (const auto& [box, hits] : found) {
        const auto pixel = [](double place) { return int(std::lround(place)); };
        const int x = pixel(box.x), y = pixel(box.y);
        drawFrame(marked, {x, y, pixel(box.x + box.width) - x, pixel(box.y + box.height) - y}, kFrame);
    }
    writePng(options.files.out, marked);
    std::printf("%6s %6s %6s %6s %6s\n", "x", "y", "width", "height", "hits");
    for (const auto& [box, hits] : found)
        std::printf("%6.0f %6.0f %6.0f %6.0f %6d\n", box.x, box.y, box.width, box.height, hits);
}

} // namespace

void addCascadeCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "cascade", "Find what passes a cascade of classifiers at any size, and draw frames around it. The places found are "
                   "written to standard output");
    const auto options = std::make_shared<Options>();
    options->files.addTo(*command);
    command->add_option("--stages", options->stages, "The cascade: a text file as docs/cascade-format.md describes it")
        ->required()
        ->type_name("FILE");
    command
        ->add_option("--scale", options->scale,
                     "From one size to the next the picture shrinks by this factor; the smallest things found are as large "
                     "as the cascade's window")
        ->check(within(1.01, 10))
        ->capture_default_str();
    command->add_option("--hits", options->hits, "So many similar windows must pass for something to be found")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    command->callback([=] { run(*options); });
}

} // namespace app
