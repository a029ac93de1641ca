#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>

#include "tests/robust/stage.h"
#include "tests/robust/worker_interposer.h"

// Tests native calls that a host makes while the solver worker runs. Also tests the library on a system that cannot
// create threads.

namespace robust {
namespace {

constexpr Moment moments[] = {Moment::start, Moment::firstJitter, Moment::secondJitter,
                              Moment::end};

/// A host that has drawn a frame. The solver worker of this frame has stopped at a chosen moment.
struct HeldStep {
    explicit HeldStep(Moment moment) {
        stage.setUp();
        stage.rasterise(1);
        stage.tap(Down);
        stage.draw();
        nextHold = moment;
        stage.draw();
        waitUntilHeld();
        joined = threadsJoined;
    }
    Stage stage;
    int joined = 0;
};

TEST(Worker, IsJoinedBeforeItsDataIsFreed) {
    const struct {
        const char* name;
        std::function<void(Stage&)> act;
    } actions[] = {
        {"settings", [](Stage& s) { s.setting(); }},
        {"water-only settings", [](Stage& s) { s.setting(false); }},
        {"buffers", [](Stage& s) { s.initBuffers(); }},
        {"resources", [](Stage& s) { s.initGpu(); }},
        {"lost context",
         [](Stage& s) {
             s.newContext();
             s.initBuffers();
         }},
        {"frame", [](Stage& s) { s.draw(); }},
        {"unload", [](Stage& s) { s.loaded.unload(); }},
    };
    for (const auto& [name, act] : actions) {
        for (const Moment moment : moments) {
            SCOPED_TRACE(std::string(name) + " at moment " +
                         std::to_string(static_cast<int>(moment)));
            HeldStep step(moment);
            act(step.stage);
            EXPECT_EQ(threadsJoined, step.joined + 1);
            EXPECT_FALSE(isHeld());
            release();
        }
    }
    EXPECT_FALSE(LoadedLibrary::isLoaded());
    EXPECT_EQ(threadsStarted, threadsJoined);
}

TEST(Worker, DoesNotDelayTouchesOrFrames) {
    for (const Moment moment : moments) {
        HeldStep step(moment);
        Stage& s = step.stage;
        s.touch(80, s.height - 70, Move);
        s.clear();
        EXPECT_EQ(s.shownInk(), 0);
        EXPECT_EQ(s.load(background, 1), 0);
        EXPECT_TRUE(isHeld());
        EXPECT_EQ(threadsJoined, step.joined);
        release();
    }
    EXPECT_EQ(threadsStarted, threadsJoined);
}

/// Returns the GL calls and uploads of three frames. If `isBefore` is true, `act` runs before the first of these
/// frames. Otherwise, it runs while the first frame waits for its worker.
std::string framesAround(bool isBefore, const std::function<void(Stage&)>& act) {
    Stage stage;
    stage.setUp();
    stage.rasterise(1);
    std::srand(7);
    stage.tap(Down);
    stage.draw(3);
    if (isBefore) {
        act(stage);
    } else {
        whileJoining = [&] { act(stage); };
    }
    std::string seen = hostkit::glRecorder().record([&] { stage.draw(3); });
    for (const hostkit::GlCall& call : hostkit::glRecorder().calls) {
        seen.append(call.bytes.begin(), call.bytes.end());
    }
    return seen;
}

TEST(Worker, EventsDuringTheWaitReachThatFrameAndItsWorker) {
    const std::function<void(Stage&)> acts[] = {
        [](Stage& s) { s.touch(90, s.height - 110, Move); },
        [](Stage& s) { s.touch(90, s.height - 110, Cancel); },
        [](Stage& s) { s.clear(); },
    };
    for (const auto& act : acts) {
        EXPECT_TRUE(framesAround(false, act) == framesAround(true, act));
    }
}

// A host can conclude from a frame's first glBindTexture call that the solver step has finished.
TEST(Worker, IsJoinedBeforeAFrameBindsItsFirstTexture) {
    Stage stage;
    stage.setUp();
    stage.draw();
    const int started = threadsStarted;
    int joinedAtBind = -1;
    hostkit::glRecorder().inside = [&](const std::string& function) {
        if (function == "glBindTexture" && joinedAtBind < 0) {
            joinedAtBind = threadsJoined;
        }
    };
    stage.draw();
    EXPECT_EQ(joinedAtBind, started);
}

TEST(Worker, IfNoThreadCanBeCreatedTheWaterIsStillDrawn) {
    Stage stage;
    stage.setUp();
    Uploads uploads;
    stage.tap(Down);
    const int started = threadsStarted, joined = threadsJoined;
    threadsToRefuse = 5;
    for (int frame = 0; frame < 5; ++frame) {
        EXPECT_EQ(stage.pixelOfFrame(5), background);
    }
    EXPECT_NE(stage.pixelOfFrame(70), background) << "the frame must show the ink of the tap";
    EXPECT_EQ(threadsStarted, started + 1);
    EXPECT_EQ(threadsJoined, joined);
    EXPECT_TRUE(uploads.isStill());
    stage.tap(Down);
    stage.draw(4);
    EXPECT_FALSE(uploads.isStill());
    // The next pthread_create call fails; the calls before and after it succeed. The library must still join every
    // thread that it has started.
    threadsToRefuse = 1;
    stage.draw();
    stage.initGpu();
    stage.draw();
    stage.loaded.unload();
    EXPECT_EQ(threadsStarted, threadsJoined);
}

}  // namespace
}  // namespace robust
