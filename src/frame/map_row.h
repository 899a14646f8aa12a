// A row computed vector by vector from other rows, tail included.
#pragma once

#include "vector.h"

namespace zelcv {

// How mapRow reads a source: plain elements, elements widened to float, mask bytes, bytes widened to 32 or 16 bits,
// doubles, and pairs of such blocks.
template <class T>
struct Elements {
    const T* from;
    Vec<T> at(int i) const { return load(from + i); }
};
template <class T>
struct AsFloats {
    const T* from;
    Vec<Zel32f> at(int i) const { return loadFloats(from + i); }
};
struct AsMask {
    const Zel8u* from;
    Vec<Zel32s> at(int i) const { return loadMask(from + i); }
};
struct AsWords {
    const Zel8u* from;
    Vec<Zel32u> at(int i) const { return loadWords(from + i); }
};
struct AsShorts {
    const Zel8u* from;
    Vec<Zel16u> at(int i) const { return loadShorts(from + i); }
};
struct AsDoubles {
    const Zel64f* from;
    Doubles at(int i) const { return loadDoubles(from + i); }
};
// Two blocks of a reader that takes as many elements as there are 32-bit lanes.
template <class Reader>
struct InPairs {
    decltype(Reader::from) from;
    auto at(int i) const
    {
        const Reader reader = {from};
        return Pair<decltype(reader.at(0))>{reader.at(i), reader.at(i + kLanes<Zel32u>)};
    }
};

// dst[i] = operation(source.at(i)...) for `count` elements, as many at a time as the operation returns. The tail goes through
// the same operation on padded copies. Exact overlap of dst with a source is allowed: each element is read before it is
// written. An operation may keep a state from block to block, which by value stays in registers.
template <class D, class Operation, class... Sources>
void mapRow(D* dst, int count, Operation operation, Sources... sources)
{
    constexpr int kBlock = int(sizeof(operation(sources.at(0)...)) / sizeof(D));
    int i = 0;
    for (; i <= count - kBlock; i += kBlock) store(dst + i, operation(sources.at(i)...));
    if (i == count) return;
    const auto tail = [i, rest = count - i](auto source) {
        std::remove_cvref_t<decltype(*source.from)> padded[kBlock] = {};
        std::memcpy(padded, source.from + i, sizeof(*padded) * std::size_t(rest));
        return decltype(source){padded}.at(0);
    };
    storePartial(dst + i, operation(tail(sources)...), count - i);
}

} // namespace zelcv
