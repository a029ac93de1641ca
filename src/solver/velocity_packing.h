#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/effect_state.h"

// The GPU gets velocities as RGBA8 texels. Each component v is clamped to [-127, 127]; v + 127 is split into a high and
// a low byte, from which a shader computes high + low / 255. Red and green hold x, blue and alpha hold y. Decoding is
// linear in the channels, so a filtered texture gives the filtered velocity.

namespace velmora {

/// Frees the block and allocates a new one for width x height cells of zero velocity. Sets it to null if the allocation
/// fails or if no grid can have this size.
void reallocatePackedVelocity(std::uint8_t*& block, std::int32_t width, std::int32_t height);

/// Packs as many cells as the target has into state.packedVelocity, which it allocates if it is null. NaN counts as
/// -127. Worker thread, at the end of a solver step.
void packVelocity(EffectState& state, const FloatGrid& velocity, const RenderTarget& target);

/// Packs cells of 2 floats into 4 bytes each.
void packCells(std::uint8_t* to, const float* from, std::ptrdiff_t cells);

}  // namespace velmora
