// Tests a session on an off-screen GL context. The tests call the session as a front end does.

#include "app/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "hostkit/gl_context.h"
#include "hostkit/host_error.h"
#include "hostkit/screen.h"

namespace {

using namespace std::chrono_literals;
using hostkit::GestureScript;
using hostkit::Touch;
using hostkit::TouchAction;
using Pixels = std::vector<std::uint8_t>;

constexpr app::Size screen{96, 160};
constexpr app::Clock::time_point start{1h};

class SessionTest : public testing::Test {
protected:
    SessionTest() {
        session.setBackgrounds({hostkit::makeTestImage(96, 160), hostkit::makeReflectionMap(160)});
        session.restart(screen);
    }

    app::FrontEnd frontEnd() {
        app::FrontEnd functions;
        functions.renewContext = [this] {
            context.reset();
            if (contextFails) {
                throw hostkit::HostError("no GL context");
            }
            context.emplace(160, 160);
        };
        functions.cover = [](const hostkit::Image& picture, app::Size) { return picture; };
        functions.draw = [this](hostkit::EffectHost& host) {
            if (draws) {
                host.draw();
            }
            drawnInk = host.effectSettings().ink;
        };
        functions.onReplayEnd = [this](bool finished) { replayEnds.push_back(finished); };
        functions.onRecorded = [this](const hostkit::ScriptEvent&) { ++events; };
        functions.onRecordingEnd = [this](const GestureScript& script) { recorded = script; };
        return functions;
    }

    void frames(int count) {
        for (int frame = 0; frame < count; ++frame) {
            session.frame(app::frameTime);
        }
    }
    void drag(double x = 20, double step = 6) {
        session.press(start, x, 40, 1.0f);
        for (int move = 0; move < 8; ++move) {
            frames(1);
            session.move(start, x + step * move, 40 + 8 * move, 1.0f);
        }
        frames(1);
        session.lift(start, TouchAction::up, x + 7 * step, 96);
        frames(1);
    }
    Pixels screenPixels() const { return hostkit::readScreen(screen.width, screen.height); }

    std::optional<hostkit::GlContext> context{std::in_place, 160, 160};
    std::optional<GestureScript> recorded;
    std::vector<bool> replayEnds;
    std::size_t events = 0;
    hostkit::InkColor drawnInk{};
    bool draws = true;
    bool contextFails = false;
    app::Session session{frontEnd(), start};
};

TEST_F(SessionTest, AReplayDrawsTheSamePixelsAsTheRecording) {
    drag(90, -12);  // an earlier gesture must not affect the recording
    session.settings.ink = {1.0f, 0.4f, 0.4f};
    session.startRecording();
    drag();
    session.settings.ink = {0.4f, 1.0f, 0.4f};
    session.add(hostkit::LoseContext{});
    drag();
    const Pixels last = screenPixels();
    session.finishRecording();
    ASSERT_TRUE(recorded);
    EXPECT_EQ(events, recorded->events.size());
    EXPECT_EQ(recorded->frames, 21);

    session.settings.ink = {0.4f, 0.4f, 1.0f};
    session.startReplay(*recorded);
    session.press(start, 5, 5, 1.0f);  // touches are ignored during a replay
    frames(20);
    EXPECT_TRUE(session.isReplaying());
    frames(1);
    EXPECT_FALSE(session.isReplaying());
    EXPECT_EQ(screenPixels(), last);
    EXPECT_EQ(session.settings.ink, (std::array{0.4f, 1.0f, 0.4f}));
    EXPECT_EQ(session.userSettings().ink, (std::array{0.4f, 0.4f, 1.0f}));
}

TEST_F(SessionTest, ARecordingOnASlowMachineKeepsItsTime) {
    draws = false;
    app::Clock::time_point now = start;
    session.startRecording();
    session.takeDueFrames(now);
    for (int frame = 0; frame < 10; ++frame) {  // 10 frames per second
        now += 100ms;
        const auto due = session.takeDueFrames(now);
        ASSERT_EQ(due.frames, 1);
        if (frame == 5) {
            session.press(now, 20, 40, 1.0f);
        }
        session.frame(due.elapsed);
    }
    session.finishRecording();
    EXPECT_NEAR(recorded->frames, 60, 1);
    EXPECT_NEAR(recorded->events.back().frame, 30, 1);
    session.startReplay(*recorded);
    session.takeDueFrames(now);
    EXPECT_EQ(session.takeDueFrames(now + 100ms).elapsed, app::frameTime)
        << "each frame of a replay must last one frame time";
}

TEST_F(SessionTest, ANewSizeEndsARecordingAndScalesAReplay) {
    session.startRecording();
    session.restart({48, 80});
    EXPECT_FALSE(session.isRecording());
    EXPECT_EQ(recorded->screenWidth, 96);

    GestureScript script{96, 160, 3, {{1, Touch{TouchAction::down, 24, 20, 1.0f}}}};
    session.startReplay(script);
    session.frame(0ns);
    session.restart(screen);
    session.frame(0ns);
    const auto heights = hostkit::JniEnvironment::elements(session.water().height);
    const int columns = session.water().columns;
    const auto highest = std::ranges::max_element(heights) - heights.begin();
    EXPECT_NEAR(static_cast<double>(highest % columns) / columns, 0.25, 0.03);
    EXPECT_TRUE(session.isReplaying());
}

TEST_F(SessionTest, AResizeKeepsTheWaves) {
    session.press(start, 24, 40, 1.0f);
    frames(1);
    session.resize({160, 96});
    EXPECT_FALSE(session.isWaterIdle());
    const auto heights = hostkit::JniEnvironment::elements(session.water().height);
    const int columns = session.water().columns;
    const auto highest = std::ranges::max_element(heights) - heights.begin();
    EXPECT_GT(heights[static_cast<std::size_t>(highest)], 0.1f);
    EXPECT_NEAR(static_cast<double>(highest % columns) / columns, 0.25, 0.03);
    session.restart(screen);
    EXPECT_TRUE(session.isWaterIdle()) << "a restart must begin with flat water";
}

TEST_F(SessionTest, EveryReplayReportsItsEndOnce) {
    const GestureScript script{96, 160, 3, {{0, Touch{TouchAction::down, 24, 20, 1.0f}}}};
    session.startReplay(script);
    frames(3);
    EXPECT_EQ(replayEnds, (std::vector{true}));
    session.startReplay(script);
    session.startReplay(script);
    EXPECT_EQ(replayEnds, (std::vector{true, false})) << "the second replay must stop the first";
    frames(1);
    session.stopReplay();
    session.stopReplay();
    EXPECT_EQ(replayEnds, (std::vector{true, false, false}));
    EXPECT_TRUE(session.hasActions()) << "the finger of the stopped script must be lifted";
    session.startReplay(script);
    session.startRecording();
    EXPECT_EQ(replayEnds.size(), 4U);
}

TEST_F(SessionTest, IsIdleOnlyIfNothingMoves) {
    EXPECT_FALSE(session.isIdle()) << "the session must not be idle before the first frame";
    frames(1);
    EXPECT_TRUE(session.isIdle());
    session.settings.exponent = 5.0f;
    EXPECT_FALSE(session.isIdle());
    frames(1);
    EXPECT_TRUE(session.isIdle());
    session.settings.rain = 0.01f;
    frames(2);
    EXPECT_FALSE(session.isIdle()) << "the session must not be idle under rain";
    session.settings.rain = 0.0f;
    session.settings.ripple = 0.0f;
    session.press(start, 20, 40, 1.0f);
    frames(2);
    EXPECT_FALSE(session.isIdle()) << "the session must not be idle while a finger is down";
    session.lift(start, TouchAction::up, 20, 40);
    frames(2);
    EXPECT_TRUE(session.mayShowInk() && !session.isIdle())
        << "the session must not be idle while the ink fades";
    session.add(hostkit::ClearInk{});
    frames(1);
    EXPECT_TRUE(session.isIdle() && !session.mayShowInk());
}

TEST_F(SessionTest, AttractModeDrawsForAnIdleUserAndKeepsTheSettings) {
    const app::Settings before = session.settings;
    session.startAttractModeIfIdle(start + 5s, true);
    EXPECT_FALSE(session.attractMode().isRunning())
        << "attract mode must not run while the front end is busy";
    session.startRecording();
    session.startAttractModeIfIdle(start + 1h, false);
    EXPECT_FALSE(session.attractMode().isRunning())
        << "attract mode must not run during a recording";
    session.finishRecording();
    session.startAttractModeIfIdle(start + 1h + 5s, false);
    ASSERT_TRUE(session.attractMode().isRunning());
    frames(1);
    const Pixels first = screenPixels();
    frames(20);
    EXPECT_NE(screenPixels(), first);
    EXPECT_TRUE(session.settings == before);
    session.noteInput(start + 1h + 6s);
    EXPECT_FALSE(session.attractMode().isRunning());
    EXPECT_TRUE(session.hasActions()) << "the finger of attract mode must be lifted";
}

TEST_F(SessionTest, AttractModeWaitsFromTheEndOfAStroke) {
    session.press(start, 20, 40, 1.0f);
    session.move(start + 10s, 30, 40, 1.0f);
    session.lift(start + 19s, TouchAction::up, 30, 40);
    session.move(start + 30s, 30, 40, 1.0f);  // no effect: the finger is up
    session.startAttractModeIfIdle(start + 38s, false);
    EXPECT_FALSE(session.attractMode().isRunning());
    session.startAttractModeIfIdle(start + 39s, false);
    EXPECT_TRUE(session.attractMode().isRunning());
    session.press(start + 40s, 20, 40, 1.0f);
    EXPECT_EQ(session.attractMode().untilStart(start + 40s), 20s)
        << "a press must end attract mode";
}

TEST_F(SessionTest, AReplayAndAPressedFingerHoldAttractModeBack) {
    const auto startsAt = [this](app::Clock::time_point now) {
        session.startAttractModeIfIdle(now, false);
        return session.attractMode().isRunning();
    };
    session.press(start, 20, 40, 1.0f);
    EXPECT_FALSE(startsAt(start + 1h));
    session.startReplay({96, 160, 1, {}});
    EXPECT_FALSE(startsAt(start + 2h));
    frames(1);
    EXPECT_FALSE(startsAt(start + 2h + 19s))
        << "the wait for attract mode must start at the end of the replay";
    EXPECT_TRUE(startsAt(start + 2h + 20s));
}

TEST_F(SessionTest, AttractModeUsesTheNewInkOfTheUser) {
    draws = false;
    session.startAttractModeIfIdle(start + 5s, false);
    frames(301);  // until the second stroke, which has another ink
    EXPECT_NE(drawnInk, hostkit::EffectSettings{}.ink);
    session.settings.ink = {1.0f, 0.5f, 0.25f};
    draws = true;
    frames(1);
    EXPECT_EQ(drawnInk, (hostkit::InkColor{1.0f, 0.5f, 0.25f}));
    session.startRecording();  // the library forgets the stroke
}

TEST_F(SessionTest, WaterOnlyRestartsWithoutInkAndSearchesTheQuality) {
    drag();
    EXPECT_FALSE(session.willRestart() || session.hasPendingChanges());
    session.quality.phase = app::QualityPhase::watching;
    session.quality.level = 2;
    session.settings.waterOnly = true;
    EXPECT_TRUE(session.willRestart() && session.hasPendingChanges());
    frames(1);
    EXPECT_FALSE(session.willRestart() || session.hasPendingChanges());
    EXPECT_EQ(session.quality.phase, app::QualityPhase::searching);
    EXPECT_EQ(session.quality.level, 0);
    session.quality = app::fixedQuality(0);
    EXPECT_TRUE(session.isIdle());
    EXPECT_FALSE(session.mayShowInk());
}

TEST_F(SessionTest, ALostContextIsReplacedAndRecorded) {
    session.startRecording();
    frames(1);
    const Pixels before = screenPixels();
    context.reset();
    context.emplace(160, 160);
    session.regainContext();
    frames(1);
    EXPECT_EQ(screenPixels(), before);
    session.finishRecording();
    EXPECT_TRUE(std::holds_alternative<hostkit::LoseContext>(recorded->events.back().action));
}

TEST_F(SessionTest, AFrameTriesAFailedStartAgain) {
    frames(1);
    const Pixels before = screenPixels();
    contextFails = true;
    EXPECT_THROW(session.restart(screen), hostkit::HostError);
    session.regainContext();
    EXPECT_FALSE(session.isIdle() || session.isWaterIdle());
    EXPECT_TRUE(session.willRestart());
    EXPECT_THROW(frames(1), hostkit::HostError);
    contextFails = false;
    frames(1);
    EXPECT_EQ(screenPixels(), before);
}

TEST_F(SessionTest, ThePreviousBackgroundBecomesTheSecond) {
    frames(1);
    const Pixels first = screenPixels();
    session.showBackground(hostkit::makeReflectionMap(160));
    frames(1);
    EXPECT_NE(screenPixels(), first);
    session.settings.secondBackground = true;
    frames(1);
    EXPECT_EQ(screenPixels(), first);
    EXPECT_FALSE(session.userSettings().secondBackground)
        << "a start must show the first background";
}

TEST_F(SessionTest, ACrossFadePassesHalfwayBetweenTheBackgrounds) {
    frames(1);
    const Pixels first = screenPixels();
    session.fadeTo(hostkit::makeTestImage(96, 160));
    EXPECT_TRUE(session.isIdle()) << "a fade to the same image must not draw frames";
    const hostkit::Image grey{96, 160, Pixels(std::size_t{96} * 160 * 4, 200)};
    session.fadeTo(grey);
    EXPECT_FALSE(session.isIdle());
    session.frame(1s);
    const Pixels halfway = screenPixels();
    session.regainContext();
    session.frame(1s);
    EXPECT_TRUE(session.isIdle());
    const Pixels last = screenPixels();
    for (std::size_t at = 0; at < first.size(); ++at) {
        if (at % 4 != 3) {
            ASSERT_NEAR(halfway[at], (first[at] + 200) / 2.0, 1.5) << at;
            ASSERT_EQ(last[at], 200) << at;
        }
    }
    session.fadeTo(hostkit::makeTestImage(96, 160));
    session.frame(1s);
    session.restart(screen);
    frames(1);
    EXPECT_EQ(screenPixels(), first) << "a restart must end the fade";
}

TEST_F(SessionTest, QualityPassesOverRecordingsAndReplays) {
    const auto counts = [this] {
        session.quality = app::searchingQuality();
        session.noteInterval(300.0);
        return session.quality.framesToSkip < app::searchingQuality().framesToSkip;
    };
    EXPECT_TRUE(counts());
    session.startRecording();
    EXPECT_FALSE(counts());
    session.startReplay({96, 160, 1, {}});
    EXPECT_FALSE(counts());
}

TEST_F(SessionTest, ATouchEndsTheSearchForTheQuality) {
    session.quality = app::searchingQuality();
    session.press(start, 20, 40, 1.0f);
    frames(1);
    EXPECT_EQ(session.quality.phase, app::QualityPhase::watching);
}

TEST_F(SessionTest, SkippedTimeBeginsANewSpanOfIntervals) {
    session.quality = app::searchingQuality();
    for (int interval = 0; interval < 3; ++interval) {
        session.noteInterval(16.0);
    }
    EXPECT_EQ(session.quality.spanLength, 1U);
    session.skipTime();
    EXPECT_EQ(session.quality.spanLength, 0U);
}

TEST_F(SessionTest, LowerQualityDrawsACoarserMeshOfTheSameWater) {
    session.settings.meshDetail = 60;
    frames(1);
    EXPECT_EQ(session.water().columns, 60);
    EXPECT_EQ(session.verticesPerCell(), 1.0f);
    const int vertices = session.water().numDetailsWidth;
    const int columns = session.water().columns;
    session.quality = app::fixedQuality(1);
    frames(1);
    EXPECT_LT(session.water().numDetailsWidth, vertices * 2 / 3);
    EXPECT_EQ(session.verticesPerCell(), 0.5f);
    EXPECT_EQ(session.water().columns, columns);
}

}  // namespace
