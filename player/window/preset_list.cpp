#include "player/window/preset_list.h"

#include <algorithm>
#include <cstddef>

#include "app/settings.h"

namespace player {

using desktop::loadPreset;
using desktop::named;
using desktop::NamedPreset;
using desktop::presetsIn;

PresetList::PresetList(const std::filesystem::path& savedIn, const std::filesystem::path& file,
                       const app::Settings& settings)
    : all(presetsIn(VELMORA_PRESETS)), loaded(settings) {
    const std::vector<NamedPreset> saved = presetsIn(savedIn);
    all.insert(all.end(), saved.begin(), saved.end());
    if (!file.empty()) {
        show(file, settings);
    }
}

void PresetList::show(const std::filesystem::path& file, const app::Settings& settings) {
    shown = named(file).name;
    loaded = settings;
    const auto preset = std::ranges::find(all, file, &NamedPreset::file);
    if (preset != all.end()) {
        following = static_cast<std::size_t>(preset - all.begin()) + 1;
    }
}

app::Settings PresetList::load(const std::filesystem::path& file) {
    const app::Settings settings = loadPreset(file);
    show(file, settings);
    return settings;
}

const NamedPreset* PresetList::next() const {
    return all.empty() ? nullptr : &all[following % all.size()];
}

void PresetList::add(const std::filesystem::path& file, const app::Settings& settings) {
    all.push_back(named(file));
    shown = all.back().name;
    loaded = settings;
}

}  // namespace player
