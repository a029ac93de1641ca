#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// One step of the velocity field: stroke impulse, self-advection, projection where the touch lies
/// far enough from the edges, packing. Uses the grids, the passes and packedVelocity of the state,
/// and rand(). Returns null, as a thread's result. The touch is an argument because only host/ names
/// the globals.
void* runSolverStep(EffectState& state, const TouchVariables& touch);

// The same in its two halves, for a worker. What a step reads of settings and touch is one moment's:
// its result depends on nothing that happens while it runs. The margin rule is a part of that
// moment, because the frame that starts the step deposits its ink by the rule's margin, and the
// presets of the frame's later touch step win over the rule's sink.

/// Copies that moment, and applies the margin rule to touchMargin, sourceRadius and sourceStrength.
/// With no worker running.
StepSettings beginSolverStep(EffectState& state, const TouchVariables& touch);

/// Worker thread.
void* runSolverStep(EffectState& state, const StepSettings& settings);

/// Pushes velocity out of a stroke's segment, screen pixels, y down, unless the touch lies near an
/// edge. Takes touch, margin and radius from the step's copy, not from the record.
void addVelocityKernel(EffectState& state, const StepSettings& settings, float previousX,
                       float previousY, float currentX, float currentY);

}  // namespace velmora
