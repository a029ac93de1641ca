#pragma once

namespace player {

/// From here on Ctrl-C, a termination and a terminal that goes are only noted, so that what is
/// under way can be ended cleanly; and a write that nobody reads, or that exceeds what the user may
/// write, fails and does not end the program.
void handleSignals();

/// Whether one was noted.
bool isInterrupted();

}  // namespace player
