#pragma once

#include <cstdint>

namespace velmora {

/// Sides of the square of screen pixels that one cell of the velocity's grid covers, and one texel
/// of the velocity texture; a screen has as many whole ones as fit.
constexpr std::int32_t pixelsPerCell = 12;

/// Texels of the ink's textures along the longer and the shorter side of the screen, of any screen.
constexpr std::int32_t inkLongSide = 1024;
constexpr std::int32_t inkShortSide = 512;

}  // namespace velmora
