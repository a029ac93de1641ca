// SPDX-License-Identifier: MIT
// Copyright (c) 2026 the Velmora authors
#pragma once

/// @file
/// Sizes of the velocity grid and of the ink textures.

#include <cstdint>

namespace velmora {

/// Side of a solver cell in screen pixels. The grid has as many cells as fit completely on the screen. The velocity
/// texture has one texel per cell.
constexpr std::int32_t pixelsPerCell = 12;

/// Texels of an ink texture along the longer side of the screen. The number is the same for all screen sizes.
constexpr std::int32_t inkLongSide = 1024;

/// Texels of an ink texture along the shorter side of the screen. The number is the same for all screen sizes.
constexpr std::int32_t inkShortSide = 512;

}  // namespace velmora
