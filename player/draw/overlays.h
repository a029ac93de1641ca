#pragma once

#include "hostkit/instruments/effect_probe.h"
#include "player/draw/canvas.h"
#include "player/size.h"

namespace player {

/// What is shown over the picture of how it came about.
struct Overlays {
    /// Strokes along the flow, one a cell or fewer.
    bool velocity = false;
    /// False colours of the ink's density.
    bool ink = false;
};

/// Draws the density at once, and the strokes into the background of the ImGui frame.
void drawOverlays(Overlays overlays, const hostkit::EffectProbe& probe, Canvas& canvas,
                  Size screen);

}  // namespace player
