#include "water/ripple.h"

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/saturate.h"
#include "simd/float4.h"

namespace velmora {

namespace {

// Sizes in cells. A ripple is a cone. The code adds the cone to the cells of a box of whole columns and rows around the
// touch.
constexpr float coneRadius = 3.0f;
constexpr float boxStart = -coneRadius;      // first cell of the box, from the centre
constexpr float boxEnd = coneRadius + 1.0f;  // end of the box, from the centre, exclusive
constexpr float edgeThreshold = 5.0f;  // distance from an edge below which the box ends at the edge
constexpr int firstCell = 2;           // lowest column and row that may change

/// Range of cells that a cone can reach along one axis.
struct CellRange {
    int start;
    int end;  // exclusive
};

/// Converts a touch coordinate to a grid coordinate in cells. `touch` is relative to the centre of the area.
float gridCoordinate(float touch, int areaSize, int count) {
    return (touch / static_cast<float>(areaSize) + 0.5f) * static_cast<float>(count);
}

/// Returns the range of cells that a cone around `centre` can reach. If `centre` is NaN, both comparisons fail and the
/// range is the whole grid.
CellRange coneRange(float centre, int count) {
    const auto cells = static_cast<float>(count);
    const int lastCell = saturatedInt(std::int64_t{count} - 1);
    return {centre > edgeThreshold ? saturatedInt(std::floor(centre + boxStart)) : firstCell,
            centre < cells - edgeThreshold ? saturatedInt(std::floor(centre + boxEnd)) : lastCell};
}

/// Adds the cone to the cell at distance (dx, dy) from its centre and returns the new height. Outside the cone, returns
/// `old`. The square root is correctly rounded, because estimates differ between processors.
template <class Floats>
Floats coneCell(Floats old, Floats dx, Floats dy, Floats strength) {
    const Floats depth = Floats(coneRadius) - sqrt(dx * dx + dy * dy);
    return select(depth > Floats(0.0f), old + depth * strength, old);
}

}  // namespace

void addRipple(float* grid, const RippleTouch& touch) {
    const float cx = gridCoordinate(touch.x, touch.areaWidth, touch.gridWidth);
    const float cy = gridCoordinate(touch.y, touch.areaHeight, touch.gridHeight);
    const CellRange columns = coneRange(cx, touch.gridWidth);
    const CellRange rows = coneRange(cy, touch.gridHeight);
    if (columns.start >= columns.end) {
        return;  // near the largest int, the loop of forGroups would overflow on 32-bit processors
    }
    for (int row = rows.start; row < rows.end; ++row) {
        float* cells = grid + std::ptrdiff_t{row} * touch.gridWidth;
        const float dy = cy - static_cast<float>(row);
        forGroups(columns.start, columns.end, [&]<class Floats>(std::ptrdiff_t column) {
            const Floats dx = Floats(cx) - ramp<Floats>(static_cast<float>(column));
            store(cells + column,
                  coneCell(load<Floats>(cells + column), dx, Floats(dy), Floats(touch.strength)));
        });
    }
}

}  // namespace velmora
