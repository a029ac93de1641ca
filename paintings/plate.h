#pragma once

#include <algorithm>
#include <cmath>

namespace paintings {

/// @file Positions and colours of a painting. Each painting is a square with sides of length 1. Its centre is at (0,
/// 0); x points to the right and y points down. A screen shows the largest part of the square that has the screen's
/// shape.

/// Position or vector in a painting.
struct Vec2 {
    float x = 0.0f;
    float y = 0.0f;
};
inline Vec2 operator+(Vec2 a, Vec2 b) {
    return {a.x + b.x, a.y + b.y};
}
inline Vec2 operator-(Vec2 a, Vec2 b) {
    return {a.x - b.x, a.y - b.y};
}
inline Vec2 operator*(Vec2 a, float factor) {
    return {a.x * factor, a.y * factor};
}
inline float dot(Vec2 a, Vec2 b) {
    return a.x * b.x + a.y * b.y;
}
inline float length(Vec2 a) {
    return std::sqrt(dot(a, a));
}
/// Returns the unit vector at an angle in radians from the x axis.
inline Vec2 directionAt(float angle) {
    return {std::cos(angle), std::sin(angle)};
}

/// Colour as a display shows it, 0 to 1 per channel.
struct Color {
    float red = 0.0f;
    float green = 0.0f;
    float blue = 0.0f;
};
inline constexpr Color white{1.0f, 1.0f, 1.0f};
inline Color operator*(Color a, Color b) {
    return {a.red * b.red, a.green * b.green, a.blue * b.blue};
}
inline Color operator*(Color a, float factor) {
    return {a.red * factor, a.green * factor, a.blue * factor};
}

inline float mix(float from, float to, float weight) {
    return from + (to - from) * weight;
}
inline Color mix(Color from, Color to, float weight) {
    return {mix(from.red, to.red, weight), mix(from.green, to.green, weight),
            mix(from.blue, to.blue, weight)};
}
/// Returns 0 at `from`, 1 at `to`, and values on a smooth curve between the two. `from` can be larger than `to`.
inline float smoothStep(float from, float to, float value) {
    const float t = std::clamp((value - from) / (to - from), 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

/// Part of the painting that a screen shows.
struct View {
    /// Size in pixels.
    int width;
    int height;
    /// Length of a pixel's side as a fraction of the painting's side.
    float pixel;

    float halfWidth() const { return 0.5f * pixel * static_cast<float>(width); }
    float halfHeight() const { return 0.5f * pixel * static_cast<float>(height); }
    /// Returns the position of a pixel's centre in the painting.
    Vec2 at(int column, int row) const {
        return {(static_cast<float>(column) + 0.5f) * pixel - halfWidth(),
                (static_cast<float>(row) + 0.5f) * pixel - halfHeight()};
    }
};

}  // namespace paintings
