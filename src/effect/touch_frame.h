#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// The touch step of one ink frame: stepTouchPhase, and the deposit of its stroke in `color`.
/// Returns the ink amount that this frame shows: an event that comes after the step reaches the
/// next frame, not half of this one. Render thread.
float advanceTouchFrame(EffectState& state, SharedTouch& shared, InkColor color);

}  // namespace velmora
