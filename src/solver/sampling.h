#pragma once

#include "simd/float4.h"
#include "solver/float_grid.h"
#include "solver/passes.h"

// Reading grids at normalised coordinates (u, v), clamped to [0, 1]. NaN counts as 0, so no
// coordinate leaves the grid.

namespace velmora {

struct Cell {
    std::int32_t i;
    std::int32_t j;
};

/// The cell nearest to (u, v): at a cell's centre that cell, one texel beside it the neighbour,
/// clamped to the grid.
Cell sampleNearest(const FloatGrid& grid, float u, float v);

template <class Floats>
Floats clampToUnit(Floats value) {
    return min(max(value, Floats(0.0f)), Floats(1.0f));
}

/// A grid to be sampled: its sizes in float, where whole numbers below 2^24, and so cell indices,
/// are exact.
struct BilinearGrid {
    explicit BilinearGrid(const FloatGrid& grid)
        : data(grid.data),
          rowLength(static_cast<float>(grid.width)),
          lastColumn(static_cast<float>(grid.width - 1)),
          lastRow(static_cast<float>(grid.height - 1)) {}

    const float* data;
    float rowLength, lastColumn, lastRow;
};

/// The place of (u, v) among the four cells around it.
template <class Floats>
struct BilinearPlace {
    BilinearPlace(const BilinearGrid& grid, Floats u, Floats v) {
        const Floats x = clampToUnit(u) * Floats(grid.lastColumn);
        const Floats y = clampToUnit(v) * Floats(grid.lastRow);
        column = toFloat(truncate(x));
        const Floats row = toFloat(truncate(y));
        bottom = row * Floats(grid.rowLength);
        top = min(row + Floats(1.0f), Floats(grid.lastRow)) * Floats(grid.rowLength);
        const Floats fx = x - column;
        const Floats fy = y - row;
        const Floats gx = Floats(1.0f) - fx;
        const Floats gy = Floats(1.0f) - fy;
        weight00 = gx * gy;
        weight10 = fx * gy;
        weight01 = gx * fy;
        weight11 = fx * fy;
    }

    /// One rounding a term, added in this order.
    Floats weigh(Floats g00, Floats g10, Floats g01, Floats g11) const {
        return weight00 * g00 + weight10 * g10 + weight01 * g01 + weight11 * g11;
    }

    Floats column;
    Floats bottom, top;  // indices of the two rows' first cells
    Floats weight00, weight10, weight01, weight11;
};

/// The column after `column`; the last repeats itself.
template <class Floats>
Floats nextColumn(const BilinearGrid& grid, Floats column) {
    return min(column + Floats(1.0f), Floats(grid.lastColumn));
}

/// Bilinear value of a 2-float grid at (u, v).
template <class Floats>
Pair<Floats> sampleBilinear(const BilinearGrid& grid, Floats u, Floats v) {
    const BilinearPlace<Floats> at(grid, u, v);
    const auto bottomIndex = truncate(at.bottom + at.column);
    const auto topIndex = truncate(at.top + at.column);
    Neighbours<Floats> bottom;
    Neighbours<Floats> top;
    if (any(at.column > Floats(grid.lastColumn - 1.0f))) {
        const Floats next = nextColumn(grid, at.column);
        bottom = {gatherPairs(grid.data, bottomIndex),
                  gatherPairs(grid.data, truncate(at.bottom + next))};
        top = {gatherPairs(grid.data, topIndex), gatherPairs(grid.data, truncate(at.top + next))};
    } else {
        bottom = gatherNeighbours(grid.data, bottomIndex);
        top = gatherNeighbours(grid.data, topIndex);
    }
    return {at.weigh(bottom.cell.x, bottom.next.x, top.cell.x, top.next.x),
            at.weigh(bottom.cell.y, bottom.next.y, top.cell.y, top.next.y)};
}

/// Bilinear value of a 1-float grid at (u, v).
float sampleBilinearScalar(const FloatGrid& grid, float u, float v);

/// The value of cell (i, j) of a 1-float grid.
inline float scalarAt(const FloatGrid& grid, Cell cell) {
    return grid.data[cell.i + std::ptrdiff_t{cell.j} * grid.width];
}

/// The value of cell (i, j) of a 2-float grid.
inline Float2 pairAt(const FloatGrid& grid, Cell cell) {
    return loadPair<float>(grid.data + (cell.i + std::ptrdiff_t{cell.j} * grid.width) * 2);
}

/// A cell and its four neighbours, clamped to the grid.
struct Neighbourhood {
    Neighbourhood(const FloatGrid& grid, Float2 coord, Float2 texelSize);
    Cell middle, left, right, bottom, top;
};

}  // namespace velmora
