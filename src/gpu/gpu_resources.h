#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// Handles onInitUVHBuffer, the first call on a new GL context. Sets all stored object names of the old context to 0,
/// except the quad buffer's, and deletes nothing. Then makes the three mesh buffers. Call it on the GL thread.
void replaceContext(EffectState& state);

/// Handles onInitGPU: makes the water program. If `withInk` is true, also makes the ink programs, render targets, quad
/// buffer, pass names and solver grids. Their sizes are those that applySettings stored. Deletes existing objects
/// first. Call it on the GL thread.
void initGPUResources(EffectState& state, bool withInk);

}  // namespace velmora
