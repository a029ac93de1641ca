#pragma once

#include "effect/effect_state.h"
#include "gpu/water_draw.h"

namespace velmora {

/// Starts onDrawFrame, before the host's arrays are pinned: sets the viewport to the screen. Call it on the GL thread.
void startFrame(const EffectState& state);

/// Draws a frame from the pinned arrays: if the frame has ink, runs the fluid step and the touch step, then draws the
/// water. `inkColor` is the host's colour for ink that this frame deposits. Does not clear the framebuffer. Call it on
/// the GL thread.
void drawFrame(EffectState& state, SharedTouch& shared, const WaterFrame& frame, InkColor inkColor);

}  // namespace velmora
