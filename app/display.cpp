#include "display.h"

#include <cstdio>
#include <random>

namespace app {

namespace {

constexpr Zel8u kGapShade = 236; // between pictures

// Makes a picture pixel by pixel; `pixel` writes the channels of one.
template <class F>
Picture drawn(ZeliSize size, int channels, F pixel)
{
    Picture dst(size, channels);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) pixel(x, y, dst.row(y) + x * channels);
    return dst;
}

} // namespace

std::string numberText(double value, int digits)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    return text;
}

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
    return drawn(src.size(), src.channels(), [&](int x, int y, Zel8u* dst) {
        const int fromX = std::clamp(x - right, 0, src.size().width - 1),
                  fromY = std::clamp(y - down, 0, src.size().height - 1);
        std::copy_n(src.row(fromY) + fromX * src.channels(), src.channels(), dst);
    });
}

Picture padded(const Picture& src, int margin)
{
    const ZeliSize size = src.size();
    return drawn({size.width + 2 * margin, size.height + 2 * margin}, src.channels(), [&](int x, int y, Zel8u* dst) {
        const int fromX = std::clamp(x - margin, 0, size.width - 1), fromY = std::clamp(y - margin, 0, size.height - 1);
        std::copy_n(src.row(fromY) + fromX * src.channels(), src.channels(), dst);
    });
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

Picture sideBySide(std::initializer_list<const Picture*> pictures)
{
    constexpr int gap = 6;
    ZeliSize size = {-gap, 0};
    for (const Picture* picture : pictures) size = {size.width + gap + picture->size().width, picture->size().height};
    Picture dst(size, 1);
    for (int y = 0; y < size.height; ++y) {
        std::fill_n(dst.row(y), size.width, kGapShade);
        Zel8u* place = dst.row(y);
        for (const Picture* picture : pictures) place = std::copy_n(picture->row(y), picture->size().width, place) + gap;
    }
    return dst;
}

Picture strips(const std::vector<Picture>& pictures)
{
    const auto begin = [&](std::size_t strip) {
        return int(strip * std::size_t(pictures[0].size().width) / pictures.size());
    };
    const int channels = pictures[0].channels();
    Picture dst(pictures[0].size(), channels);
    for (std::size_t strip = 0; strip < pictures.size(); ++strip)
        for (int y = 0; y < dst.size().height; ++y) {
            const int first = begin(strip) * channels, last = begin(strip + 1) * channels;
            std::copy(pictures[strip].row(y) + first, pictures[strip].row(y) + last, dst.row(y) + first);
            if (strip > 0 && dst.size().width > 100) std::fill_n(dst.row(y) + first, channels, kGapShade);
        }
    return dst;
}

void drawFrame(Picture& picture, ZeliRect rect, Paint paint)
{
    const ZeliSize size = picture.size();
    const int thickness = std::max(2, std::min(size.width, size.height) / 250);
    const int left = std::max(0, rect.x), right = std::min(size.width, rect.x + rect.width);
    const int top = std::max(0, rect.y), bottom = std::min(size.height, rect.y + rect.height);
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            if (std::min({x - left, y - top, right - 1 - x, bottom - 1 - y}) < thickness)
                std::copy(paint.begin(), paint.end(), picture.row(y) + 3 * x);
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
