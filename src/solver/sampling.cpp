#include "solver/sampling.h"

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

float sampleBilinearScalar(const FloatGrid& grid, float u, float v) {
    const BilinearCorners<float> corners(grid.width, grid.height, u, v);
    return corners.weigh(grid.data[corners.index00], grid.data[corners.index10],
                         grid.data[corners.index01], grid.data[corners.index11]);
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
