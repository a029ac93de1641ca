#pragma once

#include <cstddef>
#include <random>
#include <span>
#include <string>
#include <utility>

#include "app/settings.h"

namespace saver {

/// A preset of the folder presets/, which the build copies into the program.
struct ShippedPreset {
    /// Name of its file without extension, for example calm_pond.
    const char* name;
    const char* json;
};
/// Returns all shipped presets. The build generates this function.
std::span<const ShippedPreset> shippedPresets();

/// The preset of the command line: none, a shipped one, a file, or random shipped ones.
class PresetChoice {
public:
    /// Takes the name of a shipped preset, a file, "random", or an empty text for the default settings.
    explicit PresetChoice(std::string name) : chosen(std::move(name)) {}

    bool isRandom() const { return chosen == "random"; }
    /// Returns the settings of the preset. If the preset is random, returns those of another preset than the last time.
    /// Throws Failure.
    app::Settings next();

private:
    app::Settings nextRandom();

    std::string chosen;
    std::mt19937 random{std::random_device{}()};
    /// Index of the random preset that `next` returned last. Equals the number of presets before the first call.
    std::size_t last = shippedPresets().size();
};

}  // namespace saver
