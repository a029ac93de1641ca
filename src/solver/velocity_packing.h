#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/effect_state.h"

// Velocities are uploaded to the GPU as RGBA8 texels. Each component v is clamped to [-127, 127]. Then v + 127 is split
// into a high and a low byte; a shader computes high + low / 255 from them. Red and green hold x, blue and alpha hold
// y. The shader's formula is linear, so texture filtering between texels interpolates the velocities correctly.

namespace velmora {

/// Frees `block` and allocates a new block of width x height cells with velocity 0. Sets `block` to null if memory runs
/// out or the size is not allowed (isGridSize).
void reallocatePackedVelocity(std::uint8_t*& block, std::int32_t width, std::int32_t height);

/// Packs as many cells as `target` has texels into state.packedVelocity. Allocates packedVelocity if it is null. NaN is
/// packed as -127. Runs on the worker thread at the end of a solver step.
void packVelocity(EffectState& state, const FloatGrid& velocity, const RenderTarget& target);

/// Packs `cells` velocities of 2 floats into 4 bytes each.
void packCells(std::uint8_t* to, const float* from, std::ptrdiff_t cells);

}  // namespace velmora
