// zeliCanny against its definition, and examples worked out by hand.
#include "support/calls.h"

#include <cmath>

using namespace zeltest;

namespace {

template <class T>
constexpr auto canny = zeliCanny_16s8u_C1R;
template <>
constexpr auto canny<Zel32f> = zeliCanny_32f8u_C1R;

int bufferSize(ZeliSize size)
{
    int bytes = 0;
    EXPECT_EQ(zelStatusOk, zeliCannyGetSize(size, &bytes));
    return bytes;
}

// The edge map by whole planes: strengths, survivors, then growth until nothing changes.
template <class T>
std::vector<Zel8u> definition(const Image<T>& dx, const Image<T>& dy, float low, float high)
{
    const int width = dx.width(), height = dx.height(), pitch = width + 2;
    std::vector<float> strength(std::size_t(pitch) * std::size_t(height + 2), 0.f);
    std::vector<Zel8u> survivor(strength.size(), 0), edge(strength.size(), 0);
    const auto at = [=](int x, int y) { return std::size_t((y + 1) * pitch + x + 1); };
    if (std::is_integral_v<T>) low = std::trunc(low);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const float sum = std::fabs(float(dx.at(x, y))) + std::fabs(float(dy.at(x, y)));
            strength[at(x, y)] = sum <= low ? 0.f : sum;
        }
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const float gx = dx.at(x, y), gy = dy.at(x, y), ax = std::fabs(gx), ay = std::fabs(gy);
            const float steep = float(double(ax) * 2.414213562373095), flat = float(double(ax) * 0.41421356237309503);
            const bool alongColumn = ay > steep, alongRow = !alongColumn && flat > ay;
            const int diagonal = std::signbit(gx) != std::signbit(gy) ? pitch - 1 : pitch + 1;
            const int offset = alongColumn ? pitch : alongRow ? 1 : diagonal;
            const float *m = &strength[at(x, y)], before = m[-offset], after = m[offset];
            survivor[at(x, y)] = *m != 0 && before < *m && (after < *m || (after == *m && (alongColumn || alongRow)));
            edge[at(x, y)] = survivor[at(x, y)] && high < *m ? 255 : 0;
        }
    for (bool grown = true; grown;) {
        grown = false;
        for (std::size_t i = at(0, 0); i <= at(width - 1, height - 1); ++i) {
            if (!survivor[i] || edge[i]) continue;
            for (int row : {-pitch, 0, pitch})
                for (int column : {-1, 0, 1})
                    if (edge[i + std::size_t(std::ptrdiff_t(row + column))]) edge[i] = 255, grown = true;
        }
    }
    std::vector<Zel8u> cut;
    for (int y = 0; y < height; ++y) cut.insert(cut.end(), &edge[at(0, y)], &edge[at(0, y)] + width);
    return cut;
}

template <class T>
void expectDefinition(Random& random, Image<T>& dx, Image<T>& dy, float low, float high)
{
    const ZeliSize size{dx.width(), dx.height()};
    Image<Zel8u> dst(random, size);
    Buffer buffer(random, bufferSize(size));
    EXPECT_EQ(zelStatusOk, call(canny<T>, dx, dy, dst, size, low, high, buffer.data()));
    const std::vector<Zel8u> wanted = definition(dx, dy, low, high);
    dst.expect([&](int x, int y) { return wanted[std::size_t(y) * std::size_t(size.width) + std::size_t(x)]; },
               "edges, thresholds " + std::to_string(low) + " and " + std::to_string(high));
}

template <class T>
class Canny : public testing::Test {};
using Types = testing::Types<Zel16s, Zel32f>;
TYPED_TEST_SUITE(Canny, Types);

// How to draw dx or dy at a pixel.
template <class T>
using Draw = std::function<T(Random&, int x, int y, bool vertical)>;

template <class T>
void expectDefinition(Random& random, ZeliSize size, const Draw<T>& draw, std::vector<std::pair<float, float>> thresholds)
{
    Image<T> dx(random, size), dy(random, size);
    dx.fill([&](int x, int y) { return draw(random, x, y, false); });
    dy.fill([&](int x, int y) { return draw(random, x, y, true); });
    for (auto [low, high] : thresholds) expectDefinition(random, dx, dy, low, high);
}

TYPED_TEST(Canny, EqualsDefinition)
{
    using T = TypeParam;
    Random random(1);
    constexpr float nan = std::numeric_limits<float>::quiet_NaN(), tiny = std::numeric_limits<float>::denorm_min();
    const Draw<T> noise = [](Random& r, int, int, bool) { return randomElement<T>(r, Texture::Noise, 0, 0); };
    const Draw<T> extremes = [](Random& r, int, int, bool) {
        const T near[] = {std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(), T(1), T(-1)};
        return r.between(0, 2) ? randomElement<T>(r, Texture::Extremes, 0, 0) : near[r.between(0, 3)];
    };
    const Draw<T> plateaus = [](Random& r, int, int, bool) { return T(r.between(-3, 3)); };
    const Draw<T> denormals = [](Random& r, int, int, bool) { // with zeros of both signs
        return T(std::copysign(float(r.between(0, 2)) * tiny, float(r.between(0, 1)) - 0.5f));
    };
    const Draw<T> blobs = [](Random& r, int x, int y, bool vertical) { // rings around a lattice of centres
        const float u = float(x % 37) - 18, v = float(y % 29) - 14, distance = std::hypot(u, v) + 1;
        return T(120 * std::sin(distance) * (vertical ? v : u) / distance + float(r.between(0, 1)));
    };
    for (ZeliSize size : withSeams({{1, 1}, {1, 9}, {2, 2}, {7, 1}, {3, 300}, {8, 8}, {9, 15}, {17, 33}, {32, 32}, {33, 7},
                                    {65, 40}, {127, 9}, {260, 131}})) {
        expectDefinition<T>(random, size, noise, {{0, 0}, {100, 1200}, {30000, 50000.5f}, {1e9f, 1e9f}});
        expectDefinition<T>(random, size, extremes,
                            {{0, 0}, {0.5f, 2}, {1, 65535}, {2, 65534}, {65534, 65535}, {65535, 65535}, {65536, 65536},
                             {1, INFINITY}, {nan, 1}, {nan, -1}, {2, nan}});
        expectDefinition<T>(random, size, plateaus, {{0, 0}, {0, 5}, {0.5f, 4.5f}, {1, 5}, {2.7f, 3}, {2, 2}, {1, 6}});
        expectDefinition<T>(random, size, denormals, {{0, 0}, {tiny, 3 * tiny}});
        expectDefinition<T>(random, size, blobs, {{0, 100}, {60.5f, 119}, {99.9f, 99.9f}, {20, 122.25f}});
    }
}

// Around the bounds between the directions for every |dx| of 16 bits: whether a pixel survives tells its direction, since a
// stronger one stands beside it (blocked: the row's neighbours) or below it (the column's).
TYPED_TEST(Canny, DirectionBounds)
{
    Random random(2);
    for (bool row : {false, true})
        for (int off : {0, 1}) {
            Image<TypeParam> dx(random, 514, 258), dy(random, 514, 258);
            for (int y = 0; y < 258; ++y)
                for (int x = 0; x < 514; ++x) {
                    const bool tested = x % 2 == 0 && y % 2 == 0, blocker = row ? y % 2 == 0 : x % 2 == 0;
                    const int ax = std::min(y / 2 * 257 + x / 2, 32767);
                    const int ay = std::min(int(ax * (row ? 0.41421356237309503 : 2.414213562373095)) + off, 32767);
                    const auto sign = [&] { return random.between(0, 1) ? 1 : -1; };
                    dx.set(x, y, TypeParam(tested ? sign() * ax : blocker ? -32768 : 0));
                    dy.set(x, y, TypeParam(tested ? sign() * ay : blocker ? -32768 : 0));
                }
            expectDefinition(random, dx, dy, 1, 1);
        }
}

TYPED_TEST(Canny, WideAndTallRegions)
{
    Random random(3);
    const Draw<TypeParam> draw = [](Random& r, int, int, bool) { return TypeParam(r.between(-9, 9)); };
    for (ZeliSize size : {ZeliSize{65532, 2}, {65533, 3}, {70001, 2}, {2, 65533}, {1, 70000}})
        expectDefinition<TypeParam>(random, size, draw, {{2, 12}});
}

TYPED_TEST(Canny, Examples)
{
    // Rows of dx and dy give rows of '#' and '.'.
    const auto edges = [](int width, std::vector<float> dx, std::vector<float> dy, float low, float high) {
        const ZeliSize size{width, int(dx.size()) / width};
        std::vector<TypeParam> x(dx.begin(), dx.end()), y(dy.begin(), dy.end());
        std::vector<Zel8u> dst(dx.size(), 7), buffer(std::size_t(bufferSize(size)));
        const int step = width * int(sizeof(TypeParam));
        EXPECT_EQ(zelStatusOk, canny<TypeParam>(x.data(), step, y.data(), step, dst.data(), width, size, low, high,
                                                buffer.data()));
        std::string shown;
        for (Zel8u value : dst) shown += value == 255 ? '#' : value == 0 ? '.' : '?';
        return shown;
    };
    EXPECT_EQ(edges(1, {5}, {-6}, 10, 10), "#") << "alone";
    EXPECT_EQ(edges(4, {0, 9, 9, 0}, {0, 0, 0, 0}, 1, 1), ".#..") << "the first of two equals in a row";
    EXPECT_EQ(edges(1, {0, 0, 0, 0}, {0, 9, 9, 0}, 1, 1), ".#..") << "the first of two equals in a column";
    EXPECT_EQ(edges(2, {9, 0, 0, 9}, {9, 0, 0, 9}, 1, 1), "....") << "equals on a diagonal";
    EXPECT_EQ(edges(2, {9, 0, 0, 9}, {-9, 0, 0, -9}, 1, 1), "#..#") << "not neighbours across the edge";
    EXPECT_EQ(edges(1, {20, 20, 20}, {0, 0, 0}, 5, 20), "...") << "as strong as the high threshold";
    EXPECT_EQ(edges(1, {20, 20, 21}, {0, 0, 0}, 5, 20), "###") << "reached by growth";
    EXPECT_EQ(edges(1, {11}, {0}, 10.7f, 10.7f), "#") << "fractional threshold";
    EXPECT_EQ(edges(1, {10.5f}, {0}, 10.7f, 10.7f), ".") << "below a fractional threshold";
}

TEST(CannyGetSize, FollowsItsFormula)
{
    int size = -1;
    Checks(zeliCannyGetSize, ZeliSize{1, 1}, &size).usual().expect();
    EXPECT_EQ(221, bufferSize({1, 1}));
    EXPECT_EQ(5 * 65534 * 3 + 16 * 65532 + 160, bufferSize({65532, 1}));
    EXPECT_EQ(9 * 65535 * 3 + 16 * 65533 + 160, bufferSize({65533, 1}));
    EXPECT_EQ(9 * 65535 * 3 + 16 + 160, bufferSize({1, 65533}));
    EXPECT_EQ(int(unsigned(5LL * 40002 * 40002 + 16 * 40000 + 160)), bufferSize({40000, 40000})) << "wraps at 32 bits";
}

TYPED_TEST(Canny, ChecksInOrder)
{
    Random random(4);
    const ZeliSize size{20, 4};
    Image<TypeParam> dx(random, size), dy(random, size);
    Image<Zel8u> dst(random, size), buffer(random, bufferSize(size), 1);
    Checks checks(canny<TypeParam>, dx, dy, dst, size, 1, 2, buffer.data());
    checks.watch(buffer).usual().values(7, zelStatusBadArgument, {-0.25}).values(8, zelStatusBadArgument, {0.75}).expect();
}

} // namespace
