// Tests the parts of a session that need no GL context: the frame clock, attract mode, idle detection and the finger.

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <utility>
#include <variant>
#include <vector>

#include "app/attract_mode.h"
#include "app/finger.h"
#include "app/frame_clock.h"
#include "app/idle_watch.h"
#include "hostkit/gesture_script.h"

namespace {

using namespace std::chrono_literals;
using app::AttractMode;
using app::Clock;
using app::FrameLength;
using app::frameTime;
using hostkit::Touch;
using hostkit::TouchAction;

constexpr Clock::time_point start{1h};

TEST(FrameClock, OneFrameIsDueAtOnceAfterASkip) {
    app::FrameClock clock;
    for (const Clock::time_point now : {start, start + 100s}) {
        EXPECT_EQ(clock.untilNext(now, 1.0f), 0ns);
        EXPECT_EQ(clock.take(now, 1.0f, FrameLength::real).frames, 1);
        EXPECT_EQ(clock.take(now + 10ms, 1.0f, FrameLength::real).frames, 0);
        EXPECT_EQ(clock.take(now + 17ms, 1.0f, FrameLength::real).frames, 1);
        clock.skip();
    }
}

TEST(FrameClock, FramesFollowTheTimeScaleAndAreLongerOnASlowMachine) {
    const struct {
        std::chrono::nanoseconds gap;
        float timeScale;
        FrameLength length;
        int frames;
        std::chrono::nanoseconds elapsed;
    } cases[] = {
        {frameTime, 1.0f, FrameLength::real, 1, frameTime},
        {15ms, 1.0f, FrameLength::real, 1, frameTime},  // the display frame is a little early
        {frameTime, 0.5f, FrameLength::real, 0, frameTime},
        {frameTime, 2.0f, FrameLength::real, 2, frameTime},
        {50ms, 1.0f, FrameLength::real, 1, 50ms},
        {50ms, 1.0f, FrameLength::exact, 1, frameTime},  // exact frames give slow motion
        {100ms, 1.0f, FrameLength::whole, 1, 6 * frameTime},
        {1s, 2.0f, FrameLength::whole, 2, 60 * frameTime},
        {60s, 1.0f, FrameLength::real, 1, 250ms},  // the machine was asleep
        {200ms, 2.0f, FrameLength::real, 2, 200ms},
        {-1s, 1.0f, FrameLength::real, 0, frameTime},
    };
    for (const auto& test : cases) {
        app::FrameClock clock;
        clock.take(start, test.timeScale, FrameLength::real);
        const auto due = clock.take(start + test.gap, test.timeScale, test.length);
        EXPECT_EQ(due.frames, test.frames) << test.gap.count();
        EXPECT_EQ(due.elapsed, test.elapsed) << test.gap.count();
    }
}

TEST(FrameClock, WholeFramesKeepTheTime) {
    app::FrameClock clock;
    clock.take(start, 1.0f, FrameLength::whole);
    std::chrono::nanoseconds effectTime{0};
    for (Clock::time_point now = start; now < start + 10s;) {
        now += 97ms;  // no multiple of 1/60 s
        const auto due = clock.take(now, 1.0f, FrameLength::whole);
        EXPECT_EQ(due.elapsed % frameTime, 0ns);
        effectTime += due.frames * due.elapsed;
    }
    EXPECT_NEAR(std::chrono::duration<double>(effectTime).count(), 10.0, 0.1);
}

TEST(FrameClock, SlowMotionHasTheRightSpeedAcrossLongWaits) {
    app::FrameClock clock;
    clock.take(start, 0.05f, FrameLength::real);
    const auto wait = clock.untilNext(start, 0.05f);
    EXPECT_NEAR(std::chrono::duration<double>(wait).count(), 20.0 / 60.0, 1e-6);
    EXPECT_EQ(clock.take(start + wait, 0.05f, FrameLength::real).frames, 1);
}

TEST(AttractMode, StartsAfterFourSecondsAndAfterTwentyOnceTouched) {
    AttractMode mode(start);
    EXPECT_EQ(mode.untilStart(start + 1s), 3s);
    mode.startIfIdle(start + 3s);
    EXPECT_FALSE(mode.isRunning());
    mode.postpone(start + 3s);
    mode.startIfIdle(start + 5s);
    EXPECT_FALSE(mode.isRunning());
    mode.startIfIdle(start + 7s);
    EXPECT_TRUE(mode.isRunning());
    mode.stop();
    mode.noteInput(start + 8s, true);
    EXPECT_EQ(mode.untilStart(start + 8s), 20s);
    mode.turn(false);
    EXPECT_FALSE(mode.untilStart(start + 1h));
}

TEST(AttractMode, DrawsThreeStrokesOnTheScreenAndThenWaitsForInput) {
    constexpr app::Size screen{100, 200};
    AttractMode mode(start);
    mode.startIfIdle(start + 4s);
    std::vector<TouchAction> ends;
    for (int frame = 0; frame < 2000; ++frame) {
        if (!mode.isRunning()) {
            break;
        }
        for (const auto& action : mode.next(screen)) {
            const auto& touch = std::get<Touch>(action);
            EXPECT_TRUE(touch.x > 0 && touch.x < 100 && touch.y > 0 && touch.y < 200);
            if (touch.action != TouchAction::move) {
                ends.push_back(touch.action);
            }
        }
    }
    using enum TouchAction;
    EXPECT_EQ(ends, (std::vector{down, up, down, up, down, up}));
    EXPECT_FALSE(mode.untilStart(start + 1h));
    mode.noteInput(start + 1h, false);
    EXPECT_EQ(mode.untilStart(start + 1h), 4s);
}

TEST(AttractMode, RepeatsWithNewStrokesForAScreenSaver) {
    AttractMode mode(start);
    mode.repeat();
    const auto firstTouch = [&](app::Clock::time_point now) {
        mode.startIfIdle(now);
        const Touch touch = std::get<Touch>(mode.next({100, 200}).at(0));
        while (mode.isRunning()) {
            mode.next({100, 200});
        }
        return touch;
    };
    const Touch first = firstTouch(start + 4s);
    mode.startIfIdle(start + 30s);
    EXPECT_EQ(mode.untilStart(start + 30s), 20s);
    const Touch second = firstTouch(start + 50s);
    EXPECT_EQ(second.action, TouchAction::down);
    EXPECT_NE(second.x, first.x);
}

TEST(AttractMode, LiftsTheFingerOnlyIfItIsDown) {
    for (const auto& [frames, lifts] : {std::pair{0, 0}, {1, 1}, {110, 1}, {111, 0}, {200, 0}}) {
        AttractMode mode(start);
        mode.startIfIdle(start + 4s);
        for (int frame = 0; frame < frames; ++frame) {
            mode.next({100, 200});
        }
        EXPECT_EQ(mode.stop().size(), static_cast<std::size_t>(lifts)) << frames;
        EXPECT_FALSE(mode.isRunning());
    }
}

TEST(IdleWatch, WithoutInkIdleWaterIsEnough) {
    app::IdleWatch watch;
    const auto noDigest = [] {
        return ADD_FAILURE() << "if there is no ink, idle detection must not read the screen",
               std::uint64_t{0};
    };
    watch.noteFrame(false, noDigest);
    EXPECT_FALSE(watch.isIdle());
    watch.noteFrame(true, noDigest);
    EXPECT_TRUE(watch.isIdle());
    watch.noteChange();
    EXPECT_FALSE(watch.isIdle());
}

TEST(IdleWatch, WithInkTwoFramesMustBeEqual) {
    app::IdleWatch watch;
    watch.noteTouch();
    std::uint64_t digest = 1;
    for (int frame = 1; frame <= 90; ++frame) {
        watch.noteFrame(true, [&] { return digest++; });  // the ink fades
    }
    EXPECT_FALSE(watch.isIdle());
    EXPECT_EQ(digest, 3u) << "idle detection must read the screen exactly twice in 90 frames";
    for (int frame = 1; frame <= 30; ++frame) {
        watch.noteFrame(true, [&] { return std::uint64_t{2}; });
    }
    EXPECT_TRUE(watch.isIdle());
    EXPECT_TRUE(watch.mayShowInk())
        << "mayShowInk must stay true, because faded ink can leave a visible residue";
    watch.start();
    EXPECT_FALSE(watch.mayShowInk());
}

TEST(Finger, ReportsOneMoveAFrameAndIsUpOutsideTheScreen) {
    app::Finger finger;
    const app::Size screen{100, 200};
    finger.move(5, 5, 0.5f, screen);
    EXPECT_FALSE(finger.hasActions()) << "a move without a down event must be ignored";
    finger.press(10, 20, 0.5f);
    finger.press(90, 90, 0.5f);
    finger.move(11, 20, 0.5f, screen);
    finger.move(12, 20, 0.25f, screen);
    finger.move(100, 20, 0.5f, screen);
    finger.move(110, 20, 0.5f, screen);
    EXPECT_TRUE(finger.isHeld() && !finger.isPressed());
    finger.move(50, 20, 0.5f, screen);
    finger.move(50, -1, 0.5f, screen);
    finger.end(TouchAction::cancel, 50, -1);
    finger.move(50, 20, 0.5f, screen);
    const std::vector<hostkit::ScriptAction> expected = {
        Touch{TouchAction::down, 10, 20, 0.5f}, Touch{TouchAction::move, 12, 20, 0.25f},
        Touch{TouchAction::up, 100, 20, 0}, Touch{TouchAction::down, 50, 20, 0.5f},
        Touch{TouchAction::up, 50, -1, 0}};
    EXPECT_EQ(finger.takeActions(), expected);
    EXPECT_FALSE(finger.isHeld() || finger.isPressed() || finger.hasActions());
}

}  // namespace
