#pragma once

#include <filesystem>
#include <vector>

#include "player/window/keys.h"

namespace player {

/// What keys, panel and desktop asked for and waits for its place in the turn.
struct Requests {
    std::vector<Command> commands;
    /// A preset chosen in the panel; empty: none.
    std::filesystem::path preset;
    /// Files dropped on the window.
    std::vector<std::filesystem::path> drops;
};

}  // namespace player
