// Edges of a picture, in C++: both Sobel derivatives, then Canny, in scratch memory of one vector.
//
//     c++ edges.cpp $(pkg-config --cflags --libs zelcv) -o edges
#include <zelcv.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace {

void require(ZelStatus status)
{
    if (status < 0) throw std::runtime_error(zelGetStatusString(status));
}

// 255 on each edge of `picture`, 0 elsewhere. Rows of all planes stand one behind the other.
std::vector<Zel8u> edges(const std::vector<Zel8u>& picture, ZeliSize size, Zel32f low, Zel32f high)
{
    const int derivativeStep = size.width * int(sizeof(Zel16s));
    std::vector<Zel16s> dx(picture.size()), dy(picture.size());
    std::vector<Zel8u> result(picture.size());

    // Each function tells how much scratch memory it needs; they run one after the other and can share it.
    int forDx = 0, forDy = 0, forCanny = 0;
    require(zeliFilterSobelNegVertGetBufferSize_8u16s_C1R(size, zeliMask3x3, &forDx));
    require(zeliFilterSobelHorizGetBufferSize_8u16s_C1R(size, zeliMask3x3, &forDy));
    require(zeliCannyGetSize(size, &forCanny));
    std::vector<Zel8u> scratch(std::size_t(std::max({forDx, forDy, forCanny})));

    require(zeliFilterSobelNegVertBorder_8u16s_C1R(picture.data(), size.width, dx.data(), derivativeStep, size, zeliMask3x3,
                                                   zeliBorderReplicate, 0, scratch.data()));
    require(zeliFilterSobelHorizBorder_8u16s_C1R(picture.data(), size.width, dy.data(), derivativeStep, size, zeliMask3x3,
                                                 zeliBorderReplicate, 0, scratch.data()));
    require(zeliCanny_16s8u_C1R(dx.data(), derivativeStep, dy.data(), derivativeStep, result.data(), size.width, size, low,
                                high, scratch.data()));
    return result;
}

// A bright disc on a dark ground.
std::vector<Zel8u> disc(ZeliSize size)
{
    std::vector<Zel8u> picture;
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const int dx = 2 * x - size.width + 1, dy = 2 * y - size.height + 1;
            picture.push_back(dx * dx + dy * dy < 28 * 28 ? 210 : 40);
        }
    return picture;
}

} // namespace

int main()
{
    const ZeliSize size = {48, 36};
    try {
        const std::vector<Zel8u> found = edges(disc(size), size, 100, 300);
        for (int y = 0; y < size.height; ++y) {
            for (int x = 0; x < size.width; ++x) std::putchar(found[std::size_t(y * size.width + x)] ? '#' : '.');
            std::putchar('\n');
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "edges: %s\n", error.what());
        return 1;
    }
}
