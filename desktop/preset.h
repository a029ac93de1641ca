#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "app/settings.h"

namespace desktop {

/// Loads settings from a JSON object with one member per setting. A missing member means the default.
/// Throws Failure with the names of the file and the member.
app::Settings loadPreset(const std::filesystem::path& file);

/// Returns the settings in the text of a preset. `name` stands for the file in errors. Throws Failure.
app::Settings parsePreset(const std::string& text, const std::string& name);

/// Saves settings as a preset. Writes the whole file or none. Throws Failure.
void savePreset(const app::Settings& settings, const std::filesystem::path& file);

struct NamedPreset {
    std::string name;
    std::filesystem::path file;
};

/// Returns the preset's file with its display name: "calm pond" for calm_pond.json.
NamedPreset named(const std::filesystem::path& file);

/// Side of a preset's square thumbnail, in pixels.
constexpr int thumbnailPixels = 128;
/// Returns the file of a preset's thumbnail: its own name with the extension .jpg.
std::filesystem::path thumbnailOf(const std::filesystem::path& preset);

/// Returns the presets in a folder, sorted by name.
std::vector<NamedPreset> presetsIn(const std::filesystem::path& folder);

}  // namespace desktop
