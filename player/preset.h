#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "app/settings.h"
#include "player/options.h"

namespace player {

/// app::Settings as a JSON object, one member a setting; a missing one has its default. Throws Failure
/// that names the file and the member.
app::Settings loadPreset(const std::filesystem::path& file);

/// Those that the command line asks for. Throws Failure.
app::Settings settingsOf(const Options& options);

/// A file in full or none. Throws Failure.
void savePreset(const app::Settings& settings, const std::filesystem::path& file);

struct NamedPreset {
    std::string name;
    std::filesystem::path file;
};

/// calm_pond.json is "calm pond".
NamedPreset named(const std::filesystem::path& file);

/// What a preset looks like, in a picture beside it: a square of so many pixels a side.
constexpr int thumbnailPixels = 128;
std::filesystem::path thumbnailOf(const std::filesystem::path& preset);

/// The presets in a folder, by name.
std::vector<NamedPreset> presetsIn(const std::filesystem::path& folder);

}  // namespace player
