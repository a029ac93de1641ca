#include "screensaver/preset_choice.h"

#include <algorithm>
#include <string_view>

#include "desktop/preset.h"

namespace saver {
namespace {

app::Settings settingsOf(const ShippedPreset& preset) {
    return desktop::parsePreset(preset.json, preset.name);
}

}  // namespace

app::Settings PresetChoice::next() {
    if (chosen.empty()) {
        return {};
    }
    if (isRandom()) {
        return nextRandom();
    }
    const auto all = shippedPresets();
    const auto shipped = std::ranges::find(
        all, chosen, [](const ShippedPreset& preset) { return std::string_view(preset.name); });
    return shipped != all.end() ? settingsOf(*shipped) : desktop::loadPreset(chosen);
}

app::Settings PresetChoice::nextRandom() {
    const auto all = shippedPresets();
    const std::size_t previous = last;
    while (last == previous) {
        last = std::uniform_int_distribution<std::size_t>(0, all.size() - 1)(random);
    }
    return settingsOf(all[last]);
}

}  // namespace saver
