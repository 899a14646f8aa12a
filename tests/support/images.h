// What the tests of all families share: random images in fenced memory, masks, scratch buffers, thread settings.
#pragma once

#include "zelcv.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <sys/mman.h>
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

// Bytes between two inaccessible pages, at random right behind the first, up to the second or amid guard bytes, so that some
// call ends at the first byte that is used too far. `unit` is their alignment.
class FencedBytes {
public:
    FencedBytes(Random& random, std::size_t size, std::size_t unit)
        : FencedBytes((size + 2 * kGuard + kPage - 1) / kPage * kPage)
    {
        const std::size_t amid = kGuard + std::size_t(random.between(0, 63)) / unit * unit;
        const std::size_t places[] = {0, room_ - size, amid}, start = places[random.between(0, 2)];
        from_ = start - std::min(start, kGuard);
        to_ = std::min(room_, start + size + kGuard);
        offset_ = start - from_;
    }
    FencedBytes(const FencedBytes& other) : FencedBytes(other.room_)
    {
        from_ = other.from_, to_ = other.to_, offset_ = other.offset_;
        std::copy(other.begin(), other.end(), begin());
    }
    FencedBytes(FencedBytes&&) = default;
    FencedBytes& operator=(FencedBytes&&) = default;

    // The bytes with the guard bytes before and behind them.
    unsigned char* begin() const { return pages_.get() + kPage + from_; }
    unsigned char* end() const { return pages_.get() + kPage + to_; }
    std::size_t offset() const { return offset_; }
    friend bool operator==(const FencedBytes& a, const std::vector<unsigned char>& b)
    {
        return std::equal(a.begin(), a.end(), b.begin(), b.end());
    }

private:
    static constexpr std::size_t kPage = 4096, kGuard = 128;

    struct Unmap {
        std::size_t bytes;
        void operator()(unsigned char* pages) const { munmap(pages, bytes); }
    };

    explicit FencedBytes(std::size_t room) : room_(room)
    {
        void* const pages = mmap(nullptr, room + 2 * kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED) throw std::bad_alloc();
        pages_ = {static_cast<unsigned char*>(pages), Unmap{room + 2 * kPage}};
        if (mprotect(pages_.get() + kPage, room, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    }

    std::size_t room_, from_ = 0, to_ = 0, offset_ = 0; // from the first accessible byte; the offset from begin()
    std::unique_ptr<unsigned char, Unmap> pages_;
};

// `sizes`, and rows one below, at and one above each width that a kernel may take at a time.
inline std::vector<ZeliSize> withSeams(std::vector<ZeliSize> sizes)
{
    for (int block : {16, 32, 64, 128, 256})
        for (int width : {block - 1, block, block + 1}) sizes.push_back({width, 3});
    return sizes;
}

// Pixels of real image around a region.
struct Margin {
    int left = 0, top = 0, right = 0, bottom = 0;
    static constexpr Margin all(int pixels) { return {pixels, pixels, pixels, pixels}; }
};

// An image of random pixels in fenced memory, which ends at the last pixel of the last row. The step is random, but of every
// three images two have no gap between rows. `width` counts elements of T: it includes the channels, and so does the margin.
template <class T>
class Image {
public:
    Image(Random& random, int width, int height, Texture texture = Texture::Noise, Margin margin = {})
        : width_(width), height_(height), margin_(margin), row_((margin.left + width + margin.right) * int(sizeof(T))),
          step_(row_ + std::max(0, random.between(-19, 9)) * int(sizeof(T))),
          bytes_(random, std::size_t(step_) * std::size_t(margin.top + height + margin.bottom - 1) + std::size_t(row_),
                 sizeof(T)),
          offset_(bytes_.offset() + std::size_t(step_) * std::size_t(margin.top) + sizeof(T) * std::size_t(margin.left))
    {
        for (auto& byte : bytes_) byte = static_cast<unsigned char>(random.next() >> 9);
        fill([&](int x, int y) { return randomElement<T>(random, texture, x, y); });
    }
    Image(Random& random, ZeliSize size, Texture texture = Texture::Noise, Margin margin = {})
        : Image(random, size.width, size.height, texture, margin)
    {
    }

    T* data() { return reinterpret_cast<T*>(bytes_.begin() + offset_); }
    const T* data() const { return reinterpret_cast<const T*>(bytes_.begin() + offset_); }
    int step() const { return step_; }
    int rowBytes() const { return width_ * int(sizeof(T)); }
    int width() const { return width_; }
    int height() const { return height_; }

    T at(int x, int y) const
    {
        T value;
        std::memcpy(&value, bytes_.begin() + position(x, y), sizeof value);
        return value;
    }
    // What stood there when the image was made or last marked.
    T before(int x, int y) const
    {
        T value;
        std::memcpy(&value, before_.data() + position(x, y), sizeof value);
        return value;
    }
    void set(int x, int y, T value) { std::memcpy(bytes_.begin() + position(x, y), &value, sizeof value); }
    // All elements, those of the margin too, become value(x, y).
    template <class Value>
    void fill(const Value& value)
    {
        for (int y = -margin_.top; y < height_ + margin_.bottom; ++y)
            for (int x = -margin_.left; x < width_ + margin_.right; ++x) set(x, y, T(value(x, y)));
        mark();
    }

    // Every byte is as it was when the image was made or last marked.
    bool untouched() const { return bytes_ == before_; }
    void mark() { before_.assign(bytes_.begin(), bytes_.end()); }

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
        std::vector<unsigned char> outside(bytes_.begin(), bytes_.end());
        for (int y = 0; y < height_; ++y)
            std::memcpy(outside.data() + position(0, y), before_.data() + position(0, y), sizeof(T) * std::size_t(width_));
        EXPECT_TRUE(outside == before_) << what << ": memory outside the region was written";
    }

private:
    std::size_t position(int x, int y) const
    {
        return std::size_t(std::ptrdiff_t(offset_) + std::ptrdiff_t(y) * step_ + x * std::ptrdiff_t(sizeof(T)));
    }

    int width_, height_;
    Margin margin_;
    int row_, step_; // in bytes
    FencedBytes bytes_;
    std::size_t offset_; // of the first pixel from the first guard byte
    std::vector<unsigned char> before_;
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

// A scratch buffer of exactly `size` bytes at a random multiple of `unit` in fenced memory; the guard bytes must stay as they
// are.
class Buffer {
public:
    Buffer(Random& random, int size, std::size_t unit = 1)
        : size_(std::size_t(size)), bytes_(random, (size_ + unit - 1) / unit * unit, unit)
    {
        std::fill(bytes_.begin(), bytes_.end(), 0xa5);
    }
    ~Buffer()
    {
        const auto isGuard = [](unsigned char byte) { return byte == 0xa5; };
        EXPECT_TRUE(std::all_of(bytes_.begin(), data(), isGuard) && std::all_of(data() + size_, bytes_.end(), isGuard))
            << "scratch memory of " << size_ << " bytes was exceeded";
    }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    Zel8u* data() { return bytes_.begin() + bytes_.offset(); }

private:
    std::size_t size_;
    FencedBytes bytes_;
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
