#include <gtest/gtest.h>

#include <sstream>

#include "scene.h"

// What each frame of a gesture hands to the ink, seen in the uniforms of its passes.

namespace gltest {
namespace {

constexpr int screenHeight = 960;

struct Point {
    int x = 0, y = 0;  // screen pixels, y down
};

std::istream& operator>>(std::istream& in, Point& point) {
    char comma = 0;
    return in >> point.x >> comma >> point.y;
}

std::string glPoint(Point p) {
    return std::to_string(p.x) + ", " + std::to_string(screenHeight - p.y);
}

/// One gesture, played from a text of events and of the frames between them:
///   down X,Y                the event; so are up, move, cancel and other, an unknown action
///   pressure P              of the events that follow
///   clear                   clearInkValue
///   tap N M X,Y DX,DY       the frames in which the press counter is N to M, after a movement
///   stroke MODE RADIUS DENSITY X,Y X,Y
///   again N                 frames as the last one
///   rest N, fade N          frames without ink, before and from the time of the fade
struct Gesture {
    Scene& scene;
    Point touch{};
    float pressure = 1;
    bool isShown = true;
    std::string stroke{};
    // What the last frame has left for the next one's advection.
    int drag = -1;
    float dissipation = 0.99f, step = 1;

    /// Draws a frame, which must advect with what the last one left; returns its uniforms.
    std::map<std::string, std::string> advectedFrame() {
        auto uniforms = scene.uniformsOfFrame();
        EXPECT_EQ(uniforms["advect.center"], glPoint(touch));
        EXPECT_EQ(uniforms["advect.drag"], std::to_string(drag));
        EXPECT_EQ(std::stof(uniforms["advect.Dissipation"]), dissipation);
        EXPECT_EQ(std::stof(uniforms["advect.BackwardStepSize"]), step);
        return uniforms;
    }
    void frame() {
        auto uniforms = advectedFrame();
        std::string found = uniforms["impulse.mode"];
        for (const char* const name : {"Radius", "ImpulseDensity", "previous", "current"}) {
            found += found.empty() ? "" : " " + uniforms[std::string("impulse.") + name];
        }
        EXPECT_EQ(found, stroke);
        EXPECT_EQ(uniforms["water.intensity"], isShown ? "0.02" : "0");
        EXPECT_EQ(native::getClearInkValue(scene.env, nullptr), isShown);
    }
    /// Frames that leave what they are told to.
    void frames(int count, int dragLeft, float dissipationLeft, float stepLeft = 1) {
        for (; count > 0; --count) {
            frame();
            drag = dragLeft;
            dissipation = dissipationLeft;
            step = stepLeft;
        }
    }
    void playStroke(std::istream& words) {
        std::string mode, radius, density;
        Point from, to;
        words >> mode >> radius >> density >> from >> to;
        stroke = mode + " " + radius + " " + density + " " + glPoint(from) + " " + glPoint(to);
        frames(1, std::stoi(mode), 0.99f);
    }
    void playTap(std::istream& words) {
        int n = 0, last = 0;
        Point at, delta;
        for (words >> n >> last >> at >> delta; n <= last; ++n) {
            stroke = n < 10 ? "-1 " + std::to_string(8 * n) + " 200 " +
                                  glPoint({at.x - delta.x, at.y - delta.y}) + " " + glPoint(at)
                            : "";
            frames(1, -1, 0.99f, n < 10 ? static_cast<float>(n) * 0.1f : 1);
        }
    }
    void play(const std::string& text) {
        SCOPED_TRACE(text);
        const std::map<std::string, jint> actions = {
            {"down", Down}, {"up", Up}, {"move", Move}, {"cancel", Cancel}, {"other", 9}};
        std::istringstream words(text);
        std::string number;
        for (std::string word; words >> word;) {
            if (const auto action = actions.find(word); action != actions.end()) {
                words >> touch;
                scene.touch(touch.x, touch.y, action->second, pressure);
                isShown = action->second != Cancel;
            } else if (word == "clear") {
                native::clearInkValue(scene.env, nullptr);
                isShown = false;
                drag = 0;
                dissipation = 0;
            } else if (word == "tap") {
                playTap(words);
            } else if (word == "stroke") {
                playStroke(words);
            } else if (words >> number; word == "pressure") {
                pressure = std::stof(number);
            } else {
                stroke = word == "again" ? stroke : "";
                frames(std::stoi(number), drag, word == "fade" ? 0.9625f : dissipation);
            }
        }
        advectedFrame();
    }
};

struct TouchTimeline : testing::Test {
    TouchTimeline() {
        scene.setUp();
        scene.rasteriseNothing();
    }
    /// A whole tap at (0, 0), so that no counter of an earlier gesture is left, and the gesture.
    void play(const std::string& text) {
        for (const jint action : {Cancel, Down, Move, Up}) {
            scene.touch(0, 0, action);
        }
        for (int frame = 0; frame < 13; ++frame) {
            scene.draw();
        }
        Gesture{scene}.play(text);
    }
    Scene scene{540, screenHeight, true};
};

TEST_F(TouchTimeline, EachFrameOfEachGesture) {
    // 13 frames, then the fade at the 35th idle frame
    play("down 200,300 tap 0 12 200,300 0,0 rest 33 fade 3");
    // a second tap starts again at 1
    play("down 200,300 tap 0 3 200,300 0,0 down 205,300 tap 1 12 205,300 0,0");
    // a lifted finger leaves the tap alone
    play("down 200,300 tap 0 2 200,300 0,0 up 200,300 tap 3 12 200,300 0,0 rest 2");
    const std::string held =
        "down 200,300 move 205,300 move 210,300 stroke 1 25 150 200,300 210,300 "
        "stroke 1 25 150 210,300 210,300 ";
    // a short drag ends as a tap, a long one at once
    play(held + "again 7 up 210,300 tap 0 12 210,300 0,0 rest 2");
    play(held + "again 8 up 210,300 tap 20 20 210,300 0,0 rest 2");
    // a short drag with a last jump
    play(
        "down 200,300 tap 0 2 200,300 0,0 move 205,300 move 210,300 "
        "stroke 1 25 150 200,300 210,300 up 250,309 tap 3 12 250,309 40,9 rest 1");
    // a held finger that trembles; then any move drags
    play(
        "down 200,300 tap 0 1 200,300 0,0 move 202,300 tap 2 14 202,300 2,0 "
        "move 202,300 move 203,300 stroke 0 48 100 200,300 203,300 "
        "stroke 0 48 100 203,300 203,300 up 200,300 tap 20 20 200,300 0,0 rest 1");
    // the twelfth frame holds, the eleventh does not
    play(
        "down 200,300 tap 0 10 200,300 0,0 move 200,300 tap 11 11 200,300 0,0 "
        "move 200,300 move 200,300 stroke 0 48 100 200,300 200,300");
    // moves after the press ended are not seen
    play(
        "down 200,300 tap 0 12 200,300 0,0 rest 1 move 205,300 rest 1 move 300,300 rest 1 "
        "up 210,300 rest 1 other 205,300 rest 2");
    // cancel in a drag hides the ink until the next event
    play(held + "cancel 210,300 rest 2 up 210,300 rest 2");
    // cancel in a press sets its counter back, and so does clear, which empties too
    play(
        "down 200,300 tap 0 4 200,300 0,0 cancel 200,300 rest 2 down 205,300 tap 0 12 205,300 0,0");
    play("down 200,300 tap 0 4 200,300 0,0 clear rest 2 down 205,300 tap 0 3 205,300 0,0");
    // an unknown action in a drag is measured, in a press it is not
    play(
        "down 200,300 tap 0 0 200,300 0,0 other 250,300 tap 1 1 250,300 0,0 "
        "move 254,300 other 274,300 stroke 2 30 40 200,300 274,300");
}

TEST_F(TouchTimeline, SpeedAndPressureOfADrag) {
    for (const char* const measured : {"move 207,300 stroke 0 48 100 200,300 207,300",
                                       "pressure 0 move 205,302 stroke 0 0 100 200,300 205,302",
                                       "pressure 0.5 move 205,300 stroke 0 18 100 200,300 205,300",
                                       "pressure nan move 205,300 stroke 0 0 100 200,300 205,300",
                                       "pressure -3 move 205,300 stroke 0 0 100 200,300 205,300",
                                       "move 205,297 stroke 1 25 150 200,300 205,297",
                                       "move 199,308 stroke 1 25 150 200,300 199,308",
                                       "move 216,300 stroke 2 30 40 200,300 216,300",
                                       "pressure 0 move 198,292 stroke 2 30 40 200,300 198,292"}) {
        play(std::string("down 200,300 move 205,300 ") + measured);
    }
}

TEST_F(TouchTimeline, TheInkTakesTheColourOfTheFrameOfItsStroke) {
    const auto shown = [this] { return scene.uniformsOfFrame()["water.ink_color"]; };
    FrameArguments& a = scene.arguments;
    a.inkRed = a.inkGreen = a.inkBlue = 0.95f;
    EXPECT_EQ(shown(), "0.499, 0.499, 0.499");  // as set at the start
    scene.touch(200, 300, Down);
    EXPECT_EQ(shown(), "0.499, 0.499, 0.499");  // 0.95 deposits 1
    a.inkGreen = 0;
    EXPECT_EQ(shown(), "0.499, 28.98, 0.499");
    scene.touch(200, 300, Cancel);
    a.inkGreen = 0.5f;
    EXPECT_EQ(shown(), "0.499, 28.98, 0.499");
}

}  // namespace
}  // namespace gltest
