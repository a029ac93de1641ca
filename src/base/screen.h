#pragma once

#include <cstdint>

namespace velmora {

// The host measures y downwards from the top of the screen. The solver and the GPU passes measure y upwards from the
// bottom.

/// Converts between y down and y up on a screen of `screenHeight` pixels, in either direction. Exact for any two ints.
constexpr std::int64_t flippedY(std::int32_t screenHeight, std::int32_t y) {
    return std::int64_t{screenHeight} - y;
}
constexpr float flippedY(std::int32_t screenHeight, float y) {
    return static_cast<float>(screenHeight) - y;
}

}  // namespace velmora
