#pragma once

#include <array>
#include <vector>

#include "hostkit/effect_host.h"

namespace player {

/// The host's own, which is the player's too.
inline constexpr hostkit::Look defaultLook{};

/// What the panel tunes and a preset keeps.
struct Settings {
    /// Part of a wave's motion that is left after 1/60 s.
    float damping = hostkit::WaterSettings{}.damping;
    /// Shorter sides of the screen per second, on any grid.
    float waveSpeed = 0.365f;
    /// Strength of the ripple of a touch that goes down; moves make a sixth of it.
    float ripple = defaultLook.downRipple;
    /// Cells along the shorter side.
    int meshDetail = hostkit::WaterSettings{}.shortSideCells;
    float refractiveIndex = defaultLook.refractiveIndex;
    float sheen = defaultLook.alphaRatio1Scale;
    float fresnel = defaultLook.fresnelRatio;
    float specular = defaultLook.specularRatio;
    float exponent = defaultLook.exponent;
    /// Drops a second that fall by themselves.
    float rain = 0.0f;
    /// Of a finger whose device measures none.
    float pressure = 0.5f;
    /// Seconds of the effect per second.
    float timeScale = 1.0f;
    std::array<float, 3> ink = {defaultLook.ink.red, defaultLook.ink.green, defaultLook.ink.blue};
    bool secondBackground = false;
    bool waterOnly = false;
    bool operator==(const Settings&) const = default;
};

/// Under which of the panel's headings a setting stands.
enum class Group { water, light, ink };

/// A setting of one type: its name in presets, its words in the panel, its range.
template <class Value>
struct SettingField {
    const char* name;
    const char* words;
    Value Settings::*member;
    Value least;
    Value most;
    Group group;
    /// What it does, in a sentence or two.
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

/// Calls `visit` with each field of the settings but the ink, always in this order.
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

/// Inks to choose from, on every panel the same.
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

/// Grid, step rate and weights that give the settings' speed and fading on their mesh.
hostkit::WaterSettings waterOf(const Settings& settings);

/// Of a host that starts with the settings; its pictures and its context are the caller's to add.
hostkit::EffectHostOptions hostOptions(const Settings& settings, int width, int height);

/// Brings a running host to the settings, but for ink and background, which are events of a frame,
/// and water only, which takes another host.
void applySettings(const Settings& settings, hostkit::EffectHost& host);

/// Ink and background where the settings have others than the look: events for the next frame.
std::vector<hostkit::ScriptAction> changesOfLook(const Settings& settings,
                                                 const hostkit::Look& look);

/// Ink and background that an event sets become the settings'.
void follow(Settings& settings, const hostkit::ScriptAction& action);

/// A gesture of no effect beside the screen. The library remembers the last gesture's speed, place
/// and direction; after this one they are the same each time, and so are ink and background.
std::vector<hostkit::ScriptAction> forgetGestures(const Settings& settings);

}  // namespace player
