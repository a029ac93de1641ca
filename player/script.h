#pragma once

#include <filesystem>

#include "hostkit/gesture_script.h"
#include "player/options.h"

namespace player {

/// Loads a gesture script. Warns on stderr if it has no event or has events after its last frame.
/// Throws Failure or HostError.
hostkit::GestureScript loadScript(const std::filesystem::path& file);

/// Loads the script of the command line. Options::frames, if positive, replaces the script's length.
hostkit::GestureScript loadScript(const Options& options);

/// Multiplies every pressure by `factor` and limits it to 1.
void scalePressures(hostkit::GestureScript& script, float factor);

}  // namespace player
