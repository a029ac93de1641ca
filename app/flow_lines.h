#pragma once

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
    /// Speed for choosing a colour, from 0 (slow) to 1 (fast).
    float heat;
    /// Opacity, 0.2 to 0.9. It increases with the speed.
    float strength;
};

/// Returns lines along the flow of a velocity texture. Chooses cells so that the lines remain distinguishable. `rgba`
/// has columns * rows texels, bottom row first. `width` and `height` are the screen size in pixels.
std::vector<FlowLine> flowLines(std::span<const std::uint8_t> rgba, int columns, int rows,
                                float width, float height);

}  // namespace app
