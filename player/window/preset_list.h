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

/// List of the default settings, the shipped presets and the presets of the user. Knows which preset is loaded.
class PresetList {
public:
    /// Lists the shipped presets and those in `savedIn`. `file` is the preset that contains `settings`, or empty.
    PresetList(const std::filesystem::path& savedIn, const std::filesystem::path& file,
               const app::Settings& settings);

    std::span<const desktop::NamedPreset> presets() const { return all; }
    /// Loads a preset and returns its settings. If it throws Failure, the old preset stays loaded.
    app::Settings load(const std::filesystem::path& file);
    /// Returns the preset after the preset that was last loaded from the list.
    const desktop::NamedPreset& next() const;
    /// Returns true if the preset is in the folder of the user's presets.
    bool isOwn(const std::filesystem::path& file) const;
    /// Throws Failure if the loaded preset is not the user's: a shipped preset and a preset in another folder cannot be
    /// renamed or deleted.
    void checkOwn() const;
    /// Returns the loaded preset's name if it is a preset of the user and equal to `settings`. Otherwise, returns
    /// nothing.
    std::optional<std::string> savedName(const app::Settings& settings) const;
    /// Throws Failure if a new preset cannot have this name.
    void checkName(const std::string& name) const;
    /// Updates the list after the file of a user's preset was renamed.
    void rename(const std::filesystem::path& old, const std::filesystem::path& file);
    /// Removes a preset of the user from the list. If this preset was the loaded one, the default settings become the
    /// loaded preset.
    void remove(const std::filesystem::path& file);
    /// Adds a preset of the user, whose `settings` were saved in `file`. The added preset becomes the loaded preset.
    void add(const std::filesystem::path& file, const app::Settings& settings);

    /// Returns the settings of the loaded preset, without the user's changes.
    const app::Settings& original() const { return loaded; }
    /// Returns the file of the loaded preset.
    const std::filesystem::path& file() const { return loadedFile; }
    /// Returns the display name of the loaded preset.
    const std::string& name() const { return shown; }
    /// Stores random settings, so that the panel shows that the settings do not come from a preset.
    void noteRandom(const app::Settings& settings) { random = settings; }
    /// Returns true if the settings come from random settings instead of the loaded preset.
    bool isRandom(const app::Settings& settings) const { return random && settings != loaded; }
    /// Returns the display name of the settings: the name of the loaded preset or of random settings.
    std::string nameOf(const app::Settings& settings) const;
    /// Returns true if the settings differ from the loaded preset or from the random settings from which they come.
    bool isChanged(const app::Settings& settings) const;

private:
    std::vector<desktop::NamedPreset>::const_iterator find(const std::filesystem::path& file) const;
    void show(const std::filesystem::path& file, const app::Settings& settings);

    /// All presets: the default settings, then shipped presets, then presets of the user.
    std::vector<desktop::NamedPreset> all;
    std::size_t shippedCount;
    std::filesystem::path loadedFile;
    /// Index of the preset that next() returns. After the last preset, next() returns the first preset.
    std::size_t following = 1;
    std::string shown = app::sharedText("defaultSettings");
    app::Settings loaded;
    /// Last random settings. Empty if a preset was loaded since then.
    std::optional<app::Settings> random;
};

}  // namespace player
