#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace app {

/// A line of the overlay that shows the velocity. Positions are in screen pixels, y down.
struct FlowLine {
    float x;
    float y;
    float endX;
    float endY;
    /// Colour of the line: red, green and blue, 0 to 1 each. Slow flow is yellow, fast flow is red.
    std::array<float, 3> color;
    /// Opacity of the line and of the dot at its start, 0.2 to 0.9. The opacity increases with the speed of the flow.
    float opacity;
};

/// Width of a line in screen pixels.
constexpr float flowLineWidth = 2.0f;
/// Side of the square dot at the start of a line, in screen pixels.
constexpr float flowDotSide = 3.0f;
/// Grey level of the dot, 0 to 1.
constexpr float flowDotShade = 0.1f;

/// Returns lines that follow the flow of a velocity texture. Neighbouring lines start far enough apart to be
/// distinguishable. `rgba` has columns * rows texels, bottom row first. `width` and `height` are the screen size in
/// pixels.
std::vector<FlowLine> flowLines(std::span<const std::uint8_t> rgba, int columns, int rows,
                                float width, float height);

}  // namespace app
