// zelcv average: the mean and the deviation of a sequence of pictures.
#include "commands/commands.h"
#include "operations/calls.h"

#include <cstdio>
#include <optional>

namespace app {

namespace {

constexpr int kOwnFrames = 24;
constexpr double kOwnNoise = 20;

struct Options {
    std::vector<std::string> pictures;
    std::string out, deviation;
    float weight = 0;
    CLI::Option* weightGiven = nullptr;
    MaskOption mask;
};

// The moments of a sequence, frame by frame. Pixels outside of the mask stay 0.
class Moments {
public:
    Moments(ZeliSize size, Picture mask) : mask_(std::move(mask)), sum_(size, 1), squares_(size, 1) {}

    void add(const Picture& frame)
    {
        callWith(calls_, ZELCV_FUNCTION(zeliAdd_8u32f_C1IMR), frame, mask_, sum_, sum_.size());
        callWith(calls_, ZELCV_FUNCTION(zeliAddSquare_8u32f_C1IMR), frame, mask_, squares_, sum_.size());
        weight_ += 1;
    }
    void addWeighted(const Picture& frame, float alpha)
    {
        // The first frame is where the running mean begins.
        if (weight_ == 0) return add(frame);
        Image<Zel32f> square(frame.size(), 1);
        callWith(calls_, ZELCV_FUNCTION(zeliAddSquare_8u32f_C1IR), frame, square, frame.size());
        callWith(calls_, ZELCV_FUNCTION(zeliAddWeighted_8u32f_C1IMR), frame, mask_, sum_, sum_.size(), alpha);
        callWith(calls_, ZELCV_FUNCTION(zeliAddWeighted_32f_C1IMR), square, mask_, squares_, sum_.size(), alpha);
    }

    ZeliSize size() const { return sum_.size(); }
    Picture mean() const { return brightness(sum_, 1 / weight_); }
    Image<Zel32f> deviation() const
    {
        Image<Zel32f> dst(sum_.size(), 1);
        for (int y = 0; y < dst.size().height; ++y)
            for (int x = 0; x < dst.size().width; ++x) {
                const double mean = sum_.row(y)[x] / weight_, variance = squares_.row(y)[x] / weight_ - mean * mean;
                dst.row(y)[x] = Zel32f(std::sqrt(std::max(0.0, variance)));
            }
        return dst;
    }

private:
    Calls calls_;
    Picture mask_;
    Image<Zel32f> sum_, squares_;
    double weight_ = 0;
};

void run(const Options& options)
{
    const bool own = options.pictures.empty();
    const Picture scene = own ? toGray(drawScene()) : Picture({1, 1}, 1);
    const std::size_t count = own ? kOwnFrames : options.pictures.size();
    const auto frame = [&](std::size_t i) {
        return own ? noisy(scene, kOwnNoise, unsigned(i)) : toGray(readPicture(options.pictures[i]));
    };

    std::optional<Moments> moments;
    for (std::size_t i = 0; i < count; ++i) {
        const Picture next = frame(i);
        if (!moments) moments.emplace(next.size(), options.mask.read(next.size()));
        if (!sameSize(next.size(), moments->size()))
            throw Error("the pictures differ in size: " + options.pictures[0] + " is " + sizeText(moments->size()) + ", " +
                        options.pictures[i] + " is " + sizeText(next.size()));
        if (options.weightGiven->empty())
            moments->add(next);
        else
            moments->addWeighted(next, options.weight);
    }
    if (options.deviation.empty()) return writePng(options.out, moments->mean());
    const auto [picture, white] = scaledToWhite(moments->deviation());
    writePng(options.deviation, picture);
    writePng(options.out, moments->mean());
    std::printf("%s: white stands for a deviation of %.4g\n", options.deviation.c_str(), white);
}

} // namespace

void addAverageCommand(CLI::App& program)
{
    CLI::App* command = program.add_subcommand(
        "average", "Mean of a sequence of pictures of one size, in gray; black outside of the mask. Without pictures: noisy "
                   "versions of the program's own scene");
    const auto options = std::make_shared<Options>();
    command->add_option("PICTURES", options->pictures, "PNG or JPEG files")->type_name("PICTURE...");
    command->add_option("-o,--output", options->out, "The PNG file to write the mean to")->required()->type_name("FILE");
    command
        ->add_option("--deviation", options->deviation,
                     "Write the standard deviation of each pixel to this PNG file, scaled so that large ones are white")
        ->type_name("FILE");
    options->weightGiven =
        command
            ->add_option("--weight", options->weight,
                         "A running mean: each picture after the first takes this share of it, and what came before the rest")
            ->check(within(0, 1))
            ->type_name("ALPHA");
    options->mask.addTo(*command);
    command->callback([=] { run(*options); });
}

} // namespace app
