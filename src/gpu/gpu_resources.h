#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// Handles onInitUVHBuffer, the first call on a new GL context. Sets the stored GL names of the old context's objects
/// to 0, except the name of the quad buffer, and deletes no objects. Then makes the three mesh buffers. Call it on the
/// GL thread.
void replaceContext(EffectState& state);

/// Handles onInitGPU: makes the water program. If `withInk` is true, also makes the ink programs, render targets, quad
/// buffer and solver grids, and sets the field `name` of each solver pass. Targets and grids have the sizes that
/// applySettings stored. Deletes existing objects first. Call it on the GL thread.
void initGPUResources(EffectState& state, bool withInk);

}  // namespace velmora
