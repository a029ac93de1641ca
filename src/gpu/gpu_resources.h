#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// Handles onInitUVHBuffer, the first call on a new GL context: sets all names of the old context except the quad
/// buffer's to 0, without deleting them, and makes the three mesh buffers. GL thread.
void replaceContext(EffectState& state);

/// Handles onInitGPU: makes the water program. With ink, also makes the ink programs, the targets, the quad buffer, the
/// names of the passes and the solver grids, in the sizes of applySettings. Deletes existing objects first. GL thread.
void initGPUResources(EffectState& state, bool withInk);

}  // namespace velmora
