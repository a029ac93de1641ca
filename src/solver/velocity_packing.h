#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/effect_state.h"

// The GPU gets velocities as RGBA8 texels. Each component v is clamped to [-127, 127]. Then v + 127 is split into a
// high and a low byte; a shader computes high + low / 255 from them. Red and green hold x, blue and alpha hold y. The
// shader's formula is linear, so a texture filter that mixes texels also mixes the velocities correctly.

namespace velmora {

/// Frees `block` and allocates a new one for width x height cells of zero velocity. Sets `block` to null if memory runs
/// out or isGridSize is false.
void reallocatePackedVelocity(std::uint8_t*& block, std::int32_t width, std::int32_t height);

/// Packs as many cells as `target` has into state.packedVelocity, which it allocates if the pointer is null. NaN is
/// packed as -127. Runs on the worker thread at the end of a solver step.
void packVelocity(EffectState& state, const FloatGrid& velocity, const RenderTarget& target);

/// Packs `cells` cells of 2 floats. Writes 4 bytes per cell.
void packCells(std::uint8_t* to, const float* from, std::ptrdiff_t cells);

}  // namespace velmora
