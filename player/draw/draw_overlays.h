#pragma once

#include "app/effect_probe.h"
#include "app/size.h"
#include "player/draw/canvas.h"
#include "player/draw/overlays.h"

namespace player {

/// Draws the ink density immediately. Adds the flow lines to the background of the ImGui frame, so they are drawn at
/// its end.
void drawOverlays(Overlays overlays, const app::EffectProbe& probe, Canvas& canvas,
                  app::Size screen);

}  // namespace player
