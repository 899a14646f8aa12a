// Calls of the library's functions, with images for planes, and what the functions must refuse.
#pragma once

#include "support/images.h"

#include <algorithm>
#include <array>
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

// An argument without its type, so that the checks of hundreds of functions are compiled once.
struct Argument {
    enum class Kind { Pointer, PointerToConst, Size, Int, Other };
    Kind kind = Kind::Other;
    std::size_t elementBytes = 0;                     // of what a pointer points to
    void (*setNumber)(Argument&, double) = nullptr;   // null unless it is a number
    alignas(8) std::array<unsigned char, 16> value{};

    template <class T>
    explicit Argument(T from)
    {
        set(from);
        if constexpr (std::is_pointer_v<T>) {
            using Element = std::remove_pointer_t<T>;
            kind = std::is_const_v<Element> ? Kind::PointerToConst : Kind::Pointer;
            if constexpr (requires { sizeof(Element); }) elementBytes = sizeof(Element);
        } else if constexpr (std::is_arithmetic_v<T>) {
            if (std::is_same_v<T, int>) kind = Kind::Int;
            setNumber = [](Argument& a, double number) { a.set(T(number)); };
        } else if (std::is_same_v<T, ZeliSize>) {
            kind = Kind::Size;
        }
    }
    template <class T>
    void set(T from)
    {
        static_assert(sizeof from <= sizeof value);
        std::memcpy(value.data(), &from, sizeof from);
    }
    template <class T>
    T as() const
    {
        T to;
        std::memcpy(&to, value.data(), sizeof to);
        return to;
    }
    bool isPointer() const { return kind == Kind::Pointer || kind == Kind::PointerToConst; }
};

// All of Checks that needs no types. Parameters are told by their position, from the end where it is negative. A plane is a
// pointer in front of an int, before the size of the region, and told by the position of the pointer.
class CheckList {
public:
    using Arguments = std::vector<Argument>;
    using Positions = std::vector<int>;

    // Faulty calls must not write to `image` either.
    template <class T>
    CheckList& watch(Image<T>& image)
    {
        images_.push_back({[&] { image.mark(); }, [&] { return image.untouched(); }});
        return *this;
    }

    CheckList& usual() { return nulls().sizes().shortSteps().oddSteps(); }

    // Of all pointers, or of those at some positions.
    CheckList& nulls(const Positions& at = {})
    {
        for (const std::size_t i : indices(at))
            if (good_[i].isPointer())
                add("null", i, zelStatusNullPointer, [](Argument& a) { a.set(static_cast<void*>(nullptr)); });
        return *this;
    }
    CheckList& sizes()
    {
        for (const std::size_t i : indices({}))
            if (good_[i].kind == Argument::Kind::Size) {
                add("width 0", i, zelStatusBadSize, [](Argument& a) { a.set(ZeliSize{0, a.as<ZeliSize>().height}); });
                add("height -1", i, zelStatusBadSize, [](Argument& a) { a.set(ZeliSize{a.as<ZeliSize>().width, -1}); });
            }
        return *this;
    }
    CheckList& shortSteps(const Positions& planes = {})
    {
        for (const std::size_t i : indices(planes))
            if (isPlane(i)) {
                const int step = good_[i + 1].as<int>();
                for (const int bad : {step - 1, -step})
                    add("short step", i + 1, zelStatusBadStep, [bad](Argument& a) { a.set(bad); });
            }
        return *this;
    }
    // Of planes of elements above one byte.
    CheckList& oddSteps(const Positions& planes = {})
    {
        for (const std::size_t i : indices(planes))
            if (isPlane(i) && good_[i].elementBytes > 1) {
                const int bad = good_[i + 1].as<int>() + 1;
                add("odd step", i + 1, zelStatusStepNotAligned, [bad](Argument& a) { a.set(bad); });
            }
        return *this;
    }
    // Each of `values` for one parameter, which is a number.
    CheckList& values(int position, ZelStatus status, const std::vector<double>& bad)
    {
        const std::size_t i = indices({position})[0];
        EXPECT_TRUE(good_[i].setNumber) << "no number: argument " << i;
        for (const double value : bad) add("bad value", i, status, [value](Argument& a) { a.setNumber(a, value); });
        return *this;
    }

    // The good arguments are taken, steps and all. Of each fault, and of any two, comes the right status, and nothing is
    // written: not to images, and not to the first element behind any other pointer.
    void expect()
    {
        EXPECT_EQ(call_(good_), zelStatusOk);
        for (const auto& image : images_) image.mark();
        const std::vector<std::string> before = firstElements();
        expectCheckOrder(good_, faults_, call_);
        EXPECT_EQ(before, firstElements()) << "something was written";
        for (const auto& image : images_) EXPECT_TRUE(image.untouched());
    }

protected:
    using Call = std::function<ZelStatus(const Arguments&)>;
    CheckList(Call call, Arguments good) : call_(std::move(call)), good_(std::move(good)) {}

    std::vector<Fault<Arguments>> faults_;

private:
    struct Watched {
        std::function<void()> mark;
        std::function<bool()> untouched;
    };

    void add(const std::string& what, std::size_t i, ZelStatus status, const std::function<void(Argument&)>& spoil)
    {
        const auto apply = [=](Arguments& a) { spoil(a[i]); };
        faults_.push_back({what + " of argument " + std::to_string(i), status, apply});
    }

    // Of the parameters at some positions, or of all.
    std::vector<std::size_t> indices(const Positions& at) const
    {
        std::vector<std::size_t> result;
        const int count = int(good_.size());
        for (const int position : at) result.push_back(std::size_t((position + count) % count));
        for (int i = 0; at.empty() && i < count; ++i) result.push_back(std::size_t(i));
        return result;
    }

    bool isPlane(std::size_t i) const
    {
        const auto isSize = [](const Argument& a) { return a.kind == Argument::Kind::Size; };
        return i + 2 < good_.size() && good_[i].isPointer() && good_[i + 1].kind == Argument::Kind::Int &&
               std::any_of(good_.begin() + std::ptrdiff_t(i) + 2, good_.end(), isSize);
    }

    // What stands where the function may write.
    std::vector<std::string> firstElements() const
    {
        std::vector<std::string> result;
        for (const Argument& a : good_)
            if (a.kind == Argument::Kind::Pointer && a.as<const char*>()) result.emplace_back(a.as<const char*>(), a.elementBytes);
        return result;
    }

    Call call_;
    std::vector<Watched> images_;
    Arguments good_;
};

// A function, arguments that it takes, and faults that it must find in them, told in the order of its checks.
template <class... Parameters>
class Checks : public CheckList {
    using Tuple = std::tuple<Parameters...>;

public:
    // An image is passed with the smallest step that its width allows; steps that are given as numbers must be the smallest.
    template <class... Given>
    explicit Checks(ZelStatus (*function)(Parameters...), Given&&... given)
        : CheckList([function](const Arguments& a) { return std::apply(function, typed(a)); },
                    untyped(std::tuple_cat(tightArguments(given)...)))
    {
        (watchImage(given), ...);
    }

    // A fault of its own kind, applied to a tuple of the parameters.
    CheckList& fault(const std::string& what, ZelStatus status, const std::function<void(Tuple&)>& apply)
    {
        faults_.push_back({what, status, [apply](Arguments& a) {
            Tuple tuple = typed(a);
            apply(tuple);
            a = untyped(tuple);
        }});
        return *this;
    }

private:
    static Arguments untyped(const Tuple& tuple)
    {
        return std::apply([](Parameters... parameter) { return Arguments{Argument(parameter)...}; }, tuple);
    }
    static Tuple typed(const Arguments& a)
    {
        return [&]<std::size_t... i>(std::index_sequence<i...>) {
            return Tuple(a[i].template as<Parameters>()...);
        }(std::index_sequence_for<Parameters...>());
    }

    template <class T>
    static auto tightArguments(T& argument) { return std::make_tuple(argument); }
    template <class T>
    static auto tightArguments(Image<T>& image) { return std::make_tuple(image.data(), image.rowBytes()); }

    template <class T>
    void watchImage(T&) {}
    template <class T>
    void watchImage(Image<T>& image) { watch(image); }
};

} // namespace zeltest
