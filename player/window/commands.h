#pragma once

#include <filesystem>

#include "player/window/window_state.h"

namespace player {

/// Runs what keys and panel asked for. What fails is told in the window.
void runCommands(WindowState& window);

/// A file dropped on the window: a preset is loaded, a gesture script is played, a picture becomes
/// the background.
void dropFile(WindowState& window, const std::filesystem::path& file);

}  // namespace player
