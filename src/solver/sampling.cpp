#include "solver/sampling.h"

#include <cstdint>

namespace velmora {

namespace {

std::int32_t nearestIndex(float coordinate, std::int32_t count) {
    const float scaled = clampToUnit(coordinate) * static_cast<float>(count - 1);
    return static_cast<std::int32_t>(static_cast<double>(scaled) + 0.5);
}

}  // namespace

Cell sampleNearest(const FloatGrid& grid, float u, float v) {
    return {nearestIndex(u, grid.width), nearestIndex(v, grid.height)};
}

float sampleBilinearScalar(const FloatGrid& source, float u, float v) {
    const BilinearGrid grid(source);
    const BilinearPlace<float> at(grid, u, v);
    const float bottom = at.row * grid.rowLength;
    const float top = nextAfter(at.row, grid.lastRow) * grid.rowLength;
    const float next = nextAfter(at.column, grid.lastColumn);
    const auto value = [&](float row, float column) { return grid.data[truncate(row + column)]; };
    return BilinearWeights<float>(at.fx, at.fy)
        .weigh(value(bottom, at.column), value(bottom, next), value(top, at.column),
               value(top, next));
}

Neighbourhood::Neighbourhood(const FloatGrid& grid, Float2 coord, Float2 texelSize) {
    const float u = coord.x * texelSize.x;
    const float v = coord.y * texelSize.y;
    middle = sampleNearest(grid, u, v);
    left = sampleNearest(grid, u - texelSize.x, v);
    right = sampleNearest(grid, u + texelSize.x, v);
    bottom = sampleNearest(grid, u, v - texelSize.y);
    top = sampleNearest(grid, u, v + texelSize.y);
}

}  // namespace velmora
