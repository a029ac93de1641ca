#pragma once

namespace velmora {

/// A touch at (x, y) of an area that is centred on the origin. The grid of gridWidth x gridHeight cells covers the
/// whole area; row numbers increase with y.
struct RippleTouch {
    int areaWidth;
    int areaHeight;
    int gridWidth;
    int gridHeight;
    float x;
    float y;
    float strength;
};

/// Adds a cone of radius 3 cells and peak 3 * strength to the row-major grid. The first two columns and rows and the
/// last column and row never change. Any thread.
void addRipple(float* grid, const RippleTouch& touch);

}  // namespace velmora
