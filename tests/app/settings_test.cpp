// Tests that waves have the same position and size at the same time, on every grid and at every frame rate. Also tests
// undo and redo of changed settings.

#include "app/settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <numeric>
#include <span>

#include "app/settings_history.h"
#include "hostkit/water_driver.h"

namespace {

using hostkit::JniEnvironment;
using hostkit::WaterDriver;

using namespace std::chrono_literals;

constexpr int side = 720;

struct Pond {
    JniEnvironment jni;
    WaterDriver water;

    explicit Pond(const app::Settings& settings)
        : water(hostkit::makeWater(jni, side, side, app::waterOf(settings))) {
        hostkit::rippleAt(water, jni, side / 2.0, side / 2.0, settings.ripple);
    }
    std::span<const float> heights() const { return JniEnvironment::elements(water.height); }
    void run(int frames, std::chrono::nanoseconds each) {
        for (int frame = 0; frame < frames; ++frame) {
            hostkit::advanceWater(water, jni, each);
        }
    }
    /// Volume of the waves. The unit is the square of the screen's shorter side times the unit of height.
    double volume() const {
        return std::reduce(heights().begin(), heights().end(), 0.0) / (water.columns * water.rows);
    }
    std::span<const float> middleRow() const {
        return heights().subspan(static_cast<std::size_t>(water.rows / 2 * water.columns),
                                 static_cast<std::size_t>(water.columns));
    }
    /// Distance from the centre to the highest crest to its right, as a multiple of the screen's shorter side.
    double crest() const {
        const auto row = middleRow();
        const auto crest = std::max_element(row.begin() + water.columns / 2, row.end());
        return static_cast<double>(crest - row.begin()) / water.columns - 0.5;
    }
    void changeMesh(app::Settings settings, int detail) {
        settings.meshDetail = detail;
        const WaterDriver old = water;
        water = hostkit::makeWater(jni, side, side, app::waterOf(settings));
        hostkit::resampleWaves(old, water);
    }
};

TEST(Settings, WaveSpeedDoesNotDependOnMeshAndFrameRate) {
    for (const float speed : {0.25f, 0.365f, 0.8f}) {
        for (const int detail : {60, 90, 120, 180}) {
            SCOPED_TRACE(testing::Message() << detail << " cells, speed " << speed);
            app::Settings settings;
            settings.waveSpeed = speed;
            settings.meshDetail = detail;
            settings.damping = 0.99f;
            // The crest starts at the edge of the ripple. After `seconds` it has travelled a quarter of the shorter
            // side.
            const double seconds = 0.25 / static_cast<double>(speed);
            for (const int rate : {30, 60, 144}) {
                Pond pond(settings);
                pond.run(static_cast<int>(seconds * rate), 1'000'000'000ns / rate);
                EXPECT_NEAR(pond.crest(), 0.24, 0.03) << rate << " frames a second";
            }
        }
    }
}

TEST(Settings, WavesContinueWhenTheMeshChanges) {
    for (const int detail : {60, 180}) {
        for (const float speed : {0.3f, 1.0f}) {  // with equal and with different step rates
            app::Settings settings;
            settings.waveSpeed = speed;
            settings.damping = 0.999f;
            const int frames = static_cast<int>(6.0f / speed);
            Pond changed(settings);
            changed.run(frames, 17ms);
            changed.changeMesh(settings, detail);
            changed.run(frames, 17ms);
            Pond same(settings);
            same.run(2 * frames, 17ms);
            SCOPED_TRACE(testing::Message() << detail << " cells, speed " << speed);
            EXPECT_NEAR(changed.crest(), same.crest(), 0.03);
            EXPECT_NEAR(std::ranges::max(changed.middleRow()), std::ranges::max(same.middleRow()),
                        0.2f * std::ranges::max(same.middleRow()));
        }
    }
}

TEST(Settings, ATouchRaisesTheSameVolumeOnAnyMesh) {
    app::Settings settings;
    const double expected = Pond(settings).volume();
    for (const int detail : {30, 60, 75, 120, 150, 180}) {
        settings.meshDetail = detail;
        EXPECT_NEAR(Pond(settings).volume() / expected, 1.0, 0.2) << detail;
    }
}

TEST(SettingsHistory, EachChangeOfASwitchIsAStep) {
    app::Settings settings;
    app::SettingsHistory history(settings);
    const app::Clock::time_point now{1h};
    settings.waterOnly = true;
    history.note(settings, now);
    settings.waterOnly = false;
    history.note(settings, now + 10ms);
    EXPECT_TRUE(history.undo().value().waterOnly);
    EXPECT_FALSE(history.undo().value().waterOnly);
}

TEST(SettingsHistory, UndoesAndRedoesStepsAndADragIsOneStep) {
    const app::Settings first;
    app::SettingsHistory history(first);
    app::Clock::time_point now{1h};
    app::Settings settings;
    const auto note = [&](float app::Settings::*member, float value,
                          std::chrono::nanoseconds pause) {
        settings.*member = value;
        now += pause;
        history.note(settings, now);
        return settings;
    };
    EXPECT_FALSE(history.undo());
    note(&app::Settings::rain, 1.0f, 10ms);
    const app::Settings dragged = note(&app::Settings::rain, 2.0f, 10ms);
    const app::Settings later = note(&app::Settings::rain, 3.0f, 5s);
    note(&app::Settings::damping, 0.9f, 10ms);
    EXPECT_EQ(history.undo(), later);
    EXPECT_EQ(history.undo(), dragged);
    EXPECT_EQ(history.undo(), first);
    EXPECT_FALSE(history.undo());
    EXPECT_EQ(history.redo(), dragged);
    history.note(dragged, now);  // the front end has applied these settings
    EXPECT_EQ(history.redo(), later);
    settings = later;
    note(&app::Settings::rain, 4.0f, 10ms);
    EXPECT_FALSE(history.redo()) << "after a new change, redo must have nothing to restore";
    EXPECT_EQ(history.undo(), later) << "undo must also revert a change that follows a redo";
}

}  // namespace
