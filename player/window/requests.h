#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "player/window/keys.h"

namespace player {

/// Answer of the user to a dialog.
struct Answer {
    /// Command that opened the dialog.
    Command command;
    /// Text that the user entered.
    std::string text;
};

/// Command for one of the user's presets: to rename it or to delete it.
struct PresetCommand {
    Command command;
    std::filesystem::path preset;
};

/// Requests from keys, panel and desktop. The main loop runs these requests once per iteration.
struct Requests {
    std::vector<Command> commands;
    /// File of the preset that the user chose in the panel; empty if none was chosen.
    std::filesystem::path preset;
    std::vector<PresetCommand> presetCommands;
    /// Files to open, which the user dropped on the window or chose in the file browser.
    std::vector<std::filesystem::path> files;
    std::vector<Answer> answers;
};

}  // namespace player
