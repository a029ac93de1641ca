#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// Runs the fluid step of one frame. Waits for the solver worker of the previous frame and uploads the velocity that it
/// computed. Then starts the next worker and advects the ink while that worker runs. So ink moves along the velocity of
/// the previous frame. If no thread can be started, the velocity does not change. Call it on the GL thread.
void stepFluid(EffectState& state, SharedTouch& shared);

}  // namespace velmora
