#pragma once

#include <cstdint>

namespace velmora {

// The host measures y from the top of the screen downwards. The solver and the GPU passes measure y from the bottom
// upwards.

/// Converts a y coordinate between the two directions. `screenHeight` is in pixels. The result is exact for any two
/// ints.
constexpr std::int64_t flippedY(std::int32_t screenHeight, std::int32_t y) {
    return std::int64_t{screenHeight} - y;
}
constexpr float flippedY(std::int32_t screenHeight, float y) {
    return static_cast<float>(screenHeight) - y;
}

}  // namespace velmora
