#pragma once

#include "effect/effect_state.h"
#include "solver/step_settings.h"

namespace velmora {

// A step reads settings and touch of one moment, StepSettings: its result depends on nothing that happens while it
// runs. The margin rule belongs to that moment: the frame that starts the step deposits its ink by the rule's margin,
// and the presets of the frame's later touch step replace the rule's sink.

/// Applies the margin rule to touchMargin, sourceRadius and sourceStrength, and returns the settings of the next step.
/// No worker may run.
StepSettings beginSolverStep(EffectState& state, const TouchVariables& touch);

/// Advances the velocity by one step: stroke impulse, self-advection, projection if the touch lies far enough from the
/// edges, packing. The entry of the solver thread: `effectState` is an EffectState, whose stepSettings the step reads.
/// Uses its grids, passes and packedVelocity, and rand(). Returns null.
void* runSolverStep(void* effectState);

/// Pushes velocity away from the stroke of the step, unless the touch lies near an edge of the screen.
void addVelocityKernel(EffectState& state, const StepSettings& settings);

}  // namespace velmora
