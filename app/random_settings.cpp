#include "app/random_settings.h"

#include <random>

#include "app/ink_choice.h"

namespace app {
namespace {

/// Range of a setting's values within which the effect looks good.
struct Range {
    float Settings::*member;
    double min;
    double max;
};
constexpr Range ranges[] = {
    {&Settings::damping, 0.95, 0.988},   {&Settings::waveSpeed, 0.22, 0.6},
    {&Settings::ripple, 1.2, 4.5},       {&Settings::refractiveIndex, 1.2, 1.6},
    {&Settings::reflection, 0.08, 0.24}, {&Settings::fresnel, 0.6, 1.6},
    {&Settings::specular, 1.8, 4.5},     {&Settings::exponent, 8.0, 44.0},
    {&Settings::pressure, 0.35, 0.7},
};
constexpr int meshDetails[] = {90, 105, 120, 135};

/// Probability of rain.
constexpr double rainProbability = 0.2;

}  // namespace

Settings randomSettings(std::uint32_t seed) {
    std::mt19937 numbers(seed);
    const auto between = [&](double min, double max) {
        return min + (max - min) * (static_cast<double>(numbers()) / 4294967296.0);
    };
    Settings settings;
    for (const Range& range : ranges) {
        settings.*range.member = static_cast<float>(between(range.min, range.max));
    }
    settings.meshDetail = meshDetails[numbers() % 4];
    settings.rain =
        between(0.0, 1.0) < rainProbability ? static_cast<float>(between(2.0, 14.0)) : 0.0f;
    const double hue = between(0.0, 360.0);
    const double darkest = between(0.28, 0.5);
    settings.ink = lightInk(hue, darkest);
    return settings;
}

}  // namespace app
