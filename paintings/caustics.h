#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "paintings/field.h"

namespace paintings {

/// Returns the light that a wavy water surface focuses on the ground. The mean is 1.
/// @param view part of the plate to cover
/// @param waveWidth width of the waves in units of the plate
/// @param depth distance from the surface to the ground. At 1, most waves are in focus.
/// @param seed selects the waves
Field makeCaustics(const View& view, float waveWidth, float depth, std::uint32_t seed);

/// Returns how much sunlight covers the ground for a value of makeCaustics, from 0 to about 0.66. The ground between
/// the bright lines has none.
inline float sunlightOf(float caustic) {
    constexpr float density = 0.6f;
    constexpr float ground = 0.34f;
    return std::max(0.0f, 1.0f - std::exp(-density * caustic) - ground);
}

}  // namespace paintings
