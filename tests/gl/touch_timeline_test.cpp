#include <GLES2/gl2.h>
#include <gtest/gtest.h>
#include <jni.h>

#include <cmath>
#include <initializer_list>
#include <map>
#include <string>

#include "tests/host/test_host.h"

// Tests the stroke and the settings in each frame of a gesture. The tests read both from the uniforms of the ink
// passes.

namespace gltest {
namespace {

using namespace testhost;

constexpr int screenHeight = 960;

struct Point {
    int x = 0, y = 0;  // screen pixels, y down
};

std::string glPoint(Point p) {
    return std::to_string(p.x) + ", " + std::to_string(screenHeight - p.y);
}

/// Expected uniforms of a stroke.
struct Stroke {
    int mode;
    const char *radius, *density;
};
constexpr Stroke slow = {0, "48", "100"}, medium = {1, "25", "150"}, fast = {2, "30", "40"};

/// A gesture on a freshly loaded library. Its functions send events or draw frames, and compare the strokes and
/// settings of each frame with the expected ones. A failure prints the source line on which the gesture starts.
class Gesture {
public:
    explicit Gesture(int line = __builtin_LINE()) : trace(__FILE__, line, "gesture") {
        host.setUp();
        host.rasterise(0);
    }
    ~Gesture() { advectedFrame(); }
    Gesture(const Gesture&) = delete;
    Gesture& operator=(const Gesture&) = delete;

    // The next five functions send a touch event. `withPressure` sets the pressure of later events.
    Gesture& down(Point at) { return event(at, Down); }
    Gesture& up(Point at) { return event(at, Up); }
    Gesture& move(Point at) { return event(at, Move); }
    Gesture& cancel(Point at) { return event(at, Cancel); }
    Gesture& unknownAction(Point at) { return event(at, 9); }
    Gesture& withPressure(float chosen) {
        pressure = chosen;
        return *this;
    }
    Gesture& clear() {
        host.clear();
        isShown = false;
        drag = 0;
        dissipation = 0;
        return *this;
    }

    /// Draws the frames in which the press counter counts from `first` to `last`. `delta` is the movement at the last
    /// event.
    Gesture& tapFrames(int first, int last, Point at, Point delta = {}) {
        for (int n = first; n <= last; ++n) {
            stroke = n < 10 ? "-1 " + std::to_string(8 * n) + " 200 " +
                                  glPoint({at.x - delta.x, at.y - delta.y}) + " " + glPoint(at)
                            : "";
            frames(1, -1, 0.99f, n < 10 ? static_cast<float>(n) * 0.1f : 1);
        }
        return *this;
    }
    /// Sends a down event and draws the frames in which the press counter counts from 0 to `last`.
    Gesture& tap(Point at, int last = 12) { return down(at).tapFrames(0, last, at); }
    Gesture& strokeFrame(const Stroke& expected, Point from, Point to) {
        stroke = std::to_string(expected.mode) + " " + expected.radius + " " + expected.density +
                 " " + glPoint(from) + " " + glPoint(to);
        return frames(1, expected.mode, 0.99f);
    }
    Gesture& sameFrames(int count) { return frames(count, drag, dissipation); }
    /// These two functions draw frames without a stroke: `restFrames` before the ink fades, `fadeFrames` while the ink
    /// fades.
    Gesture& restFrames(int count) {
        stroke.clear();
        return frames(count, drag, dissipation);
    }
    Gesture& fadeFrames(int count) {
        stroke.clear();
        return frames(count, drag, 0.9625f);
    }

private:
    Gesture& event(Point at, jint action) {
        touch = at;
        host.touch(at.x, at.y, action, pressure);
        isShown = action != Cancel;
        return *this;
    }
    /// Draws a frame and expects that its advection uses the settings from the previous frame. Returns the frame's
    /// uniforms.
    std::map<std::string, std::string> advectedFrame() {
        auto uniforms = host.uniformsOfFrame();
        EXPECT_EQ(uniforms["advect.center"], glPoint(touch));
        EXPECT_EQ(uniforms["advect.drag"], std::to_string(drag));
        EXPECT_EQ(std::stof(uniforms["advect.Dissipation"]), dissipation);
        EXPECT_EQ(std::stof(uniforms["advect.BackwardStepSize"]), step);
        return uniforms;
    }
    /// Draws `count` frames and checks the stroke of each. After each frame, the library must have the settings
    /// `dragLeft`, `dissipationLeft` and `stepLeft`. These settings are checked in the next frame.
    Gesture& frames(int count, int dragLeft, float dissipationLeft, float stepLeft = 1) {
        for (; count > 0; --count) {
            auto uniforms = advectedFrame();
            std::string found = uniforms["impulse.mode"];
            for (const char* const name : {"Radius", "ImpulseDensity", "previous", "current"}) {
                found += found.empty() ? "" : " " + uniforms[std::string("impulse.") + name];
            }
            EXPECT_EQ(found, stroke);
            EXPECT_EQ(uniforms["water.intensity"], isShown ? "0.02" : "0");
            EXPECT_EQ(host.shownInk(), isShown);
            drag = dragLeft;
            dissipation = dissipationLeft;
            step = stepLeft;
        }
        return *this;
    }

    testing::ScopedTrace trace;
    TestHost host{540, screenHeight};
    Point touch{};
    float pressure = 1;
    bool isShown = true;
    std::string stroke;
    // Settings from the previous frame, which the advection of the next frame uses.
    int drag = 0;
    float dissipation = 0.96f, step = 1;
};

constexpr Point start = {200, 300}, close = {205, 300}, further = {210, 300};

TEST(TouchTimeline, ATapLastsThirteenFramesAndFadesAfterThirtyFiveIdleFrames) {
    Gesture().tap(start).restFrames(33).fadeFrames(3);
}

TEST(TouchTimeline, EachPressDelaysTheFadeAgain) {
    Gesture().tap(start).restFrames(33).fadeFrames(1).tap(start).restFrames(33).fadeFrames(1);
}

TEST(TouchTimeline, ASecondTapRestartsTheCountAtOne) {
    Gesture().tap(start, 3).down(close).tapFrames(1, 12, close);
}

TEST(TouchTimeline, AnUpDoesNotEndATap) {
    Gesture().tap(start, 2).up(start).tapFrames(3, 12, start).restFrames(2);
}

/// Plays the first two frames of a drag from `start`.
Gesture& dragged(Gesture&& gesture) {
    return gesture.down(start)
        .move(close)
        .move(further)
        .strokeFrame(medium, start, further)
        .strokeFrame(medium, further, further);
}

TEST(TouchTimeline, ADragOfNineFramesEndsAsATap) {
    dragged(Gesture()).sameFrames(7).up(further).tapFrames(0, 12, further).restFrames(2);
}

TEST(TouchTimeline, ADragOfTenFramesEndsAtOnce) {
    dragged(Gesture()).sameFrames(8).up(further).tapFrames(20, 20, further).restFrames(2);
}

TEST(TouchTimeline, ACancelInADragHidesTheInkUntilTheNextEvent) {
    dragged(Gesture()).cancel(further).restFrames(2).up(further).restFrames(2);
}

TEST(TouchTimeline, AShortDragContinuesItsTapFromItsLastPoint) {
    Gesture()
        .tap(start, 2)
        .move(close)
        .move(further)
        .strokeFrame(medium, start, further)
        .up({250, 309})
        .tapFrames(3, 12, {250, 309}, {40, 9})
        .restFrames(1);
}

TEST(TouchTimeline, AnyMoveOfAHeldFingerStartsADrag) {
    Gesture()
        .tap(start, 1)
        .move({202, 300})
        .tapFrames(2, 14, {202, 300}, {2, 0})
        .move({202, 300})
        .move({203, 300})
        .strokeFrame(slow, start, {203, 300})
        .strokeFrame(slow, {203, 300}, {203, 300})
        .up(start)
        .tapFrames(20, 20, start)
        .restFrames(1);
}

TEST(TouchTimeline, APressBecomesAHoldAtTheTwelfthFrame) {
    Gesture()
        .tap(start, 10)
        .move(start)
        .tapFrames(11, 11, start)
        .move(start)
        .move(start)
        .strokeFrame(slow, start, start);
}

TEST(TouchTimeline, MovesAfterThePressDoNothing) {
    Gesture()
        .tap(start)
        .restFrames(1)
        .move(close)
        .restFrames(1)
        .move({300, 300})
        .restFrames(1)
        .up(further)
        .restFrames(1)
        .unknownAction(close)
        .restFrames(2);
}

TEST(TouchTimeline, ACancelEndsAPress) {
    Gesture().tap(start, 4).cancel(start).restFrames(2).tap(close);
}

TEST(TouchTimeline, AClearEndsAPressAndEmptiesTheInk) {
    Gesture().tap(start, 4).clear().restFrames(2).tap(start, 3);
}

TEST(TouchTimeline, AnUnknownActionMovesADragButNotAPress) {
    Gesture()
        .tap(start, 0)
        .unknownAction({250, 300})
        .tapFrames(1, 1, {250, 300})
        .move({254, 300})
        .unknownAction({274, 300})
        .strokeFrame(fast, start, {274, 300});
}

TEST(TouchTimeline, SpeedAndPressureOfADrag) {
    const struct {
        float pressure;
        Point to;
        Stroke expected;
    } moves[] = {
        {1, {207, 300}, slow},
        {0, {205, 302}, {0, "0", "100"}},
        {0.5f, {205, 300}, {0, "18", "100"}},
        {0.15f, {205, 300}, {0, "8.900001", "100"}},  // factor 0.2 + 0.15^2, computed in double
        {std::nanf(""), {205, 300}, {0, "0", "100"}},
        {-3, {205, 300}, {0, "0", "100"}},
        {1, {205, 297}, medium},
        {1, {199, 308}, medium},
        {1, {216, 300}, fast},
        {0, {198, 292}, fast}};
    for (const auto& [pressure, to, expected] : moves) {
        SCOPED_TRACE(std::to_string(to.x) + ", " + std::to_string(to.y));
        Gesture().down(start).move(close).withPressure(pressure).move(to).strokeFrame(expected,
                                                                                      start, to);
    }
}

TEST(TouchTimeline, InkHasTheColourPassedInTheFrameOfItsStroke) {
    TestHost host(540, screenHeight);
    host.setUp();
    host.rasterise(0);
    const auto shown = [&host] { return host.uniformsOfFrame()["water.ink_color"]; };
    FrameArguments& a = host.arguments;
    a.inkRed = a.inkGreen = a.inkBlue = 0.95f;
    EXPECT_EQ(shown(), "0.499, 0.499, 0.499");  // the colour before the first stroke
    host.touch(200, 300, Down);
    EXPECT_EQ(shown(), "0.499, 0.499, 0.499");  // the library adds 0.05, so 0.95 means white
    a.inkGreen = 0;
    EXPECT_EQ(shown(), "0.499, 28.98, 0.499");
    host.touch(200, 300, Cancel);
    a.inkGreen = 0.5f;
    EXPECT_EQ(shown(), "0.499, 28.98, 0.499");
}

}  // namespace
}  // namespace gltest
