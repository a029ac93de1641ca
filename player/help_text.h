#pragma once

namespace player {

/// Text of --help: the contents of help.txt. The script `./play` prints the same file before a build.
extern const char* const helpText;

}  // namespace player
