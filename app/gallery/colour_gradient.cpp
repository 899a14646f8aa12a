// Gradients of colour pictures, and their directions, in the gallery.
#include "gallery/chapters.h"
#include "operations/colour_gradient.h"

namespace app {

namespace {

// Directions as colours: red to the right, by yellow, green and blue around, each as bright as the gradient is strong.
Picture directionsInColour(const Image<Zel32f>& degrees, const Image<Zel32f>& strength)
{
    const double white = largeMagnitude(strength);
    Picture dst(degrees.size(), 3);
    for (int y = 0; y < degrees.size().height; ++y)
        for (int x = 0; x < degrees.size().width; ++x)
            for (int c = 0; c < 3; ++c) {
                const double turn = (degrees.row(y)[x] - 120 * c) / 180 * 3.14159265358979;
                dst.row(y)[3 * x + c] = toByte(255 * strength.row(y)[x] / white * (0.5 + 0.5 * std::cos(turn)));
            }
    return dst;
}

} // namespace

Section colourGradientSection(const Source& source)
{
    Section section{"colour-gradient",
                    "Gradients of colour",
                    "The gradients of red, green and blue, by the Sobel filters 3 by 3, folded into one by a norm.",
                    {}};
    struct Norm {
        ZeliNormType norm;
        const char *name, *sentence;
    };
    const Norm norms[] = {{zeliNormInf, "Inf", "The largest of the three."},
                          {zeliNormL1, "L1", "Their mean; in 32f their sum."},
                          {zeliNormL2, "L2", "Their root mean square; in 32f without the mean."}};
    const auto inType = [&]<class T>(T, const std::string& type, double gain) {
        for (const Norm& norm : norms)
            section.add(norm.name + (", " + type), norm.sentence, [&source, norm = norm.norm, gain](Calls& calls) {
                return brightness(foldChannels(calls, channelGradients<T>(calls, toColour(source.colour)), norm), gain);
            });
    };
    inType(Zel8u(), "8u", 1);
    inType(Zel16u(), "16u", 0.25);
    inType(Zel32f(), "32f", 0.12);
    section.add("Directions of the gradient",
                "The angle of the gradient as a colour: brighter to the right is red, and so on around the circle. The "
                "stronger the gradient, the brighter.",
                [&](Calls& calls) {
                    const auto [right, down] = gradientFamilies(false);
                    const Image<Zel32f> src = convert<Zel32f>(source.gray);
                    const Image<Zel32f> dx = right.in32f(calls, src, {}), dy = down.in32f(calls, src, {});
                    return directionsInColour(directions(calls, dy, dx), gradientStrength(dx, dy));
                });
    return section;
}

} // namespace app
