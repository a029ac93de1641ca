#pragma once

#include "player/options.h"

namespace player {

/// Plays a gesture script without a window and writes its film to the output folder. Leaves no file if it fails.
/// Throws Failure or HostError.
void run(const Options& options);

}  // namespace player
