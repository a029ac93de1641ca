#pragma once

#include "base/pair.h"
#include "base/stroke.h"
#include "effect/effect_state.h"
#include "gpu/render_target.h"

// The ink is a density field in two RGBA8 targets. A pass reads one target and renders into the other. Then the two
// structs are swapped, so that inkFront always holds the latest ink. GL thread.

namespace velmora {

/// Advects the ink along the velocity texture with decay, by gpu/shaders/advect.frag. The viewport must cover the ink
/// target.
void runAdvectPass(const EffectState& state, const RenderTarget& velocity,
                   const RenderTarget& source, const RenderTarget& destination, float dissipation);

/// Adds ink along a segment (FastDrag) or around `current`, by gpu/shaders/impulse.frag. Points are in screen pixels,
/// y up.
void runImpulsePass(const EffectState& state, const RenderTarget& source,
                    const RenderTarget& destination, DragMode mode, Float2 previous,
                    Float2 current);

/// Stores the points and the colour of a stroke, and adds its ink unless the touch lies near an edge of the screen.
void depositInk(EffectState& state, const TouchVariables& touch, const InkStroke& stroke,
                InkColor color);

}  // namespace velmora
