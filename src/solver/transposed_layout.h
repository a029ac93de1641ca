#pragma once

#include <cstddef>

#include "simd/float4.h"
#include "solver/float_grid.h"

// The layout in which the pressure is relaxed. The interior of each row is cut into four quarters of equal length, one
// per lane, and stored group by group:
//
//   a row of 13 cells     0 | a  b  c | d  e  f | g  h  i | j  k | 0
//   transposed            a d g j   b e h k   c f i +
//
// So the left and right neighbours of a group of four are whole groups: the one before it and the one after it. Only at
// the ends of a row does a lane take its neighbour from the next lane: left of a d g j is 0 c f i, right of c f i + is
// d g j 0. The zeros are the border. The last quarter is padded with +, which is 0 as well.

namespace velmora {

struct TransposedLayout {
    explicit TransposedLayout(const FloatGrid& grid)
        : width(grid.width),
          rows(std::ptrdiff_t{grid.height} - 2),
          groups((std::ptrdiff_t{grid.width} + 1) / 4) {}

    std::ptrdiff_t rowLength() const { return 4 * groups; }
    std::ptrdiff_t cells() const { return rows * rowLength(); }

    /// Sets the padding of a row to 0: at most three cells, all in the last quarter.
    void clearPadding(float* row) const {
        for (std::ptrdiff_t i = width - 2; i < rowLength(); ++i) {
            row[4 * (i - 3 * groups) + 3] = 0.0f;
        }
    }

    std::ptrdiff_t width;   // of the grid
    std::ptrdiff_t rows;    // of its interior
    std::ptrdiff_t groups;  // per row, at least 4
};

/// Writes `factor` times the grid's interior in transposed layout.
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

/// Writes the grid's interior from transposed layout. The padding of a row overwrites the border behind the row and may
/// overwrite a cell of the next row, which is written after it.
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
