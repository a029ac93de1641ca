#pragma once

#include <filesystem>

#include "hostkit/gesture_script.h"
#include "player/options.h"

namespace player {

/// The script of a file. One that is empty, or has events that are never played, is told on stderr.
/// Throws Failure or HostError.
hostkit::GestureScript loadScript(const std::filesystem::path& file);

/// The script that the command line names, as long as the command line wants it.
hostkit::GestureScript loadScript(const Options& options);

/// Every pressure times `factor`, at most 1.
void scalePressures(hostkit::GestureScript& script, float factor);

}  // namespace player
