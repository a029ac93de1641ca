#pragma once

#include <cstdint>

#include "paintings/field.h"

namespace paintings {

/// Returns how much sunlight a wavy water surface focuses on the ground, 0 to about 0.66. It forms bright lines. The
/// ground between them has none.
/// @param view part of the plate to cover
/// @param waveWidth width of the waves in units of the plate
/// @param depth distance from the surface to the ground. At 1, most waves are in focus.
/// @param seed selects the waves
Field makeCaustics(const View& view, float waveWidth, float depth, std::uint32_t seed);

}  // namespace paintings
