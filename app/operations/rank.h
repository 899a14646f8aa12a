// Minimum and maximum filters from image to image.
#pragma once

#include "operations/calls.h"

namespace app {

enum class Extreme { smallest, largest };

// Pixels around each pixel, which the anchor tells the place of.
struct Rectangle {
    ZeliSize size;
    ZeliPoint anchor;

    explicit Rectangle(ZeliSize given) : size(given), anchor{given.width / 2, given.height / 2} {}
};

template <class T>
struct RankMember {
    Function<ZelStatus(int, ZeliSize, int*)> size;
    Function<ZelStatus(const T*, int, T*, int, ZeliSize, ZeliSize, ZeliPoint, Zel8u*)> filter;
};

template <class T>
const RankMember<T>& rankMember(Extreme extreme, int channels)
{
#define RANK_MEMBER(Name, layout)                                                                                            \
    {                                                                                                                        \
        ZELCV_FUNCTION(zeliFilter##Name##GetBufferSize_##layout), ZELCV_FUNCTION(zeliFilter##Name##BorderReplicate_##layout) \
    }
#define RANK_MEMBERS(type)                                                                                                   \
    {                                                                                                                        \
        {RANK_MEMBER(Min, type##_C1R), RANK_MEMBER(Min, type##_C3R), RANK_MEMBER(Min, type##_C4R)},                          \
        {                                                                                                                    \
            RANK_MEMBER(Max, type##_C1R), RANK_MEMBER(Max, type##_C3R), RANK_MEMBER(Max, type##_C4R)                         \
        }                                                                                                                    \
    }
    const int layout = channels == 1 ? 0 : channels - 2; // one, three or four channels
    if constexpr (std::is_same_v<T, Zel8u>) {
        static const RankMember<T> members[2][3] = RANK_MEMBERS(8u);
        return members[int(extreme)][layout];
    } else {
        static const RankMember<T> members[2][3] = RANK_MEMBERS(32f);
        return members[int(extreme)][layout];
    }
#undef RANK_MEMBERS
#undef RANK_MEMBER
}

// The smallest or largest value of a rectangle around each pixel, channel by channel.
template <class T>
Image<T> extremes(Calls& calls, const Image<T>& src, Extreme extreme, const Rectangle& rectangle)
{
    Image<T> dst(src.size(), src.channels());
    const RankMember<T>& member = rankMember<T>(extreme, src.channels());
    const Block buffer = calls.scratch(member.size, src.size().width, rectangle.size);
    calls(member.filter, src.view().data, src.step(), dst.data(), dst.step(), src.size(), rectangle.size, rectangle.anchor,
          buffer.data());
    return dst;
}

} // namespace app
