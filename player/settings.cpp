#include "player/settings.h"

#include <cmath>

namespace player {
namespace {

constexpr int slowestRate = 60;
/// Waves are stable up to 0.5.
constexpr double mostWaveWeight = 0.45;
/// A touch's ripple spans this part of the shorter side: the cone of three cells on a grid of 90.
constexpr double rippleRadius = 3.0 / 90.0;
/// A move strikes as much softer than a touch that goes down.
constexpr float moveRipplePart = defaultLook.moveRipple / defaultLook.downRipple;

}  // namespace

hostkit::InkColor inkOf(const Settings& settings) {
    return {settings.ink[0], settings.ink[1], settings.ink[2]};
}

hostkit::WaterSettings waterOf(const Settings& settings) {
    const double cellsPerSecond = static_cast<double>(settings.waveSpeed) * settings.meshDetail;
    const auto weightAt = [&](int rate) { return std::pow(cellsPerSecond / rate, 2.0); };
    hostkit::WaterSettings water;
    while (weightAt(water.stepsPerSecond) > mostWaveWeight) {
        water.stepsPerSecond += slowestRate;
    }
    water.shortSideCells = settings.meshDetail;
    water.waveSpeed = static_cast<float>(weightAt(water.stepsPerSecond));
    water.damping = std::pow(settings.damping, 60.0f / static_cast<float>(water.stepsPerSecond));
    water.rippleRadius = rippleRadius * settings.meshDetail;
    return water;
}

void applyLook(const Settings& settings, hostkit::Look& look) {
    look.refractiveIndex = settings.refractiveIndex;
    look.alphaRatio1Scale = settings.sheen;
    look.fresnelRatio = settings.fresnel;
    look.specularRatio = settings.specular;
    look.exponent = settings.exponent;
    look.downRipple = settings.ripple;
    look.moveRipple = settings.ripple * moveRipplePart;
}

std::vector<hostkit::ScriptAction> forgetGestures(const Settings& settings) {
    constexpr double away = -1000.0;
    return {hostkit::Touch{hostkit::TouchAction::down, away, away, 0.0f},
            hostkit::Touch{hostkit::TouchAction::move, away - 100.0, away, 0.0f},
            hostkit::Touch{hostkit::TouchAction::move, away, away, 0.0f},
            hostkit::Touch{hostkit::TouchAction::cancel, away, away, 0.0f},
            hostkit::ClearInk{},
            inkOf(settings),
            hostkit::SecondBackground{settings.secondBackground}};
}

}  // namespace player
