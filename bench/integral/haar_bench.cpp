#include "support/measure.h"

#include <type_traits>
#include <vector>

using namespace zelbench;

namespace {

constexpr int kExtent = 24; // of the window that the stage looks at
constexpr int kClassifiers = 20;

template <class State>
auto release(State* state)
{
    if constexpr (std::is_same_v<State, ZeliHaarClassifier_32f>)
        return zeliHaarClassifierFree_32f(state);
    else
        return zeliHaarClassifierFree_32s(state);
}

// Half of the classifiers have two rectangles, half have three: 50 in all. They decide at random, and every pixel survives.
template <class N, class State, class Create>
std::shared_ptr<State> stage(Create create)
{
    std::vector<ZeliRect> rects;
    std::vector<N> weights;
    std::vector<Zel32s> counts;
    unsigned random = 1;
    const auto below = [&](int limit) { return int((random = random * 1664525u + 1013904223u) >> 8) % limit; };
    for (int i = 0; i < kClassifiers; ++i) {
        counts.push_back(2 + i % 2);
        for (int j = 0; j < counts.back(); ++j) {
            rects.push_back({4 + below(10), below(6), 1 + below(5), 1 + below(5)});
            weights.push_back(N(j == 0 ? -1 : 2));
        }
    }
    const std::vector<N> zeros(kClassifiers, N(0)), ones(kClassifiers, N(1)), twos(kClassifiers, N(2));
    State* state = nullptr;
    require(create(&state, rects.data(), weights.data(), zeros.data(), ones.data(), twos.data(), counts.data(),
                   kClassifiers));
    return {state, release<State>};
}

// With `percent` of the mask set, at random.
template <class E, class N, class State, class Call>
Prepare apply(std::shared_ptr<State> state, int percent, Call call)
{
    return [=](ZeliSize size) -> std::function<void()> {
        const ZeliSize enlarged = {size.width + kExtent, size.height + kExtent};
        Plane<E> src(enlarged), tilt(enlarged);
        Plane<N> norm(size);
        Plane<Zel8u> mask(size);
        unsigned random = 1;
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x)
                mask.row(y)[x] = int(((random = random * 1664525u + 1013904223u) >> 8) % 100) < percent ? 255 : 0;
        return [=] {
            Zel32s positive = 0;
            require(call(src, tilt, norm, mask, size, &positive, state.get()));
        };
    };
}

template <class E, class N, class State, class Call>
void measureMasks(const std::string& name, std::shared_ptr<State> state, Call call)
{
    measure(name + "/dense", 10, apply<E, N>(state, 100, call));
    measure(name + "/half", 10, apply<E, N>(state, 50, call));
    measure(name + "/sparse", 10, apply<E, N>(state, 2, call)); // 2 percent
}

template <class E, class N, class State, class Function, class... Scale>
void measureUpright(const std::string& name, std::shared_ptr<State> state, Function function, Scale... scale)
{
    measureMasks<E, N>(name, state, [=](auto src, auto, auto norm, auto mask, ZeliSize size, Zel32s* positive, State* stage) {
        return function(src.data(), src.step(), norm.data(), norm.step(), mask.data(), mask.step(), size, positive, 0, stage,
                        scale...);
    });
}

template <class E, class N, class State, class Function, class... Scale>
void measureMixed(const std::string& name, std::shared_ptr<State> state, Function function, Scale... scale)
{
    measureMasks<E, N>(name, state, [=](auto src, auto tilt, auto norm, auto mask, ZeliSize size, Zel32s* positive,
                                        State* stage) {
        return function(src.data(), src.step(), tilt.data(), tilt.step(), norm.data(), norm.step(), mask.data(), mask.step(),
                        size, positive, 0, stage, scale...);
    });
}

const bool registered = [] {
    const auto floats = stage<Zel32f, ZeliHaarClassifier_32f>(zeliHaarClassifierInitAlloc_32f);
    const auto integers = stage<Zel32s, ZeliHaarClassifier_32s>(zeliHaarClassifierInitAlloc_32s);
    const auto tiltedFloats = stage<Zel32f, ZeliHaarClassifier_32f>(zeliTiltedHaarClassifierInitAlloc_32f);
    const auto tiltedIntegers = stage<Zel32s, ZeliHaarClassifier_32s>(zeliTiltedHaarClassifierInitAlloc_32s);
    measureUpright<Zel32f, Zel32f>("zeliApplyHaarClassifier_32f_C1R", floats, zeliApplyHaarClassifier_32f_C1R);
    measureUpright<Zel32s, Zel32f>("zeliApplyHaarClassifier_32s32f_C1R", floats, zeliApplyHaarClassifier_32s32f_C1R);
    measureUpright<Zel32s, Zel32s>("zeliApplyHaarClassifier_32s_C1RSfs", integers, zeliApplyHaarClassifier_32s_C1RSfs, 0);
    measureMixed<Zel32f, Zel32f>("zeliApplyMixedHaarClassifier_32f_C1R", tiltedFloats, zeliApplyMixedHaarClassifier_32f_C1R);
    measureMixed<Zel32s, Zel32f>("zeliApplyMixedHaarClassifier_32s32f_C1R", tiltedFloats,
                                 zeliApplyMixedHaarClassifier_32s32f_C1R);
    measureMixed<Zel32s, Zel32s>("zeliApplyMixedHaarClassifier_32s_C1RSfs", tiltedIntegers,
                                 zeliApplyMixedHaarClassifier_32s_C1RSfs, -2);
    return true;
}();

} // namespace
