#include "player/rain.h"

namespace player {
namespace {

/// From 0 to 1. Not rand(): the solver takes its numbers from there, and they are to be the same
/// with and without rain.
double chance(Rain& rain) {
    rain.seed = rain.seed * 1664525u + 1013904223u;
    return static_cast<double>(rain.seed >> 8) / (1 << 24);
}

/// Drops are smaller than a finger.
float dropStrength(Rain& rain, const Settings& settings) {
    return static_cast<float>(0.15 + 0.35 * chance(rain)) * settings.ripple;
}

}  // namespace

void fall(Rain& rain, hostkit::EffectHost& host, const Settings& settings,
          std::chrono::nanoseconds elapsed) {
    rain.dropsDue +=
        static_cast<double>(settings.rain) * std::chrono::duration<double>(elapsed).count();
    for (; rain.dropsDue >= 1.0; rain.dropsDue -= 1.0) {
        const double x = chance(rain) * host.width();
        const double y = chance(rain) * host.height();
        hostkit::rippleAt(host.water(), host.jni(), x, y, dropStrength(rain, settings));
    }
}

}  // namespace player
