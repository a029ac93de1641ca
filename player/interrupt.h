#pragma once

namespace player {

/// From here on Ctrl-C and a termination are only noted, so that what is under way can be ended
/// cleanly; and an encoder that dies while it is fed ends a write, not the program.
void takeSignals();

/// Whether one was noted.
bool isInterrupted();

}  // namespace player
