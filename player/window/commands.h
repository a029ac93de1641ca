#pragma once

#include <filesystem>

#include "player/window/window_state.h"

namespace player {

/// Runs what keys and panel asked for. What fails is told in the window.
void runCommands(WindowState& window);

/// A picture dropped on the window becomes the background.
void dropPicture(WindowState& window, const std::filesystem::path& file);

}  // namespace player
