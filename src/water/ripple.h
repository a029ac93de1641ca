#pragma once

namespace velmora {

/// A touch at (x, y) of an area centred on the origin, which a grid of gridWidth x gridHeight cells
/// covers whole; rows grow with y.
struct RippleTouch {
    int areaWidth;
    int areaHeight;
    int gridWidth;
    int gridHeight;
    float x;
    float y;
    float strength;
};

/// Adds a cone of radius 3 cells and peak 3 * strength to the row-major `grid`. The first two and
/// the last columns and rows never change. Any thread.
void addRipple(float* grid, const RippleTouch& touch);

}  // namespace velmora
