#pragma once

#include "effect/effect_state.h"
#include "solver/step_settings.h"

namespace velmora {

// A step reads only StepSettings, a copy of settings and touch that is made before the step starts. So later touches do
// not affect the step. The margin rule is applied at the same time: if the touch is near the screen's edges, it sets a
// smaller margin and a smaller sink, or skips the projection (see applyMarginRule). The frame that starts the step uses
// this margin for its ink. Then the touch step of the same frame replaces the sink by that of its preset.

/// Adapts touchMargin, sourceRadius and sourceStrength to a touch near an edge of the screen (margin rule). Returns the
/// settings of the next step. The solver worker must not be running.
StepSettings beginSolverStep(EffectState& state, const TouchVariables& touch);

/// Advances the velocity by one step: adds the stroke impulse of a fast drag, advects, projects if the margin rule
/// allows it, and packs the result. This is the start function of the solver thread. `effectState` points to an
/// EffectState. The step uses its stepSettings, grids, passes and packedVelocity, and calls rand(). Returns null.
void* runSolverStep(void* effectState);

/// Pushes the flow away from the step's stroke. Does nothing if the touch is at most `touchMargin` pixels from an edge
/// of the screen.
void addVelocityKernel(EffectState& state, const StepSettings& settings);

}  // namespace velmora
