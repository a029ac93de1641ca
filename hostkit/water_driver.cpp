#include "hostkit/water_driver.h"

#include <jni.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "hostkit/native.h"

namespace hostkit {

namespace {

/// Duration of one simulation step, in the unit of `pendingTime`: nanoseconds multiplied by `stepsPerSecond`.
constexpr std::int64_t stepTime = 1'000'000'000;
/// Maximum time that one call of advanceWater simulates, in frames of 1/60 s.
constexpr std::int64_t maxFramesToCatchUp = 4;
/// Maximum number of vertices that 16-bit indices can address.
constexpr int maxVertices = 65536;
/// Minimum number of cells along a side. With this minimum, the cone of a ripple fits between the border cells, which
/// never change.
constexpr int minCells = 8;
/// Maximum number of cells along the shorter side. Then even the mesh of a square screen has at most `maxVertices`
/// vertices.
constexpr int maxShortSideCells = 254;

/// Returns the number of units, for example cells, along the screen side `side`. `shortSide` is the number of units
/// along the shorter side of the screen; `side` and `otherSide` are in pixels.
int scaled(int shortSide, int side, int otherSide) {
    const double aspect = std::max(1.0, static_cast<double>(side) / otherSide);
    return static_cast<int>(std::lround(std::min(shortSide * aspect, double{maxVertices})));
}

/// Returns the number of mesh vertices along a side of the grid.
int verticesAlong(int cells, float cellsPerVertex) {
    const auto intervals =
        std::lround(static_cast<double>(cells) / static_cast<double>(cellsPerVertex));
    return std::max(1, static_cast<int>(intervals)) + 1;
}

/// Position of a vertex along one axis of the grid.
struct GridPosition {
    /// Index of the last cell at or before the vertex.
    int cell;
    /// Distance from cell number `cell` to the vertex in cells, 0 to 1.
    float weight;
};

GridPosition gridPosition(int vertex, int vertices, int cells) {
    const double position = static_cast<double>(vertex) * cells / (vertices - 1);
    const int cell = static_cast<int>(position);
    return {cell, static_cast<float>(position - cell)};
}

float blend(float from, float to, float weight) {
    return from + weight * (to - from);
}

void runStep(WaterDriver& water, JniEnvironment& jni) {
    water.idle = native::move(jni.env(), nullptr, water.velocity, water.height, 1, 1,
                              water.columns - 1, water.rows - 1, water.columns, 0, JNI_TRUE,
                              water.settings.damping, water.settings.waveSpeed);
    ++water.steps;
}

/// Raises a cone with the native method `ripple` at a position in screen pixels, y down.
void raiseCone(const WaterDriver& water, JniEnvironment& jni, double x, double y, float strength) {
    // The native method `ripple` expects a position relative to the centre of the mesh; y increases with the row. The
    // mesh is `meshOverhang` times as large as the screen, so the position is divided by this factor.
    const auto fromCentre = [](double position, int size) {
        return static_cast<float>((position - size / 2.0) / static_cast<double>(meshOverhang));
    };
    native::ripple(jni.env(), nullptr, water.height, water.screenWidth, water.screenHeight,
                   water.columns, water.rows, fromCentre(x, water.screenWidth),
                   fromCentre(y, water.screenHeight), strength);
}

/// Returns the value of a grid at a position in cells, interpolated between four cells.
float interpolate(std::span<const float> grid, const WaterDriver& water, double x, double y) {
    const int left = std::min(static_cast<int>(x), water.columns - 2);
    const int top = std::min(static_cast<int>(y), water.rows - 2);
    // Limit the weights to 1, so that a position beyond the last cell gets the value of the last cell.
    const auto weightX = static_cast<float>(std::min(1.0, x - left));
    const auto weightY = static_cast<float>(std::min(1.0, y - top));
    const auto rowAt = [&](int row) {
        const auto cell = static_cast<std::size_t>(row * water.columns + left);
        return std::lerp(grid[cell], grid[cell + 1], weightX);
    };
    return std::lerp(rowAt(top), rowAt(top + 1), weightY);
}

/// Raises a wide cone, built from several cones of the native method `ripple`. Their centres form a triangular lattice
/// with a spacing of one cone radius, and their heights decrease outwards. The sum is `overlap` times as high as one
/// cone.
void raiseWideCone(const WaterDriver& water, JniEnvironment& jni, double x, double y,
                   float strength) {
    // Height of the sum, as a multiple of one cone's height: 2 pi / (3 sqrt 3). This is the volume of a cone of radius
    // 1 and height 1, divided by the lattice area per point if the spacing is 1.
    constexpr double overlap = 1.2092;
    // Distance between two rows of the triangular lattice, as a multiple of the cone radius: sqrt(3) / 2.
    constexpr double rowSpacing = 0.8660254;
    const double conePixels = coneRadius * static_cast<double>(water.screenWidth) / water.columns;
    const double radiusInCones = water.settings.rippleRadius / coneRadius;
    const int reach = static_cast<int>(radiusInCones / rowSpacing);
    for (int row = -reach; row <= reach; ++row) {
        for (int column = -reach - 1; column <= reach; ++column) {
            const double right = column + (row % 2 == 0 ? 0.0 : 0.5);
            const double down = row * rowSpacing;
            const double height = (1.0 - std::hypot(right, down) / radiusInCones) / overlap;
            if (height > 0.0) {
                raiseCone(water, jni, x + right * conePixels, y + down * conePixels,
                          static_cast<float>(static_cast<double>(strength) * height));
            }
        }
    }
}

}  // namespace

WaterDriver makeWater(JniEnvironment& jni, int screenWidth, int screenHeight,
                      WaterSettings settings) {
    const int shortSide = std::clamp(settings.shortSideCells, minCells, maxShortSideCells);
    const int longSide = maxVertices / (shortSide + 1) - 1;
    WaterDriver water{};
    water.settings = settings;
    water.idle = true;
    water.screenWidth = screenWidth;
    water.screenHeight = screenHeight;
    water.columns = std::min(scaled(shortSide, screenWidth, screenHeight), longSide);
    water.rows = std::min(scaled(shortSide, screenHeight, screenWidth), longSide);
    water.numDetailsWidth = verticesAlong(water.columns, settings.cellsPerVertex);
    water.numDetailsHeight = verticesAlong(water.rows, settings.cellsPerVertex);
    water.meshSizeWidth = scaled(settings.shortSideMeshUnits, screenWidth, screenHeight);
    water.meshSizeHeight = scaled(settings.shortSideMeshUnits, screenHeight, screenWidth);

    const int vertices = water.numDetailsWidth * water.numDetailsHeight;
    const int quads = (water.numDetailsWidth - 1) * (water.numDetailsHeight - 1);
    const auto cells = static_cast<std::size_t>(water.columns * water.rows);
    water.height = jni.newFloatArray(cells);
    water.velocity = jni.newFloatArray(cells);
    water.positions = jni.newFloatArray(static_cast<std::size_t>(vertices) * 3);
    water.heights = jni.newFloatArray(static_cast<std::size_t>(vertices) * 3);
    water.indices = jni.newShortArray(static_cast<std::size_t>(quads) * 6);
    native::initWaters(jni.env(), nullptr, water.positions, water.indices, vertices,
                       water.meshSizeWidth, water.meshSizeHeight, water.numDetailsWidth,
                       water.numDetailsHeight);
    return water;
}

void resampleWaves(const WaterDriver& from, WaterDriver& to) {
    const auto resample = [&](jfloatArray source, jfloatArray destination, float factor) {
        const std::span<const float> cells = JniEnvironment::elements(source);
        const std::span<float> resampled = JniEnvironment::elements(destination);
        for (int row = 1; row < to.rows - 1; ++row) {
            for (int column = 1; column < to.columns - 1; ++column) {
                const double x = static_cast<double>(column) * from.columns / to.columns;
                const double y = static_cast<double>(row) * from.rows / to.rows;
                resampled[static_cast<std::size_t>(row * to.columns + column)] =
                    factor * interpolate(cells, from, x, y);
            }
        }
    };
    resample(from.height, to.height, 1.0f);
    resample(from.velocity, to.velocity,
             static_cast<float>(from.settings.stepsPerSecond) /
                 static_cast<float>(to.settings.stepsPerSecond));
    to.idle = from.idle;
    to.steps = from.steps;
    if (to.settings.stepsPerSecond == from.settings.stepsPerSecond) {
        to.pendingTime = from.pendingTime;
    }
    buildHeights(to);
}

void releaseWater(const WaterDriver& water, JniEnvironment& jni) {
    for (const jarray array :
         {static_cast<jarray>(water.height), static_cast<jarray>(water.velocity),
          static_cast<jarray>(water.positions), static_cast<jarray>(water.heights),
          static_cast<jarray>(water.indices)}) {
        jni.release(array);
    }
}

void rippleAt(WaterDriver& water, JniEnvironment& jni, double x, double y, float strength) {
    const double radius = water.settings.rippleRadius;
    if (radius <= coneRadius) {
        const double heightFactor = radius * radius / (coneRadius * coneRadius);
        raiseCone(water, jni, x, y,
                  static_cast<float>(static_cast<double>(strength) * heightFactor));
    } else {
        raiseWideCone(water, jni, x, y, strength);
    }
    water.idle = false;
}

void advanceWater(WaterDriver& water, JniEnvironment& jni, std::chrono::nanoseconds elapsed) {
    if (water.idle) {
        water.pendingTime = 0;
        return;
    }
    const std::int64_t rate = water.settings.stepsPerSecond;
    water.pendingTime = std::min(water.pendingTime + elapsed.count() * rate,
                                 maxFramesToCatchUp * rate / 60 * stepTime);
    for (; water.pendingTime >= stepTime && !water.idle; water.pendingTime -= stepTime) {
        runStep(water, jni);
    }
    buildHeights(water);
}

void buildHeights(WaterDriver& water) {
    const std::span<const float> cells = JniEnvironment::elements(water.height);
    const auto cellAt = [&](int column, int row) {
        const int firstOfRow = std::clamp(row, 0, water.rows - 1) * water.columns;
        return cells[static_cast<std::size_t>(firstOfRow +
                                              std::clamp(column, 0, water.columns - 1))];
    };
    auto vertex = JniEnvironment::elements(water.heights).begin();
    for (int right = 0; right < water.numDetailsWidth; ++right) {
        const GridPosition x = gridPosition(right, water.numDetailsWidth, water.columns);
        for (int down = 0; down < water.numDetailsHeight; ++down) {
            const GridPosition y = gridPosition(down, water.numDetailsHeight, water.rows);
            // Returns the interpolated height at a point `columns` cells to the right of and `rows` cells below the
            // vertex.
            const auto heightAt = [&](int columns, int rows) {
                const auto inRow = [&](int row) {
                    return blend(cellAt(x.cell + columns, row), cellAt(x.cell + columns + 1, row),
                                 x.weight);
                };
                return blend(inRow(y.cell + rows), inRow(y.cell + rows + 1), y.weight);
            };
            vertex[0] = heightAt(0, 0);
            vertex[1] = heightAt(1, 0);
            vertex[2] = heightAt(0, -1);
            vertex += 3;
        }
    }
}

}  // namespace hostkit
