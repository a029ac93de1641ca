#include "player/random_look.h"

#include <random>

#include "player/ink_choice.h"

namespace player {
namespace {

/// What a setting takes between looks that please.
struct Range {
    float Settings::*member;
    double least;
    double most;
};
constexpr Range ranges[] = {
    {&Settings::damping, 0.95, 0.988}, {&Settings::waveSpeed, 0.22, 0.6},
    {&Settings::ripple, 1.2, 4.5},     {&Settings::refractiveIndex, 1.2, 1.6},
    {&Settings::sheen, 0.08, 0.24},    {&Settings::fresnel, 0.6, 1.6},
    {&Settings::specular, 1.8, 4.5},   {&Settings::exponent, 8.0, 44.0},
    {&Settings::pressure, 0.35, 0.7},
};
constexpr int meshDetails[] = {90, 105, 120, 135};

/// Of all looks, the part with rain.
constexpr double rainyPart = 0.2;

}  // namespace

Settings randomLook(std::uint32_t seed) {
    std::mt19937 numbers(seed);
    const auto between = [&](double least, double most) {
        return least + (most - least) * (static_cast<double>(numbers()) / 4294967296.0);
    };
    Settings look;
    for (const Range& range : ranges) {
        look.*range.member = static_cast<float>(between(range.least, range.most));
    }
    look.meshDetail = meshDetails[numbers() % 4];
    look.rain = between(0.0, 1.0) < rainyPart ? static_cast<float>(between(2.0, 14.0)) : 0.0f;
    const double hue = between(0.0, 360.0);
    const double darkest = between(0.28, 0.5);
    look.ink = lightInk(hue, darkest);
    return look;
}

}  // namespace player
