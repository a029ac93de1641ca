#pragma once

#include <cmath>
#include <cstdint>

#include "paintings/plate.h"

namespace paintings {

/// Returns 24 pseudo-random bits that depend only on the arguments.
inline std::uint32_t randomBitsAt(int x, int y, std::uint32_t seed) {
    std::uint32_t bits = static_cast<std::uint32_t>(x) * 0x8da6b343u +
                         static_cast<std::uint32_t>(y) * 0xd8163841u + seed * 0xcb1ab31fu;
    bits = (bits ^ (bits >> 15)) * 0x2c1b3c6du;
    bits = (bits ^ (bits >> 12)) * 0x297a2d39u;
    return (bits ^ (bits >> 15)) >> 8;
}

/// Returns a pseudo-random number in [0, 1) that depends only on the arguments.
inline float randomAt(int x, int y, std::uint32_t seed) {
    return static_cast<float>(randomBitsAt(x, y, seed)) * 0x1p-24f;
}

/// Returns smooth noise from about -1 to 1. The bumps of the noise are about one unit wide.
inline float noise(Vec2 at, std::uint32_t seed) {
    const float left = std::floor(at.x);
    const float top = std::floor(at.y);
    const float x = at.x - left;
    const float y = at.y - top;
    const int column = static_cast<int>(left);
    const int row = static_cast<int>(top);
    // Each corner of the unit square around the position has a random gradient. The noise interpolates between the
    // heights that these gradients give.
    const auto height = [&](int right, int down) {
        const std::uint32_t bits = randomBitsAt(column + right, row + down, seed);
        const Vec2 gradient{static_cast<float>(bits >> 12) * 0x1p-11f - 1.0f,
                            static_cast<float>(bits & 0xFFF) * 0x1p-11f - 1.0f};
        return dot(gradient, {x - static_cast<float>(right), y - static_cast<float>(down)});
    };
    const auto fade = [](float t) { return t * t * t * (t * (t * 6.0f - 15.0f) + 10.0f); };
    constexpr float amplitude = 1.4f;
    return amplitude * mix(mix(height(0, 0), height(1, 0), fade(x)),
                           mix(height(0, 1), height(1, 1), fade(x)), fade(y));
}

/// Returns the sum of several layers of noise. The bumps of each layer have half the height and half the width of the
/// bumps in the previous layer.
inline float layeredNoise(Vec2 at, int layers, std::uint32_t seed) {
    float sum = 0.0f;
    float amplitude = 0.5f;
    for (int layer = 0; layer < layers; ++layer, amplitude *= 0.5f) {
        sum += amplitude * noise(at, seed + static_cast<std::uint32_t>(layer));
        // Rotate each layer. Otherwise the grid lines of the layers would coincide and become visible.
        at = Vec2{0.8f * at.x - 0.6f * at.y, 0.6f * at.x + 0.8f * at.y} * 2.0f;
    }
    return sum;
}

}  // namespace paintings
