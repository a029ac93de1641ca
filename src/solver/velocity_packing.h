#pragma once

#include <cstddef>
#include <cstdint>

#include "effect/effect_state.h"

// Velocities travel to the GPU as RGBA8 texels: each component v, clamped to [-127, 127], as v +
// 127 split over a high and a low byte that a shader reads back as high + low / 255. Red and green
// hold x, blue and alpha y. Decoding is linear in the channels, so a filtered texture yields the
// filtered velocity.

namespace velmora {

/// Frees the block and takes one for width x height cells, filled with the code of a still flow;
/// null without memory or with a size that no grid can have.
void reallocatePackedVelocity(std::uint8_t*& block, std::int32_t width, std::int32_t height);

/// Packs the grid into the state's packedVelocity, which it allocates when absent; the size is the
/// target's. NaN counts as -127. Worker thread, as the last act of a solver step.
void packVelocity(EffectState& state, const FloatGrid& velocity, const RenderTarget& target);

/// Packs 2-float cells into 4 bytes each.
void packCells(std::uint8_t* to, const float* from, std::ptrdiff_t cells);

}  // namespace velmora
