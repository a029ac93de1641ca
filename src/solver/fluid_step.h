#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// Runs the fluid step of one ink frame: waits for the last solver worker, uploads its velocity, starts the next worker
/// and advects the ink while that one runs. So ink moves along the velocity of the frame before. If no worker can be
/// started, the velocity stays as it is. GL thread.
void stepFluid(EffectState& state, SharedTouch& shared);

}  // namespace velmora
