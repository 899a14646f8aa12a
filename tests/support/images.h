// What the tests of all families share: random images inside guard bytes, masks, scratch buffers, thread settings.
#pragma once

#include "zelcv.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace zeltest {

// A small generator with a fixed sequence for each seed.
class Random {
public:
    explicit Random(unsigned seed) : state_(seed * 2654435761u + 12345u) {}
    unsigned next()
    {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return state_;
    }
    int between(int low, int high) { return low + int(next() % unsigned(high - low + 1)); }

private:
    unsigned state_;
};

enum class Texture {
    Noise,    // the whole range of the type; floats between -1000 and 1000
    Extremes, // the smallest, the largest and zero; floats with infinities and NaN too
    Smooth    // a gradient with a little noise, as photographs have
};

template <class T>
T randomElement(Random& random, Texture texture, int x, int y)
{
    using Limits = std::numeric_limits<T>;
    if (texture == Texture::Smooth) return T(x / 3 + y / 2 + random.between(0, 3));
    if constexpr (Limits::is_integer) {
        if (texture == Texture::Noise) return T(random.next() >> 7);
        const T extremes[] = {Limits::min(), Limits::max(), 0};
        return extremes[random.between(0, 2)];
    } else {
        if (texture == Texture::Noise) return T(random.between(-1000000, 1000000)) / T(1000);
        const T extremes[] = {Limits::lowest(), Limits::max(), Limits::infinity(), -Limits::infinity(),
                              Limits::quiet_NaN(), T(0), T(-0.0), Limits::denorm_min()};
        return extremes[random.between(0, 7)];
    }
}

// An image of random pixels, with a random step and start, `margin` pixels of real image on all sides, and guard bytes around
// it all. `width` counts elements of T, so it includes the channels, and so does the margin to the left and right.
template <class T>
class Image {
public:
    Image(Random& random, int width, int height, Texture texture = Texture::Noise, int margin = 0)
        : width_(width), height_(height), margin_(margin)
    {
        const int row = (width + 2 * margin) * int(sizeof(T));
        step_ = row + random.between(0, 9) * int(sizeof(T));
        offset_ = 64 + std::size_t(random.between(0, 15)) * sizeof(T) + margin * (std::size_t(step_) + sizeof(T));
        bytes_.resize(offset_ + std::size_t(step_) * std::size_t(height + 2 * margin) + 256);
        for (auto& byte : bytes_) byte = static_cast<unsigned char>(random.next() >> 9);
        fill([&](int x, int y) { return randomElement<T>(random, texture, x, y); });
    }
    Image(Random& random, ZeliSize size, Texture texture = Texture::Noise, int margin = 0)
        : Image(random, size.width, size.height, texture, margin)
    {
    }

    T* data() { return reinterpret_cast<T*>(bytes_.data() + offset_); }
    const T* data() const { return reinterpret_cast<const T*>(bytes_.data() + offset_); }
    int step() const { return step_; }
    int rowBytes() const { return width_ * int(sizeof(T)); }
    int width() const { return width_; }
    int height() const { return height_; }

    T at(int x, int y) const
    {
        T value;
        std::memcpy(&value, bytes_.data() + position(x, y), sizeof value);
        return value;
    }
    // What stood there when the image was made or last marked.
    T before(int x, int y) const
    {
        T value;
        std::memcpy(&value, before_.data() + position(x, y), sizeof value);
        return value;
    }
    void set(int x, int y, T value) { std::memcpy(bytes_.data() + position(x, y), &value, sizeof value); }
    // All elements, those of the margin too, become value(x, y).
    template <class Value>
    void fill(const Value& value)
    {
        for (int y = -margin_; y < height_ + margin_; ++y)
            for (int x = -margin_; x < width_ + margin_; ++x) set(x, y, T(value(x, y)));
        mark();
    }

    // Every byte is as it was when the image was made or last marked.
    bool untouched() const { return bytes_ == before_; }
    void mark() { before_ = bytes_; }

    // All elements equal definition(x, y) bit for bit (any NaN equals any NaN), and no byte outside the region was written.
    template <class Definition>
    void expect(const Definition& definition, const std::string& what)
    {
        int faults = 0;
        for (int y = 0; y < height_ && faults < 3; ++y)
            for (int x = 0; x < width_ && faults < 3; ++x) {
                const T wanted = definition(x, y), got = at(x, y);
                const bool bothNan = wanted != wanted && got != got;
                if (std::memcmp(&wanted, &got, sizeof(T)) != 0 && !bothNan) {
                    ++faults;
                    ADD_FAILURE() << what << ": at (" << x << ", " << y << ") of " << width_ << " by " << height_
                                  << " there is " << +got << " in the place of " << +wanted;
                }
            }
        std::vector<unsigned char> outside = bytes_;
        for (int y = 0; y < height_; ++y)
            std::memcpy(outside.data() + position(0, y), before_.data() + position(0, y), sizeof(T) * std::size_t(width_));
        EXPECT_TRUE(outside == before_) << what << ": memory outside the region was written";
    }

private:
    std::size_t position(int x, int y) const
    {
        return std::size_t(std::ptrdiff_t(offset_) + std::ptrdiff_t(y) * step_ + x * std::ptrdiff_t(sizeof(T)));
    }

    int width_, height_, margin_, step_ = 0;
    std::size_t offset_ = 0;
    std::vector<unsigned char> bytes_, before_;
};

// A mask of which `percent` of the pixels are selected, by any byte that is not 0; or one pixel alone.
constexpr int kOnePixel = -1;
inline Image<Zel8u> makeMask(Random& random, ZeliSize size, int percent)
{
    Image<Zel8u> mask(random, size);
    mask.fill([&](int, int) { return random.between(1, 100) > percent ? 0 : random.between(1, 255); });
    if (percent == kOnePixel) mask.set(random.between(0, size.width - 1), random.between(0, size.height - 1), 0x80);
    mask.mark();
    return mask;
}

// A scratch buffer of exactly `size` bytes at a random alignment, between guard bytes that must stay as they are.
class Buffer {
public:
    Buffer(Random& random, int size)
        : size_(std::size_t(size)), offset_(64 + std::size_t(random.between(0, 63))), bytes_(offset_ + size_ + 128, 0xa5)
    {
    }
    ~Buffer()
    {
        for (std::size_t i = 0; i < bytes_.size(); ++i)
            if ((i < offset_ || i >= offset_ + size_) && bytes_[i] != 0xa5) {
                ADD_FAILURE() << "scratch memory was exceeded at byte " << std::ptrdiff_t(i - offset_) << " of " << size_;
                return;
            }
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    Zel8u* data() { return bytes_.data() + offset_; }

private:
    std::size_t size_, offset_;
    std::vector<unsigned char> bytes_;
};

// Sets the number of threads until the end of the scope.
class ThreadSetting {
public:
    explicit ThreadSetting(int count)
    {
        zelGetNumThreads(&before_);
        zelSetNumThreads(count);
    }
    ~ThreadSetting() { zelSetNumThreads(before_); }
    ThreadSetting(const ThreadSetting&) = delete;
    ThreadSetting& operator=(const ThreadSetting&) = delete;

private:
    Zel32s before_ = 1;
};

// Runs `test` under several thread settings, and once from inside a parallel region of the caller's own.
template <class Test>
void underAllThreadings(const Test& test)
{
    for (int threads : {1, 2, 3, 5, 8}) {
        ThreadSetting setting(threads);
        SCOPED_TRACE("threads: " + std::to_string(threads));
        test();
    }
    SCOPED_TRACE("inside a parallel region");
    ThreadSetting setting(2);
#pragma omp parallel num_threads(2)
    {
#pragma omp master
        test();
    }
}

} // namespace zeltest
