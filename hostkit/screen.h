#pragma once

#include <cstdint>
#include <vector>

namespace hostkit {

/// Reads the pixels of the current GL context's default framebuffer. The framebuffer binding stays the same.
/// @param width width of the framebuffer in pixels
/// @param height height of the framebuffer in pixels
/// @return 4 * width * height bytes: RGBA, rows from top to bottom
std::vector<std::uint8_t> readScreen(int width, int height);

}  // namespace hostkit
