#pragma once

#include "player/options.h"

namespace player {

/// Plays a gesture script over a picture and leaves its film in the target folder, or nothing at
/// all. Throws Failure or HostError.
void run(const Options& options);

}  // namespace player
