// Haar classifiers in the gallery: stages that find contours in some directions.
#include "gallery/chapters.h"
#include "operations/integral.h"
#include "pictures/display.h"

namespace app {

namespace {

// All rectangles lie in a window of this side.
constexpr int kSide = 12;
constexpr int kLeastContrast = 10;

// Two rectangles of which one is to be brighter than the other, of 32 pixels each, upright or tilted.
struct Step {
    ZeliRect bright, dark;
};
const Step kAcross = {{2, 2, 4, 8}, {6, 2, 4, 8}};
const Step kAcrossFalling = {{4, 0, 8, 2}, {2, 2, 8, 2}};
const Step kAcrossRising = {{8, 0, 2, 8}, {10, 2, 2, 8}};
const Step kToLowerRight = {{4, 0, 4, 4}, {8, 4, 4, 4}};
constexpr int kPixels = 32;

// The functions that make a stage with numbers of a type.
template <class T>
struct Kind;
template <>
struct Kind<Zel32f> {
    using State = ZeliHaarClassifier_32f;
    static constexpr Function upright = ZELCV_FUNCTION(zeliHaarClassifierInitAlloc_32f);
    static constexpr Function tilted = ZELCV_FUNCTION(zeliTiltedHaarClassifierInitAlloc_32f);
    static constexpr Function tilt = ZELCV_FUNCTION(zeliTiltHaarFeatures_32f);
    static constexpr Function size = ZELCV_FUNCTION(zeliGetHaarClassifierSize_32f);
    static constexpr Function release = ZELCV_FUNCTION(zeliHaarClassifierFree_32f);
};
template <>
struct Kind<Zel32s> {
    using State = ZeliHaarClassifier_32s;
    static constexpr Function upright = ZELCV_FUNCTION(zeliHaarClassifierInitAlloc_32s);
    static constexpr Function tilted = ZELCV_FUNCTION(zeliTiltedHaarClassifierInitAlloc_32s);
    static constexpr Function tilt = ZELCV_FUNCTION(zeliTiltHaarFeatures_32s);
    static constexpr Function size = ZELCV_FUNCTION(zeliGetHaarClassifierSize_32s);
    static constexpr Function release = ZELCV_FUNCTION(zeliHaarClassifierFree_32s);
};

enum class Making { upright, tilted, lastTilted };

// A pixel passes when one of the steps, or its opposite, is there.
struct Design {
    std::vector<Step> steps;
    Making making;
};

// A stage of two classifiers for each step.
template <class T>
class Stage {
public:
    Stage(Calls& calls, const Design& design) : calls_(calls)
    {
        std::vector<ZeliRect> rects;
        std::vector<T> weights;
        for (const Step& step : design.steps)
            for (const T sign : {T(1), T(-1)}) {
                rects.insert(rects.end(), {step.bright, step.dark});
                weights.insert(weights.end(), {sign, T(-sign)});
            }
        const std::size_t count = 2 * design.steps.size();
        // The means differ by the deviation when the sums do by so many times that.
        const std::vector<T> thresholds(count, T(kPixels)), below(count, 0), otherwise(count, 1);
        const std::vector<Zel32s> rectCounts(count, 2);
        calls(design.making == Making::tilted ? Kind<T>::tilted : Kind<T>::upright, &state_, rects.data(), weights.data(),
              thresholds.data(), below.data(), otherwise.data(), rectCounts.data(), int(count));
        if (design.making != Making::lastTilted) return;
        std::vector<Zel8u> chosen(count, 0);
        chosen[count - 1] = chosen[count - 2] = 1;
        calls(Kind<T>::tilt, chosen.data(), 1, state_);
    }
    ~Stage() { calls_(Kind<T>::release, state_); }
    Stage(const Stage&) = delete;
    const typename Kind<T>::State* state() const { return state_; }

private:
    Calls& calls_;
    typename Kind<T>::State* state_ = nullptr;
};

// What a stage looks at: windows around each pixel and their deviation, in both types.
template <class T>
struct Planes {
    Image<T> upright, tilted, deviation;
};
struct Scene {
    std::tuple<Planes<Zel32f>, Planes<Zel32s>> planes;
    Picture mask; // windows of some contrast
};

Scene lookAt(const Picture& gray)
{
    Calls unmeasured;
    const Picture src = padded(gray, kSide / 2);
    const Image<Zel32f> deviation = windowDeviation(unmeasured, integralPair(unmeasured, src), {kSide, kSide});
    const auto planes = [&]<class T>(Function<ZelStatus(const Zel8u*, int, T*, int, ZeliSize, T)> upright, auto tilted) {
        return Planes<T>{
            sums(unmeasured, upright, src, Form::upright), sums(unmeasured, tilted, src, Form::tilted),
            mapElements<T>(deviation, [](Zel32f value) { return std::is_integral_v<T> ? T(std::lround(value)) : T(value); })};
    };
    const auto contrast = mapElements<Zel8u>(deviation, [](Zel32f value) { return value < kLeastContrast ? 0 : 255; });
    return {{planes(ZELCV_FUNCTION(zeliIntegral_8u32f_C1R), ZELCV_FUNCTION(zeliTiltedIntegral_8u32f_C1R)),
             planes(ZELCV_FUNCTION(zeliIntegral_8u32s_C1R), ZELCV_FUNCTION(zeliTiltedIntegral_8u32s_C1R))},
            cut(contrast, {0, 0, gray.size().width, gray.size().height})};
}

struct Passed {
    Picture mask;
    int count = 0;
    ZeliSize reach = {0, 0}; // how far the stage reads
};

// Runs a stage of T on sums of S, with deviations of N.
template <class S, class N, class T, class F, class... Tilted, class... Scale>
Passed run(Calls& calls, Function<F> function, const Scene& scene, const Design& design, const std::tuple<Tilted...>& tilted,
           Scale... scale)
{
    const Stage<T> stage(calls, design);
    Passed passed{copyOf(scene.mask)};
    calls(Kind<T>::size, stage.state(), &passed.reach);
    const auto call = [&](const auto&... tilt) {
        callWith(calls, function, std::get<Planes<S>>(scene.planes).upright, tilt...,
                 std::get<Planes<N>>(scene.planes).deviation, passed.mask, passed.mask.size(), &passed.count, T(1),
                 stage.state(), scale...);
    };
    std::apply(call, tilted);
    return passed;
}

// Functions for upright stages, and those for stages with tilted classifiers, which read the tilted sums too.
template <class S, class N, class T, class State, class... Scale>
Passed
apply(Calls& calls,
      Function<ZelStatus(const S*, int, const N*, int, Zel8u*, int, ZeliSize, Zel32s*, T, const State*, Scale...)> upright,
      const Scene& scene, const Design& design)
{
    return run<S, N, T>(calls, upright, scene, design, std::tuple<>(), Scale(0)...);
}
template <class S, class N, class T, class State, class... Scale>
Passed apply(Calls& calls,
             Function<ZelStatus(const S*, int, const S*, int, const N*, int, Zel8u*, int, ZeliSize, Zel32s*, T, const State*,
                                Scale...)>
                 mixed,
             const Scene& scene, const Design& design)
{
    const auto tilted = std::tuple(std::get<Planes<S>>(scene.planes).tilted.view());
    return run<S, N, T>(calls, mixed, scene, design, tilted, Scale(0)...);
}

// The pixels that passed, in the dimmed picture.
Picture marked(const Picture& colour, const Picture& mask)
{
    constexpr Paint orange = {255, 150, 50};
    Picture dst = brightness(colour, 0.5);
    for (int y = 0; y < mask.size().height; ++y)
        for (int x = 0; x < mask.size().width; ++x)
            if (mask.row(y)[x] != 0) std::copy(orange.begin(), orange.end(), dst.row(y) + 3 * x);
    return dst;
}

} // namespace

Section haarSection(const Source& source)
{
    Section section{"haar",
                    "Haar classifiers",
                    "One stage of a cascade at each pixel. Its classifiers compare the sums in two halves of a window; where "
                    "the means differ by more than the window's deviation, the pixel passes. Three strips: sums in 32f, sums "
                    "in 32s with numbers in 32f, and 32s throughout.",
                    {}};
    const auto scene = std::make_shared<const Scene>(lookAt(source.gray));
    const auto add = [&](const char* title, const char* sentence, const Design& design, auto... functions) {
        section.add(title, sentence, [=, &source](Calls& calls) {
            Table table{{"pixels left", "reads"}, {}};
            Content content(inStrips(std::tuple(functions...), [&](auto function) {
                const Passed passed = apply(calls, function, *scene, design);
                const char* const types[] = {"32f", "32s, 32f", "32s"};
                table.rows.push_back({types[table.rows.size()], {std::to_string(passed.count), sizeText(passed.reach)}});
                return marked(source.colour, passed.mask);
            }));
            content.table = std::move(table);
            return content;
        });
    };
    add("Upright", "Contours that run up and down.", {{kAcross}, Making::upright},
        ZELCV_FUNCTION(zeliApplyHaarClassifier_32f_C1R), ZELCV_FUNCTION(zeliApplyHaarClassifier_32s32f_C1R),
        ZELCV_FUNCTION(zeliApplyHaarClassifier_32s_C1RSfs));
    add("Tilted", "Contours that run at 45 degrees, from a stage of tilted classifiers.",
        {{kAcrossFalling, kAcrossRising}, Making::tilted}, ZELCV_FUNCTION(zeliApplyMixedHaarClassifier_32f_C1R),
        ZELCV_FUNCTION(zeliApplyMixedHaarClassifier_32s32f_C1R), ZELCV_FUNCTION(zeliApplyMixedHaarClassifier_32s_C1RSfs));
    add("Mixed",
        "Steps to a side and to the lower right, from an upright stage of which some classifiers were tilted afterwards.",
        {{kAcross, kToLowerRight}, Making::lastTilted}, ZELCV_FUNCTION(zeliApplyMixedHaarClassifier_32f_C1R),
        ZELCV_FUNCTION(zeliApplyMixedHaarClassifier_32s32f_C1R), ZELCV_FUNCTION(zeliApplyMixedHaarClassifier_32s_C1RSfs));
    return section;
}

} // namespace app
