#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "app/labels.h"
#include "app/settings.h"
#include "desktop/preset.h"

namespace player {

/// List of the shipped presets and of the presets in the user's folder. Knows which preset is loaded.
class PresetList {
public:
    /// Lists the shipped presets and those in `savedIn`. `file` is the preset of the settings, or empty.
    PresetList(const std::filesystem::path& savedIn, const std::filesystem::path& file,
               const app::Settings& settings);

    std::span<const desktop::NamedPreset> presets() const { return all; }
    /// Loads a preset and returns its settings. If it throws Failure, the old preset stays loaded.
    app::Settings load(const std::filesystem::path& file);
    /// Returns the preset after the one that was last loaded from the list, or null if the list is empty.
    const desktop::NamedPreset* next() const;
    /// Adds a preset with the settings that were saved in `file`, and makes it the loaded one.
    void add(const std::filesystem::path& file, const app::Settings& settings);

    /// Returns the settings of the loaded preset, without the user's changes.
    const app::Settings& original() const { return loaded; }
    /// Returns the display name of the loaded preset.
    const std::string& name() const { return shown; }
    /// Returns true if the settings differ from the loaded preset.
    bool isChanged(const app::Settings& settings) const { return !(settings == loaded); }

private:
    void show(const std::filesystem::path& file, const app::Settings& settings);

    std::vector<desktop::NamedPreset> all;
    /// Index of the preset that next() returns, before the wrap-around.
    std::size_t following = 0;
    std::string shown = app::sharedText("defaultSettings");
    app::Settings loaded;
};

}  // namespace player
