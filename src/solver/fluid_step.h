#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// The fluid step of one ink frame: waits for the last solver worker and uploads its velocity,
/// starts the next worker, and meanwhile advects the ink four times. So ink moves along the
/// velocity of the frame before. A worker that cannot be started leaves the velocity as it is. GL thread.
void stepFluid(EffectState& state, SharedTouch& shared);

}  // namespace velmora
