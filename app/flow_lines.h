#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace app {

/// A line of the velocity overlay. Positions are in pixels of the screen, y down.
struct FlowLine {
    float x;
    float y;
    float endX;
    float endY;
    /// Red, green and blue, 0 to 1: yellow for a slow flow, red for a fast one.
    std::array<float, 3> color;
    /// Opacity of line and dot, 0.2 to 0.9. It increases with the speed.
    float opacity;
};

/// Width of a line in pixels of the screen.
constexpr float flowLineWidth = 2.0f;
/// Side in pixels of the square dot at the start of a line.
constexpr float flowDotSide = 3.0f;
/// Shade of the dot: its red, green and blue, 0 to 1.
constexpr float flowDotShade = 0.1f;

/// Returns lines along the flow of a velocity texture. Chooses cells so that the lines remain distinguishable. `rgba`
/// has columns * rows texels, bottom row first. `width` and `height` are the screen size in pixels.
std::vector<FlowLine> flowLines(std::span<const std::uint8_t> rgba, int columns, int rows,
                                float width, float height);

}  // namespace app
