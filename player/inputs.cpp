#include "player/inputs.h"

#include <filesystem>
#include <system_error>

#include "desktop/image.h"
#include "desktop/preset.h"
#include "hostkit/image.h"

namespace player {
namespace {

/// Side of the test image in pixels.
constexpr int testImageSide = 1024;

}  // namespace

app::Backgrounds loadBackgrounds(const Options& options) {
    const auto load = [](const std::filesystem::path& named, const char* fallback) {
        const std::filesystem::path file = named.empty() ? fallback : named;
        std::error_code ignored;
        return named.empty() && !std::filesystem::exists(file, ignored)
                   ? hostkit::makeTestImage(testImageSide, testImageSide)
                   : desktop::loadImage(file);
    };
    return {load(options.image, "/usr/share/backgrounds/mate/nature/Dune.jpg"),
            load(options.second, "/usr/share/backgrounds/mate/nature/RainDrops.jpg")};
}

app::Settings settingsOf(const Options& options) {
    app::Settings settings =
        options.preset.empty() ? app::Settings{} : desktop::loadPreset(options.preset);
    settings.waterOnly = settings.waterOnly || options.waterOnly;
    return settings;
}

}  // namespace player
