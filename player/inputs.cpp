#include "player/inputs.h"

#include <cstddef>
#include <filesystem>

#include "desktop/image.h"
#include "desktop/preset.h"

namespace player {

app::Backgrounds loadBackgrounds(const Options& options) {
    const auto load = [](const std::filesystem::path& named, std::size_t painting) {
        return named.empty() ? desktop::numberedPainting(painting) : desktop::loadImage(named);
    };
    return {load(options.image, 0), load(options.second, 1)};
}

app::Settings settingsOf(const Options& options) {
    app::Settings settings =
        options.preset.empty() ? app::Settings{} : desktop::loadPreset(options.preset);
    settings.waterOnly = settings.waterOnly || options.waterOnly;
    return settings;
}

}  // namespace player
