#pragma once

#include "app/backgrounds.h"
#include "app/settings.h"
#include "player/options.h"

namespace player {

/// Loads the backgrounds that the command line names. If it names no first background, uses the first painting. If it
/// names no second background, uses the second painting. The web page has the same defaults. Throws Failure.
app::Backgrounds loadBackgrounds(const Options& options);

/// Returns the settings of the command line: its preset and --water-only. Throws Failure.
app::Settings settingsOf(const Options& options);

}  // namespace player
