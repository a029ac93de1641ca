#pragma once

#include <cstdint>

namespace velmora {

/// Side of a cell of the velocity grid, and of a texel of the velocity texture, in screen pixels. The grid has as many
/// whole cells as fit on the screen.
constexpr std::int32_t pixelsPerCell = 12;

/// Sides of the ink textures along the longer and the shorter side of the screen, in texels. They are the same for all
/// screens.
constexpr std::int32_t inkLongSide = 1024;
constexpr std::int32_t inkShortSide = 512;

}  // namespace velmora
