#pragma once

#include "player/options.h"

namespace player {

/// Whether the command line and the desktop ask for a window: a display is there, and neither a
/// folder for a film nor --headless was given.
bool wantsWindow(const Options& options);

/// Opens the window and returns when it is closed. Throws Failure or HostError.
void runWindow(const Options& options);

}  // namespace player
