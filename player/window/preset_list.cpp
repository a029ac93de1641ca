#include "player/window/preset_list.h"

#include <algorithm>

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

}  // namespace

PresetList::PresetList(const fs::path& savedIn, const fs::path& file, const app::Settings& settings)
    : all(presetsIn(VELMORA_PRESETS)), shippedCount(all.size()), loaded(settings) {
    for (const NamedPreset& preset : presetsIn(savedIn)) {
        all.push_back(ownPreset(preset.file));
    }
    if (!file.empty()) {
        show(file, settings);
    }
}

void PresetList::show(const fs::path& file, const app::Settings& settings) {
    const auto preset = std::ranges::find(all, file, &NamedPreset::file);
    if (preset != all.end()) {
        following = static_cast<std::size_t>(preset - all.begin()) + 1;
    }
    shown = preset != all.end() ? preset->name : file.stem().string();
    loaded = settings;
    loadedFile = file;
}

app::Settings PresetList::load(const fs::path& file) {
    const app::Settings settings = loadPreset(file);
    show(file, settings);
    return settings;
}

const NamedPreset* PresetList::next() const {
    return all.empty() ? nullptr : &all[following % all.size()];
}

bool PresetList::isOwnLoaded() const {
    const auto preset = std::ranges::find(all, loadedFile, &NamedPreset::file);
    return preset != all.end() && preset - all.begin() >= static_cast<std::ptrdiff_t>(shippedCount);
}

const NamedPreset& PresetList::own() const {
    if (isOwnLoaded()) {
        return *std::ranges::find(all, loadedFile, &NamedPreset::file);
    }
    const bool isBuiltIn =
        loadedFile.empty() || std::ranges::find(all, loadedFile, &NamedPreset::file) != all.end();
    throw Failure(shown + (isBuiltIn
                               ? app::sharedText("builtIn")
                               : " is not in the folder of your presets; save it with P first"));
}

std::optional<std::string> PresetList::savedName(const app::Settings& settings) const {
    return isOwnLoaded() && !isChanged(settings) ? std::optional(shown) : std::nullopt;
}

void PresetList::checkName(const std::string& name) const {
    if (name.empty() || name.starts_with('.') || name.find('/') != std::string::npos) {
        throw Failure(
            "a name must not be empty, start with a dot or contain a slash; choose another");
    }
    if (std::ranges::find(all, name, &NamedPreset::name) != all.end()) {
        throw Failure("there is a preset " + app::inQuotes(name) + " already; choose another name");
    }
}

void PresetList::rename(const fs::path& file) {
    *std::ranges::find(all, loadedFile, &NamedPreset::file) = ownPreset(file);
    show(file, app::Settings(loaded));
}

void PresetList::remove() {
    all.erase(std::ranges::find(all, loadedFile, &NamedPreset::file));
    loadedFile.clear();
    shown = app::sharedText("defaultSettings");
    loaded = {};
}

void PresetList::add(const fs::path& file, const app::Settings& settings) {
    all.push_back(ownPreset(file));
    show(file, settings);
}

}  // namespace player
