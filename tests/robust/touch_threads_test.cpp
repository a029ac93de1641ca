#include <gtest/gtest.h>

#include <atomic>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <thread>

#include "tests/robust/stage.h"

// A touch thread beside the render thread: a frame sees each event wholly or not at all.

namespace robust {
namespace {

/// Events whose fields belong together: both coordinates are the number of a column, and so is the
/// pressure. A radius, a point and a start of a stroke that do not agree come from two events.
constexpr int firstPlace = 90, places = 499;
/// As many touches at most come in a frame's time, so that each frame has some beside it.
constexpr int eventsPerFrame = 10;
constexpr float pressureOf(int place) {
    return static_cast<float>(place) / 100.0f;
}

/// What a frame tells of the event it saw.
struct Stroke {
    std::string current, previous, radius;
    int deposits = 0;
};

std::string between(const std::string& line, const std::string& start) {
    return line.substr(start.size(), line.size() - start.size() - 1);
}

Stroke strokeOfFrame(Stage& stage) {
    Stroke stroke;
    hostkit::GlRecorder& recorder = hostkit::glRecorder();
    recorder.calls.clear();
    recorder.recording = true;
    stage.draw();
    recorder.recording = false;
    for (const std::string& line : recorder.lines()) {
        for (auto [start, field] : {std::pair{"glUniform2f(impulse.current, ", &stroke.current},
                                    {"glUniform2f(impulse.previous, ", &stroke.previous},
                                    {"glUniform1f(impulse.Radius, ", &stroke.radius}}) {
            if (line.starts_with(start)) {
                *field = between(line, start);
                stroke.deposits += field == &stroke.current;
            }
        }
    }
    return stroke;
}

TEST(TouchThread, AFrameSeesAnEventWhollyOrNotAtAll) {
    constexpr int events = 10000;
    Stage stage(720, 720);
    stage.setUp();
    glScissor(0, 0, 1, 1);
    // Every point of a stroke, y up, and the radius that a slow drag there has.
    std::set<std::string> points;
    std::map<std::string, std::string> radiusAt;
    for (int place = firstPlace; place < firstPlace + places; ++place) {
        const std::string point = std::to_string(place) + ", " + std::to_string(720 - place);
        points.insert(point);
    }
    stage.touch(firstPlace, firstPlace, Down, pressureOf(firstPlace));
    for (const int place :
         {firstPlace + 2, firstPlace + 3}) {  // the first drags, the second is measured
        stage.touch(place, place, Move, pressureOf(place));
    }
    std::atomic<bool> isDone = false;
    std::atomic<int> frames = 0;
    std::thread touches([&] {
        int place = firstPlace + 3;
        for (int event = 0; event < events; ++event) {
            place = firstPlace + (place - firstPlace + 1) % places;  // one pixel on: a slow drag
            stage.touch(place, place, Move, pressureOf(place));
            while (event > frames * eventsPerFrame) {
                std::this_thread::yield();
            }
        }
        isDone = true;
    });
    std::string last;
    std::set<std::string> seen;
    while (!isDone) {
        const Stroke stroke = strokeOfFrame(stage);
        ++frames;
        EXPECT_EQ(stroke.deposits, 1);
        EXPECT_TRUE(points.contains(stroke.current)) << stroke.current << ": two events";
        EXPECT_TRUE(points.contains(stroke.previous)) << stroke.previous << ": two events";
        if (!last.empty()) {
            EXPECT_EQ(stroke.previous, last) << "a stroke starts where the last one ended";
        }
        last = stroke.current;
        // The same point always comes with the same pressure, so with the same radius; the one jump
        // back to the first place makes a fast drag, whose radius is fixed.
        const std::string known = radiusAt.try_emplace(stroke.current, stroke.radius).first->second;
        if (stroke.radius != "30") {
            EXPECT_TRUE(known == stroke.radius || known == "30")
                << "at " << stroke.current << " " << stroke.radius << " and " << known;
            radiusAt[stroke.current] = stroke.radius;
        }
        seen.insert(stroke.current);
    }
    touches.join();
    EXPECT_GT(frames, 500);
    EXPECT_GT(seen.size(), 20u);
    std::cout << events << " events, " << frames << " frames, " << seen.size() << " places\n";
}

TEST(TouchThread, ClearingAndAskingFromAnotherThread) {
    Stage stage(240, 240);
    stage.setUp();
    glScissor(0, 0, 16, 16);
    std::atomic<bool> isDone = false;
    std::atomic<int> frames = 0;
    std::thread other([&] {
        for (int call = 0; call < 3000; ++call) {
            while (call > frames * eventsPerFrame) {
                std::this_thread::yield();
            }
            if (call % 3 == 0) {
                stage.clear();
            } else {
                stage.touch(100 + call % 40, 100 + call % 30, call % 7 == 0 ? Down : Move);
            }
            const jint shown = stage.native().getClearInkValue(stage.env, nullptr);
            EXPECT_EQ(shown, call % 3 == 0 ? 0 : 1) << "no other thread touches or clears";
        }
        isDone = true;
    });
    for (; !isDone; ++frames) {
        stage.draw();
    }
    other.join();
    EXPECT_GT(frames, 100);
    stage.clear();
    stage.draw();
    EXPECT_EQ(strokeOfFrame(stage).deposits, 0);
    EXPECT_EQ(stage.pixelOfFrame(5), background);
}

}  // namespace
}  // namespace robust
