#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace app {

/// A line of the velocity overlay, in pixels of the screen with y down.
struct FlowLine {
    float x;
    float y;
    float endX;
    float endY;
    /// Speed as a colour, from 0, slow, to 1.
    float heat;
    /// Opacity, low where little moves.
    float strength;
};

/// Returns lines along the flow of a velocity texture, RGBA8 with the bottom row first, for a screen of that size: at
/// most one a cell, and few enough to tell them apart.
std::vector<FlowLine> flowLines(std::span<const std::uint8_t> rgba, int columns, int rows,
                                float width, float height);

}  // namespace app
