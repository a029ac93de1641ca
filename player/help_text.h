#pragma once

namespace player {

/// What --help prints: help.txt, which `./play` prints without a build too.
extern const char* const helpText;

}  // namespace player
