#pragma once

#include "base/pair.h"
#include "base/stroke.h"
#include "effect/effect_state.h"
#include "gpu/render_target.h"

// The ink is a density field in two RGBA8 targets. A pass reads one, renders into the other, and
// then the records are swapped, so that inkFront always holds the latest ink. GL thread.

namespace velmora {

/// Carries the ink along the velocity texture and lets it decay, by the shader
/// gpu/shaders/advect.frag. The viewport covers the ink target already.
void runAdvectPass(const EffectState& state, const RenderTarget& velocity,
                   const RenderTarget& source, const RenderTarget& destination, float dissipation);

/// Adds ink along a segment (FastDrag) or around `current`, screen pixels, y up, by gpu/shaders/impulse.frag.
void runImpulsePass(const EffectState& state, const RenderTarget& source,
                    const RenderTarget& destination, DragMode mode, Float2 previous,
                    Float2 current);

/// Stores the points and the colour of a stroke, and adds its ink unless the touch lies near an edge of the screen.
void depositInk(EffectState& state, const TouchVariables& touch, const InkStroke& stroke,
                InkColor color);

}  // namespace velmora
