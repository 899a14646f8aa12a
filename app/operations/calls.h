// Calls of the library: each is checked, timed and remembered under its name.
#pragma once

#include "operations/image.h"

#include <chrono>
#include <string_view>
#include <tuple>
#include <vector>

namespace app {

// An exported function and its name. ZELCV_FUNCTION keeps the two together.
template <class F>
struct Function {
    const char* name;
    F* call;
};
template <class F>
Function(const char*, F*) -> Function<F>;
#define ZELCV_FUNCTION(function)                                                                                             \
    ::app::Function { #function, function }

// Functions that say how much scratch memory another one needs.
inline bool isSizeFunction(std::string_view name)
{
    return name.find("GetBufferSize") != name.npos || name.find("GetSize") != name.npos;
}

struct Call {
    const char* name;
    double nanoseconds;
    ZeliSize size; // the region that it worked on; 0 x 0 for functions that have none
};

class Calls {
public:
    // Throws what an error means. A warning lets the result stand.
    template <class F, class... Arguments>
    void operator()(Function<F> function, Arguments... arguments)
    {
        const auto start = std::chrono::steady_clock::now();
        const ZelStatus status = function.call(arguments...);
        const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
        if (status < zelStatusOk) throw Error(std::string(function.name) + ": " + zelGetStatusString(status));
        list_.push_back({function.name, time.count(), region(arguments...)});
    }

    // Scratch memory of the size that a GetBufferSize function asks for.
    template <class F, class... Arguments>
    Block scratch(Function<F> sizeFunction, Arguments... arguments)
    {
        int bytes = 0;
        (*this)(sizeFunction, arguments..., &bytes);
        return Block(std::uint64_t(bytes));
    }

    const std::vector<Call>& list() const { return list_; }

private:
    static ZeliSize region() { return {0, 0}; }
    template <class First, class... Rest>
    static ZeliSize region(First first, Rest... rest)
    {
        if constexpr (std::is_same_v<First, ZeliSize>)
            return first;
        else
            return region(rest...);
    }

    std::vector<Call> list_;
};

// Calls a function with images in place of their first pixels and steps.
template <class T>
std::tuple<T*, int> asArguments(Image<T>& image)
{
    return {image.data(), image.step()};
}
template <class T>
std::tuple<const T*, int> asArguments(const Image<T>& image)
{
    return {image.view().data, image.step()};
}
template <class T>
std::tuple<T*, int> asArguments(const View<T>& view)
{
    return {view.data, view.step};
}
template <class T>
std::tuple<T> asArguments(const T& value)
{
    return {value};
}
template <class F, class... Arguments>
void callWith(Calls& calls, Function<F> function, Arguments&&... arguments)
{
    std::apply([&](auto... a) { calls(function, a...); }, std::tuple_cat(asArguments(arguments)...));
}

// The type of the pixels that a function reads.
template <class T, class... Rest>
T sourceType(Function<ZelStatus(const T*, Rest...)>);
template <class F>
using SourceOf = decltype(sourceType(std::declval<F>()));

// An argument that only some members of a family have: a tuple of it, or an empty one.
template <bool Present, class T>
auto onlyIf(T value)
{
    if constexpr (Present)
        return std::tuple<T>(value);
    else
        return std::tuple<>();
}

} // namespace app
