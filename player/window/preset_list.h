#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
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
    /// Returns the loaded preset if the user has saved it. Otherwise throws Failure: a shipped preset and a preset in
    /// another folder cannot be renamed or deleted.
    const desktop::NamedPreset& own() const;
    /// Returns the loaded preset's name if the user has saved it and not changed it since.
    std::optional<std::string> savedName(const app::Settings& settings) const;
    /// Throws Failure if a new preset cannot have this name.
    void checkName(const std::string& name) const;
    /// Notes that the loaded preset, which is the user's, has another file now.
    void rename(const std::filesystem::path& file);
    /// Removes the loaded preset, which is the user's. The default settings count as loaded then.
    void remove();
    /// Adds a preset with the settings that were saved in `file`, and makes it the loaded one.
    void add(const std::filesystem::path& file, const app::Settings& settings);

    /// Returns the settings of the loaded preset, without the user's changes.
    const app::Settings& original() const { return loaded; }
    /// Returns the display name of the loaded preset.
    const std::string& name() const { return shown; }
    /// Returns true if the settings differ from the loaded preset.
    bool isChanged(const app::Settings& settings) const { return !(settings == loaded); }

private:
    bool isOwnLoaded() const;
    void show(const std::filesystem::path& file, const app::Settings& settings);

    /// Shipped presets, then presets of the user.
    std::vector<desktop::NamedPreset> all;
    std::size_t shippedCount;
    /// File of the loaded preset; empty for the default settings.
    std::filesystem::path loadedFile;
    /// Index of the preset that next() returns, before the wrap-around.
    std::size_t following = 0;
    std::string shown = app::sharedText("defaultSettings");
    app::Settings loaded;
};

}  // namespace player
