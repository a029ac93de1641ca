#pragma once

#include "player/window/window_state.h"

namespace player {

/// Whether frames of the effect become due with time.
bool isActive(const WindowState& window);

/// Sets the effect up anew once a window that was resized rests. What is filmed and recorded ends
/// there.
void followSize(WindowState& window);

/// Plays a script from a fresh start. What is recorded ends there.
void startReplay(WindowState& window, Replay replay);

/// Plays the frames that are due.
void playDueFrames(WindowState& window);

}  // namespace player
