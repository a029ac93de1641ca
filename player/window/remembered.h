#pragma once

#include <optional>

#include "app/settings.h"
#include "app/size.h"
#include "player/size.h"

namespace player {

/// What a window leaves to the user's next one, in velmora/ of the folder for such files.
struct Remembered {
    std::optional<app::Settings> settings;
    /// In units of the desktop.
    std::optional<app::Size> window;
};

/// What is there but cannot be used is told on stderr.
Remembered recall();

/// What is absent stays as it is. What cannot be written is told on stderr.
void remember(const Remembered& last);

}  // namespace player
