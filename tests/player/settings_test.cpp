// Water looks alike on any mesh and at any frame rate: the same wave at the same place and time.

#include "player/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <span>
#include <vector>

#include "hostkit/water_driver.h"

namespace {

using hostkit::JniEnvironment;
using hostkit::WaterDriver;

constexpr int side = 720;

struct Pond {
    JniEnvironment jni;
    WaterDriver water;

    explicit Pond(const player::Settings& settings)
        : water(hostkit::makeWater(jni, side, side, player::waterOf(settings))) {
        hostkit::rippleAt(water, jni, side / 2.0, side / 2.0, settings.ripple);
    }
    std::span<const float> heights() const { return JniEnvironment::elements(water.height); }
    void run(int frames, std::chrono::nanoseconds each) {
        for (int frame = 0; frame < frames; ++frame) {
            hostkit::advanceWater(water, jni, each);
        }
    }
    /// In squared shorter sides times height.
    double volume() const {
        double sum = 0.0;
        for (const float height : heights()) {
            sum += static_cast<double>(height);
        }
        return sum / (water.columns * water.rows);
    }
    /// Distance from the middle of the highest crest to its right, in shorter sides.
    double crest() const {
        const int middle = water.rows / 2 * water.columns;
        int best = water.columns / 2;
        for (int column = best; column < water.columns; ++column) {
            const auto at = [&](int c) { return heights()[static_cast<std::size_t>(middle + c)]; };
            best = at(column) > at(best) ? column : best;
        }
        return static_cast<double>(best) / water.columns - 0.5;
    }
};

TEST(Settings, WavesRunAtOneSpeedOnAnyMesh) {
    for (const float speed : {0.25f, 0.365f, 0.8f}) {
        for (const int detail : {60, 90, 120, 180}) {
            SCOPED_TRACE(testing::Message() << detail << " cells, speed " << speed);
            player::Settings settings;
            settings.waveSpeed = speed;
            settings.meshDetail = detail;
            settings.damping = 0.99f;
            Pond pond(settings);
            // The crest leaves from the rim of the drop and travels a quarter of the side.
            const double seconds = 0.25 / static_cast<double>(speed);
            pond.run(static_cast<int>(seconds * 60.0), std::chrono::nanoseconds(16'666'667));
            EXPECT_NEAR(pond.crest(), 0.24, 0.03);
        }
    }
}

TEST(Settings, ATouchRaisesTheSameWaterOnAnyMesh) {
    player::Settings settings;
    const double expected = Pond(settings).volume();
    for (const int detail : {30, 60, 75, 120, 150, 180}) {
        settings.meshDetail = detail;
        EXPECT_NEAR(Pond(settings).volume() / expected, 1.0, 0.2) << detail;
    }
}

TEST(Settings, TheFrameRateChangesNoWave) {
    for (const int detail : {90, 180}) {
        player::Settings settings;
        settings.meshDetail = detail;
        Pond slow(settings);
        Pond fast(settings);
        slow.run(15, std::chrono::nanoseconds(40'000'000));
        fast.run(96, std::chrono::nanoseconds(6'250'000));
        EXPECT_EQ(slow.water.steps, fast.water.steps);
        EXPECT_TRUE(std::ranges::equal(slow.heights(), fast.heights()));
    }
}

}  // namespace
