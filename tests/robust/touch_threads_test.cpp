#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <jni.h>

#include <atomic>
#include <cmath>
#include <iostream>
#include <set>
#include <string>
#include <thread>

#include "tests/robust/stage.h"

// Sends touches on a second thread while the test's main thread draws frames. A frame must see an event completely or
// not at all.

namespace robust {
namespace {

/// Maximum number of touches per frame. The limit spreads the touches over many frames.
constexpr int eventsPerFrame = 10;

/// Calls `act` on a second thread with the numbers 0 to `count` - 1. Meanwhile, the calling thread calls `frame`
/// repeatedly. Returns the number of calls of `frame`.
template <class Act, class Frame>
int beside(int count, Act act, Frame frame) {
    std::atomic<bool> isDone = false;
    std::atomic<int> frames = 0;
    std::thread other([&] {
        for (int event = 0; event < count; ++event) {
            act(event);
            while (event > frames * eventsPerFrame) {
                std::this_thread::yield();
            }
        }
        isDone = true;
    });
    for (; !isDone; ++frames) {
        frame();
    }
    other.join();
    return frames;
}

/// A place is a number from which the coordinates and the pressure of an event are computed. The coordinates determine
/// the points of a stroke, and the pressure determines its radius. If they belong to different places, the frame mixed
/// two events.
constexpr int side = 720, firstPlace = 90, places = 499;

float pressureAt(int place) {
    return static_cast<float>(place) / 100.0f;
}
std::string pointAt(int place) {
    return std::to_string(place) + ", " + std::to_string(side - place);
}

TEST(TouchThread, AFrameSeesAnEventCompletelyOrNotAtAll) {
    Stage stage(side, side);
    stage.setUp();
    stage.rasterise(1);
    const auto touch = [&stage](int place, jint action) {
        stage.touch(place, place, action, pressureAt(place));
    };
    touch(firstPlace, Down);
    touch(firstPlace + 2, Move);  // starts a drag
    touch(firstPlace + 3, Move);  // sets the drag's speed class
    std::string last = pointAt(firstPlace);
    std::set<std::string> seen;
    const auto nextEvent = [&touch](int event) {  // moves by one pixel, as a slow drag
        touch(firstPlace + (event + 4) % places, Move);
    };
    const int frames = beside(10000, nextEvent, [&] {
        auto uniforms = stage.uniformsOfFrame();
        const std::string current = uniforms["impulse.current"];
        const int place = std::stoi(current);
        EXPECT_EQ(hostkit::glRecorder().count("glDrawArrays"), 4 + 1)
            << "a frame must draw four advection quads and one stroke";
        EXPECT_EQ(current, pointAt(place)) << "a stroke must not mix two events";
        EXPECT_EQ(uniforms["impulse.previous"], last)
            << "a stroke must start where the previous stroke ended";
        // The jump back to the first place counts as a fast drag, which always has radius 30.
        const float radius = std::stof(uniforms["impulse.Radius"]);
        const float ofPressure = 40 * (0.2f + pressureAt(place) * pressureAt(place));
        EXPECT_TRUE(radius == 30 || std::abs(radius - ofPressure) < 0.01f) << radius << current;
        last = current;
        seen.insert(current);
    });
    EXPECT_GT(frames, 500);
    EXPECT_GT(seen.size(), 20u);
    std::cout << frames << " frames, " << seen.size() << " places\n";
}

TEST(TouchThread, ClearAndQueryCallsRunDuringFrames) {
    Stage stage(240, 240);
    stage.setUp();
    stage.rasterise(16);
    const auto clearOrTouch = [&stage](int call) {
        if (call % 3 == 0) {
            stage.clear();
        } else {
            stage.touch(100 + call % 40, 100 + call % 30, call % 7 == 0 ? Down : Move);
        }
        EXPECT_EQ(stage.shownInk(), call % 3 == 0 ? 0 : 1)
            << "a frame on the drawing thread must not change whether ink is shown";
    };
    EXPECT_GT(beside(3000, clearOrTouch, [&stage] { stage.draw(); }), 100);
    stage.clear();
    stage.draw();
    EXPECT_FALSE(stage.uniformsOfFrame().contains("impulse.mode"));
    EXPECT_EQ(stage.pixelOfFrame(5), background);
}

}  // namespace
}  // namespace robust
