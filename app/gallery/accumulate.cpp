// Sequences in the gallery: what the accumulators make of many frames.
#include "gallery/chapters.h"
#include "pictures/display.h"

namespace app {

namespace {

constexpr int kFrames = 24;
constexpr double kNoise = 20;
constexpr ZeliSize kSize = {320, 240};

// A picture in bad light, frame by frame. A lamp goes on and off, two frames each.
class Sequence {
public:
    explicit Sequence(const Picture& scene) : mask_(ellipse(scene.size()))
    {
        const Picture dark = mapElements<Zel8u>(scene, [](Zel8u value) { return toByte(25 + 0.5 * value); });
        const Picture bright = lit(dark, scene);
        for (int i = 0; i < kFrames; ++i) frames_.push_back(noisy(isLit(i) ? bright : dark, kNoise, unsigned(i)));
    }
    static bool isLit(int frame) { return frame / 2 % 2 == 1; }
    const Picture& frame(int i) const { return frames_[std::size_t(i)]; }
    const Picture& mask() const { return mask_; }
    ZeliSize size() const { return mask_.size(); }

private:
    static Picture lit(const Picture& dark, const Picture& scene)
    {
        const ZeliSize size = dark.size();
        const double radius = 0.4 * std::min(size.width, size.height);
        Picture dst(size, 1);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                const double distance = std::hypot(x - 0.62 * size.width, y - 0.5 * size.height);
                const double light = std::clamp((radius - distance) / 20, 0.0, 1.0);
                dst.row(y)[x] = toByte(dark.row(y)[x] + 0.3 * light * scene.row(y)[x]);
            }
        return dst;
    }

    Picture mask_;
    std::vector<Picture> frames_;
};

// Whether a function takes the arguments of a tuple.
template <class F, class Arguments>
constexpr bool kTakes = false;
template <class F, class... Arguments>
constexpr bool kTakes<F, std::tuple<Arguments...>> = std::is_invocable_v<F, Arguments...>;

// Calls a function with frames, the mask where it takes one, the accumulator and what else there is.
template <class F, class... Frames, class... More>
void accumulate(Calls& calls, Function<F> function, const Sequence& sequence, const std::tuple<Frames...>& frames,
                Image<Zel32f>& accumulator, More... more)
{
    const auto arguments = [&](const auto&... images) {
        return std::tuple_cat(asArguments(images)..., asArguments(accumulator), std::tuple(accumulator.size(), more...));
    };
    const auto withMask = std::apply(arguments, std::tuple_cat(frames, std::tuple(sequence.mask().view())));
    const auto call = [&](auto... all) { calls(function, all...); };
    if constexpr (kTakes<F, std::remove_const_t<decltype(withMask)>>)
        std::apply(call, withMask);
    else
        std::apply(call, std::apply(arguments, frames));
}

// The level of an accumulator's element as a gray level, for frames in the range of T.
template <class T>
double grayLevel(double value)
{
    return (value - kBlack<T>) / kUnit<T>;
}

template <class F>
Picture meanOf(Calls& calls, Function<F> function, const Sequence& sequence)
{
    using T = SourceOf<Function<F>>;
    Image<Zel32f> sum(sequence.size(), 1);
    for (int i = 0; i < kFrames; ++i) {
        const Image<T> frame = inRangeOf<T>(sequence.frame(i));
        accumulate(calls, function, sequence, std::tuple(frame.view()), sum);
    }
    return mapElements<Zel8u>(sum, [](Zel32f value) { return toByte(grayLevel<T>(value / kFrames)); });
}

template <class F>
Picture deviationOf(Calls& calls, Function<F> function, const Sequence& sequence)
{
    using T = SourceOf<Function<F>>;
    Calls unmeasured;
    Image<Zel32f> sum(sequence.size(), 1), squares(sequence.size(), 1);
    for (int i = 0; i < kFrames; ++i) {
        const Image<T> frame = inRangeOf<T>(sequence.frame(i));
        accumulate(unmeasured, ZELCV_FUNCTION(zeliAdd_8u32f_C1IR), sequence, std::tuple(sequence.frame(i).view()), sum);
        accumulate(calls, function, sequence, std::tuple(frame.view()), squares);
    }
    Picture dst(sequence.size(), 1);
    for (int y = 0; y < dst.size().height; ++y)
        for (int x = 0; x < dst.size().width; ++x) {
            const double average = kBlack<T> + kUnit<T> * sum.row(y)[x] / kFrames;
            const double variance = squares.row(y)[x] / kFrames - average * average;
            dst.row(y)[x] = toByte(4 * std::sqrt(std::max(0.0, variance)) / kUnit<T>);
        }
    return dst;
}

// Products with the lamp's rhythm, which is 1 when it is on, less products with the opposite: the lamp's light alone.
template <class F>
Picture lampAlone(Calls& calls, Function<F> function, const Sequence& sequence)
{
    using T = SourceOf<Function<F>>;
    Image<Zel32f> on(sequence.size(), 1), off(sequence.size(), 1);
    for (int i = 0; i < kFrames; ++i) {
        const Image<T> frame = inRangeOf<T>(sequence.frame(i));
        for (const bool rhythm : {true, false}) {
            const Image<T> factor = convert<T>(filled(sequence.size(), Sequence::isLit(i) == rhythm ? 1 : 0));
            accumulate(calls, function, sequence, std::tuple(frame.view(), factor.view()), rhythm ? on : off);
        }
    }
    Picture dst(sequence.size(), 1);
    for (int y = 0; y < dst.size().height; ++y)
        for (int x = 0; x < dst.size().width; ++x)
            dst.row(y)[x] = toByte(3 * (on.row(y)[x] - off.row(y)[x]) / (kFrames / 2) / kUnit<T>);
    return dst;
}

template <class F>
Picture runningMean(Calls& calls, Function<F> function, const Sequence& sequence)
{
    using T = SourceOf<Function<F>>;
    Image<Zel32f> average = mapElements<Zel32f>(inRangeOf<T>(sequence.frame(0)), [](T value) { return Zel32f(value); });
    for (int i = 1; i < kFrames; ++i) {
        const Image<T> frame = inRangeOf<T>(sequence.frame(i));
        accumulate(calls, function, sequence, std::tuple(frame.view()), average, 0.1f);
    }
    return mapElements<Zel8u>(average, [](Zel32f value) { return toByte(grayLevel<T>(value)); });
}

} // namespace

Section sequencesSection(const Source& source)
{
    Section section{"sequences",
                    "Sums of a sequence",
                    "24 frames of the middle of the picture in bad light, with noise, while a lamp goes on and off. The "
                    "accumulators collect them in single precision. The strips of a figure are the types of the frames: 8u, "
                    "8s, 16u and 32f from left to right. A mask leaves out all but an ellipse.",
                    {}};
    const auto sequence = std::make_shared<const Sequence>(cut(source.gray, middle(source.gray.size(), kSize)));
    section.add(
        "Two of the frames", "The lamp is off in the left one and on in the right one.",
        [=](Calls&) {
            return sideBySide({&sequence->frame(0), &sequence->frame(2)});
        },
        Width::two);

    const auto add = [&](const char* title, const char* sentence, auto draw, auto... functions) {
        section.add(title, sentence, [=](Calls& calls) {
            return inStrips(std::tuple(functions...), [&](auto function) { return draw(calls, function, *sequence); });
        });
    };
    const auto mean = [](auto&... all) { return meanOf(all...); };
    add("Mean", "Of the noise little is left. In 32f this exists with a mask only.", mean, ZELCV_FUNCTION(zeliAdd_8u32f_C1IR),
        ZELCV_FUNCTION(zeliAdd_8s32f_C1IR), ZELCV_FUNCTION(zeliAdd_16u32f_C1IR));
    add("Mean, masked", "Outside of the mask the sums stay 0, which is middle gray for 8s and black for the others.", mean,
        ZELCV_FUNCTION(zeliAdd_8u32f_C1IMR), ZELCV_FUNCTION(zeliAdd_8s32f_C1IMR), ZELCV_FUNCTION(zeliAdd_16u32f_C1IMR),
        ZELCV_FUNCTION(zeliAdd_32f_C1IMR));

    const auto deviation = [](auto&... all) { return deviationOf(all...); };
    add("Standard deviation", "From the sums of squares: most where the lamp comes and goes. Shown four times as bright.",
        deviation, ZELCV_FUNCTION(zeliAddSquare_8u32f_C1IR), ZELCV_FUNCTION(zeliAddSquare_8s32f_C1IR),
        ZELCV_FUNCTION(zeliAddSquare_16u32f_C1IR), ZELCV_FUNCTION(zeliAddSquare_32f_C1IR));
    add("Standard deviation, masked", "The same inside of the mask.", deviation, ZELCV_FUNCTION(zeliAddSquare_8u32f_C1IMR),
        ZELCV_FUNCTION(zeliAddSquare_8s32f_C1IMR), ZELCV_FUNCTION(zeliAddSquare_16u32f_C1IMR),
        ZELCV_FUNCTION(zeliAddSquare_32f_C1IMR));

    const auto lamp = [](auto&... all) { return lampAlone(all...); };
    add("What the lamp alone shows",
        "Products with the lamp's rhythm, less products with the opposite: only what changes with it is left. Shown three "
        "times as bright.",
        lamp, ZELCV_FUNCTION(zeliAddProduct_8u32f_C1IR), ZELCV_FUNCTION(zeliAddProduct_8s32f_C1IR),
        ZELCV_FUNCTION(zeliAddProduct_16u32f_C1IR), ZELCV_FUNCTION(zeliAddProduct_32f_C1IR));
    add("What the lamp alone shows, masked", "The same inside of the mask.", lamp, ZELCV_FUNCTION(zeliAddProduct_8u32f_C1IMR),
        ZELCV_FUNCTION(zeliAddProduct_8s32f_C1IMR), ZELCV_FUNCTION(zeliAddProduct_16u32f_C1IMR),
        ZELCV_FUNCTION(zeliAddProduct_32f_C1IMR));

    const auto running = [](auto&... all) { return runningMean(all...); };
    add("Running mean", "Each frame has a weight of 0.1, all before it have the rest.", running,
        ZELCV_FUNCTION(zeliAddWeighted_8u32f_C1IR), ZELCV_FUNCTION(zeliAddWeighted_8s32f_C1IR),
        ZELCV_FUNCTION(zeliAddWeighted_16u32f_C1IR), ZELCV_FUNCTION(zeliAddWeighted_32f_C1IR));
    add("Running mean, masked", "Outside of the mask the first frame stays.", running,
        ZELCV_FUNCTION(zeliAddWeighted_8u32f_C1IMR), ZELCV_FUNCTION(zeliAddWeighted_8s32f_C1IMR),
        ZELCV_FUNCTION(zeliAddWeighted_16u32f_C1IMR), ZELCV_FUNCTION(zeliAddWeighted_32f_C1IMR));

    section.add("Two frames in one", "The mean of the two frames above, into a third image.", [=](Calls& calls) {
        const Image<Zel32f> bright = convert<Zel32f>(sequence->frame(2)), dark = convert<Zel32f>(sequence->frame(0));
        Image<Zel32f> dst(sequence->size(), 1);
        callWith(calls, ZELCV_FUNCTION(zeliAddWeighted_32f_C1R), bright, dark, dst, dst.size(), 0.5f);
        return brightness(dst);
    });
    return section;
}

} // namespace app
