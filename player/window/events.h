#pragma once

#include "player/window/window_state.h"

namespace player {

/// Sleeps until the next frame is due or an event comes.
void waitForWork(WindowState& window);

/// Hands the desktop's events to the panel, and what the panel leaves to finger and commands.
void takeEvents(WindowState& window);

}  // namespace player
