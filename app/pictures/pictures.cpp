#include "pictures/pictures.h"

#include <random>
#include <vector>

namespace app {

namespace {

// Makes a picture pixel by pixel; `pixel` writes the channels of one.
template <class F>
Picture drawn(ZeliSize size, int channels, F pixel)
{
    Picture dst(size, channels);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) pixel(x, y, dst.row(y) + x * channels);
    return dst;
}

// What lies under a rectangle; outside of the picture its edge is repeated.
Picture window(const Picture& src, ZeliRect rect)
{
    return drawn({rect.width, rect.height}, src.channels(), [&](int x, int y, Zel8u* dst) {
        const int fromX = std::clamp(x + rect.x, 0, src.size().width - 1);
        const int fromY = std::clamp(y + rect.y, 0, src.size().height - 1);
        std::copy_n(src.row(fromY) + fromX * src.channels(), src.channels(), dst);
    });
}

} // namespace

Picture toGray(const Picture& src)
{
    if (src.channels() == 1) return copyOf(src);
    return drawn(src.size(), 1, [&](int x, int y, Zel8u* dst) {
        const Zel8u* p = src.row(y) + 3 * x;
        *dst = Zel8u((77 * p[0] + 150 * p[1] + 29 * p[2] + 128) >> 8); // the usual weights of red, green and blue in 1/256
    });
}

Picture toColour(const Picture& src)
{
    return drawn(src.size(), 3, [&](int x, int y, Zel8u* dst) {
        for (int c = 0; c < 3; ++c) dst[c] = src.row(y)[x * src.channels() + (src.channels() == 3 ? c : 0)];
    });
}

Picture filled(ZeliSize size, Zel8u value)
{
    return drawn(size, 1, [=](int, int, Zel8u* dst) { *dst = value; });
}

Picture ellipse(ZeliSize size)
{
    return drawn(size, 1, [=](int x, int y, Zel8u* dst) {
        const auto fromMiddle = [](int place, int length) { return (place + 0.5 - length / 2.0) / (0.4 * length); };
        *dst = std::hypot(fromMiddle(x, size.width), fromMiddle(y, size.height)) < 1 ? 255 : 0;
    });
}

void dimOutside(Picture& picture, const Picture& mask, double gain)
{
    const int channels = picture.channels();
    for (int y = 0; y < mask.size().height; ++y)
        for (int i = 0; i < picture.view().elements(); ++i)
            if (mask.row(y)[i / channels] == 0) picture.row(y)[i] = toByte(gain * picture.row(y)[i]);
}

std::int64_t countMasked(const Picture& mask)
{
    std::int64_t count = 0;
    for (int y = 0; y < mask.size().height; ++y)
        count += mask.size().width - std::count(mask.row(y), mask.row(y) + mask.size().width, 0);
    return count;
}

Picture noisy(const Picture& src, double deviation, unsigned seed)
{
    std::mt19937 random(seed);
    return mapElements<Zel8u>(src, [&](Zel8u value) {
        // The sum of twelve bytes is close enough to normal, and the same with every standard library.
        double sum = 0;
        for (int i = 0; i < 3; ++i) {
            const auto bits = random();
            for (int shift = 0; shift < 32; shift += 8) sum += double(bits >> shift & 255) - 127.5;
        }
        return toByte(value + deviation * sum / 256);
    });
}

Picture moved(const Picture& src, int right, int down)
{
    return window(src, {-right, -down, src.size().width, src.size().height});
}

Picture padded(const Picture& src, int margin)
{
    return window(src, {-margin, -margin, src.size().width + 2 * margin, src.size().height + 2 * margin});
}

Picture resized(const Picture& src, ZeliSize size)
{
    // The source pixels under a stretch of the result, and how much of each lies there.
    struct Share {
        int place;
        double part;
    };
    const auto divide = [](int from, int to) {
        std::vector<std::vector<Share>> shares(std::size_t(to), std::vector<Share>{});
        for (int i = 0; i < to; ++i) {
            const double begin = double(from) * i / to, end = double(from) * (i + 1) / to;
            for (int place = int(begin); place < from && place < end; ++place) {
                const double part = std::min(end, place + 1.0) - std::max(begin, double(place));
                shares[std::size_t(i)].push_back({place, part / (end - begin)});
            }
        }
        return shares;
    };
    const auto columns = divide(src.size().width, size.width), rows = divide(src.size().height, size.height);
    return drawn(size, 1, [&](int x, int y, Zel8u* dst) {
        double sum = 0;
        for (const Share& row : rows[std::size_t(y)])
            for (const Share& column : columns[std::size_t(x)])
                sum += row.part * column.part * src.row(row.place)[column.place];
        *dst = toByte(sum);
    });
}

Picture shrunk(const Picture& src, int factor)
{
    const int channels = src.channels();
    return drawn({std::max(1, src.size().width / factor), std::max(1, src.size().height / factor)}, channels,
                 [&](int x, int y, Zel8u* dst) {
                     const int width = std::min(factor, src.size().width), height = std::min(factor, src.size().height);
                     for (int c = 0; c < channels; ++c) {
                         int sum = 0;
                         for (int j = 0; j < height; ++j)
                             for (int i = 0; i < width; ++i) sum += src.row(y * factor + j)[(x * factor + i) * channels + c];
                         dst[c] = Zel8u((sum + width * height / 2) / (width * height));
                     }
                 });
}

Picture copyOf(const Picture& src) { return cut(src, {0, 0, src.size().width, src.size().height}); }

ZeliRect middle(ZeliSize whole, ZeliSize size)
{
    const int width = std::min(whole.width, size.width), height = std::min(whole.height, size.height);
    return {(whole.width - width) / 2, (whole.height - height) / 2, width, height};
}

Picture cut(const Picture& src, ZeliRect rect)
{
    return mapElements<Zel8u>(src.view().part(rect), [](Zel8u value) { return value; });
}

} // namespace app
