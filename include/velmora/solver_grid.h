#pragma once

#include <cstdint>

namespace velmora {

/// Sides of the square of screen pixels that one cell of the velocity's grid covers, and one texel
/// of the velocity texture; a screen has as many whole ones as fit.
constexpr std::int32_t pixelsPerCell = 12;

}  // namespace velmora
