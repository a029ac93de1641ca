#pragma once

#include "player/window/window_state.h"

namespace player {

/// Shows the effect's new picture, or its last one anew, with overlays, panel and notice over it;
/// nothing where nothing changed. Takes the screenshot that was asked for.
void present(WindowState& window);

}  // namespace player
