#include "app/rain.h"

#include "hostkit/water_driver.h"

namespace app {
namespace {

/// Returns a random number from 0 to 1. Does not use rand(): the solver calls rand(), and rain must not change the
/// numbers that the solver gets.
double randomNumber(Rain& rain) {
    rain.seed = rain.seed * 1664525u + 1013904223u;
    return static_cast<double>(rain.seed >> 8) / (1 << 24);
}

/// Returns the strength of a raindrop's ripple, which is smaller than the strength of a touch's ripple.
float dropStrength(Rain& rain, const Settings& settings) {
    return static_cast<float>(0.15 + 0.35 * randomNumber(rain)) * settings.ripple;
}

}  // namespace

void dropRain(Rain& rain, hostkit::EffectHost& host, const Settings& settings,
              std::chrono::nanoseconds elapsed) {
    rain.dropsDue +=
        static_cast<double>(settings.rain) * std::chrono::duration<double>(elapsed).count();
    for (; rain.dropsDue >= 1.0; rain.dropsDue -= 1.0) {
        const double x = randomNumber(rain) * host.width();
        const double y = randomNumber(rain) * host.height();
        hostkit::rippleAt(host.water(), host.jni(), x, y, dropStrength(rain, settings));
    }
}

}  // namespace app
