#pragma once

#include "app/size.h"
#include "hostkit/instruments/effect_probe.h"
#include "player/draw/canvas.h"
#include "player/draw/overlays.h"

namespace player {

/// Draws the density immediately and adds the flow lines to the background of the ImGui frame.
void drawOverlays(Overlays overlays, const hostkit::EffectProbe& probe, Canvas& canvas,
                  app::Size screen);

}  // namespace player
