#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "app/settings.h"

namespace desktop {

/// Loads settings from a preset file: a JSON object with one member per setting. Missing members have their default
/// values. Throws Failure with the names of the file and the member.
app::Settings loadPreset(const std::filesystem::path& file);

/// Parses the text of a preset. `name` is the file name for error messages. Throws Failure.
app::Settings parsePreset(const std::string& text, const std::string& name);

/// Saves settings as a preset file. Writes the complete file or, on an error, no file. Throws Failure.
void savePreset(const app::Settings& settings, const std::filesystem::path& file);

struct NamedPreset {
    std::string name;
    std::filesystem::path file;
};

/// Returns a preset with its display name, made from the file name: calm_pond.json becomes "calm pond".
NamedPreset named(const std::filesystem::path& file);

/// Width and height of a preset's thumbnail in pixels.
constexpr int thumbnailPixels = 128;
/// Returns the path of a preset's thumbnail. Its file name is that of the preset, but with the extension .jpg.
std::filesystem::path thumbnailOf(const std::filesystem::path& preset);

/// Returns the presets in a folder, sorted by name.
std::vector<NamedPreset> presetsIn(const std::filesystem::path& folder);

}  // namespace desktop
