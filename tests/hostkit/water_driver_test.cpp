#include "hostkit/water_driver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace hostkit {
namespace {

using namespace std::chrono_literals;

struct Screen {
    int width;
    int height;
};
constexpr Screen screens[] = {{1080, 1920}, {1920, 1080}, {500, 500}, {1, 1}, {1, 5000}, {9000, 3}};

TEST(WaterDriver, MeshAndGridFitEveryScreen) {
    for (const Screen screen : screens) {
        JniEnvironment jni({ArrayAccess::direct, 16});
        const WaterDriver water = makeWater(jni, screen.width, screen.height);
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

TEST(WaterDriver, ARippleRisesUnderTheFinger) {
    for (const Screen screen : {Screen{1080, 1920}, Screen{1920, 1080}}) {
        JniEnvironment jni;
        WaterDriver water = makeWater(jni, screen.width, screen.height);
        const double touchX = screen.width * 0.25;
        const double touchY = screen.height * 0.7;
        rippleAt(water, jni, touchX, touchY, 1.0f);
        buildHeights(water);

        const auto heights = JniEnvironment::elements(water.heights);
        std::size_t peak = 0;
        for (std::size_t at = 0; at < heights.size(); at += 3) {
            peak = heights[at] > heights[peak] ? at : peak;
        }
        // The mesh has x to the right and y up, its origin at the middle of the screen.
        const auto positions = JniEnvironment::elements(water.positions);
        const double x =
            (static_cast<double>(positions[peak]) / water.meshSizeWidth + 0.5) * screen.width;
        const double y =
            (0.5 - static_cast<double>(positions[peak + 1]) / water.meshSizeHeight) * screen.height;
        const double cell = static_cast<double>(screen.width) / water.columns;
        EXPECT_GT(heights[peak], 2.0f);
        EXPECT_NEAR(x, touchX, cell);
        EXPECT_NEAR(y, touchY, cell);
    }
}

TEST(WaterDriver, NeighboursLieToTheRightAndAbove) {
    JniEnvironment jni;
    WaterDriver water = makeWater(jni, 90, 160, {.shortSideCells = 9});
    const auto cells = JniEnvironment::elements(water.height);
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        cells[cell] = static_cast<float>(cell);
    }
    buildHeights(water);

    const auto positions = JniEnvironment::elements(water.positions);
    const auto heights = JniEnvironment::elements(water.heights);
    const std::size_t vertices = heights.size() / 3;
    const auto heightAt = [&](float x, float y) {
        for (std::size_t v = 0; v < vertices; ++v) {
            if (std::abs(positions[3 * v] - x) < 0.01f &&
                std::abs(positions[3 * v + 1] - y) < 0.01f) {
                return heights[3 * v];
            }
        }
        return -1.0f;
    };
    const float stepX = static_cast<float>(water.meshSizeWidth) / static_cast<float>(water.columns);
    const float stepY = static_cast<float>(water.meshSizeHeight) / static_cast<float>(water.rows);
    for (std::size_t v = 0; v < vertices; ++v) {
        const float x = positions[3 * v];
        const float y = positions[3 * v + 1];
        const float right = heightAt(x + stepX, y);
        const float above = heightAt(x, y + stepY);
        EXPECT_EQ(heights[3 * v + 1], right < 0 ? heights[3 * v] : right);
        EXPECT_EQ(heights[3 * v + 2], above < 0 ? heights[3 * v] : above);
    }
}

TEST(WaterDriver, StepsAreFixedAndEndWhenTheWaterIsCalm) {
    JniEnvironment jni;
    WaterDriver water = makeWater(jni, 90, 160, {.shortSideCells = 30});
    advanceWater(water, jni, 1s);
    EXPECT_EQ(water.steps, 0);

    rippleAt(water, jni, 45, 80, 1.0f);
    advanceWater(water, jni, 10ms);
    EXPECT_EQ(water.steps, 0);
    advanceWater(water, jni, 10ms);
    EXPECT_EQ(water.steps, 1);
    advanceWater(water, jni, 14ms);
    EXPECT_EQ(water.steps, 2);
    advanceWater(water, jni, 5s);
    EXPECT_EQ(water.steps, 6);
    for (int frame = 1; frame <= 100; ++frame) {
        advanceWater(water, jni, 16'666'667ns);
        EXPECT_EQ(water.steps, 6 + frame);
    }

    while (!water.resting && water.steps < 100'000) {
        advanceWater(water, jni, 50ms);
    }
    EXPECT_TRUE(water.resting);
    const auto atRest = water.steps;
    advanceWater(water, jni, 1s);
    EXPECT_EQ(water.steps, atRest);
    rippleAt(water, jni, 45, 80, 1.0f);
    advanceWater(water, jni, 17ms);
    EXPECT_EQ(water.steps, atRest + 1);
}

}  // namespace
}  // namespace hostkit
