#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <utility>
#include <vector>

#include "simd/flush_subnormals.h"
#include "test_memory.h"
#include "tests/oracle/plain_kernels.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

namespace velmora::test {
namespace {

// ---- Height field

struct Shape {
    int width, height, frame;
};

bool plainStep(const WaterGrids& grids, const WaterRectangle& rectangle,
               const WaveSettings& waves) {
    const FlushSubnormals flush;
    return reference::stepHeightField(grids, rectangle, waves);
}

/// Runs water steps on random water in guarded memory, and compares all cells with the results of the plain code in the
/// namespace `reference`. The compared cells include a border around the water. It is `shape.frame` cells wide and must
/// not change.
void compareSteps(Shape shape, Fill fill, const WaveSettings& settings, int steps) {
    SCOPED_TRACE(testing::Message() << shape.width << " x " << shape.height);
    const int rowLength = shape.width + 2 * shape.frame;
    const int rows = shape.height + 2 * shape.frame;
    for (const Against side : bothSides) {
        std::mt19937 random(static_cast<unsigned>(shape.width * 1000 + shape.height));
        const GuardedGrid velocity(rowLength, rows, 1, side, {fill.limit / 10.0f, fill.wild},
                                   random);
        const GuardedGrid height(rowLength, rows, 1, side, fill, random);
        const WaterRectangle rectangle{shape.frame, shape.frame, shape.frame + shape.width,
                                       shape.frame + shape.height};
        std::vector<float> velocities = contents(velocity.grid, 1);
        std::vector<float> heights = contents(height.grid, 1);
        for (int step = 0; step < steps; ++step) {
            ASSERT_EQ(
                stepHeightField({velocity.grid.data, height.grid.data, rowLength}, rectangle,
                                settings),
                plainStep({velocities.data(), heights.data(), rowLength}, rectangle, settings));
            ASSERT_TRUE(areSame(velocity.block.elements(), velocities)) << "step " << step;
            ASSERT_TRUE(areSame(height.block.elements(), heights)) << "step " << step;
        }
    }
}

TEST(HeightField, EveryRectangleMatchesThePlainStepAndStaysInItsArrays) {
    for (const Fill fill : {Fill{100.0f}, Fill{100.0f, true}, Fill{0.001f}, Fill{1e-36f}}) {
        for (int cell = 0; cell < 18 * 6; ++cell) {
            const Shape shape{cell % 18, cell / 18, 1};
            compareSteps(shape, fill, {0.975f, 0.3f, true}, 2);
            compareSteps(shape, fill, {0.94f, 0.4f, false}, 2);
            compareSteps({shape.width, shape.height, 3}, fill, {1.0f, 0.25f, true}, 1);
        }
    }
    for (const float damping : {std::nextafter(0.94f, 0.0f), std::nextafter(0.94f, 1.0f)}) {
        compareSteps({9, 9, 1}, {50.0f}, {damping, 0.3f, true}, 1);
    }
    compareSteps({58, 105, 1}, {100.0f}, {0.975f, 0.3f, true}, 40);
    compareSteps({126, 226, 1}, {50.0f}, {0.94f, 0.3f, true}, 10);
    compareSteps({255, 63, 2}, {100.0f, true}, {0.975f, 0.3f, true}, 3);
}

constexpr int side = 11;  // the nine inner columns are two groups of four and one cell
constexpr WaterRectangle inner{1, 1, side - 1, side - 1};

TEST(HeightField, CalmBandIncludesItsLimitsAndEveryCellCounts) {
    constexpr float end = 0.009f;
    const std::pair<float, bool> cases[] = {{end, true},
                                            {std::nextafter(end, 1.0f), false},
                                            {-end, true},
                                            {std::nextafter(-end, -1.0f), false}};
    for (const auto& [tried, isCalm] : cases) {
        for (int cell = 0; cell < side * side; ++cell) {
            std::vector<float> velocity(side * side), height(side * side, 7.0f);
            velocity[static_cast<std::size_t>(cell)] = tried;
            const int x = cell % side;
            const int y = cell / side;
            const bool isInner = x > 0 && x < side - 1 && y > 0 && y < side - 1;
            WaterGrids grids{velocity.data(), height.data(), side};
            EXPECT_EQ(stepHeightField(grids, inner, {1.0f, 0.25f, true}), isCalm || !isInner);
            EXPECT_TRUE(stepHeightField(grids, inner, {1.0f, 0.25f, false}));
        }
    }
}

// ---- Mesh

/// Makes a mesh of `vertices` vertices and all its quads, and compares it with the mesh that the plain code in the
/// namespace `reference` makes.
void checkMesh(const MeshShape& mesh, int vertices, Against against) {
    SCOPED_TRACE(testing::Message() << vertices << " of " << mesh.columns << " x " << mesh.rows);
    const int quads = std::max(mesh.columns - 1, 0) * std::max(mesh.rows - 1, 0);
    const GuardedBlock<float> positions(static_cast<std::size_t>(std::max(vertices, 0)) * 3,
                                        against);
    const GuardedBlock<std::uint16_t> indices(static_cast<std::size_t>(quads) * 6, against);
    std::vector<float> places(positions.elements().size());
    std::vector<std::uint16_t> corners(indices.elements().size());
    reference::writeMeshPositions(places.data(), vertices, mesh);
    reference::writeMeshIndices(corners.data(), mesh);
    writeMeshPositions(positions.data(), vertices, mesh);
    writeMeshIndices(indices.data(), mesh);
    EXPECT_TRUE(areSame(positions.elements(), places));
    EXPECT_TRUE(areEqual(indices.elements(), corners));
}

TEST(Mesh, VerticesAndQuadsMatchThePlainCodeForAnyHeight) {
    constexpr MeshShape extremes[] = {
        {20, 36, 2, 32768}, {1, 1, 32768, 2}, {9, 16, 61, 108}, {4, 4, 2, 7}, {4, 4, 7, 2}};
    for (const Against against : bothSides) {
        for (const MeshShape& mesh : extremes) {
            checkMesh(mesh, mesh.columns * mesh.rows, against);
        }
        for (int vertices = -5; vertices <= 35; ++vertices) {
            checkMesh({12, 20, 5, 7}, vertices, against);
        }
        for (const MeshShape& mesh : {MeshShape{1, 1, 1, 5}, {1, 1, 5, 1}, {1, 1, 0, 5}}) {
            checkMesh(mesh, 0, against);
        }
        const GuardedBlock<float> none(0, against);
        writeMeshPositions(none.data(), 9, {1, 1, -3, -4});
    }
    for (int rows = 2; rows <= 600; ++rows) {
        const int columns = 65536 / rows;
        checkMesh({rows % 7 + 1, rows % 40 + 1, columns, rows}, columns * rows,
                  bothSides[rows % 2]);
    }
}

// ---- Ripple

TEST(Ripple, EveryTouchAddsTheSameConeAsThePlainCode) {
    std::mt19937 random(5);
    const auto below = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    // Touches are up to six cells outside the grid. Their coordinates are multiples of a quarter of a cell.
    const auto coordinate = [&](int count) {
        return static_cast<float>(below((count + 12) * 4) - (count + 12) * 2) / 4.0f;
    };
    for (const auto& [columns, rows] :
         {std::pair{3, 3}, {4, 9}, {9, 7}, {12, 11}, {60, 107}, {107, 60}}) {
        for (const Against against : bothSides) {
            const GuardedGrid water(columns, rows, 1, against, {1.0f}, random);
            std::vector<float> expected = contents(water.grid, 1);
            for (int i = 0; i < 800; ++i) {
                const float strength = i < 790 ? static_cast<float>(below(9) - 4) * 0.3f
                                       : i % 2 ? nan
                                               : infinity;
                const RippleTouch touch{2 * columns,
                                        3 * rows,
                                        columns,
                                        rows,
                                        2.0f * coordinate(columns),
                                        3.0f * coordinate(rows),
                                        strength};
                addRipple(water.grid.data, touch);
                reference::addRipple(expected.data(), touch);
                ASSERT_TRUE(areSame(water.block.elements(), expected)) << "touch " << i;
            }
        }
    }
}

TEST(Ripple, TouchesOutsideTheGridOrAtNanChangeNothing) {
    constexpr int size = 20;
    std::mt19937 random(6);
    for (const Against against : bothSides) {
        const GuardedGrid water(size, size, 1, against, {1.0f}, random);
        const std::vector<float> before = contents(water.grid, 1);
        const auto touch = [&](int area, int columns, int rows, float x, float y) {
            addRipple(water.grid.data, {area, size, columns, rows, x, y, 1.0f});
            addRipple(water.grid.data, {size, area, rows, columns, y, x, 1.0f});
        };
        for (const float away : {-11.5f, 12.0f, -1e9f, 1e9f, -2.4e9f, 2.4e9f, 3e38f, -3e38f,
                                 infinity, -infinity, nan}) {
            touch(size, size, size, away, 0.0f);
        }
        for (const float anywhere : {0.0f, 1.0f, -1.0f}) {
            touch(0, size, size, anywhere, 0.0f);
            for (const int none : {2, 1, 0, -1, least}) {
                touch(size, none, size, anywhere, 0.0f);
                touch(most, size, none, anywhere, anywhere);
            }
        }
        EXPECT_TRUE(areSame(water.block.elements(), before));
    }
}

}  // namespace
}  // namespace velmora::test
