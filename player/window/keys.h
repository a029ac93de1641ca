#pragma once

#include <span>
#include <string>

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
    inkOfPicture,
    randomLook,
    resetLook,
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
    const char* words;
};

std::span<const Key> keys();

/// One line a key.
std::string keyHelp();

}  // namespace player
