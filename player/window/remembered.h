#pragma once

#include <optional>

#include "app/settings.h"
#include "app/size.h"
#include "player/size.h"

namespace player {

/// State that a window saves for the next window, in the folder velmora/ of the user's configuration folder.
struct Remembered {
    std::optional<app::Settings> settings;
    /// Size in desktop units.
    std::optional<app::Size> window;
};

/// Loads the state of the last window. Warns on stderr about unusable files.
Remembered recall();

/// Saves each member that has a value. For an empty member, keeps the old file. Warns on stderr about errors.
void remember(const Remembered& last);

}  // namespace player
