#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "app/settings.h"

namespace app {

/// A value of a preset, as a parser of JSON gives it; monostate: a value of a kind that no setting has.
using PresetValue = std::variant<std::monostate, bool, double, std::vector<double>>;

/// One member of a preset, with its value as the preset spells it.
struct PresetMember {
    std::string name;
    PresetValue value;
    std::string text;
};

/// Message for a preset that is not a JSON object.
constexpr const char* presetMustBeObject =
    R"(a preset must be a JSON object, like {"damping": 0.97})";

/// Sets the setting that the member names. Throws HostError, which says what was expected, if there is no such setting
/// or the value is none of its values; the settings are unchanged then.
void setSetting(Settings& settings, const PresetMember& member);

/// Returns the shortest text that reads back as the same number: 0.97, not 0.9700000286102295.
std::string numberText(float value);
/// Returns the number that `numberText` writes.
double shortestNumber(float value);

/// Returns a preset's name from the stem of its file: calm_pond is "calm pond".
std::string presetName(std::string_view fileStem);

}  // namespace app
