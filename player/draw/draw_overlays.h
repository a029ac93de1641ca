#pragma once

#include "app/effect_probe.h"
#include "app/size.h"
#include "player/draw/canvas.h"
#include "player/draw/overlays.h"

namespace player {

/// Draws the ink density immediately. Adds the flow lines to the background draw list of ImGui, which draws them when
/// the ImGui frame ends.
void drawOverlays(Overlays overlays, const app::EffectProbe& probe, Canvas& canvas,
                  app::Size screen);

}  // namespace player
