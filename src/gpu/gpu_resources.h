#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// Handles onInitUVHBuffer, the first call on a new GL context. Sets the names of the old context's objects to 0 and
/// does not delete them; only the quad buffer's name stays. Then makes the three mesh buffers. Call it on the GL
/// thread.
void replaceContext(EffectState& state);

/// Handles onInitGPU: makes the water program. If `withInk` is true, also makes the ink programs, the targets, the quad
/// buffer, the names of the passes and the solver grids. Uses the sizes that applySettings stored. Deletes existing
/// objects first. Call it on the GL thread.
void initGPUResources(EffectState& state, bool withInk);

}  // namespace velmora
