#pragma once

#include <cstdint>

namespace velmora {

/// A solver grid: row-major, row 0 at the bottom of the screen, k floats a cell (2 in velocity
/// grids, x then y; else 1): cell (i, j) begins at element (i + j * width) * k. The record does not
/// own its block. Grids change roles by swapping whole records.
struct FloatGrid {
    float* data;  // null: the grid does not exist yet
    std::int32_t width;
    std::int32_t height;
};

/// Frees the grid's block: the grid no longer exists.
void releaseGrid(FloatGrid& grid);

/// Frees the grid's block and takes one of the new size, `floats` a cell, contents undefined.
/// Without memory, or with a side below 0 or beyond `maxGridSide`, the grid no longer exists:
/// {null, 0, 0}.
void reallocateGrid(FloatGrid& grid, std::int32_t width, std::int32_t height, std::int32_t floats);

/// Fills the grid, if it exists, with 0.
void clearGrid(const FloatGrid& grid, std::int32_t floats);

/// Cells; a screen of 49152 pixels. Cell indices stay exact in float and products of sides in an int.
constexpr std::int32_t maxGridSide = 4096;

/// Whether a grid of this size can be made at all.
constexpr bool isGridSize(std::int32_t width, std::int32_t height) {
    return width >= 0 && width <= maxGridSide && height >= 0 && height <= maxGridSide;
}

}  // namespace velmora
