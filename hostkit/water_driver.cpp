#include "hostkit/water_driver.h"

#include <jni.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

#include "hostkit/native.h"

namespace hostkit {

namespace {

constexpr std::int64_t stepTime = 1'000'000'000;
/// No more time than this is caught up with at once, in 60ths of a second.
constexpr std::int64_t mostTimeAtOnce = 4;
constexpr int mostVertices = 65536;
/// The cone of a ripple and the fixed frame need this much.
constexpr int fewestCells = 8;

int scaled(int shortSide, int side, int otherSide) {
    const double aspect = std::max(1.0, static_cast<double>(side) / otherSide);
    return static_cast<int>(std::lround(std::min(shortSide * aspect, double{mostVertices})));
}

int verticesAlong(int cells, int cellsPerVertex) {
    return std::max(1, (cells + cellsPerVertex / 2) / cellsPerVertex) + 1;
}

void runStep(WaterDriver& water, JniEnvironment& jni) {
    water.resting = native::move(jni.env(), nullptr, water.velocity, water.height, 1, 1,
                                 water.columns - 1, water.rows - 1, water.columns, 0, JNI_TRUE,
                                 water.settings.damping, water.settings.waveSpeed);
    ++water.steps;
}

void raiseCone(const WaterDriver& water, JniEnvironment& jni, double x, double y, float strength) {
    // The area is the mesh, centred on the origin; its y grows downwards like the rows.
    const auto onMesh = [](double position, int size) {
        return static_cast<float>((position - size / 2.0) / static_cast<double>(meshOverhang));
    };
    native::ripple(jni.env(), nullptr, water.height, water.screenWidth, water.screenHeight,
                   water.columns, water.rows, onMesh(x, water.screenWidth),
                   onMesh(y, water.screenHeight), strength);
}

/// The grid's value at a place between cells, in cells.
float valueBetween(std::span<const float> grid, const WaterDriver& water, double x, double y) {
    const int left = std::min(static_cast<int>(x), water.columns - 2);
    const int top = std::min(static_cast<int>(y), water.rows - 2);
    // Beyond the last cell its value goes on.
    const auto weightX = static_cast<float>(std::min(1.0, x - left));
    const auto weightY = static_cast<float>(std::min(1.0, y - top));
    const auto rowAt = [&](int row) {
        const auto cell = static_cast<std::size_t>(row * water.columns + left);
        return std::lerp(grid[cell], grid[cell + 1], weightX);
    };
    return std::lerp(rowAt(top), rowAt(top + 1), weightY);
}

/// Cones one radius apart on a triangular lattice, lower outwards. Where they overlap they add up
/// to a slope, `overlap` times as high as each.
void raiseWideCone(const WaterDriver& water, JniEnvironment& jni, double x, double y,
                   float strength) {
    constexpr double overlap =
        1.2092;  // a cone's volume over a lattice cell's area: 2 pi / (3 sqrt 3)
    constexpr double rowSpacing = 0.8660254;
    const double pixels = coneRadius * static_cast<double>(water.screenWidth) / water.columns;
    const double wide = water.settings.rippleRadius / coneRadius;
    const int reach = static_cast<int>(wide / rowSpacing);
    for (int row = -reach; row <= reach; ++row) {
        for (int place = -reach - 1; place <= reach; ++place) {
            const double right = place + (row % 2 == 0 ? 0.0 : 0.5);
            const double down = row * rowSpacing;
            const double height = (1.0 - std::hypot(right, down) / wide) / overlap;
            if (height > 0.0) {
                raiseCone(water, jni, x + right * pixels, y + down * pixels,
                          static_cast<float>(static_cast<double>(strength) * height));
            }
        }
    }
}

}  // namespace

WaterDriver makeWater(JniEnvironment& jni, int screenWidth, int screenHeight,
                      WaterSettings settings) {
    const int shortSide = std::clamp(settings.shortSideCells, fewestCells, 254);
    const int longSide = mostVertices / (shortSide + 1) - 1;
    WaterDriver water{};
    water.settings = settings;
    water.resting = true;
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

void carryWaves(const WaterDriver& from, WaterDriver& to) {
    const auto carry = [&](jfloatArray source, jfloatArray destination, float factor) {
        const std::span<const float> cells = JniEnvironment::elements(source);
        const std::span<float> carried = JniEnvironment::elements(destination);
        for (int row = 1; row < to.rows - 1; ++row) {
            for (int column = 1; column < to.columns - 1; ++column) {
                const double x = static_cast<double>(column) * from.columns / to.columns;
                const double y = static_cast<double>(row) * from.rows / to.rows;
                carried[static_cast<std::size_t>(row * to.columns + column)] =
                    factor * valueBetween(cells, from, x, y);
            }
        }
    };
    carry(from.height, to.height, 1.0f);
    carry(from.velocity, to.velocity,
          static_cast<float>(from.settings.stepsPerSecond) /
              static_cast<float>(to.settings.stepsPerSecond));
    to.resting = from.resting;
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
        const double flatter = radius * radius / (coneRadius * coneRadius);
        raiseCone(water, jni, x, y, static_cast<float>(static_cast<double>(strength) * flatter));
    } else {
        raiseWideCone(water, jni, x, y, strength);
    }
    water.resting = false;
}

void advanceWater(WaterDriver& water, JniEnvironment& jni, std::chrono::nanoseconds elapsed) {
    if (water.resting) {
        water.pendingTime = 0;
        return;
    }
    const std::int64_t rate = water.settings.stepsPerSecond;
    water.pendingTime =
        std::min(water.pendingTime + elapsed.count() * rate, mostTimeAtOnce * rate / 60 * stepTime);
    for (; water.pendingTime >= stepTime && !water.resting; water.pendingTime -= stepTime) {
        runStep(water, jni);
    }
    buildHeights(water);
}

void buildHeights(WaterDriver& water) {
    const std::span<const float> cells = JniEnvironment::elements(water.height);
    const int side = water.settings.cellsPerVertex;
    const int lastColumn = water.columns - 1;
    const int lastRow = water.rows - 1;
    // Of the square of cells around a cell. The sum begins with -0: of one cell it is that very value.
    const auto meanAround = [&](int column, int row) {
        float sum = -0.0f;
        for (int y = row - side / 2; y < row - side / 2 + side; ++y) {
            const int firstOfRow = std::clamp(y, 0, lastRow) * water.columns;
            for (int x = column - side / 2; x < column - side / 2 + side; ++x) {
                sum += cells[static_cast<std::size_t>(firstOfRow + std::clamp(x, 0, lastColumn))];
            }
        }
        return sum / static_cast<float>(side * side);
    };
    const auto cellOf = [](int vertex, int vertices, int count) {
        return (vertex * count + (vertices - 1) / 2) / (vertices - 1);
    };
    auto vertex = JniEnvironment::elements(water.heights).begin();
    for (int along = 0; along < water.numDetailsWidth; ++along) {
        const int column = cellOf(along, water.numDetailsWidth, water.columns);
        for (int down = 0; down < water.numDetailsHeight; ++down) {
            const int row = cellOf(down, water.numDetailsHeight, water.rows);
            *vertex++ = meanAround(column, row);
            *vertex++ = meanAround(column + 1, row);
            *vertex++ = meanAround(column, row - 1);
        }
    }
}

}  // namespace hostkit
