#pragma once

#include "player/options.h"

namespace player {

/// Returns true if a desktop is available and neither --headless nor --out is given.
bool wantsWindow(const Options& options);

/// Opens the window and runs it until it is closed. Throws Failure or HostError.
void runWindow(const Options& options);

}  // namespace player
