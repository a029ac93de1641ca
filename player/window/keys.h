#pragma once

#include <span>

#include "app/labels.h"

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
    stopReplay,
    savePreset,
    renamePreset,
    deletePreset,
    undo,
    redo,
    openFile,
    accept,
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
    app::CommandText text;
};

std::span<const Key> keys();

/// Returns the name, the label and the description of a command.
const app::CommandText& textOf(Command command);

}  // namespace player
