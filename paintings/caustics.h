#pragma once

#include <cstdint>

#include "paintings/field.h"

namespace paintings {

/// Returns how much sunlight a wavy water surface focuses on each place of the ground, from 0 to about 0.66. The light
/// forms bright lines, and there is no light between the lines.
/// @param view part of the painting to cover
/// @param waveWidth width of the waves as a fraction of the painting's side
/// @param depth distance from the surface to the ground; at 1, most waves are in focus
/// @param seed selects the waves
Field makeCaustics(const View& view, float waveWidth, float depth, std::uint32_t seed);

}  // namespace paintings
