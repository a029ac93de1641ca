#pragma once

#include <cstdint>

namespace velmora {

// The host measures y downwards, the solver and the GPU passes measure it upwards. flippedY converts either to the
// other on a screen of `screenHeight` pixels.

/// Exact for any two ints.
constexpr std::int64_t flippedY(std::int32_t screenHeight, std::int32_t y) {
    return std::int64_t{screenHeight} - y;
}
constexpr float flippedY(std::int32_t screenHeight, float y) {
    return static_cast<float>(screenHeight) - y;
}

}  // namespace velmora
