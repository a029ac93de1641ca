#include "player/window/preset_list.h"

#include <algorithm>
#include <system_error>

#include "app/text.h"
#include "desktop/failure.h"

namespace player {

namespace fs = std::filesystem;

using desktop::Failure;
using desktop::loadPreset;
using desktop::NamedPreset;
using desktop::presetsIn;

namespace {

/// Returns a preset of the user, whose name is the name of its file.
NamedPreset ownPreset(const fs::path& file) {
    return {file.stem().string(), file};
}

/// Returns the path that represents the default settings in the list. This file does not exist, but the thumbnail of
/// this name does.
fs::path defaultFile() {
    return VELMORA_PRESETS "/default.json";
}

/// Returns the default settings and the shipped presets.
std::vector<NamedPreset> builtInPresets() {
    std::vector<NamedPreset> presets = presetsIn(VELMORA_PRESETS);
    presets.insert(presets.begin(), {app::sharedText("defaultSettings"), defaultFile()});
    return presets;
}

}  // namespace

PresetList::PresetList(const fs::path& savedIn, const fs::path& file, const app::Settings& settings)
    : all(builtInPresets()), shippedCount(all.size()), loadedFile(defaultFile()), loaded(settings) {
    for (const NamedPreset& preset : presetsIn(savedIn)) {
        all.push_back(ownPreset(preset.file));
    }
    if (!file.empty()) {
        show(file, settings);
    }
}

/// Finds a preset by its file, even if the list contains a different path to this file.
std::vector<NamedPreset>::const_iterator PresetList::find(const fs::path& file) const {
    const auto preset = std::ranges::find(all, file, &NamedPreset::file);
    return preset != all.end() ? preset : std::ranges::find_if(all, [&](const NamedPreset& one) {
        std::error_code ignored;
        return fs::equivalent(one.file, file, ignored);
    });
}

void PresetList::show(const fs::path& file, const app::Settings& settings) {
    const auto preset = find(file);
    if (preset != all.end()) {
        following = static_cast<std::size_t>(preset - all.begin()) + 1;
    }
    shown = preset != all.end() ? preset->name : file.stem().string();
    loaded = settings;
    random.reset();
    loadedFile = preset != all.end() ? preset->file : file;
}

app::Settings PresetList::load(const fs::path& file) {
    const app::Settings settings = file == defaultFile() ? app::Settings{} : loadPreset(file);
    show(file, settings);
    return settings;
}

const NamedPreset& PresetList::next() const {
    return all[following % all.size()];
}

bool PresetList::isOwn(const fs::path& file) const {
    const auto preset = std::ranges::find(all, file, &NamedPreset::file);
    return preset != all.end() && preset - all.begin() >= static_cast<std::ptrdiff_t>(shippedCount);
}

void PresetList::checkOwn() const {
    if (isOwn(loadedFile)) {
        return;
    }
    const bool isBuiltIn = std::ranges::find(all, loadedFile, &NamedPreset::file) != all.end();
    throw Failure(shown + (isBuiltIn
                               ? app::sharedText("builtIn")
                               : " is not in the folder of your presets; save it with P first"));
}

std::optional<std::string> PresetList::savedName(const app::Settings& settings) const {
    return isOwn(loadedFile) && settings == loaded ? std::optional(shown) : std::nullopt;
}

std::string PresetList::nameOf(const app::Settings& settings) const {
    return isRandom(settings) ? app::sharedText("randomSettings") : shown;
}

bool PresetList::isChanged(const app::Settings& settings) const {
    return settings != (isRandom(settings) ? *random : loaded);
}

void PresetList::checkName(const std::string& name) const {
    if (name.empty() || name.starts_with('.') || name.find('/') != std::string::npos) {
        throw Failure(
            "a name must not be empty, start with a dot or contain a slash; choose another");
    }
    if (std::ranges::find(all, name, &NamedPreset::name) != all.end()) {
        throw Failure("a preset named " + app::inQuotes(name) + app::sharedText("presetExists"));
    }
}

void PresetList::rename(const fs::path& old, const fs::path& file) {
    *std::ranges::find(all, old, &NamedPreset::file) = ownPreset(file);
    if (old == loadedFile) {
        show(file, app::Settings(loaded));
    }
}

void PresetList::remove(const fs::path& file) {
    const auto preset = std::ranges::find(all, file, &NamedPreset::file);
    const auto index = static_cast<std::size_t>(preset - all.begin());
    all.erase(preset);
    if (file == loadedFile) {
        show(defaultFile(), {});
    } else if (index < following) {
        --following;
    }
}

void PresetList::add(const fs::path& file, const app::Settings& settings) {
    all.push_back(ownPreset(file));
    show(file, settings);
}

}  // namespace player
