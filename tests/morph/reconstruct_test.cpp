// Reconstruction against its definition: grow everywhere, cut to the mask, until nothing changes.
#include "support/calls.h"

#include <cmath>

using namespace zeltest;

namespace {

template <class T>
struct Functions;
#define FUNCTIONS(type, T)                                                             \
    template <>                                                                        \
    struct Functions<T> {                                                              \
        static constexpr auto dilate = zeliMorphReconstructDilate_##type##_C1IR;       \
        static constexpr auto erode = zeliMorphReconstructErode_##type##_C1IR;         \
        static constexpr auto size = zeliMorphReconstructGetBufferSize_##type##_C1;    \
    }
FUNCTIONS(8u, Zel8u);
FUNCTIONS(16u, Zel16u);
FUNCTIONS(32f, Zel32f);
FUNCTIONS(64f, Zel64f);

template <class T>
int bufferSize(ZeliSize size)
{
    int bytes = 0;
    EXPECT_EQ(zelStatusOk, Functions<T>::size(size, &bytes));
    return bytes;
}

// The reconstruction in doubles, which hold all elements. Erosion is dilation of the negated images. What is not a number
// is nothing in the marker and everything in the mask.
template <class T>
std::vector<double> definition(const Image<T>& mask, const Image<T>& marker, bool dilates, ZeliNormType norm)
{
    const int width = marker.width(), height = marker.height(), pitch = width + 2;
    std::vector<double> limit(std::size_t(pitch) * std::size_t(height + 2), -INFINITY), grown = limit;
    const auto at = [=](int x, int y) { return std::size_t((y + 1) * pitch + x + 1); };
    const auto number = [=](T value, double none) {
        return std::isnan(double(value)) ? none : dilates ? double(value) : -double(value);
    };
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            limit[at(x, y)] = number(mask.at(x, y), INFINITY);
            grown[at(x, y)] = std::min(number(marker.at(x, y), -INFINITY), limit[at(x, y)]);
        }
    for (bool changed = true; changed;) {
        changed = false;
        const auto visit = [&](int x, int y) {
            double best = grown[at(x, y)];
            for (int j = -1; j <= 1; ++j)
                for (int i = -1; i <= 1; ++i)
                    if (norm == zeliNormInf || i == 0 || j == 0) best = std::max(best, grown[at(x + i, y + j)]);
            best = std::min(best, limit[at(x, y)]);
            if (best > grown[at(x, y)]) grown[at(x, y)] = best, changed = true;
        };
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) visit(x, y);
        for (int y = height - 1; y >= 0; --y)
            for (int x = width - 1; x >= 0; --x) visit(x, y);
    }
    std::vector<double> cut;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) cut.push_back(0.0 + (dilates ? grown[at(x, y)] : -grown[at(x, y)]));
    return cut;
}

// How to draw the mask and the marker at a pixel.
template <class T>
struct Scene {
    std::function<T(Random&, int x, int y)> mask, marker;
};

template <class T>
void expectDefinition(Random& random, ZeliSize size, const Scene<T>& scene, bool threads)
{
    Image<T> mask(random, size), start(random, size);
    for (const bool dilates : {true, false}) {
        const auto turned = [&](T value) { return dilates ? value : std::is_integral_v<T> ? T(T(-1) - value) : T(-value); };
        mask.fill([&](int x, int y) { return turned(scene.mask(random, x, y)); });
        start.fill([&](int x, int y) { return turned(scene.marker(random, x, y)); });
        for (ZeliNormType norm : {zeliNormInf, zeliNormL1}) {
            const std::vector<double> wanted = definition(mask, start, dilates, norm);
            const auto run = [&] {
                Image<T> marker = start;
                Buffer buffer(random, bufferSize<T>(size));
                EXPECT_EQ(zelStatusOk, call(dilates ? Functions<T>::dilate : Functions<T>::erode, mask, marker, size,
                                            buffer.data(), norm));
                marker.expect([&](int x, int y) { return T(wanted[std::size_t(y * size.width + x)]); },
                              std::string(dilates ? "dilation" : "erosion") + ", norm " + std::to_string(norm));
                EXPECT_TRUE(mask.untouched());
            };
            if (threads) underAllThreadings(run);
            else run();
        }
    }
}

template <class T>
std::vector<Scene<T>> scenes()
{
    const auto noise = [](Random& r, int x, int y) { return randomElement<T>(r, Texture::Noise, x, y); };
    const auto extremes = [](Random& r, int x, int y) { return randomElement<T>(r, Texture::Extremes, x, y); };
    const auto low = [](Random& r, int, int) { return T(r.between(0, 3)); };
    const auto seeds = [](Random& r, int, int) { return r.between(0, 99) ? T(0) : T(r.between(100, 250)); };
    const auto hills = [](Random& r, int x, int y) { // smooth, with a little noise
        return T(128 + 60 * std::sin(x / 9.0) * std::cos(y / 7.0) + r.between(0, 5));
    };
    const auto lower = [=](Random& r, int x, int y) { return T(hills(r, x, y) - 40); };
    const auto maze = [](Random&, int x, int y) { // one corridor, there and back over all rows
        return T(y % 2 == 0 || x == (y % 4 == 1 ? 36 : 0) ? 200 + (x + y) % 5 : 0);
    };
    const auto towers = [](Random&, int x, int y) { // a corridor up and down the columns
        return T(x % 2 == 0 || y == (x % 4 == 1 ? 40 : 0) ? 200 : 7);
    };
    const auto corner = [](Random&, int x, int y) { return T(x + y == 0 ? 250 : 0); };
    const auto diagonals = [](Random& r, int x, int y) { return T((x + y) % 7 == 0 || r.between(0, 9) == 0 ? 180 : 5); };
    return {{noise, noise}, {extremes, extremes}, {extremes, noise}, {noise, low}, {hills, seeds}, {hills, lower},
            {maze, corner}, {towers, corner}, {diagonals, seeds}, {hills, hills}};
}

template <class T>
class Reconstruct : public testing::Test {};
using Types = testing::Types<Zel8u, Zel16u, Zel32f, Zel64f>;
TYPED_TEST_SUITE(Reconstruct, Types);

TYPED_TEST(Reconstruct, EqualsDefinition)
{
    Random random(1);
    for (ZeliSize size : withSeams({{1, 1}, {1, 7}, {2, 2}, {3, 9}, {5, 4}, {6, 12}, {7, 1}, {10, 40}, {29, 3}, {9, 20}}))
        for (const auto& scene : scenes<TypeParam>()) expectDefinition(random, size, scene, false);
}

TYPED_TEST(Reconstruct, UnderAllThreadings)
{
    Random random(2);
    for (ZeliSize size : {ZeliSize{37, 41}, {10, 30}, {11, 11}, {80, 57}})
        for (const auto& scene : scenes<TypeParam>()) expectDefinition(random, size, scene, true);
}

TYPED_TEST(Reconstruct, Examples)
{
    // The second region hangs on the first one by a corner.
    const std::vector<TypeParam> mask = {9, 9, 0, 0, 9, 9, 0, 0, 0, 0, 8, 8, 0, 0, 8, 8};
    for (auto [norm, wanted] : {std::pair(zeliNormInf, 7), {zeliNormL1, 0}}) {
        std::vector<TypeParam> marker(16, 0);
        marker[0] = 7;
        const int step = 4 * int(sizeof(TypeParam));
        std::vector<Zel8u> buffer(std::size_t(bufferSize<TypeParam>({4, 4})));
        EXPECT_EQ(zelStatusOk,
                  Functions<TypeParam>::dilate(mask.data(), step, marker.data(), step, {4, 4}, buffer.data(), norm));
        const auto far = TypeParam(wanted);
        EXPECT_EQ(marker, (std::vector<TypeParam>{7, 7, 0, 0, 7, 7, 0, 0, 0, 0, far, far, 0, 0, far, far}));
    }
}

TEST(ReconstructGetBufferSize, FollowsItsFormulas)
{
    EXPECT_EQ(4 * 30 + 7 + 161, bufferSize<Zel8u>({30, 7}));
    EXPECT_EQ(2 * (4 * 30 + 7) + 322, bufferSize<Zel16u>({30, 7}));
    EXPECT_EQ(16 * 30 + 7 + 164, bufferSize<Zel32f>({30, 7}));
    EXPECT_EQ(32 * 30 + 7 + 168, bufferSize<Zel64f>({30, 7}));
    EXPECT_EQ(int(32u * 100000000u + 5 + 168), bufferSize<Zel64f>({100000000, 5})) << "wraps at 32 bits";
}

TYPED_TEST(Reconstruct, ChecksInOrder)
{
    Random random(3);
    const ZeliSize size{20, 4};
    Image<TypeParam> mask(random, size), marker(random, size);
    Image<Zel8u> buffer(random, bufferSize<TypeParam>(size), 1);
    for (const auto function : {Functions<TypeParam>::dilate, Functions<TypeParam>::erode}) {
        Checks checks(function, mask, marker, size, buffer.data(), int(zeliNormL1));
        checks.watch(buffer).usual().values(-1, zelStatusBadArgument, {-1, 2, 3}).expect();
    }
    int bytes = 0;
    Checks(Functions<TypeParam>::size, size, &bytes).usual().expect();
}

} // namespace
