#pragma once

#include "base/pair.h"
#include "base/stroke.h"
#include "effect/effect_state.h"
#include "gpu/render_target.h"

// The ink is a density field, stored in two RGBA8 render targets. A pass reads one target and renders into the other.
// Then the two structs are swapped, so inkFront always holds the latest ink. Call these functions on the GL thread.

namespace velmora {

/// Advects the ink along the velocity texture and multiplies it by `dissipation` (gpu/shaders/advect.frag). The
/// viewport must already cover the ink target.
void runAdvectPass(const EffectState& state, const RenderTarget& velocity,
                   const RenderTarget& source, const RenderTarget& destination, float dissipation);

/// Adds the ink of a stroke (gpu/shaders/impulse.frag): along the segment in FastDrag mode, and around `current` in the
/// other modes. Points are in screen pixels, y up.
void runImpulsePass(const EffectState& state, const RenderTarget& source,
                    const RenderTarget& destination, DragMode mode, Float2 previous,
                    Float2 current);

/// Stores the points and the colour of a stroke. Also adds its ink if the touch is more than `touchMargin` pixels from
/// every edge of the screen.
void depositInk(EffectState& state, const TouchVariables& touch, const InkStroke& stroke,
                InkColor color);

}  // namespace velmora
