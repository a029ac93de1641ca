#pragma once

#include "effect/effect_state.h"
#include "gpu/water_draw.h"

namespace velmora {

/// Starts a frame: sets the viewport to the whole screen. onDrawFrame calls it before it pins the host's arrays. Call
/// it on the GL thread.
void startFrame(const EffectState& state);

/// Draws a frame from the pinned arrays. If ink is enabled, runs the fluid step and the touch step first. `inkColor` is
/// the host's colour for the ink that this frame deposits. Does not clear the framebuffer. Call it on the GL thread.
void drawFrame(EffectState& state, SharedTouch& shared, const WaterFrame& frame, InkColor inkColor);

}  // namespace velmora
