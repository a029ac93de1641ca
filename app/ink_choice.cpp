#include "app/ink_choice.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "velmora/ink_light.h"

namespace app {
namespace {

using Color = std::array<double, 3>;

constexpr int hueBins = 36;
/// More pixels than that say nothing more about a picture.
constexpr std::size_t mostSamples = 40'000;
/// The blue of the default ink, against pictures without colours.
constexpr double usualHue = 206.0;
constexpr double leastChroma = 0.03;
/// Of the dominant colour's light, what thick ink is to leave.
constexpr double leastLight = 0.25;
constexpr double darkestOfAll = 0.3;
constexpr double lightestDark = 0.65;
/// Of the hues around the complement.
constexpr double widestTurn = 50.0;

double chroma(const Color& color) {
    const auto [least, most] = std::minmax_element(color.begin(), color.end());
    return *most - *least;
}

/// In degrees, of a color with chroma.
double hueOf(const Color& color) {
    const auto [red, green, blue] = color;
    const double most = *std::max_element(color.begin(), color.end());
    const double sixth = most == red     ? (green - blue) / chroma(color)
                         : most == green ? (blue - red) / chroma(color) + 2.0
                                         : (red - green) / chroma(color) + 4.0;
    return std::fmod(60.0 * sixth + 360.0, 360.0);
}

/// Sums of the picture's colours by hue, each weighted by its chroma, and the mean chroma.
struct Hues {
    std::array<Color, hueBins> colors{};
    std::array<double, hueBins> weights{};
    double chroma = 0.0;
};

Hues huesOf(const hostkit::Picture& picture) {
    Hues hues;
    const std::size_t pixels = picture.rgba.size() / 4;
    const std::size_t stride = std::max<std::size_t>(1, pixels / mostSamples);
    std::size_t samples = 0;
    for (std::size_t at = 0; at < pixels; at += stride, ++samples) {
        const std::uint8_t* channels = &picture.rgba[4 * at];
        const Color color = {channels[0] / 255.0, channels[1] / 255.0, channels[2] / 255.0};
        const double weight = chroma(color);
        if (weight > 0.0) {
            const auto bin = static_cast<std::size_t>(hueOf(color) * hueBins / 360.0) % hueBins;
            hues.weights[bin] += weight;
            for (std::size_t part = 0; part < 3; ++part) {
                hues.colors[bin][part] += weight * color[part];
            }
            hues.chroma += weight;
        }
    }
    hues.chroma /= static_cast<double>(std::max<std::size_t>(samples, 1));
    return hues;
}

/// The mean colour of the three neighbouring bins that weigh most.
Color dominantColor(const Hues& hues) {
    double heaviest = 0.0;
    Color dominant{};
    for (std::size_t bin = 0; bin < hueBins; ++bin) {
        const std::size_t around[] = {(bin + hueBins - 1) % hueBins, bin, (bin + 1) % hueBins};
        double weight = 0.0;
        Color sum{};
        for (const std::size_t near : around) {
            weight += hues.weights[near];
            for (std::size_t part = 0; part < 3; ++part) {
                sum[part] += hues.colors[near][part];
            }
        }
        if (weight > heaviest) {
            heaviest = weight;
            dominant = {sum[0] / weight, sum[1] / weight, sum[2] / weight};
        }
    }
    return dominant;
}

double light(const Color& color) {
    return 0.3 * color[0] + 0.59 * color[1] + 0.11 * color[2];
}

/// Returns the colour of the background under ink of the highest density.
Color throughInk(Color color, const std::array<float, 3>& ink) {
    constexpr auto maxDensity = static_cast<double>(velmora::maxInkDensity);
    for (std::size_t part = 0; part < 3; ++part) {
        color[part] *= velmora::lightThroughInk(ink[part], maxDensity);
    }
    return color;
}

}  // namespace

std::array<float, 3> lightInk(double hue, double darkest) {
    const auto channel = [&](double peak) {
        const double away = std::abs(std::remainder(hue - peak, 360.0));
        return static_cast<float>(darkest +
                                  (1.0 - darkest) * std::clamp(2.0 - away / 60.0, 0.0, 1.0));
    };
    return {channel(0.0), channel(120.0), channel(240.0)};
}

std::array<float, 3> inkAgainst(const hostkit::Picture& picture, int variation) {
    const Hues hues = huesOf(picture);
    const double turn = widestTurn * std::sin(2.4 * variation);
    if (hues.chroma < leastChroma) {
        return lightInk(usualHue + turn, darkestOfAll);
    }
    const Color dominant = dominantColor(hues);
    double darkest = darkestOfAll;
    std::array<float, 3> ink{};
    do {
        ink = lightInk(hueOf(dominant) + 180.0 + turn, darkest);
        darkest += 0.05;
    } while (darkest <= lightestDark &&
             light(throughInk(dominant, ink)) < leastLight * light(dominant));
    return ink;
}

}  // namespace app
