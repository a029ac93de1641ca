#pragma once

#include "effect/effect_state.h"

// The ink is a density field in two RGBA8 targets. A pass reads one, renders into the other, and
// then the records are swapped, so that inkFront always holds the latest ink. GL thread.

namespace velmora {

/// Carries the ink along the velocity texture and lets it decay, by the shader
/// gpu/shaders/advect.frag. The viewport covers the ink target already.
void runAdvectPass(const EffectState& state, const RenderTarget& velocity,
                   const RenderTarget& source, const RenderTarget& destination,
                   const TouchSnapshot& touch);

/// Adds ink along a segment (mode 2) or around `current`, screen pixels, y up, by
/// gpu/shaders/impulse.frag.
void runImpulsePass(const EffectState& state, const RenderTarget& source,
                    const RenderTarget& destination, std::int32_t mode, Float2 previous,
                    Float2 current);

/// One frame's ink: a mode, a segment in screen pixels, y down, and the touch it came from.
struct InkStroke {
    std::int32_t mode;
    Float2 previous;
    Float2 current;
    std::int32_t touchX, touchY;
};

/// Records the stroke and its colour, and adds its ink unless the touch lies near an edge of the
/// screen.
void depositInk(EffectState& state, const InkStroke& stroke, InkColor color);

}  // namespace velmora
