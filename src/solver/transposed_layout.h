#pragma once

#include <cstddef>

#include "simd/float4.h"
#include "solver/float_grid.h"

// The memory layout of the pressure during the Jacobi iterations. The interior of each row is cut into four quarters of
// equal length, one per SIMD lane. The cells of the four quarters are interleaved:
//
//   a row of 13 cells     0 | a  b  c | d  e  f | g  h  i | j  k | 0
//   transposed            a d g j   b e h k   c f i +
//
// So the left and right neighbours of a group of four are whole groups: the group before and the group after. Only at
// the ends of a row does a lane take its neighbour from the adjacent lane: left of "a d g j" is "0 c f i", right of "c
// f i +" is "d g j 0". The zeros are the border. Each + is padding of the last quarter and also 0.

namespace velmora {

struct TransposedLayout {
    explicit TransposedLayout(const FloatGrid& grid)
        : width(grid.width),
          rows(std::ptrdiff_t{grid.height} - 2),
          groups((std::ptrdiff_t{grid.width} + 1) / 4) {}

    std::ptrdiff_t rowLength() const { return 4 * groups; }
    std::ptrdiff_t cells() const { return rows * rowLength(); }

    /// Sets the padding of a transposed row to 0. The padding consists of at most three cells. It fills the last of the
    /// row's four quarters, so that all quarters have the same length.
    void clearPadding(float* row) const {
        for (std::ptrdiff_t i = width - 2; i < rowLength(); ++i) {
            row[4 * (i - 3 * groups) + 3] = 0.0f;
        }
    }

    std::ptrdiff_t width;   // columns of the grid
    std::ptrdiff_t rows;    // rows of the grid's interior
    std::ptrdiff_t groups;  // groups of four per row, at least 4
};

/// Multiplies the interior of the grid by `factor` and writes it to `transposed` in transposed layout.
inline void transposeGrid(const TransposedLayout& layout, const FloatGrid& grid, float factor,
                          float* transposed) {
    const std::ptrdiff_t length = layout.groups;
    const float* from = grid.data + layout.width + 1;
    float* to = transposed;
    for (std::ptrdiff_t row = 0; row < layout.rows; ++row) {
        forBlocksOfFour(length, [=](std::ptrdiff_t g) {
            Float4 a = load<Float4>(from + g) * Float4(factor);
            Float4 b = load<Float4>(from + length + g) * Float4(factor);
            Float4 c = load<Float4>(from + 2 * length + g) * Float4(factor);
            Float4 d = load<Float4>(from + 3 * length + g) * Float4(factor);
            transpose(a, b, c, d);
            store(to + 4 * g, a);
            store(to + 4 * g + 4, b);
            store(to + 4 * g + 8, c);
            store(to + 4 * g + 12, d);
        });
        layout.clearPadding(to);
        from += layout.width;
        to += layout.rowLength();
    }
}

/// Writes the transposed values back to the interior of the grid. The padding of a row overwrites the border cells
/// after the row and perhaps one cell of the next row. That cell is correct in the end, because the next row is written
/// later.
inline void restoreGrid(const TransposedLayout& layout, const float* transposed,
                        const FloatGrid& grid) {
    const std::ptrdiff_t length = layout.groups;
    const float* from = transposed;
    float* to = grid.data + layout.width + 1;
    for (std::ptrdiff_t row = 0; row < layout.rows; ++row) {
        forBlocksOfFour(length, [=](std::ptrdiff_t g) {
            Float4 a = load<Float4>(from + 4 * g);
            Float4 b = load<Float4>(from + 4 * g + 4);
            Float4 c = load<Float4>(from + 4 * g + 8);
            Float4 d = load<Float4>(from + 4 * g + 12);
            transpose(a, b, c, d);
            store(to + g, a);
            store(to + length + g, b);
            store(to + 2 * length + g, c);
            store(to + 3 * length + g, d);
        });
        from += layout.rowLength();
        to += layout.width;
    }
}

}  // namespace velmora
