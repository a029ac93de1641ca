#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <ostream>
#include <random>
#include <thread>

#include "scene.h"

// What each frame of a gesture hands to the ink, seen in the uniforms of its passes.

namespace gltest {
namespace {

namespace native = hostkit::native;

constexpr int screenWidth = 540;
constexpr int screenHeight = 960;
constexpr int clearInk = 100;  // beside the action codes
constexpr int noInk = -2;      // beside the stroke modes

struct Point {
    int x, y;  // screen pixels, y down
};

std::string glPoint(Point p) {
    return std::to_string(p.x) + ", " + std::to_string(screenHeight - p.y);
}

/// A frame's stroke, whether ink shows, and what it leaves for the next frame's advection.
struct Row {
    int mode = noInk;
    float radius = 0, density = 0;
    Point from{}, to{};
    bool shown = true;
    int drag = 0;
    float step = 1, dissipation = 0.99f;

    std::string stroke() const {
        return mode == noInk ? "no ink"
                             : std::to_string(mode) + " radius " + text(radius) + " density " +
                                   text(density) + " from " + glPoint(from) + " to " + glPoint(to);
    }
    std::string left() const {
        return std::to_string(drag) + " step " + text(step) + " dissipation " + text(dissipation);
    }
};

using Rows = std::vector<Row>;

/// Frames first to last of a tap, the press frame counter being n, after a movement by delta.
Rows tap(int first, int last, Point at, Point delta = {0, 0}) {
    Rows rows;
    for (int n = first; n <= last; ++n) {
        Row row{.drag = -1};
        if (n < 10) {
            const auto f = static_cast<float>(n);
            row = {-1, 8 * f, 200, {at.x - delta.x, at.y - delta.y}, at, true, -1, f * 0.1f, 0.99f};
        }
        rows.push_back(row);
    }
    return rows;
}

Rows slow(Point from, Point to, float radius) {
    return {{0, radius, 100, from, to, true, 0}};
}
Rows medium(Point from, Point to) {
    return {{1, 25, 150, from, to, true, 1}};
}
Rows fast(Point from, Point to) {
    return {{2, 30, 40, from, to, true, 2}};
}
Rows rest(int frames, int drag, float dissipation = 0.99f, bool shown = true) {
    return {static_cast<std::size_t>(frames),
            {.shown = shown, .drag = drag, .dissipation = dissipation}};
}

template <class... More>
Rows operator+(Rows rows, const Rows& more) {
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

struct Event {
    std::size_t frame;  // comes before this frame
    int action;
    Point at{};
    float pressure = 1;
};

struct Gesture {
    const char* name;
    std::vector<Event> events;
    Rows rows;
};

std::string strokeOf(std::map<std::string, std::string>& uniforms) {
    return !uniforms.contains("impulse.mode")
               ? "no ink"
               : uniforms["impulse.mode"] + " radius " + uniforms["impulse.Radius"] + " density " +
                     uniforms["impulse.ImpulseDensity"] + " from " + uniforms["impulse.previous"] +
                     " to " + uniforms["impulse.current"];
}

std::string leftOf(std::map<std::string, std::string>& uniforms) {
    return uniforms["advect.drag"] + " step " + uniforms["advect.BackwardStepSize"] +
           " dissipation " + uniforms["advect.Dissipation"];
}

/// Plays the gesture after a whole tap and compares frame by frame; one frame more shows what the
/// last one left.
void expectGesture(Scene& scene, const Gesture& gesture) {
    SCOPED_TRACE(gesture.name);
    Point touch{};
    Row before{.drag = -1};
    auto event = gesture.events.begin();
    for (std::size_t frame = 0; frame <= gesture.rows.size(); ++frame) {
        SCOPED_TRACE("frame " + std::to_string(frame));
        for (; event != gesture.events.end() && event->frame == frame; ++event) {
            if (event->action == clearInk) {
                native::clearInkValue(scene.env, nullptr);
                before.drag = 0;
                before.dissipation = 0;
            } else {
                touch = event->at;
                scene.touch(touch.x, touch.y, event->action, event->pressure);
            }
        }
        auto uniforms = uniformsOf(scene.recordedFrame());
        EXPECT_EQ(uniforms["advect.center"], glPoint(touch));
        EXPECT_EQ(leftOf(uniforms), before.left());
        if (frame < gesture.rows.size()) {
            before = gesture.rows[frame];
            EXPECT_EQ(strokeOf(uniforms), before.stroke());
            EXPECT_EQ(uniforms["water.intensity"], before.shown ? text(0.02f) : "0");
            EXPECT_EQ(native::getClearInkValue(scene.env, nullptr), before.shown);
        }
    }
}

constexpr Point a{200, 300};

constexpr Point right(Point p, int pixels, int down = 0) {
    return {p.x + pixels, p.y + down};
}

constexpr Point b = right(a, 5), c = right(b, 5);

std::vector<Gesture> gestures() {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<Gesture> all = {
        {"a tap: 13 frames, then the fade at the 35th idle frame",
         {{0, Down, a}},
         tap(0, 12, a) + rest(33, -1) + rest(3, -1, 0.9625f)},
        {"a second tap starts again at 1",
         {{0, Down, a}, {4, Down, b}},
         tap(0, 3, a) + tap(1, 12, b)},
        {"a lifted finger leaves the tap alone",
         {{0, Down, a}, {3, Up, a}},
         tap(0, 12, a) + rest(2, -1)},
        {"a short drag ends as a tap",
         {{0, Down, a}, {0, Move, b}, {0, Move, c}, {9, Up, c}},
         medium(a, c) + Rows(8, medium(c, c)[0]) + tap(0, 12, c) + rest(2, -1)},
        {"a short drag with a last jump",
         {{0, Down, a}, {3, Move, b}, {3, Move, c}, {4, Up, right(c, 40, 9)}},
         tap(0, 2, a) + medium(a, c) + tap(3, 12, right(c, 40, 9), {40, 9}) + rest(1, -1)},
        {"a long drag ends at once",
         {{0, Down, a}, {0, Move, b}, {0, Move, c}, {10, Up, c}},
         medium(a, c) + Rows(9, medium(c, c)[0]) + rest(3, -1)},
        {"a held finger that trembles; then any move drags",
         {{0, Down, a},
          {2, Move, right(a, 2)},
          {15, Move, right(a, 2)},
          {15, Move, right(a, 3)},
          {17, Up, a}},
         tap(0, 1, a) + tap(2, 14, right(a, 2), {2, 0}) + slow(a, right(a, 3), 48) +
             slow(right(a, 3), right(a, 3), 48) + rest(2, -1)},
        {"moves after the press ended are not seen",
         {{0, Down, a}, {14, Move, b}, {15, Move, right(c, 90)}, {16, Up, c}, {17, 7, b}},
         tap(0, 12, a) + rest(6, -1)},
        {"cancel in a drag hides the ink until the next event",
         {{0, Down, a}, {0, Move, b}, {0, Move, c}, {2, Cancel, c}, {4, Up, c}},
         medium(a, c) + medium(c, c) + rest(2, 1, 0.99f, false) + rest(2, 1)},
        {"cancel in a press sets its counter back",
         {{0, Down, a}, {5, Cancel, a}, {7, Down, b}},
         tap(0, 4, a) + rest(2, -1, 0.99f, false) + tap(0, 12, b)},
        {"clear empties, hides and ends the press",
         {{0, Down, a}, {5, clearInk}, {7, Down, b}},
         tap(0, 4, a) + rest(2, 0, 0, false) + tap(0, 3, b)},
        {"an unknown action in a drag is measured, in a press it is not",
         {{0, Down, a}, {1, 9, right(a, 50)}, {2, Move, right(a, 54)}, {2, 9, right(a, 74)}},
         tap(0, 0, a) + tap(1, 1, right(a, 50)) + fast(a, right(a, 74))},
    };
    const struct {
        const char* name;
        Point move;
        float pressure;
        Rows row;
    } speeds[] = {
        {"2 pixels", {2, 0}, 1, slow(a, right(b, 2), 48)},
        {"2 pixels without pressure", {0, 2}, 0, slow(a, right(b, 0, 2), 0)},
        {"half pressure",
         {0, 0},
         0.5f,
         slow(a, b, 40 * static_cast<float>(static_cast<double>(0.2f) + 0.25))},
        {"no pressure at all", {0, 0}, nan, slow(a, b, 0)},
        {"negative pressure", {0, 0}, -3, slow(a, b, 0)},
        {"3 pixels", {0, -3}, 1, medium(a, right(b, 0, -3))},
        {"10 pixels, aslant", {-6, 8}, 1, medium(a, right(b, -6, 8))},
        {"11 pixels", {11, 0}, 1, fast(a, right(b, 11))},
        {"10.6 pixels, aslant", {-7, -8}, 0, fast(a, right(b, -7, -8))},
    };
    for (const auto& s : speeds) {
        const Point end = right(b, s.move.x, s.move.y);
        all.push_back({s.name, {{0, Down, a}, {0, Move, b}, {0, Move, end, s.pressure}}, s.row});
    }
    return all;
}

struct TouchTimeline : testing::Test {
    TouchTimeline() {
        scene.setUp();
        scene.rasteriseNothing();
    }
    /// A whole tap at (0, 0): so that no counter of an earlier gesture is left.
    void tapBefore() {
        for (const jint action : {Cancel, Down, Move, Up}) {
            scene.touch(0, 0, action);
        }
        for (int frame = 0; frame < 13; ++frame) {
            scene.draw();
        }
    }
    Scene scene{screenWidth, screenHeight, true};
};

TEST_F(TouchTimeline, EachFrameOfEachGesture) {
    for (const Gesture& gesture : gestures()) {
        tapBefore();
        expectGesture(scene, gesture);
    }
}

TEST_F(TouchTimeline, TheInkTakesTheColourOfTheFrameOfItsStroke) {
    const auto shown = [this] { return uniformsOf(scene.recordedFrame())["water.ink_color"]; };
    const std::string white = text(static_cast<float>(1.5 - static_cast<double>(0.001f) - 1));
    scene.arguments.inkRed = scene.arguments.inkGreen = scene.arguments.inkBlue = 0.95f;
    EXPECT_EQ(shown(), white + ", " + white + ", " + white);  // as set at the start
    scene.touch(200, 300, Down);
    EXPECT_EQ(shown(), white + ", " + white + ", " + white);  // 0.95 deposits 1
    scene.arguments.inkGreen = 0;
    const std::string dark = text(
        static_cast<float>((1.5 - static_cast<double>(0.001f)) / static_cast<double>(0.05f) - 1));
    EXPECT_EQ(shown(), white + ", " + dark + ", " + white);
    scene.touch(200, 300, Cancel);
    scene.arguments.inkGreen = 0.5f;
    EXPECT_EQ(shown(), white + ", " + dark + ", " + white);
}

TEST_F(TouchTimeline, NothingThatAHostSendsIsTooFarOrTooHard) {
    const int coordinates[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), -1,
                               0, 300};
    const float infinity = std::numeric_limits<float>::infinity();
    const float pressures[] = {infinity, -infinity, std::numeric_limits<float>::quiet_NaN(), 1e30f,
                               1};
    std::minstd_rand random(7);
    const auto any = [&](const auto& of) { return of[random() % std::size(of)]; };
    for (int call = 0; call < 400; ++call) {
        scene.touch(any(coordinates), any(coordinates), static_cast<jint>(random() % 5),
                    any(pressures));
        if (call % 3 == 0) {
            auto uniforms = uniformsOf(scene.recordedFrame());
            EXPECT_NE(uniforms["advect.center"], "");
        }
    }
    tapBefore();
    expectGesture(scene, {"a tap as ever", {{0, Down, a}}, tap(0, 2, a)});
}

TEST_F(TouchTimeline, AFrameSeesATouchOfAnotherThreadWhollyOrNotAtAll) {
    std::atomic<int> sent = 0;
    std::atomic<bool> done = false;
    std::thread finger([&] {
        for (int i = 0; i < 2000 || !done; ++i) {
            const int x = 100 + i % 300;
            scene.touch(x, 2 * x + 1, i % 50 == 0 ? Down : Move);
            ++sent;
        }
    });
    const auto belongsTogether = [](const std::string& point) {
        const auto comma = point.find(',');
        return screenHeight - std::stoi(point.substr(comma + 1)) == 2 * std::stoi(point) + 1;
    };
    while (sent == 0) {
        std::this_thread::yield();
    }
    int strokes = 0;
    for (int frame = 0; frame < 60; ++frame) {
        auto uniforms = uniformsOf(scene.recordedFrame());
        EXPECT_PRED1(belongsTogether, uniforms["advect.center"]);
        if (uniforms.contains("impulse.current")) {
            ++strokes;
            EXPECT_PRED1(belongsTogether, uniforms["impulse.current"]);
        }
    }
    done = true;
    finger.join();
    EXPECT_GT(strokes, 30);
}

}  // namespace
}  // namespace gltest
