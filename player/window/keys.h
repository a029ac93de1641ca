#pragma once

#include <span>

namespace player {

/// What a key or a button of the panel asks for.
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
    /// The key's code in SDL.
    int code;
    Command command;
    const char* name;
    const char* label;
};

std::span<const Key> keys();

/// What a file does that is dropped on the window.
constexpr const char* dropHelp =
    "of a picture: it becomes the background, the former one the second; of a preset: it is "
    "loaded; of a gesture script: it is played";

}  // namespace player
