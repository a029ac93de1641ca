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
/// Approximate number of pixels of an image to sample. With more samples, the result would look the same.
constexpr std::size_t maxSamples = 40'000;
/// Hue, in degrees, of the ink for images that have no colour: a blue.
constexpr double defaultHue = 206.0;
/// Minimum mean chroma, 0 to 1, of an image that counts as coloured.
constexpr double minChroma = 0.03;
/// Minimum fraction of the dominant colour's brightness that must remain visible through dense ink.
constexpr double minLight = 0.25;
/// Minimum and maximum value of the smallest colour channel of the ink.
constexpr double minDarkest = 0.3;
constexpr double maxDarkest = 0.65;
/// Maximum difference in degrees between the hue of a variation and the hue that is opposite to the dominant hue.
constexpr double maxTurn = 50.0;

/// Returns the chroma of a colour: its largest channel minus its smallest channel.
double chroma(const Color& color) {
    const auto [min, max] = std::minmax_element(color.begin(), color.end());
    return *max - *min;
}

/// Returns the hue of a colour in degrees. The chroma of the colour must not be 0.
double hueOf(const Color& color) {
    const auto [red, green, blue] = color;
    const double max = *std::max_element(color.begin(), color.end());
    const double sixth = max == red     ? (green - blue) / chroma(color)
                         : max == green ? (blue - red) / chroma(color) + 2.0
                                        : (red - green) / chroma(color) + 4.0;
    return sixth < 0.0 ? 60.0 * sixth + 360.0 : 60.0 * sixth;
}

/// Histogram of an image's colours by hue.
struct Hues {
    /// Sum of the colours in each range of hues, weighted by chroma.
    std::array<Color, hueBins> colors{};
    /// Sums of the weights.
    std::array<double, hueBins> weights{};
    /// Mean chroma of the image.
    double chroma = 0.0;
};

Hues huesOf(const hostkit::Image& image) {
    Hues hues;
    const std::size_t pixels = image.rgba.size() / 4;
    const std::size_t stride = std::max<std::size_t>(1, pixels / maxSamples);
    std::size_t samples = 0;
    for (std::size_t at = 0; at < pixels; at += stride, ++samples) {
        const std::uint8_t* channels = &image.rgba[4 * at];
        const Color color = {channels[0] / 255.0, channels[1] / 255.0, channels[2] / 255.0};
        const double weight = chroma(color);
        if (weight > 0.0) {
            const auto bin = static_cast<std::size_t>(hueOf(color) * hueBins / 360.0) % hueBins;
            hues.weights[bin] += weight;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                hues.colors[bin][channel] += weight * color[channel];
            }
            hues.chroma += weight;
        }
    }
    hues.chroma /= static_cast<double>(std::max<std::size_t>(samples, 1));
    return hues;
}

/// Returns the mean colour of the three adjacent hue ranges that have the largest total weight.
Color dominantColor(const Hues& hues) {
    double heaviest = 0.0;
    Color dominant{};
    for (std::size_t bin = 0; bin < hueBins; ++bin) {
        const std::size_t around[] = {(bin + hueBins - 1) % hueBins, bin, (bin + 1) % hueBins};
        double weight = 0.0;
        Color sum{};
        for (const std::size_t near : around) {
            weight += hues.weights[near];
            for (std::size_t channel = 0; channel < 3; ++channel) {
                sum[channel] += hues.colors[near][channel];
            }
        }
        if (weight > heaviest) {
            heaviest = weight;
            dominant = {sum[0] / weight, sum[1] / weight, sum[2] / weight};
        }
    }
    return dominant;
}

/// Returns the luma (approximate brightness) of a colour.
double luma(const Color& color) {
    return 0.3 * color[0] + 0.59 * color[1] + 0.11 * color[2];
}

/// Returns a background colour as it looks through ink of maximum density.
Color throughInk(Color color, const std::array<float, 3>& ink) {
    constexpr auto maxDensity = static_cast<double>(velmora::maxInkDensity);
    for (std::size_t channel = 0; channel < 3; ++channel) {
        color[channel] *= velmora::lightThroughInk(ink[channel], maxDensity);
    }
    return color;
}

}  // namespace

std::array<float, 3> lightInk(double hue, double darkest) {
    const auto channel = [&](double peak) {
        const double turn = hue - peak;
        const double away = std::abs(turn - 360.0 * std::nearbyint(turn / 360.0));
        return static_cast<float>(darkest +
                                  (1.0 - darkest) * std::clamp(2.0 - away / 60.0, 0.0, 1.0));
    };
    return {channel(0.0), channel(120.0), channel(240.0)};
}

std::array<float, 3> inkAgainst(const hostkit::Image& image, int variation) {
    const Hues hues = huesOf(image);
    const double turn = maxTurn * std::sin(2.4 * variation);
    if (hues.chroma < minChroma) {
        return lightInk(defaultHue + turn, minDarkest);
    }
    const Color dominant = dominantColor(hues);
    double darkest = minDarkest;
    std::array<float, 3> ink{};
    do {
        ink = lightInk(hueOf(dominant) + 180.0 + turn, darkest);
        darkest += 0.05;
    } while (darkest <= maxDarkest && luma(throughInk(dominant, ink)) < minLight * luma(dominant));
    return ink;
}

}  // namespace app
