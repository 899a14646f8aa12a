// Integral images in the gallery, and the deviation in windows that is read from them.
#include "gallery/chapters.h"
#include "operations/integral.h"
#include "pictures/display.h"

namespace app {

namespace {

// Small enough for the sum of all squares to fit 32 bits.
constexpr ZeliSize kSize = {280, 210};

// From black to white for the largest value, in steps that look like lines of height.
template <class T>
Picture relief(const Image<T>& src)
{
    constexpr int lines = 32;
    // Sums in 32 bits go on where the sign begins.
    const auto level = [](T value) {
        if constexpr (std::is_same_v<T, Zel32s>)
            return double(Zel32u(value));
        else
            return double(value);
    };
    double largest = 1;
    for (int y = 0; y < src.size().height; ++y)
        for (int x = 0; x < src.size().width; ++x) largest = std::max(largest, level(src.row(y)[x]));
    return mapElements<Zel8u>(src, [&](T value) {
        const double height = level(value) / largest;
        return toByte(255 * height * (int(lines * height) % 2 ? 0.8 : 1));
    });
}

// The picture with its edge repeated, and one pixel more all around in memory: the 32s form of the tilted squares reads one.
class Padded {
public:
    Padded(const Picture& gray, int margin) : whole_(padded(cut(gray, middle(gray.size(), kSize)), margin + 1)) {}
    PictureView view() const
    {
        const ZeliSize size = whole_.size();
        return whole_.view().part({1, 1, size.width - 2, size.height - 2});
    }

private:
    Picture whole_;
};

void addIntegrals(Section& section, const Source& source)
{
    const auto add = [&](const char* title, const char* sentence, Form form, auto... functions) {
        section.add(title, sentence, [=, &source](Calls& calls) {
            const Padded src(source.gray, 0);
            return inStrips(std::tuple(functions...),
                            [&](auto function) { return relief(sums(calls, function, src.view(), form)); });
        });
    };
    const auto addPairs = [&](const char* title, const char* sentence, Form form, auto... functions) {
        section.add(
            title, sentence,
            [=, &source](Calls& calls) {
                const Padded src(source.gray, 0);
                std::vector<Picture> left, right;
                const auto make = [&](auto function) {
                    const auto pair = sumsAndSquares(calls, function, src.view(), form);
                    left.push_back(relief(pair.sums));
                    right.push_back(relief(pair.squares));
                };
                (make(functions), ...);
                const Picture both[] = {strips(left), strips(right)};
                return sideBySide({&both[0], &both[1]});
            },
            Width::two);
    };
    add("Sums", "Each pixel holds the sum of all pixels above it and to its left. In 32s and 32f.", Form::upright,
        ZELCV_FUNCTION(zeliIntegral_8u32s_C1R), ZELCV_FUNCTION(zeliIntegral_8u32f_C1R));
    addPairs("Sums, and sums of squares", "In 32s and 32s, 32s and 64f, 32f and 64f.", Form::upright,
             ZELCV_FUNCTION(zeliSqrIntegral_8u32s_C1R), ZELCV_FUNCTION(zeliSqrIntegral_8u32s64f_C1R),
             ZELCV_FUNCTION(zeliSqrIntegral_8u32f64f_C1R));
    add("Tilted sums", "Each pixel holds the sum of the triangle above it. In 32s and 32f.", Form::tilted,
        ZELCV_FUNCTION(zeliTiltedIntegral_8u32s_C1R), ZELCV_FUNCTION(zeliTiltedIntegral_8u32f_C1R));
    addPairs("Tilted sums, and sums of squares", "In the same types.", Form::tilted,
             ZELCV_FUNCTION(zeliTiltedSqrIntegral_8u32s_C1R), ZELCV_FUNCTION(zeliTiltedSqrIntegral_8u32s64f_C1R),
             ZELCV_FUNCTION(zeliTiltedSqrIntegral_8u32f64f_C1R));
}

// The deviation around each pixel as gray levels, from a pair of integral images of the padded picture. The integer form
// counts in quarters of a gray level.
template <class D, class Q, class R, class... Scale>
Picture deviation(Calls& calls,
                  Function<ZelStatus(const D*, int, const Q*, int, R*, int, ZeliSize, ZeliRect, Scale...)> function,
                  const SumsAndSquares<D, Q>& pair, ZeliSize size, int left, ZeliRect window)
{
    constexpr double gain = 3;
    const auto from = [&](const auto& plane) {
        return plane.view().part({left, 0, plane.size().width - left, plane.size().height});
    };
    Image<R> dst(size, 1);
    callWith(calls, function, from(pair.sums), from(pair.squares), dst, size, window, Scale(-2)...);
    return brightness(dst, sizeof...(Scale) ? gain / 4 : gain);
}

void addDeviations(Section& section, const Source& source)
{
    // Both windows lie in a square of 2 * margin pixels.
    constexpr int margin = 6;
    const auto add = [&](const char* title, const char* sentence, Form form, auto... members) {
        section.add(title, sentence, [=, &source](Calls& calls) {
            const bool tilted = form == Form::tilted;
            const Padded src(source.gray, margin);
            const PictureView view = src.view();
            // The tilted window's upper corner is in the middle of its square.
            const int left = tilted ? margin : 0, side = tilted ? margin : 2 * margin;
            const ZeliSize size{view.size.width - 2 * margin, view.size.height - 2 * margin};
            return inStrips(std::tuple(members...), [&](const auto& member) {
                Calls unmeasured;
                const auto pair = sumsAndSquares(unmeasured, member.first, view, form);
                return deviation(calls, member.second, pair, size, left, {0, 0, side, side});
            });
        });
    };
    add("Deviation in a window", "Standard deviation in 12 by 12 pixels around each pixel; shown three times as bright.",
        Form::upright, std::pair(ZELCV_FUNCTION(zeliSqrIntegral_8u32f64f_C1R), ZELCV_FUNCTION(zeliRectStdDev_32f_C1R)),
        std::pair(ZELCV_FUNCTION(zeliSqrIntegral_8u32s64f_C1R), ZELCV_FUNCTION(zeliRectStdDev_32s32f_C1R)),
        std::pair(ZELCV_FUNCTION(zeliSqrIntegral_8u32s_C1R), ZELCV_FUNCTION(zeliRectStdDev_32s_C1RSfs)));
    add("Deviation in a tilted window", "In a square that stands on a corner, 12 pixels high and wide.", Form::tilted,
        std::pair(ZELCV_FUNCTION(zeliTiltedSqrIntegral_8u32f64f_C1R), ZELCV_FUNCTION(zeliTiltedRectStdDev_32f_C1R)),
        std::pair(ZELCV_FUNCTION(zeliTiltedSqrIntegral_8u32s64f_C1R), ZELCV_FUNCTION(zeliTiltedRectStdDev_32s32f_C1R)),
        std::pair(ZELCV_FUNCTION(zeliTiltedSqrIntegral_8u32s_C1R), ZELCV_FUNCTION(zeliTiltedRectStdDev_32s_C1RSfs)));
}

Section integralsSection(const Source& source)
{
    Section section{"integrals",
                    "Sums, and deviations in windows",
                    "Sums over everything above a point, of the middle of the picture. The sum in any rectangle takes four "
                    "reads from one, and the deviation in it four more from another. Strips of a figure are types.",
                    {}};
    addIntegrals(section, source);
    addDeviations(section, source);
    return section;
}

} // namespace

Chapter integralChapter(const Source& source)
{
    return {"integral", "Integral images", {integralsSection(source), haarSection(source)}};
}

} // namespace app
