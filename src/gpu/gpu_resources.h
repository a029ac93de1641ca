#pragma once

#include "effect/effect_state.h"

namespace velmora {

/// The body of onInitUVHBuffer, the first call on a new GL context: forgets, without deleting, the
/// names that the record holds from the old one (the quad buffer's aside), and makes the three mesh
/// buffers. GL thread.
void replaceContext(EffectState& state);

/// The body of onInitGPU: the water program; with ink also the ink programs and targets, the quad
/// buffer, the names of the passes and the solver grids, in the sizes of applySettings. What exists
/// is deleted first. GL thread.
void initGPUResources(EffectState& state, bool withInk);

}  // namespace velmora
