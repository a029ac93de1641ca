#pragma once

#include <cstddef>
#include <cstdint>

#include "base/pair.h"
#include "simd/float4.h"
#include "solver/float_grid.h"

// Functions that sample a grid at normalised coordinates (u, v). They clamp u and v to [0, 1] and treat NaN as 0, so
// they never read outside the grid.

namespace velmora {

struct Cell {
    std::int32_t i;
    std::int32_t j;
};

/// Returns the cell at (u, v). Coordinate 0 gives the first column or row, and 1 gives the last. The centre of a cell
/// gives that cell; a point one texel beside the centre gives the adjacent cell, clamped to the grid.
Cell sampleNearest(const FloatGrid& grid, float u, float v);

template <class Floats>
Floats clampToUnit(Floats value) {
    return min(max(value, Floats(0.0f)), Floats(1.0f));
}

/// A grid with its sizes converted to floats. Sizes and cell indices are below 2^24, so floats hold them exactly.
struct BilinearGrid {
    explicit BilinearGrid(const FloatGrid& grid)
        : data(grid.data),
          rowLength(static_cast<float>(grid.width)),
          lastColumn(static_cast<float>(grid.width - 1)),
          lastRow(static_cast<float>(grid.height - 1)) {}

    const float* data;
    float rowLength, lastColumn, lastRow;
};

/// Position of (u, v) between four cells: `column` and `row` of the lower left cell, and the distances `fx` and `fy` to
/// the right of and above that cell, in cells.
template <class Floats>
struct BilinearPlace {
    BilinearPlace(const BilinearGrid& grid, Floats u, Floats v) {
        const Floats x = clampToUnit(u) * Floats(grid.lastColumn);
        const Floats y = clampToUnit(v) * Floats(grid.lastRow);
        column = toFloat(truncateSmall(x));
        row = toFloat(truncateSmall(y));
        fx = x - column;
        fy = y - row;
    }

    Floats column, row;
    Floats fx, fy;
};

/// Weights for bilinear interpolation between four values. The products are added in a fixed order, so that the
/// result is bit-identical on all processors.
template <class Floats>
struct BilinearWeights {
    BilinearWeights(Floats fx, Floats fy) {
        const Floats gx = Floats(1.0f) - fx;
        const Floats gy = Floats(1.0f) - fy;
        weight00 = gx * gy;
        weight10 = fx * gy;
        weight01 = gx * fy;
        weight11 = fx * fy;
    }
    Floats weigh(Floats g00, Floats g10, Floats g01, Floats g11) const {
        return weight00 * g00 + weight10 * g10 + weight01 * g01 + weight11 * g11;
    }
    Pair<Floats> weigh(const Neighbours<Floats>& bottom, const Neighbours<Floats>& top) const {
        return {weigh(bottom.cell.x, bottom.next.x, top.cell.x, top.next.x),
                weigh(bottom.cell.y, bottom.next.y, top.cell.y, top.next.y)};
    }

    Floats weight00, weight10, weight01, weight11;
};

/// Returns the column or row after `at`. If `at` is the last one, returns `last`.
template <class Floats>
Floats nextAfter(Floats at, float last) {
    return min(at + Floats(1.0f), Floats(last));
}

/// Returns the interpolated value at (u, v) of a grid with 2 floats per cell.
template <class Floats>
Pair<Floats> sampleBilinear(const BilinearGrid& grid, Floats u, Floats v) {
    const BilinearPlace<Floats> at(grid, u, v);
    const Floats bottom = at.row * Floats(grid.rowLength);
    const Floats top = nextAfter(at.row, grid.lastRow) * Floats(grid.rowLength);
    const Floats next = nextAfter(at.column, grid.lastColumn);
    const auto cells = [&](Floats row, Floats column) {
        return gatherPairs(grid.data, truncate(row + column));
    };
    return BilinearWeights<Floats>(at.fx, at.fy)
        .weigh({cells(bottom, at.column), cells(bottom, next)},
               {cells(top, at.column), cells(top, next)});
}

/// Returns the interpolated value at (u, v) of a grid with 1 float per cell.
float sampleBilinearScalar(const FloatGrid& grid, float u, float v);

/// Returns a cell's value in a grid with 1 float per cell.
inline float scalarAt(const FloatGrid& grid, Cell cell) {
    return grid.data[cell.i + std::ptrdiff_t{cell.j} * grid.width];
}

/// Returns a cell's address in a grid with 2 floats per cell.
inline const float* addressOf(const FloatGrid& grid, Cell cell) {
    return grid.data + (cell.i + std::ptrdiff_t{cell.j} * grid.width) * 2;
}

/// Returns a cell's value in a grid with 2 floats per cell.
inline Float2 pairAt(const FloatGrid& grid, Cell cell) {
    return loadPair<float>(addressOf(grid, cell));
}

/// A cell and its four neighbours. Beyond the border, a neighbour is the cell itself.
struct Neighbourhood {
    Neighbourhood(const FloatGrid& grid, Float2 coord, Float2 texelSize);
    Cell middle, left, right, bottom, top;
};

}  // namespace velmora
