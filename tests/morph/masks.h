// Masks of morphology, dilation and erosion by their definition, and a zelMalloc that can be told to fail, which replaces the
// library's in the program that includes this.
#pragma once

#include "support/calls.h"

#include <cmath>
#include <cstdlib>

namespace zeltest {

inline int allocationsLeft = -1; // none fails while this is negative
inline int blocks = 0;           // allocated and not yet freed
inline std::uint64_t lastAllocation = 0;

} // namespace zeltest

void* zelMalloc(uint64_t bytes)
{
    zeltest::lastAllocation = bytes;
    if (zeltest::allocationsLeft == 0) return nullptr;
    if (zeltest::allocationsLeft > 0) --zeltest::allocationsLeft;
    ++zeltest::blocks;
    return std::aligned_alloc(64, (bytes + 63) / 64 * 64);
}

void zelFree(void* block)
{
    zeltest::blocks -= block != nullptr;
    std::free(block);
}

namespace zeltest {

struct Mask {
    ZeliSize size;
    ZeliPoint anchor;
    std::vector<Zel8u> bytes;

    // Rows of text, in which '#' is set; without an anchor that is the middle.
    explicit Mask(const std::vector<std::string>& rows, ZeliPoint at = {-1, -1})
        : size{int(rows[0].size()), int(rows.size())}, anchor(at.x < 0 ? ZeliPoint{size.width / 2, size.height / 2} : at)
    {
        for (const std::string& row : rows)
            for (const char c : row) bytes.push_back(c == '#' ? Zel8u(1 + 7 * bytes.size()) | 1 : 0);
    }
    // Where isSet(x, y).
    template <class IsSet>
    Mask(ZeliSize extent, ZeliPoint at, const IsSet& isSet) : size(extent), anchor(at)
    {
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) bytes.push_back(isSet(x, y) ? 255 : 0);
    }

    Mask turned() const
    {
        Mask mask = *this;
        std::reverse(mask.bytes.begin(), mask.bytes.end());
        mask.anchor = {size.width - anchor.x - 1, size.height - anchor.y - 1};
        return mask;
    }
};

inline Mask disc(int size)
{
    return Mask({size, size}, {size / 2, size / 2}, [=](int x, int y) {
        return std::hypot(x - size / 2, y - size / 2) <= size / 2 + 0.3;
    });
}
inline Mask randomMask(Random& random, ZeliSize size, int percent)
{
    return Mask(size, {random.between(0, size.width - 1), random.between(0, size.height - 1)},
                [&](int, int) { return random.between(1, 100) <= percent; });
}

// The largest or the smallest element under the set bytes. General masks start at a finite number, and replace what is not
// strictly better, row by row.
template <class T>
T extremeUnder(const Mask& mask, bool largest, bool general, const Image<T>& src, int channels, int x, int y)
{
    using Limits = std::numeric_limits<T>;
    T extreme = largest ? Limits::lowest() : Limits::max();
    bool any = general;
    const int lastColumn = src.width() / channels - 1;
    for (int j = 0; j < mask.size.height; ++j)
        for (int i = 0; i < mask.size.width; ++i) {
            if (mask.bytes[std::size_t(j * mask.size.width + i)] == 0) continue;
            const int column = std::clamp(x / channels + i - mask.anchor.x, 0, lastColumn);
            const int row = std::clamp(y + j - mask.anchor.y, 0, src.height() - 1);
            const T element = src.at(column * channels + x % channels, row);
            if (!any || !(largest ? extreme > element : extreme < element)) extreme = element;
            any = true;
        }
    return any ? extreme : src.at(x, y);
}

// The six layouts: an element, a number of channels, and the functions of states, of both operations and of what is built of
// them.
#define LAYOUT(Type, channels, suffix)                                                                                \
    struct C##channels##_##Type {                                                                                     \
        using T = Type;                                                                                               \
        static constexpr int kChannels = channels, kPixelBytes = channels * int(sizeof(Type));                        \
        static constexpr int kDataType = sizeof(Type) == 1 ? 1 : 13;                                                  \
        static constexpr auto size = zeliMorphologyGetSize_##suffix;                                                  \
        static constexpr auto init = zeliMorphologyInit_##suffix;                                                     \
        static constexpr auto initAlloc = zeliMorphologyInitAlloc_##suffix;                                           \
        static constexpr auto dilate = zeliDilateBorderReplicate_##suffix;                                            \
        static constexpr auto erode = zeliErodeBorderReplicate_##suffix;                                              \
        static constexpr auto advancedSize = zeliMorphAdvGetSize_##suffix;                                            \
        static constexpr auto advancedInit = zeliMorphAdvInit_##suffix;                                               \
        static constexpr auto advancedInitAlloc = zeliMorphAdvInitAlloc_##suffix;                                     \
        static constexpr decltype(&zeliMorphOpenBorder_##suffix) operations[] = {                                     \
            zeliMorphOpenBorder_##suffix, zeliMorphCloseBorder_##suffix, zeliMorphTophatBorder_##suffix,              \
            zeliMorphBlackhatBorder_##suffix, zeliMorphGradientBorder_##suffix};                                      \
    };
LAYOUT(Zel8u, 1, 8u_C1R)
LAYOUT(Zel8u, 3, 8u_C3R)
LAYOUT(Zel8u, 4, 8u_C4R)
LAYOUT(Zel32f, 1, 32f_C1R)
LAYOUT(Zel32f, 3, 32f_C3R)
LAYOUT(Zel32f, 4, 32f_C4R)
using Layouts = testing::Types<C1_Zel8u, C3_Zel8u, C4_Zel8u, C1_Zel32f, C3_Zel32f, C4_Zel32f>;

// An image of a layout.
template <class M>
Image<typename M::T> image(Random& random, ZeliSize size, Texture texture = Texture::Noise)
{
    return Image<typename M::T>(random, size.width * M::kChannels, size.height, texture);
}

} // namespace zeltest

// The fields that the library promises.
struct ZeliMorphRowRuns {
    Zel32s width, height, anchorX, anchorY, rowCount, lengthCount;
    Zel32s *rowOffset, *lengthIndex, *runLength, *runAnchor;
};
struct ZeliMorphState {
    Zel8u *mask, *maskAlias1, *maskAlias2, *work;
    ZeliMorphRowRuns* rowRuns;
    Zel32s maskWidth, maskHeight, anchorX, anchorY, rightExtent, bottomExtent, bufferStep, totalSize, dataType, channels,
        roiWidthLimit, reservedMark;
    ZeliMorphShape shape;
};
