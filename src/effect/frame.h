#pragma once

#include "effect/effect_state.h"
#include "gpu/water_draw.h"

namespace velmora {

/// Starts onDrawFrame, before the host's arrays are pinned: sets the screen's viewport. GL thread.
void startFrame(const EffectState& state);

/// Draws a frame from the pinned arrays: with ink, the fluid step and the touch step, then the water. `inkColor` is
/// the host's colour for ink that this frame deposits. Does not clear the framebuffer. GL thread.
void drawFrame(EffectState& state, SharedTouch& shared, const WaterFrame& frame, InkColor inkColor);

}  // namespace velmora
