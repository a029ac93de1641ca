#pragma once

#include <filesystem>
#include <vector>

#include "player/window/keys.h"

namespace player {

/// Requests of keys, panel and desktop. The main loop runs them once per iteration.
struct Requests {
    std::vector<Command> commands;
    /// Preset chosen in the panel, or empty.
    std::filesystem::path preset;
    /// Files dropped on the window.
    std::vector<std::filesystem::path> drops;
};

}  // namespace player
