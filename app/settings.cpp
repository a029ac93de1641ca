#include "app/settings.h"

#include <cmath>
#include <variant>

namespace app {
namespace {

/// Increment of the number of simulation steps per second. It is added repeatedly until fast waves are stable.
constexpr int stepRateIncrement = 60;
/// Maximum of `WaterSettings::waveSpeed`, the square of the wave speed in cells per step. Waves become unstable above
/// 0.5.
constexpr double maxWaveWeight = 0.45;
/// Radius of a touch's ripple, as a fraction of the screen's shorter side. If this side has 90 cells, the radius is
/// three cells.
constexpr double rippleRadius = 3.0 / 90.0;
/// Strength of the ripple of a finger movement, divided by the strength of the ripple of a touch-down.
constexpr float moveRippleFraction =
    defaultEffectSettings.moveRipple / defaultEffectSettings.downRipple;

hostkit::InkColor inkOf(const Settings& settings) {
    return {settings.ink[0], settings.ink[1], settings.ink[2]};
}

/// Copies the drawing settings, except ink and background, into `effect`.
void applyEffectSettings(const Settings& settings, hostkit::EffectSettings& effect) {
    effect.refractiveIndex = settings.refractiveIndex;
    effect.alphaRatio1Scale = settings.reflection;
    effect.fresnelRatio = settings.fresnel;
    effect.specularRatio = settings.specular;
    effect.exponent = settings.exponent;
    effect.downRipple = settings.ripple;
    effect.moveRipple = settings.ripple * moveRippleFraction;
}

}  // namespace

hostkit::WaterSettings waterOf(const Settings& settings) {
    const double cellsPerSecond = static_cast<double>(settings.waveSpeed) * settings.meshDetail;
    const auto weightAt = [&](int rate) { return std::pow(cellsPerSecond / rate, 2.0); };
    hostkit::WaterSettings water;
    while (weightAt(water.stepsPerSecond) > maxWaveWeight) {
        water.stepsPerSecond += stepRateIncrement;
    }
    water.shortSideCells = settings.meshDetail;
    water.waveSpeed = static_cast<float>(weightAt(water.stepsPerSecond));
    water.damping = std::pow(settings.damping, 60.0f / static_cast<float>(water.stepsPerSecond));
    water.rippleRadius = rippleRadius * settings.meshDetail;
    return water;
}

hostkit::EffectHostOptions hostOptions(const Settings& settings, int width, int height) {
    hostkit::EffectHostOptions options;
    options.width = width;
    options.height = height;
    options.inkEnabled = !settings.waterOnly;
    options.water = waterOf(settings);
    applyEffectSettings(settings, options.effect);
    options.effect.ink = inkOf(settings);
    options.effect.useSecondBackground = settings.secondBackground;
    return options;
}

void applySettings(const Settings& settings, float cellsPerVertex, hostkit::EffectHost& host) {
    hostkit::WaterSettings water = waterOf(settings);
    water.cellsPerVertex = cellsPerVertex;
    const hostkit::WaterSettings& current = host.water().settings;
    if (water.shortSideCells != current.shortSideCells ||
        water.cellsPerVertex != current.cellsPerVertex) {
        host.replaceWater(water);
    }
    host.water().settings = water;
    applyEffectSettings(settings, host.effectSettings());
}

std::vector<hostkit::ScriptAction> inkAndBackgroundChanges(const Settings& settings,
                                                           const hostkit::EffectSettings& effect) {
    std::vector<hostkit::ScriptAction> changes;
    if (inkOf(settings) != effect.ink) {
        changes.emplace_back(inkOf(settings));
    }
    if (settings.secondBackground != effect.useSecondBackground) {
        changes.emplace_back(hostkit::SecondBackground{settings.secondBackground});
    }
    return changes;
}

void applyAction(Settings& settings, const hostkit::ScriptAction& action) {
    if (const auto* ink = std::get_if<hostkit::InkColor>(&action)) {
        settings.ink = {ink->red, ink->green, ink->blue};
    } else if (const auto* second = std::get_if<hostkit::SecondBackground>(&action)) {
        settings.secondBackground = second->on;
    }
}

std::vector<hostkit::ScriptAction> gestureResetActions(const Settings& settings) {
    constexpr double outside = -1000.0;
    return {hostkit::Touch{hostkit::TouchAction::down, outside, outside, 0.0f},
            hostkit::Touch{hostkit::TouchAction::move, outside - 100.0, outside, 0.0f},
            hostkit::Touch{hostkit::TouchAction::move, outside, outside, 0.0f},
            hostkit::Touch{hostkit::TouchAction::cancel, outside, outside, 0.0f},
            hostkit::ClearInk{},
            inkOf(settings),
            hostkit::SecondBackground{settings.secondBackground}};
}

}  // namespace app
