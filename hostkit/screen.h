#pragma once

#include <cstdint>
#include <vector>

namespace hostkit {

/// Returns the current context's default framebuffer of that size as RGBA bytes, rows top to bottom.
std::vector<std::uint8_t> readScreen(int width, int height);

}  // namespace hostkit
