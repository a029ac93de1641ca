#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "app/settings.h"
#include "player/preset.h"

namespace player {

/// The presets that ship and those in the user's folder, and which of them the window shows.
class PresetList {
public:
    /// `file`: the preset that the settings come from; empty: none.
    PresetList(const std::filesystem::path& savedIn, const std::filesystem::path& file,
               const app::Settings& settings);

    std::span<const NamedPreset> presets() const { return all; }
    /// The settings to show from now on. Throws Failure, and what is shown stays.
    app::Settings load(const std::filesystem::path& file);
    /// The preset after the last one of the list that was shown; null: there are none.
    const NamedPreset* next() const;
    /// The settings shown were saved under this name.
    void add(const std::filesystem::path& file, const app::Settings& settings);

    /// Those of the preset, before the user changed them.
    const app::Settings& original() const { return loaded; }
    const std::string& name() const { return shown; }
    /// Whether the look is another one by now than its preset's.
    bool isChanged(const app::Settings& settings) const { return !(settings == loaded); }

private:
    void show(const std::filesystem::path& file, const app::Settings& settings);

    std::vector<NamedPreset> all;
    /// In the list, of the preset that follows the last one shown.
    std::size_t following = 0;
    std::string shown = "default";
    app::Settings loaded;
};

}  // namespace player
