// Images as the program holds them: planes of interleaved channels in aligned memory, and views of them.
#pragma once

#include "zelcore.h"
#include "zelcv.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace app {

// What a user is told in one line. The program ends with status 1, for a UsageError with 2.
struct Error : std::runtime_error {
    using std::runtime_error::runtime_error;
};
struct UsageError : Error {
    using Error::Error;
};

// Zeroed memory of the library's allocator: 64-byte aligned, and in place before anybody measures time in it.
class Block {
public:
    explicit Block(std::uint64_t bytes) : memory_(static_cast<Zel8u*>(zelMalloc(bytes)))
    {
        if (!memory_) throw std::bad_alloc();
        std::memset(memory_.get(), 0, bytes);
    }
    Zel8u* data() const { return memory_.get(); }

private:
    struct Release {
        void operator()(Zel8u* memory) const { zelFree(memory); }
    };
    std::unique_ptr<Zel8u, Release> memory_;
};

// A region of pixels in somebody's memory, in the form that the library takes.
template <class T>
struct View {
    T* data;
    int step;
    ZeliSize size;
    int channels;

    T* row(int y) const
    {
        using Byte = std::conditional_t<std::is_const_v<T>, const char, char>;
        return reinterpret_cast<T*>(reinterpret_cast<Byte*>(data) + std::ptrdiff_t(step) * y);
    }
    int elements() const { return size.width * channels; } // in one row
    View part(ZeliRect rect) const
    {
        return {row(rect.y) + std::ptrdiff_t(rect.x) * channels, step, {rect.width, rect.height}, channels};
    }
};

// An image that owns its pixels. Rows start at multiples of 64 bytes; pixels start as zero.
template <class T>
class Image {
public:
    using Element = T;

    Image(ZeliSize size, int channels)
        : size_(size), channels_(channels), step_(int((sizeof(T) * channels * size.width + 63) / 64 * 64)),
          memory_(std::uint64_t(step_) * size.height)
    {
    }
    ZeliSize size() const { return size_; }
    int channels() const { return channels_; }
    int step() const { return step_; }
    T* data() { return reinterpret_cast<T*>(memory_.data()); }
    T* row(int y) { return whole().row(y); }
    const T* row(int y) const { return view().row(y); }
    View<T> whole() { return {data(), step_, size_, channels_}; }
    View<const T> view() const { return {reinterpret_cast<const T*>(memory_.data()), step_, size_, channels_}; }
    operator View<const T>() const { return view(); }

private:
    ZeliSize size_;
    int channels_;
    int step_;
    Block memory_;
};

using Picture = Image<Zel8u>; // what files hold: gray, or red, green and blue
using PictureView = View<const Zel8u>;

inline bool sameSize(ZeliSize a, ZeliSize b) { return a.width == b.width && a.height == b.height; }

inline std::string sizeText(ZeliSize size) { return std::to_string(size.width) + " x " + std::to_string(size.height); }

} // namespace app
