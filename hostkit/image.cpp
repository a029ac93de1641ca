#include "hostkit/image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace hostkit {

namespace {

using Color = std::array<double, 3>;

/// Computes an image. `colorAt` returns the colour at (u, v). (0, 0) is the top left corner and (1, 1) the bottom right
/// corner.
template <class ColorAt>
Image paint(int width, int height, ColorAt colorAt) {
    Image image{width, height, {}};
    image.rgba.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (const double channel : colorAt((x + 0.5) / width, (y + 0.5) / height)) {
                image.rgba.push_back(
                    static_cast<std::uint8_t>(std::lround(std::clamp(channel, 0.0, 1.0) * 255.0)));
            }
            image.rgba.push_back(255);
        }
    }
    return image;
}

Color mix(const Color& from, const Color& to, double weight) {
    Color mixed{};
    for (std::size_t channel = 0; channel < mixed.size(); ++channel) {
        mixed[channel] = from[channel] + (to[channel] - from[channel]) * weight;
    }
    return mixed;
}

/// Returns the brightness of caustic light, 0 to 1. Caustics are the bright lines that waves cast on the floor of a
/// pool. The light is bright where the folds of a distorted pattern are close together.
double caustic(double u, double v) {
    double x = u;
    double y = v;
    double light = 0.0;
    for (int fold = 1; fold <= 4; ++fold) {
        const double bent = x + 0.35 * std::sin(2.1 * y + 1.7 * fold);
        y += 0.35 * std::sin(2.3 * x - 1.3 * fold);
        x = bent;
        light += std::exp(-6.0 * std::abs(std::sin(x + y)));
    }
    return light / 4.0;
}

}  // namespace

Image makeReflectionMap(int size) {
    constexpr Color depth = {0.16, 0.30, 0.42};
    constexpr Color sky = {0.70, 0.86, 1.00};
    constexpr Color sun = {1.00, 0.98, 0.92};
    constexpr double folds = 14.0;
    return paint(size, size, [&](double u, double v) {
        const double rise =
            0.5 - 0.5 * std::cos(3.14159265 * std::clamp(u * 0.6 + v * 0.4, 0.0, 1.0));
        const double distance = std::hypot(u - 0.68, v - 0.36);
        const double glow = std::exp(-distance * distance / 0.02);
        const Color light = mix(mix(depth, sky, rise), sun, std::min(1.0, glow));
        return mix(light, sun, 0.6 * caustic(folds * u, folds * v));
    });
}

Image makeTestImage(int width, int height) {
    constexpr int squaresAcross = 9;
    const int squaresDown = std::max(
        1, static_cast<int>(std::lround(static_cast<double>(squaresAcross) * height / width)));
    return paint(width, height, [&](double u, double v) {
        const bool light =
            (static_cast<int>(u * squaresAcross) + static_cast<int>(v * squaresDown)) % 2;
        return mix(Color{u, v, 0.35}, Color{1.0, 1.0, 1.0}, light ? 0.55 : 0.15);
    });
}

}  // namespace hostkit
