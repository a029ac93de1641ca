#pragma once

#include <array>
#include <vector>

#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/water_driver.h"

namespace app {

/// Defaults of the host, which are also those of the settings.
inline constexpr hostkit::Look defaultLook{};

/// The settings in force: what a panel changes and a preset saves.
struct Settings {
    /// Part of a wave's motion that is left after a 60th of a second.
    float damping = hostkit::WaterSettings{}.damping;
    /// Speed of waves in shorter sides of the screen per second, on any grid.
    float waveSpeed = 0.365f;
    /// Strength of the ripple of a touch that goes down; a move makes a sixth of it.
    float ripple = defaultLook.downRipple;
    /// Cells along the shorter side.
    int meshDetail = hostkit::WaterSettings{}.shortSideCells;
    float refractiveIndex = defaultLook.refractiveIndex;
    float sheen = defaultLook.alphaRatio1Scale;
    float fresnel = defaultLook.fresnelRatio;
    float specular = defaultLook.specularRatio;
    float exponent = defaultLook.exponent;
    /// Raindrops per second.
    float rain = 0.0f;
    /// Pressure of a pointer whose device measures none, 0 to 1.
    float pressure = 0.5f;
    /// Seconds of the effect per second.
    float timeScale = 1.0f;
    std::array<float, 3> ink = {defaultLook.ink.red, defaultLook.ink.green, defaultLook.ink.blue};
    bool secondBackground = false;
    bool waterOnly = false;
    bool operator==(const Settings&) const = default;
};

/// The panel's heading for a setting.
enum class Group { water, light, ink };

/// A setting of one type: its name in presets, its label in a panel, its range.
template <class Value>
struct SettingField {
    const char* name;
    const char* label;
    Value Settings::*member;
    Value min;
    Value max;
    Group group;
    /// Its effect, in a sentence or two.
    const char* hint;
};

constexpr SettingField<float> numberFields[] = {
    {"damping", "damping", &Settings::damping, 0.8f, 0.999f, Group::water,
     "What is left of a wave's motion after a 60th of a second."},
    {"waveSpeed", "wave speed", &Settings::waveSpeed, 0.05f, 1.2f, Group::water,
     "How many of the screen's shorter sides a wave runs in a second."},
    {"ripple", "ripple strength", &Settings::ripple, 0.0f, 6.0f, Group::water,
     "How hard a finger strikes the water."},
    {"rain", "rain, drops/s", &Settings::rain, 0.0f, 40.0f, Group::water,
     "Drops that fall by themselves."},
    {"timeScale", "time scale", &Settings::timeScale, 0.05f, 2.0f, Group::water,
     "Seconds of the water in each of yours: below 1 is slow motion."},
    {"refractiveIndex", "refractive index", &Settings::refractiveIndex, 1.0f, 2.0f, Group::light,
     "How far a wave bends the picture: 1 not at all, 1.33 as water does."},
    {"sheen", "sheen", &Settings::sheen, 0.0f, 1.0f, Group::light, "How bright waves shine."},
    {"fresnel", "fresnel", &Settings::fresnel, 0.0f, 3.0f, Group::light,
     "Extra sheen on the slopes that face the light, which comes from the lower right."},
    {"specular", "specular", &Settings::specular, 1.0f, 5.5f, Group::light,
     "The highlight's peak, as a factor of the sheen; beyond 4.5 only in water without ink."},
    {"exponent", "exponent", &Settings::exponent, 1.0f, 128.0f, Group::light,
     "The highlight's sharpness: low is wide and soft, high is narrow and hard."},
    {"pressure", "pressure", &Settings::pressure, 0.0f, 1.0f, Group::ink,
     "Of a mouse, or a finger whose device measures none: more lays more ink."},
};
constexpr SettingField<int> countFields[] = {
    {"meshDetail", "mesh detail", &Settings::meshDetail, 24, 180, Group::water,
     "Cells of water along the shorter side. More show finer waves, which run as fast as before, "
     "and each frame takes longer."},
};
constexpr SettingField<bool> switchFields[] = {
    {"secondBackground", "second background", &Settings::secondBackground, false, true,
     Group::light, "The other picture under the water."},
    {"waterOnly", "water only", &Settings::waterOnly, false, true, Group::ink,
     "No ink; starts the water anew."},
};

/// Calls `visit` with each field of the settings except the ink, always in this order.
template <class Visit>
void forEachField(Visit visit) {
    const auto all = [&](const auto& fields) {
        for (const auto& field : fields) {
            visit(field);
        }
    };
    all(numberFields);
    all(countFields);
    all(switchFields);
}

/// Inks to choose from, the same on every panel.
struct NamedInk {
    const char* name;
    std::array<float, 3> color;
};
constexpr NamedInk inkPalette[] = {
    {"blue", {0.30f, 0.70f, 1.00f}},  {"black", {0.25f, 0.25f, 0.28f}},
    {"red", {1.00f, 0.35f, 0.35f}},   {"orange", {1.00f, 0.60f, 0.20f}},
    {"green", {0.40f, 0.95f, 0.35f}}, {"violet", {0.65f, 0.35f, 1.00f}},
    {"sepia", {0.80f, 0.55f, 0.30f}}, {"rose", {1.00f, 0.50f, 0.75f}},
};

/// Returns the grid, step rate and weights that give the settings' speed and damping on their mesh.
hostkit::WaterSettings waterOf(const Settings& settings);

/// Returns the options of a host that starts with the settings. The caller adds backgrounds and context.
hostkit::EffectHostOptions hostOptions(const Settings& settings, int width, int height);

/// Applies the settings to a running host, except ink and background, which are events of a frame, and water only,
/// which takes another host. `cellsPerVertex` is that of the drawn mesh.
void applySettings(const Settings& settings, int cellsPerVertex, hostkit::EffectHost& host);

/// Returns the ink and the background that differ between settings and host, as events for the next frame.
std::vector<hostkit::ScriptAction> inkAndBackgroundChanges(const Settings& settings,
                                                           const hostkit::Look& look);

/// Takes over an ink or a background that an event sets.
void followAction(Settings& settings, const hostkit::ScriptAction& action);

/// Returns a gesture beside the screen that has no visible effect. The library remembers speed, place and direction of
/// the last gesture; after this gesture they are the same each time, and so are ink and background.
std::vector<hostkit::ScriptAction> forgetGestures(const Settings& settings);

}  // namespace app
