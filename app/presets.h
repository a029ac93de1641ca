#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/settings.h"

namespace app {

/// Value of a preset member, as parsed from JSON. A JSON value of any other type, such as a string, is std::monostate.
using PresetValue = std::variant<std::monostate, bool, double, std::vector<double>>;

/// A member of the JSON object of a preset.
struct PresetMember {
    std::string name;
    PresetValue value;
    /// The value as written in the preset, for error messages.
    std::string text;
};

/// Error message for a preset that is not a JSON object.
constexpr const char* presetMustBeObject =
    R"(a preset must be a JSON object, like {"damping": 0.97})";

/// Sets the setting that a preset member names. If there is no such setting or the value is invalid, throws HostError
/// with the expected values and leaves the settings unchanged.
void setSetting(Settings& settings, const PresetMember& member);

/// Returns the shortest text that reads back as the same float: 0.97, not 0.9700000286102295.
std::string numberText(float value);
/// Returns the number in the text of `numberText`.
double shortestNumber(float value);

/// Returns the name of a preset from the name of its file without extension: calm_pond becomes "calm pond".
std::string presetName(std::string_view fileStem);

}  // namespace app
