#include "hostkit/water_driver.h"

#include <gtest/gtest.h>
#include <jni.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "hostkit/instruments/checked_jni.h"

namespace hostkit {
namespace {

using namespace std::chrono_literals;

struct Screen {
    int width, height;
};

/// Returns the position of a mesh vertex as fractions of the screen, from the left and from the top. In the mesh, the
/// origin is the centre of the screen and y is up.
std::pair<double, double> screenPosition(const WaterDriver& water, std::size_t firstFloat) {
    const auto positions = JniEnvironment::elements(water.positions);
    return {0.5 + static_cast<double>(positions[firstFloat]) / water.meshSizeWidth,
            0.5 - static_cast<double>(positions[firstFloat + 1]) / water.meshSizeHeight};
}

TEST(WaterDriver, MeshAndGridFitEveryScreen) {
    for (const auto& [width, height] :
         {Screen{1080, 1920}, {1920, 1080}, {500, 500}, {1, 1}, {1, 5000}, {9000, 3}}) {
        CheckedJni jni({ArrayAccess::direct, 16});
        const WaterDriver water = makeWater(jni, width, height);
        const auto vertices =
            static_cast<std::size_t>(water.numDetailsWidth * water.numDetailsHeight);
        EXPECT_LE(vertices, 65536u);
        EXPECT_GE(water.meshSizeWidth, 1);
        const auto indices = JniEnvironment::elements(water.indices);
        EXPECT_EQ(indices.size(), 6u * static_cast<std::size_t>(water.columns * water.rows));
        EXPECT_TRUE(std::ranges::all_of(
            indices, [&](jshort index) { return static_cast<std::uint16_t>(index) < vertices; }));
        EXPECT_TRUE(jni.checkGuards().empty());
    }
    JniEnvironment jni;
    const WaterDriver portrait = makeWater(jni, 1080, 1920);
    EXPECT_NEAR(1080.0 / portrait.columns, 1920.0 / portrait.rows, 0.1);
}

TEST(WaterDriver, ARippleRisesAtTheFinger) {
    for (const auto& [width, height] : {Screen{1080, 1920}, {1920, 1080}}) {
        JniEnvironment jni;
        WaterDriver water = makeWater(jni, width, height);
        rippleAt(water, jni, width * 0.25, height * 0.7, 1.0f);
        buildHeights(water);
        const auto heights = JniEnvironment::elements(water.heights);
        std::size_t peak = 0;
        for (std::size_t vertex = 0; vertex < heights.size(); vertex += 3) {
            peak = heights[vertex] > heights[peak] ? vertex : peak;
        }
        const auto [right, down] = screenPosition(water, peak);
        EXPECT_GT(heights[peak], 2.0f);
        EXPECT_NEAR(right, 0.25, 1.0 / water.columns);
        EXPECT_NEAR(down, 0.7, 1.0 / water.rows);
    }
}

TEST(WaterDriver, StoresTheHeightsOfTheRightAndUpperNeighbours) {
    JniEnvironment jni;
    WaterDriver water = makeWater(jni, 90, 160, {.shortSideCells = 9});
    const auto heightOf = [&water](int column, int row) {
        const int left = std::min(column, water.columns - 1);
        const int top = std::clamp(row, 0, water.rows - 1);
        return static_cast<float>(100 * left + top);
    };
    const auto cells = JniEnvironment::elements(water.height);
    for (int cell = 0; cell < water.columns * water.rows; ++cell) {
        cells[static_cast<std::size_t>(cell)] =
            heightOf(cell % water.columns, cell / water.columns);
    }
    buildHeights(water);
    const auto heights = JniEnvironment::elements(water.heights);
    for (std::size_t vertex = 0; vertex < heights.size(); vertex += 3) {
        const auto [right, down] = screenPosition(water, vertex);
        const int column = static_cast<int>(std::lround(right * water.columns));
        const int row = static_cast<int>(std::lround(down * water.rows));
        EXPECT_EQ(heights[vertex], heightOf(column, row));
        EXPECT_EQ(heights[vertex + 1], heightOf(column + 1, row));
        EXPECT_EQ(heights[vertex + 2], heightOf(column, row - 1));
    }
}

TEST(WaterDriver, ACoarserMeshShowsTheSameSurface) {
    for (const float cells : {1.75f, 2.0f, 3.0f, 7.0f}) {
        CheckedJni jni({ArrayAccess::direct, 16});
        WaterDriver water =
            makeWater(jni, 90, 160, {.shortSideCells = 90, .cellsPerVertex = cells});
        const auto grid = JniEnvironment::elements(water.height);
        for (std::size_t cell = 0; cell < grid.size(); ++cell) {
            const std::size_t row = cell / 90;
            grid[cell] = static_cast<float>(2 * (cell % 90) + 3 * row);
        }
        buildHeights(water);
        const auto heights = JniEnvironment::elements(water.heights);
        ASSERT_NEAR(static_cast<float>(heights.size()), 3.0f * 91 * 161 / (cells * cells), 600.0f);
        for (std::size_t vertex = 0; vertex < heights.size(); vertex += 3) {
            const auto [right, down] = screenPosition(water, vertex);
            const double height = 2 * right * 90 + 3 * down * 160;
            const bool inside = std::abs(right - 0.5) < 0.45 && std::abs(down - 0.5) < 0.45;
            // A vertex near an edge of the mesh has the height of the nearest edge cell, which is up to one cell away
            // along each axis. The height changes by 2 per cell along x and by 3 per cell along y, so the error is at
            // most 5.
            EXPECT_NEAR(heights[vertex], height, inside ? 1e-3 : 5.01);
            if (inside) {
                EXPECT_NEAR(heights[vertex + 1] - heights[vertex], 2.0f, 1e-3f);
                EXPECT_NEAR(heights[vertex + 2] - heights[vertex], -3.0f, 1e-3f);
            }
        }
        const auto [right, down] = screenPosition(water, heights.size() - 3);
        EXPECT_NEAR(right + down, 2.0, 1e-6);
        EXPECT_TRUE(jni.checkGuards().empty());
    }
}

TEST(WaterDriver, ANewMeshDoesNotChangeTheWaves) {
    JniEnvironment jni;
    WaterDriver water = makeWater(jni, 90, 160);
    rippleAt(water, jni, 45, 80, 1.0f);
    advanceWater(water, jni, 40ms);
    WaterDriver coarse = makeWater(jni, 90, 160, {.cellsPerVertex = 3.0f});
    resampleWaves(water, coarse);
    for (WaterDriver* each : {&water, &coarse}) {
        advanceWater(*each, jni, 60ms);
    }
    EXPECT_EQ(coarse.steps, water.steps);
    EXPECT_TRUE(std::ranges::equal(JniEnvironment::elements(coarse.height),
                                   JniEnvironment::elements(water.height)));
    EXPECT_TRUE(std::ranges::equal(JniEnvironment::elements(coarse.velocity),
                                   JniEnvironment::elements(water.velocity)));
}

TEST(WaterDriver, StepsHaveAFixedLengthAndStopWhenTheWaterIsIdle) {
    JniEnvironment jni;
    WaterDriver water = makeWater(jni, 90, 160, {.shortSideCells = 30});
    advanceWater(water, jni, 1s);
    EXPECT_EQ(water.steps, 0);

    rippleAt(water, jni, 45, 80, 1.0f);
    for (const auto& [elapsed, steps] : {std::pair{10ms, 0}, {10ms, 1}, {14ms, 2}, {5000ms, 6}}) {
        advanceWater(water, jni, elapsed);
        EXPECT_EQ(water.steps, steps);
    }
    for (int frame = 1; frame <= 100; ++frame) {
        advanceWater(water, jni, 16'666'667ns);
        EXPECT_EQ(water.steps, 6 + frame);
    }

    while (!water.idle && water.steps < 100'000) {
        advanceWater(water, jni, 50ms);
    }
    EXPECT_TRUE(water.idle);
    const auto stepsAtRest = water.steps;
    advanceWater(water, jni, 1s);
    EXPECT_EQ(water.steps, stepsAtRest);
    rippleAt(water, jni, 45, 80, 1.0f);
    advanceWater(water, jni, 17ms);
    EXPECT_EQ(water.steps, stepsAtRest + 1);
}

TEST(WaterDriver, ResampledWavesStayWithinTheirHeights) {
    JniEnvironment jni;
    const WaterDriver coarse = makeWater(jni, 500, 500, {.shortSideCells = 24});
    WaterDriver fine = makeWater(jni, 500, 500, {.shortSideCells = 180});
    const auto heights = JniEnvironment::elements(coarse.height);
    for (std::size_t cell = 0; cell < heights.size(); ++cell) {
        heights[cell] = static_cast<float>(cell % 5) - 2.0f;
    }
    resampleWaves(coarse, fine);
    const auto [min, max] = std::ranges::minmax(JniEnvironment::elements(fine.height));
    EXPECT_GE(min, -2.0f);
    EXPECT_LE(max, 2.0f);
    EXPECT_GT(max, 1.5f);
}

}  // namespace
}  // namespace hostkit
