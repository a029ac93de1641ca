#pragma once

#include <cstddef>

#include "simd/float4.h"
#include "solver/float_grid.h"

// The layout in which pressure is relaxed. The interior of every row is cut into four strips of
// equal length, one for each lane, and stored group by group:
//
//   a row of 13 cells     0 | a  b  c | d  e  f | g  h  i | j  k | 0
//   in strips of 3        a d g j   b e h k   c f i +
//
// So the left and right neighbours of a group of four are the groups before and after it, whole
// vectors where they lie. Only at the ends of a row a lane takes its neighbour from the lane beside
// it: left of a d g j lies 0 c f i, right of c f i + lies d g j 0. The zeros are the border; the
// last strip is filled up with +0, which thus stands for the border as well.

namespace velmora {

struct StripLayout {
    explicit StripLayout(const FloatGrid& grid)
        : width(grid.width),
          rows(std::ptrdiff_t{grid.height} - 2),
          groups((std::ptrdiff_t{grid.width} + 1) / 4) {}

    std::ptrdiff_t rowLength() const { return 4 * groups; }
    std::ptrdiff_t cells() const { return rows * rowLength(); }

    /// At most three cells, so all in the last strip.
    void clearPadding(float* row) const {
        for (std::ptrdiff_t i = width - 2; i < rowLength(); ++i) {
            row[4 * (i - 3 * groups) + 3] = 0.0f;
        }
    }

    std::ptrdiff_t width;   // of the grid
    std::ptrdiff_t rows;    // of its interior
    std::ptrdiff_t groups;  // in a row, at least 4
};

/// Brings `factor` times the grid's interior into strips.
inline void toStrips(const StripLayout& layout, const FloatGrid& grid, float factor,
                     float* strips) {
    const std::ptrdiff_t length = layout.groups;
    const float* from = grid.data + layout.width + 1;
    float* to = strips;
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

/// Brings strips back into the grid's interior. Padding falls on the border behind a row, and on a
/// cell before the next, which comes after it.
inline void fromStrips(const StripLayout& layout, const float* strips, const FloatGrid& grid) {
    const std::ptrdiff_t length = layout.groups;
    const float* from = strips;
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
