#pragma once

#include <cstddef>
#include <random>
#include <span>
#include <string>
#include <utility>

#include "app/settings.h"

namespace saver {

/// A preset from the folder presets/. The build copies these presets into the program.
struct ShippedPreset {
    /// Name of the preset's file without extension, for example calm_pond.
    const char* name;
    const char* json;
};
/// Returns all shipped presets. The build generates this function.
std::span<const ShippedPreset> shippedPresets();

/// The preset that the command line selects: the default settings, a shipped preset, a file, or random shipped presets.
class PresetChoice {
public:
    /// Stores the choice: the name of a shipped preset, the path of a file, "random", or an empty text for the default
    /// settings.
    explicit PresetChoice(std::string name) : chosen(std::move(name)) {}

    bool isRandom() const { return chosen == "random"; }
    /// Returns the settings of the preset. If the choice is random, each call returns another preset than the call
    /// before. Throws Failure.
    app::Settings next();

private:
    app::Settings nextRandom();

    std::string chosen;
    std::mt19937 random{std::random_device{}()};
    /// Index of the last random preset that `next` has returned. Before the first call, it is the number of presets.
    std::size_t last = shippedPresets().size();
};

}  // namespace saver
