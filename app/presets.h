#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/settings.h"

namespace app {

/// Value of a preset member, as parsed from JSON. std::monostate stands for any other JSON type, for example a string.
using PresetValue = std::variant<std::monostate, bool, double, std::vector<double>>;

/// A member of the JSON object of a preset.
struct PresetMember {
    std::string name;
    PresetValue value;
    /// Original text of the value, for error messages.
    std::string text;
};

/// Error message for a preset that is not a JSON object.
constexpr const char* presetMustBeObject =
    R"(a preset must be a JSON object, like {"damping": 0.97})";

/// Changes the setting that a preset member names. If there is no such setting or the value is invalid, leaves the
/// settings unchanged and throws HostError with the expected values.
void setSetting(Settings& settings, const PresetMember& member);

/// Returns the shortest text that converts back to the same float: 0.97 instead of 0.9700000286102295.
std::string numberText(float value);
/// Returns the double whose text is `numberText(value)`.
double shortestNumber(float value);

/// Returns the name of a preset, given its file name without extension: calm_pond becomes "calm pond".
std::string presetName(std::string_view fileStem);

}  // namespace app
