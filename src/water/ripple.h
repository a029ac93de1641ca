#pragma once

namespace velmora {

/// A touch at (x, y), relative to the centre of an area. A grid of gridWidth x gridHeight cells covers the whole area.
/// Row numbers increase with y.
struct RippleTouch {
    int areaWidth;
    int areaHeight;
    int gridWidth;
    int gridHeight;
    float x;
    float y;
    float strength;
};

/// Adds a cone of radius 3 cells and height 3 * strength to the row-major grid. The first two columns and rows and the
/// last column and row never change. May be called on any thread.
void addRipple(float* grid, const RippleTouch& touch);

}  // namespace velmora
