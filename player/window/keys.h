#pragma once

#include <span>

namespace player {

/// Actions of the keys and of the panel's buttons.
enum class Command {
    help,
    panel,
    pause,
    step,
    clearInk,
    secondBackground,
    waterOnly,
    velocityOverlay,
    inkOverlay,
    screenshot,
    film,
    record,
    replay,
    savePreset,
    nextPreset,
    inkForBackground,
    randomSettings,
    resetSettings,
    loseContext,
    attract,
    fullScreen,
    back,
    quit
};

struct Key {
    /// SDL key code.
    int code;
    Command command;
    /// Name of the key, for display.
    const char* name;
    /// Description of the action, for the list of keys and the hints.
    const char* label;
};

std::span<const Key> keys();

/// Description of dropped files, for the list of keys.
constexpr const char* dropHelp =
    "an image becomes the background, and the old background the second one; a preset is loaded; "
    "a gesture script is played";

}  // namespace player
