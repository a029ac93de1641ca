#pragma once

#include "app/backgrounds.h"
#include "app/settings.h"
#include "player/options.h"

namespace player {

/// Loads the backgrounds of the command line. A missing one is replaced by a wallpaper of the desktop, or by a test
/// image if the desktop has no wallpaper. Throws Failure.
app::Backgrounds loadBackgrounds(const Options& options);

/// Returns the settings of the command line: its preset and --water-only. Throws Failure.
app::Settings settingsOf(const Options& options);

}  // namespace player
