// Calls of the library's functions, with images for planes, and what the functions must refuse.
#pragma once

#include "support/images.h"

#include <functional>
#include <tuple>

namespace zeltest {

// An image stands for its pointer and its step, anything else for itself.
template <class T>
auto arguments(T& argument) { return std::make_tuple(argument); }
template <class T>
auto arguments(Image<T>& image) { return std::make_tuple(image.data(), image.step()); }
template <class T>
auto arguments(const Image<T>& image) { return std::make_tuple(image.data(), image.step()); }

template <class Function, class... Given>
ZelStatus call(Function function, Given&&... given)
{
    return std::apply(function, std::tuple_cat(arguments(given)...));
}

// One way to spoil good arguments, and the status that must come of it.
template <class Arguments>
struct Fault {
    std::string what;
    ZelStatus status;
    std::function<void(Arguments&)> apply;
};

// Faults in the order of the checks: each alone gives its status, and of any two the earlier one wins.
template <class Arguments, class Call>
void expectCheckOrder(const Arguments& good, const std::vector<Fault<Arguments>>& faults, const Call& callWith)
{
    for (std::size_t first = 0; first < faults.size(); ++first)
        for (std::size_t second = first; second < faults.size(); ++second) {
            Arguments spoilt = good;
            faults[second].apply(spoilt);
            faults[first].apply(spoilt); // last, so that it holds where both change the same argument
            EXPECT_EQ(callWith(spoilt), faults[first].status)
                << faults[first].what << ", together with " << faults[second].what;
        }
}

// A function, arguments that it takes, and faults that it must find in them, told in the order of its checks. Parameters are
// told by their position, from the end where it is negative. A plane is a pointer in front of an int, before the size of the
// region, and told by the position of the pointer.
template <class... Parameters>
class Checks {
public:
    using Arguments = std::tuple<Parameters...>;
    using Positions = std::vector<int>;

    // An image is passed with the smallest step that its width allows; steps that are given as numbers must be the smallest.
    template <class... Given>
    explicit Checks(ZelStatus (*function)(Parameters...), Given&&... given)
        : function_(function), good_(std::tuple_cat(tightArguments(given)...))
    {
    }

    // Faulty calls must not write to `image` either.
    template <class T>
    Checks& watch(Image<T>& image)
    {
        images_.push_back({[&] { image.mark(); }, [&] { return image.untouched(); }});
        return *this;
    }

    Checks& usual() { return nulls().sizes().shortSteps().oddSteps(); }

    // Of all pointers, or of those at some positions.
    Checks& nulls(const Positions& at = kAll)
    {
        return forParameters(at, [this](auto i) {
            if constexpr (std::is_pointer_v<Parameter<i>>)
                fault("null" + named(i), zelStatusNullPointer, [=](Arguments& a) { std::get<i>(a) = nullptr; });
        });
    }
    Checks& sizes()
    {
        return forParameters(kAll, [this](auto i) {
            if constexpr (std::is_same_v<Parameter<i>, ZeliSize>) {
                fault("width 0", zelStatusBadSize, [=](Arguments& a) { std::get<i>(a).width = 0; });
                fault("height -1", zelStatusBadSize, [=](Arguments& a) { std::get<i>(a).height = -1; });
            }
        });
    }
    Checks& shortSteps(const Positions& planes = kAll)
    {
        return forParameters(planes, [this](auto i) {
            if constexpr (isPlane<i>())
                for (const int step : {std::get<i + 1>(good_) - 1, -std::get<i + 1>(good_)})
                    fault("short step" + named(i), zelStatusBadStep, [=](Arguments& a) { std::get<i + 1>(a) = step; });
        });
    }
    // Of planes of elements above one byte.
    Checks& oddSteps(const Positions& planes = kAll)
    {
        return forParameters(planes, [this](auto i) {
            if constexpr (isPlane<i>())
                if constexpr (sizeof(*std::declval<Parameter<i>>()) > 1) {
                    const int step = std::get<i + 1>(good_) + 1;
                    fault("odd step" + named(i), zelStatusStepNotAligned, [=](Arguments& a) { std::get<i + 1>(a) = step; });
                }
        });
    }
    // Each of `values` for one parameter.
    Checks& values(int position, ZelStatus status, const std::vector<double>& bad)
    {
        return forParameters({position}, [&](auto i) {
            if constexpr (std::is_arithmetic_v<Parameter<i>>)
                for (const double value : bad)
                    fault("bad value" + named(i), status, [=](Arguments& a) { std::get<i>(a) = Parameter<i>(value); });
            else
                ADD_FAILURE() << "no number" << named(i);
        });
    }
    Checks& fault(const std::string& what, ZelStatus status, const std::function<void(Arguments&)>& apply)
    {
        faults_.push_back({what, status, apply});
        return *this;
    }

    // The good arguments are taken, steps and all. Of each fault, and of any two, comes the right status, and nothing is
    // written: not to images, and not to the first element behind any other pointer.
    void expect()
    {
        const auto callWith = [this](const Arguments& a) { return std::apply(function_, a); };
        EXPECT_EQ(callWith(good_), zelStatusOk);
        for (const auto& image : images_) image.mark();
        std::vector<std::string> before, after;
        forParameters(kAll, [&](auto i) { before.push_back(firstElement<i>()); });
        expectCheckOrder(good_, faults_, callWith);
        forParameters(kAll, [&](auto i) { after.push_back(firstElement<i>()); });
        EXPECT_EQ(before, after) << "something was written";
        for (const auto& image : images_) EXPECT_TRUE(image.untouched());
    }

private:
    template <std::size_t i>
    using Parameter = std::tuple_element_t<i, Arguments>;

    struct Watched {
        std::function<void()> mark;
        std::function<bool()> untouched;
    };

    static inline const Positions kAll = {};
    static std::string named(std::size_t i) { return " of argument " + std::to_string(i); }

    template <class T>
    static auto tightArguments(T& argument) { return std::make_tuple(argument); }
    template <class T>
    auto tightArguments(Image<T>& image)
    {
        watch(image);
        return std::make_tuple(image.data(), image.rowBytes());
    }

    template <std::size_t i>
    static constexpr bool isPlane()
    {
        constexpr bool sizeFollows[] = {std::is_same_v<Parameters, ZeliSize>...};
        if constexpr (i + 2 < sizeof...(Parameters) && std::is_pointer_v<Parameter<i>>) {
            for (std::size_t j = i + 2; j < sizeof...(Parameters); ++j)
                if (sizeFollows[j]) return std::is_same_v<Parameter<i + 1>, int>;
        }
        return false;
    }

    // What stands where the function may write; empty where it may not.
    template <std::size_t i>
    std::string firstElement() const
    {
        if constexpr (std::is_pointer_v<Parameter<i>>) {
            using Element = std::remove_pointer_t<Parameter<i>>;
            if constexpr (!std::is_const_v<Element>)
                if (std::get<i>(good_)) return {reinterpret_cast<const char*>(std::get<i>(good_)), sizeof(Element)};
        }
        return {};
    }

    // Calls visit(i) for the parameters at some positions, in that order, or for all.
    template <class Visit>
    Checks& forParameters(const Positions& at, const Visit& visit)
    {
        constexpr int count = sizeof...(Parameters);
        const auto visitAt = [&](int position) {
            [&]<std::size_t... i>(std::index_sequence<i...>) {
                ((int(i) == (position + count) % count ? visit(std::integral_constant<std::size_t, i>()) : void()), ...);
            }(std::make_index_sequence<count>());
        };
        for (const int position : at) visitAt(position);
        for (int position = 0; at.empty() && position < count; ++position) visitAt(position);
        return *this;
    }

    ZelStatus (*function_)(Parameters...);
    std::vector<Watched> images_;
    Arguments good_;
    std::vector<Fault<Arguments>> faults_;
};

} // namespace zeltest
