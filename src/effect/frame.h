#pragma once

#include "effect/effect_state.h"
#include "gpu/water_draw.h"

namespace velmora {

/// What a frame does before it pins the host's arrays: the viewport of the screen. GL thread.
void startFrame(const EffectState& state);

/// The body of onDrawFrame once the host's arrays are pinned: the fluid step and the touch step
/// where ink is enabled, then the water. Ink laid in it shows in `inkColor`. Clears nothing. GL thread.
void drawFrame(EffectState& state, SharedTouch& shared, const WaterFrame& frame, InkColor inkColor);

}  // namespace velmora
