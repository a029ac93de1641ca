#pragma once

#include "app/backgrounds.h"
#include "app/settings.h"
#include "player/options.h"

namespace player {

/// Loads the backgrounds of the command line. A missing first one is the first painting, as on the page, and a missing
/// second one the second painting. Throws Failure.
app::Backgrounds loadBackgrounds(const Options& options);

/// Returns the settings of the command line: its preset and --water-only. Throws Failure.
app::Settings settingsOf(const Options& options);

}  // namespace player
