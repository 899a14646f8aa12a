// The kernel of sparse masks against its definition.
#include "morph/sparse_rows.h"

#include "support/images.h"

using namespace zelcv;
using namespace zeltest;

namespace {

template <class Pick, class T>
void compareAll(bool largest)
{
    Random random(1);
    std::vector<int> lengths = {1, 2, 5, 3000};
    for (ZeliSize size : withSeams({})) lengths.push_back(size.width);
    for (int n : lengths)
        for (int count : {0, 1, 2, 3, 4, 5, 8, 13}) {
            const int readable = std::max(n, kSparseBlock<T>);
            std::vector<Image<T>> places;
            std::vector<const T*> at;
            for (int k = 0; k < count; ++k)
                places.emplace_back(random, readable, 1, random.between(0, 1) ? Texture::Extremes : Texture::Noise);
            for (const auto& place : places) at.push_back(place.data());
            Image<T> dst(random, n, 1);
            extremesOfPlaces<Pick>(at.data(), count, Pick::template kStart<T>, dst.data(), n);
            dst.expect([&](int i, int) { // infinities do not pass the start; a NaN is replaced by what follows
                T extreme = Pick::template kStart<T>;
                for (const auto& place : places) {
                    const T value = place.at(i, 0);
                    if (!(largest ? extreme > value : extreme < value)) extreme = value;
                }
                return extreme;
            }, std::to_string(count) + " places");
        }
}

TEST(SparseRows, EqualDefinition)
{
    compareAll<Largest, Zel8u>(true);
    compareAll<Smallest, Zel8u>(false);
    compareAll<Largest, Zel32f>(true);
    compareAll<Smallest, Zel32f>(false);
}

} // namespace
