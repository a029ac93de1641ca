#pragma once

#include <cstdint>

namespace velmora {

// The host counts y downwards, the solver and the passes upwards: a y of the one as that of the
// other, on a screen of so many pixels' height.

/// Exact for any two ints.
constexpr std::int64_t flippedY(std::int32_t screenHeight, std::int32_t y) {
    return std::int64_t{screenHeight} - y;
}
constexpr float flippedY(std::int32_t screenHeight, float y) {
    return static_cast<float>(screenHeight) - y;
}

}  // namespace velmora
