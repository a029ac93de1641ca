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

template <class Lane>
Lane clampToUnit(Lane value) {
    return min(max(value, Lane(0.0f)), Lane(1.0f));
}

/// The four cells around (u, v) and their weights. Indices are formed in float: exact below 2^24
/// cells.
template <class Lane>
struct BilinearCorners {
    BilinearCorners(std::int32_t width, std::int32_t height, Lane u, Lane v) {
        const Lane lastColumn(static_cast<float>(width - 1));
        const Lane lastRow(static_cast<float>(height - 1));
        const Lane rowLength(static_cast<float>(width));
        const Lane x = clampToUnit(u) * lastColumn;
        const Lane y = clampToUnit(v) * lastRow;
        const Lane i0 = toFloat(truncate(x));
        const Lane j0 = toFloat(truncate(y));
        const Lane i1 = min(i0 + Lane(1.0f), lastColumn);
        const Lane bottom = j0 * rowLength;
        const Lane top = min(j0 + Lane(1.0f), lastRow) * rowLength;
        index00 = truncate(bottom + i0);
        index10 = truncate(bottom + i1);
        index01 = truncate(top + i0);
        index11 = truncate(top + i1);
        const Lane fx = x - i0;
        const Lane fy = y - j0;
        const Lane gx = Lane(1.0f) - fx;
        const Lane gy = Lane(1.0f) - fy;
        weight00 = gx * gy;
        weight10 = fx * gy;
        weight01 = gx * fy;
        weight11 = fx * fy;
    }

    /// One rounding a term, added in this order.
    Lane weigh(Lane g00, Lane g10, Lane g01, Lane g11) const {
        return weight00 * g00 + weight10 * g10 + weight01 * g01 + weight11 * g11;
    }

    IntOf<Lane> index00, index10, index01, index11;
    Lane weight00, weight10, weight01, weight11;
};

/// Bilinear value of a 2-float grid at (u, v).
template <class Lane>
Pair<Lane> sampleBilinear(const FloatGrid& grid, Lane u, Lane v) {
    const BilinearCorners<Lane> corners(grid.width, grid.height, u, v);
    const Pair<Lane> g00 = gatherPairs(grid.data, corners.index00);
    const Pair<Lane> g10 = gatherPairs(grid.data, corners.index10);
    const Pair<Lane> g01 = gatherPairs(grid.data, corners.index01);
    const Pair<Lane> g11 = gatherPairs(grid.data, corners.index11);
    return {corners.weigh(g00.x, g10.x, g01.x, g11.x), corners.weigh(g00.y, g10.y, g01.y, g11.y)};
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
