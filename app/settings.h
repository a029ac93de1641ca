#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/water_driver.h"

namespace app {

/// Default drawing settings, which hostkit and the application share.
inline constexpr hostkit::EffectSettings defaultEffectSettings{};

/// Settings that the user can change. A preset is a saved copy of them.
struct Settings {
    /// Factor by which the wave velocity is multiplied every 1/60 s.
    float damping = hostkit::WaterSettings{}.damping;
    /// Wave speed, in lengths of the screen's shorter side per second. The speed does not depend on the number of
    /// cells.
    float waveSpeed = 0.365f;
    /// Strength of the ripple of a touch-down. The ripple of a finger movement has a sixth of this strength.
    float ripple = defaultEffectSettings.downRipple;
    /// Number of cells of the water grid along the shorter side of the screen.
    int meshDetail = hostkit::WaterSettings{}.shortSideCells;
    /// Refractive index: 1 means no refraction, 1.33 is the index of water.
    float refractiveIndex = defaultEffectSettings.refractiveIndex;
    /// Strength of the reflection on waves, 0 to 1. The reflection is added to the background, so high values make
    /// waves over a light background white.
    float reflection = 0.06f;
    /// Strength of the extra reflection on slopes that face the light.
    float fresnel = 0.4f;
    /// Brightness factor of the reflection at the peak of the highlight.
    float specular = defaultEffectSettings.specularRatio;
    /// Sharpness of the highlight.
    float exponent = defaultEffectSettings.exponent;
    /// Raindrops per second.
    float rain = 0.0f;
    /// Pressure, 0 to 1, of touches by a pointer that does not measure pressure.
    float pressure = 0.5f;
    /// Speed of the effect: seconds of effect time per second of real time.
    float timeScale = 1.0f;
    /// Ink colour: red, green and blue, 0 to 1 each.
    std::array<float, 3> ink = {defaultEffectSettings.ink.red, defaultEffectSettings.ink.green,
                                defaultEffectSettings.ink.blue};
    bool secondBackground = false;
    /// True if the ink is turned off.
    bool waterOnly = false;
    bool operator==(const Settings&) const = default;
};

/// Section of the settings panel that shows a setting.
enum class Group { water, light, ink };
/// Headings of the sections, in the order of the values of `Group`.
constexpr const char* groupNames[] = {"Water", "Light", "Ink"};

/// Description of a setting.
template <class Value>
struct SettingField {
    /// Key in presets.
    const char* name;
    /// Label in the panel.
    const char* label;
    Value Settings::*member;
    Value min;
    Value max;
    Group group;
    /// Explanation of the setting for the user.
    const char* hint;
};

constexpr SettingField<float> numberFields[] = {
    {"damping", "Damping", &Settings::damping, 0.8f, 0.999f, Group::water,
     "How much of a wave's motion remains after 1/60 s. Higher values let waves last longer."},
    {"waveSpeed", "Wave speed", &Settings::waveSpeed, 0.05f, 1.2f, Group::water,
     "Distance that a wave travels in a second. 1 is the shorter side of the screen."},
    {"ripple", "Ripple strength", &Settings::ripple, 0.0f, 6.0f, Group::water,
     "Height of the ripples of a touch."},
    {"rain", "Rain (drops/s)", &Settings::rain, 0.0f, 40.0f, Group::water,
     "Number of raindrops per second."},
    {"timeScale", "Time scale", &Settings::timeScale, 0.05f, 2.0f, Group::water,
     "Speed of the effect. 1 is real time, and lower values are slow motion."},
    {"refractiveIndex", "Refraction", &Settings::refractiveIndex, 1.0f, 2.0f, Group::light,
     "How much waves distort the picture. 1 is no distortion, and 1.33 is water."},
    {"sheen", "Shine", &Settings::reflection, 0.0f, 1.0f, Group::light,
     "Strength of the reflections on waves."},
    {"fresnel", "Edge shine", &Settings::fresnel, 0.0f, 3.0f, Group::light,
     "Extra reflection on slopes that face the light at the lower right."},
    {"specular", "Highlight", &Settings::specular, 1.0f, 5.5f, Group::light,
     "Brightness of the highlights, as a factor of the shine. With ink, the maximum is 4.5."},
    {"exponent", "Sharpness", &Settings::exponent, 1.0f, 128.0f, Group::light,
     "Sharpness of the highlights. Low values are broad and soft, and high values are narrow."},
    {"pressure", "Pressure", &Settings::pressure, 0.0f, 1.0f, Group::ink,
     "Pressure for devices that do not report it, such as a mouse. More pressure leaves more ink."},
};
constexpr SettingField<int> countFields[] = {
    {"meshDetail", "Mesh detail", &Settings::meshDetail, 24, 180, Group::water,
     "Number of water cells along the shorter side. More cells show finer waves, but each frame "
     "takes longer. The speed of the waves does not change."},
};
constexpr SettingField<bool> switchFields[] = {
    {"secondBackground", "Show second picture", &Settings::secondBackground, false, true,
     Group::light, "Shows the second picture as the background."},
    {"waterOnly", "Water only", &Settings::waterOnly, false, true, Group::ink,
     "Turns off the ink. A change restarts the effect."},
};

/// Calls `visit` with the description of each setting except the ink, in a fixed order.
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

/// Returns the members of `Settings` that a table of fields describes. The compiler computes the result, so a program
/// that uses only the result does not contain the texts of the table.
template <class Value, std::size_t count>
consteval std::array<Value Settings::*, count> membersOf(
    const SettingField<Value> (&fields)[count]) {
    std::array<Value Settings::*, count> members{};
    std::transform(fields, fields + count, members.begin(),
                   [](const SettingField<Value>& field) { return field.member; });
    return members;
}

/// An ink of the palette.
struct NamedInk {
    const char* name;
    std::array<float, 3> color;
};
/// Palette of inks that every front end offers.
constexpr NamedInk inkPalette[] = {
    {"blue", {0.30f, 0.70f, 1.00f}},  {"black", {0.25f, 0.25f, 0.28f}},
    {"red", {1.00f, 0.35f, 0.35f}},   {"orange", {1.00f, 0.60f, 0.20f}},
    {"green", {0.40f, 0.95f, 0.35f}}, {"violet", {0.65f, 0.35f, 1.00f}},
    {"sepia", {0.80f, 0.55f, 0.30f}}, {"rose", {1.00f, 0.50f, 0.75f}},
};

/// Returns water settings that give waves the speed and damping in `settings`. A fine grid with fast waves needs more
/// simulation steps per second.
hostkit::WaterSettings waterOf(const Settings& settings);

/// Returns options for a host with these settings and this screen size in pixels. The caller adds backgrounds and the
/// GL context.
hostkit::EffectHostOptions hostOptions(const Settings& settings, int width, int height);

/// Applies the settings to a running host. Leaves out ink and background, which are applied as actions of a frame, and
/// `waterOnly`, which needs a new host. `cellsPerVertex` is the detail of the mesh.
void applySettings(const Settings& settings, float cellsPerVertex, hostkit::EffectHost& host);

/// Returns the actions that make the host's ink and background equal to those in the settings. Empty if they are equal
/// already.
std::vector<hostkit::ScriptAction> inkAndBackgroundChanges(const Settings& settings,
                                                           const hostkit::EffectSettings& effect);

/// Updates the settings if the action sets the ink or the background.
void applyAction(Settings& settings, const hostkit::ScriptAction& action);

/// Returns actions that bring the library to a known state. The library remembers speed, position and direction of the
/// last gesture. The actions overwrite these values with an invisible gesture outside the screen, then set ink and
/// background.
std::vector<hostkit::ScriptAction> gestureResetActions(const Settings& settings);

}  // namespace app
