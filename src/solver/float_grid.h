#pragma once

#include <cstdint>

namespace velmora {

/// A grid of the solver: row-major, row 0 at the bottom of the screen. Cell (i, j) starts at element (i + j * width) *
/// k of `data`. k is 2 in velocity grids (x, then y) and 1 in all others. The struct has no destructor, because grids
/// exchange roles by swapping structs.
struct FloatGrid {
    float* data;  // null if the grid does not exist
    std::int32_t width;
    std::int32_t height;
};

/// Frees the grid's memory. Afterwards the grid does not exist.
void releaseGrid(FloatGrid& grid);

/// Frees the grid's memory and allocates a new block with `floats` floats per cell and undefined contents. If memory
/// runs out or the size is not allowed (isGridSize), the grid becomes {null, 0, 0}.
void reallocateGrid(FloatGrid& grid, std::int32_t width, std::int32_t height, std::int32_t floats);

/// Sets all cells of the grid to 0, if the grid exists. A cell has `floats` floats.
void clearGrid(const FloatGrid& grid, std::int32_t floats);

/// Largest width and height of a grid in cells, enough for screen sides of up to 49163 pixels. Up to this size, a float
/// holds every cell index exactly, and an int holds width * height.
constexpr std::int32_t maxGridSide = 4096;

/// Returns true if a grid may have this size.
constexpr bool isGridSize(std::int32_t width, std::int32_t height) {
    return width >= 0 && width <= maxGridSide && height >= 0 && height <= maxGridSide;
}

}  // namespace velmora
