#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// Copies what the next step reads of settings and touch, and applies the margin rule of that
/// moment to touchMargin, sourceRadius and sourceStrength. So a step's result depends on nothing
/// that happens while it runs, and the presets of the frame's later touch step win over the rule.
/// Render thread, with no worker running.
void prepareSolverStep(EffectState& state, const TouchSnapshot& touch);

/// One step of the velocity field: stroke impulse, self-advection, projection where the touch lies
/// far enough from the edges, packing. Uses the grids, the passes and packedVelocity of the state,
/// and rand(). Returns null. Worker thread.
void* runSolverStep(EffectState& state);

}  // namespace velmora
