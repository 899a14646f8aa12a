// A bay in the evening: a sky, mountains, water that mirrors the sun, a lighthouse, a boat, and a board with writing. Shapes
// are distance functions, negative inside, which gives smooth edges for nothing.
#include "pictures/scene.h"

#include "pictures/display.h"

#include <array>
#include <functional>

namespace app {

namespace {

constexpr int kWidth = 640, kHeight = 480;
constexpr float kHorizon = 292;

struct Colour {
    float r, g, b;
};
struct Point {
    float x, y;
};

Colour mix(Colour a, Colour b, float t)
{
    t = std::clamp(t, 0.0f, 1.0f);
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

// Noise between -1 and 1 that depends on the place only.
float grain(int x, int y, unsigned seed)
{
    unsigned h = unsigned(x) * 374761393u + unsigned(y) * 668265263u + seed * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    h ^= h >> 16;
    return float(h & 0xffff) / 32767.5f - 1;
}

// The same, smooth between points at a distance of 1.
float smoothNoise(float x, float y, unsigned seed)
{
    const int ix = int(std::floor(x)), iy = int(std::floor(y));
    const auto ease = [](float t) { return t * t * (3 - 2 * t); };
    const float u = ease(x - float(ix)), v = ease(y - float(iy));
    const float top = std::lerp(grain(ix, iy, seed), grain(ix + 1, iy, seed), u);
    const float bottom = std::lerp(grain(ix, iy + 1, seed), grain(ix + 1, iy + 1, seed), u);
    return std::lerp(top, bottom, v);
}
float roughness(float x, float y, unsigned seed)
{
    return smoothNoise(x, y, seed) + 0.5f * smoothNoise(2 * x, 2 * y, seed + 1) + 0.25f * smoothNoise(4 * x, 4 * y, seed + 2);
}

using Distance = std::function<float(Point)>;

Distance circle(Point centre, float radius)
{
    return [=](Point p) { return std::hypot(p.x - centre.x, p.y - centre.y) - radius; };
}

Distance box(Point corner, Point opposite)
{
    return [=](Point p) { return std::max({corner.x - p.x, p.x - opposite.x, corner.y - p.y, p.y - opposite.y}); };
}

Distance stroke(Point a, Point b, float width)
{
    return [=](Point p) {
        const Point d{b.x - a.x, b.y - a.y}, e{p.x - a.x, p.y - a.y};
        const float length2 = d.x * d.x + d.y * d.y;
        const float t = length2 > 0 ? std::clamp((e.x * d.x + e.y * d.y) / length2, 0.0f, 1.0f) : 0;
        return std::hypot(e.x - t * d.x, e.y - t * d.y) - width / 2;
    };
}

// A convex shape, its corners clockwise on the screen.
Distance polygon(std::vector<Point> corners)
{
    return [=](Point p) {
        float distance = -1e9f;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Point a = corners[i], b = corners[(i + 1) % corners.size()];
            const float length = std::hypot(b.x - a.x, b.y - a.y);
            distance = std::max(distance, ((b.y - a.y) * (p.x - a.x) - (b.x - a.x) * (p.y - a.y)) / length);
        }
        return distance;
    };
}

class Canvas {
public:
    using Paint = std::function<Colour(Point)>;

    void fill(const Distance& shape, const Paint& paint, float opacity = 1)
    {
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                const Point p{float(x) + 0.5f, float(y) + 0.5f};
                const float cover = std::clamp(0.5f - shape(p), 0.0f, 1.0f) * opacity;
                if (cover > 0) at(x, y) = mix(at(x, y), paint(p), cover);
            }
    }
    void fill(const Distance& shape, Colour colour, float opacity = 1)
    {
        fill(
            shape, [=](Point) { return colour; }, opacity);
    }
    Picture picture() const
    {
        Picture picture({kWidth, kHeight}, 3);
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                const Colour& colour = pixels_[std::size_t(y * kWidth + x)];
                const float channels[] = {colour.r, colour.g, colour.b};
                for (int c = 0; c < 3; ++c)
                    picture.row(y)[3 * x + c] = toByte(channels[c] + 3 * grain(x, y, unsigned(90 + c)));
            }
        return picture;
    }

private:
    Colour& at(int x, int y) { return pixels_[std::size_t(y * kWidth + x)]; }

    std::vector<Colour> pixels_{std::size_t(kWidth * kHeight)};
};

const Distance kEverywhere = [](Point) { return -1.0f; };
constexpr Point kSun{436, 212};

Colour sky(Point p)
{
    const float t = p.y / kHorizon;
    const Colour air =
        t < 0.6f ? mix({36, 62, 122}, {142, 128, 172}, t / 0.6f) : mix({142, 128, 172}, {255, 196, 142}, (t - 0.6f) / 0.4f);
    const float glow = std::exp(-std::hypot(p.x - kSun.x, p.y - kSun.y) / 70);
    const float cloud = std::clamp(roughness(p.x / 110, p.y / 26, 7) - 0.25f, 0.0f, 1.0f) * (1 - t * 0.5f);
    return mix(mix(air, {255, 214, 150}, glow), {250, 206, 196}, cloud * 0.55f);
}

void drawLand(Canvas& canvas)
{
    struct Range {
        float base, height, scale;
        Colour colour;
    };
    const Range ranges[] = {{262, 70, 120, {128, 112, 158}}, {278, 44, 70, {88, 82, 128}}, {288, 20, 34, {52, 58, 92}}};
    unsigned seed = 20;
    for (const Range& range : ranges) {
        seed += 10;
        const auto ridge = [=](Point p) {
            return range.base - range.height * (0.35f + 0.6f * roughness(p.x / range.scale, 0, seed)) - p.y;
        };
        canvas.fill([=](Point p) { return std::max(ridge(p), p.y - kHorizon); },
                    [=](Point p) {
                        const float light =
                            14 * roughness(p.x / 9, p.y / 9, seed + 5) + 0.35f * (p.y - range.base + range.height);
                        return Colour{range.colour.r + light, range.colour.g + light, range.colour.b + light};
                    });
    }
}

Colour water(Point p)
{
    const float depth = (p.y - kHorizon) / (kHeight - kHorizon);
    const float size = 2.5f + 22 * depth; // waves grow towards the viewer
    const float wave = roughness(p.x / (4 * size) + 3 * depth, 60 * std::sqrt(depth + 0.02f), 60);
    const float path = std::exp(-std::fabs(p.x - kSun.x) / (22 + 60 * depth));
    const float glitter = path * std::clamp(1.6f * wave + 0.55f, 0.0f, 1.0f);
    const Colour base = mix({196, 150, 150}, {28, 62, 98}, std::sqrt(depth));
    return mix({base.r + 22 * wave, base.g + 24 * wave, base.b + 26 * wave}, {255, 232, 184}, glitter);
}

void drawLighthouse(Canvas& canvas)
{
    const auto rock = [](Point p) {
        return (std::hypot((p.x - 96) / 150, (p.y - 368) / 74) - 1) * 74 + 9 * roughness(p.x / 24, p.y / 24, 81);
    };
    canvas.fill(rock, [](Point p) {
        const float light = 26 * roughness(p.x / 14, p.y / 10, 84) + 10 * grain(int(p.x), int(p.y), 88) - 0.22f * (p.y - 330);
        return Colour{104 + light, 94 + light, 92 + light};
    });
    const auto tower = polygon({{78, 112}, {118, 112}, {130, 316}, {66, 316}});
    canvas.fill(tower, [](Point p) {
        const bool red = int((p.y - 112) / 34) % 2 == 1;
        const float round = 0.62f + 0.42f * std::sin((p.x - 58) / 40); // lit from the right
        const Colour paint = red ? Colour{206, 58, 48} : Colour{244, 238, 226};
        return Colour{paint.r * round, paint.g * round, paint.b * round};
    });
    for (int i = 0; i < 3; ++i) canvas.fill(box({94, 158 + 51.0f * float(i)}, {102, 174 + 51.0f * float(i)}), {44, 40, 56});
    canvas.fill(box({68, 104}, {128, 112}), {38, 38, 52});
    canvas.fill(box({82, 74}, {114, 104}), {255, 232, 150});
    for (float x : {82.0f, 98.0f, 114.0f}) canvas.fill(stroke({x, 74}, {x, 104}, 2.2f), {38, 38, 52});
    canvas.fill(polygon({{98, 48}, {120, 75}, {76, 75}}), {168, 44, 40});
    canvas.fill(stroke({98, 34}, {98, 50}, 2), {38, 38, 52});
    canvas.fill(
        polygon({{114, 84}, {660, -16}, {660, 62}, {114, 94}}),
        [](Point) {
            return Colour{255, 244, 196};
        },
        0.13f);
}

void drawBoat(Canvas& canvas)
{
    canvas.fill(polygon({{246, 344}, {352, 344}, {334, 366}, {262, 366}}), [](Point p) {
        return mix({126, 66, 38}, {70, 34, 26}, (p.y - 344) / 22);
    });
    canvas.fill(stroke({298, 344}, {298, 226}, 3), {60, 42, 34});
    canvas.fill(polygon({{303, 232}, {360, 336}, {303, 336}}), [](Point p) {
        return int(p.y / 13) % 2 ? Colour{250, 246, 236} : Colour{64, 118, 164};
    });
    canvas.fill(polygon({{293, 246}, {293, 336}, {252, 336}}), {236, 226, 208});
    canvas.fill(polygon({{298, 216}, {316, 222}, {298, 229}}), {220, 70, 54});
    canvas.fill(polygon({{262, 368}, {334, 368}, {322, 384}, {274, 384}}), {24, 34, 52}, 0.45f);
}

void drawBoard(Canvas& canvas)
{
    for (float x : {452.0f, 592.0f}) canvas.fill(box({x - 6, 380}, {x + 6, 480}), {70, 48, 36});
    canvas.fill(box({430, 352}, {616, 448}), {54, 36, 28});
    canvas.fill(box({434, 356}, {612, 444}), [](Point p) {
        const float wood =
            18 * roughness(p.x / 60, p.y / 3, 71) + 8 * std::sin(p.y / 2.2f + 3 * roughness(p.x / 80, p.y / 30, 75));
        return Colour{190 + wood, 146 + wood, 98 + wood * 0.8f};
    });
    // Letters as polylines in a box of 4 x 6, as on a drawing machine.
    const std::vector<std::vector<Point>> letters = {
        {{0, 2}, {4, 2}, {0, 6}, {4, 6}},
        {{0, 4}, {4, 4}, {4, 2.6f}, {3, 2}, {1, 2}, {0, 3}, {0, 5}, {1, 6}, {4, 6}},
        {{2, 0}, {2, 6}},
        {{4, 2}, {1, 2}, {0, 3}, {0, 5}, {1, 6}, {4, 6}},
        {{0, 2}, {2, 6}, {4, 2}}};
    Point start{452, 358};
    for (const auto& letter : letters) {
        for (std::size_t i = 0; i + 1 < letter.size(); ++i) {
            const auto place = [&](Point p) { return Point{start.x + 5.6f * p.x, start.y + 7.2f * p.y}; };
            canvas.fill(stroke(place(letter[i]), place(letter[i + 1]), 5), {44, 28, 24});
        }
        start.x += 30;
    }
    for (int line = 0; line < 2; ++line) // small print
        for (int word = 0; word < 22; ++word) {
            const Point at{452 + 6.6f * float(word), 418 + 12 * float(line)};
            const float tilt = 3 * grain(word, line, 77);
            if (grain(word, line, 78) > -0.7f)
                canvas.fill(stroke({at.x - tilt, at.y - 3}, {at.x + tilt, at.y + 3}, 1.3f), {66, 44, 34});
        }
}

} // namespace

Picture drawScene()
{
    Canvas canvas;
    canvas.fill(kEverywhere, sky);
    canvas.fill(circle(kSun, 34), [](Point p) { return mix({255, 250, 226}, {255, 222, 158}, (p.y - kSun.y + 34) / 68); });
    drawLand(canvas);
    canvas.fill([](Point p) { return kHorizon - p.y; }, water);
    drawBoat(canvas);
    drawLighthouse(canvas);
    for (const Point bird : {Point{214, 84}, Point{248, 102}, Point{236, 66}, Point{548, 96}, Point{574, 110}}) {
        canvas.fill(stroke({bird.x - 9, bird.y - 4}, bird, 1.8f), {40, 40, 66});
        canvas.fill(stroke({bird.x + 9, bird.y - 5}, bird, 1.8f), {40, 40, 66});
    }
    drawBoard(canvas);
    return canvas.picture();
}

} // namespace app
