#pragma once

#include "screensaver/options.h"

namespace saver {

/// Draws until a signal ends the program, or until the window is closed or destroyed. Throws Failure or HostError.
void run(const Options& options);

}  // namespace saver
