#include "simd/flush_subnormals.h"
#include "test_memory.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

namespace velmora::test {
namespace {

// ---- Height field

/// A step as the host would work it out on its own arrays, one cell after the other.
struct Water {
    std::vector<float> velocity, height;
    std::size_t rowLength;
    WaterRectangle rectangle;

    float laplacian(std::size_t i) const {
        return height[i - rowLength] + height[i - 1] + height[i + 1] + height[i + rowLength] -
               4.0f * height[i];
    }

    /// Walks the rectangle in groups of at most `most` cells.
    template <class Group>
    void forGroups(int most, Group group) {
        for (int y = rectangle.y0; y < rectangle.y1; ++y) {
            for (int x = rectangle.x0, count = 0; x < rectangle.x1; x += count) {
                count = rectangle.x1 - x >= most ? most : 1;
                group(static_cast<std::size_t>(y) * rowLength + static_cast<std::size_t>(x),
                      static_cast<std::size_t>(count));
            }
        }
    }

    bool step(const WaveSettings& settings) {
        const FlushSubnormals flush;
        bool calm = true;
        forGroups(1, [&](std::size_t i, std::size_t) {
            velocity[i] = (velocity[i] + settings.waveSpeed * laplacian(i)) * settings.damping;
            calm = calm && !(velocity[i] > 0.009f || velocity[i] < -0.009f);
        });
        forGroups(1, [&](std::size_t i, std::size_t) {
            const float sum = height[i] + velocity[i];
            height[i] = sum > 100.0f ? 100.0f : sum < -100.0f ? -100.0f : sum;
        });
        // Four cells read all their inputs before they store.
        const float weight = settings.damping == 0.94f ? 0.068f : 0.018f;
        forGroups(4, [&](std::size_t i, std::size_t count) {
            float smoothed[4];
            for (std::size_t k = 0; k < count; ++k) {
                smoothed[k] = height[i + k] + weight * laplacian(i + k);
            }
            std::copy_n(smoothed, count, &height[i]);
        });
        return calm || !settings.detectCalm;
    }
};

struct Shape {
    int width, height, frame;
};

/// Steps random water in guarded pages beside the oracle; the frame, of `frame` cells, and the rest
/// of both arrays belong to the comparison.
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
        Water oracle{contents(velocity.grid, 1), contents(height.grid, 1),
                     static_cast<std::size_t>(rowLength), rectangle};
        for (int step = 0; step < steps; ++step) {
            ASSERT_EQ(stepHeightField({velocity.grid.data, height.grid.data, rowLength}, rectangle,
                                      settings),
                      oracle.step(settings));
            ASSERT_TRUE(areSame(velocity.block.elements(), oracle.velocity)) << "step " << step;
            ASSERT_TRUE(areSame(height.block.elements(), oracle.height)) << "step " << step;
        }
    }
}

TEST(HeightField, EveryRectangleStepsAsDefinedAndStaysInItsArrays) {
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

constexpr int side = 11;  // of a square grid whose inner nine columns take two groups and a tail
constexpr WaterRectangle inner{1, 1, side - 1, side - 1};

TEST(HeightField, CalmBandIncludesItsEndsAndEveryCellDecides) {
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

/// Vertices lie in their columns and rows by integer division; `vertices` are asked for.
void checkMesh(const MeshShape& mesh, int vertices, Against against) {
    SCOPED_TRACE(testing::Message() << vertices << " of " << mesh.columns << " x " << mesh.rows);
    std::vector<float> places;
    const auto width = static_cast<float>(mesh.width);
    const auto height = static_cast<float>(mesh.height);
    const float stepX = width / static_cast<float>(mesh.columns - 1);
    const float stepY = height / static_cast<float>(mesh.rows - 1);
    for (int i = 0; i < vertices; ++i) {
        places.push_back(static_cast<float>(i / mesh.rows) * stepX - width * 0.5f);
        places.push_back(height * 0.5f - static_cast<float>(i % mesh.rows) * stepY);
        places.push_back(0.0f);
    }
    // From the top left to the bottom left, the bottom right and back, then to the bottom right and
    // the top right; with y up both triangles run counter-clockwise.
    std::vector<int> corners;
    for (int row = 0; row < mesh.rows - 1; ++row) {
        for (int column = 0; column < mesh.columns - 1; ++column) {
            const int left = column * mesh.rows + row;
            const int right = left + mesh.rows;
            corners.insert(corners.end(), {left, left + 1, right + 1, left, right + 1, right});
        }
    }
    const GuardedBlock<float> positions(places.size(), against);
    const GuardedBlock<std::uint16_t> indices(corners.size(), against);
    writeMeshPositions(positions.data(), vertices, mesh);
    writeMeshIndices(indices.data(), mesh);
    EXPECT_TRUE(areSame(positions.elements(), places));
    EXPECT_TRUE(std::ranges::equal(indices.elements(), corners));
}

TEST(Mesh, VerticesAndQuadsHaveTheirPlacesHoweverTall) {
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

/// The cone of radius 3 at the touch, where it meets neither the first two nor the last columns and
/// rows.
void rippleOracle(std::span<float> grid, const RippleTouch& touch) {
    const auto relative = [](float at, int area) { return at / static_cast<float>(area) + 0.5f; };
    const float cx = relative(touch.x, touch.areaWidth) * static_cast<float>(touch.gridWidth);
    const float cy = relative(touch.y, touch.areaHeight) * static_cast<float>(touch.gridHeight);
    for (int row = 2; row < touch.gridHeight - 1; ++row) {
        for (int column = 2; column < touch.gridWidth - 1; ++column) {
            const float dx = cx - static_cast<float>(column);
            const float dy = cy - static_cast<float>(row);
            const float t = 3.0f - std::sqrt(dx * dx + dy * dy);
            if (t > 0.0f) {
                grid[static_cast<std::size_t>(row * touch.gridWidth + column)] +=
                    t * touch.strength;
            }
        }
    }
}

TEST(Ripple, EveryTouchAddsTheConeOfItsBox) {
    std::mt19937 random(5);
    const auto below = [&](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    // Up to six cells beyond the grid, in quarter cells and on whole ones.
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
                rippleOracle(expected, touch);
                ASSERT_TRUE(areSame(water.block.elements(), expected)) << "touch " << i;
            }
        }
    }
}

TEST(Ripple, TouchesOffTheGridOrWithoutAPlaceChangeNothing) {
    constexpr int size = 20;
    std::mt19937 random(6);
    for (const Against against : bothSides) {
        const GuardedGrid water(size, size, 1, against, {1.0f}, random);
        const std::vector<float> before = contents(water.grid, 1);
        const auto touch = [&](int area, int columns, int rows, float x, float y) {
            addRipple(water.grid.data, {area, size, columns, rows, x, y, 1.0f});
            addRipple(water.grid.data, {size, area, rows, columns, y, x, 1.0f});
        };
        for (const float away :
             {-11.5f, 12.0f, -1e9f, 1e9f, 3e38f, -3e38f, infinity, -infinity, nan}) {
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
