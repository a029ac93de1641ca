#pragma once

#include <cstdint>

namespace velmora {

/// A solver grid: row-major, row 0 at the bottom of the screen. Cell (i, j) starts at element (i + j * width) * k of
/// `data`. k is 2 in velocity grids (x, then y) and 1 in all others. The struct does not own its block, because grids
/// exchange roles by swapping whole structs.
struct FloatGrid {
    float* data;  // null if the grid does not exist
    std::int32_t width;
    std::int32_t height;
};

/// Frees the grid's block. The grid no longer exists.
void releaseGrid(FloatGrid& grid);

/// Frees the grid's block and allocates one of the new size with `floats` floats per cell and undefined contents. If
/// memory runs out or isGridSize is false, the grid becomes {null, 0, 0}.
void reallocateGrid(FloatGrid& grid, std::int32_t width, std::int32_t height, std::int32_t floats);

/// Fills the grid with 0, if it exists.
void clearGrid(const FloatGrid& grid, std::int32_t floats);

/// Longest side of a grid in cells, enough for a screen of 49163 pixels. Up to this size, a float holds every cell
/// index exactly, and an int holds the product of two sides.
constexpr std::int32_t maxGridSide = 4096;

/// Returns true if a grid may have this size.
constexpr bool isGridSize(std::int32_t width, std::int32_t height) {
    return width >= 0 && width <= maxGridSide && height >= 0 && height <= maxGridSide;
}

}  // namespace velmora
