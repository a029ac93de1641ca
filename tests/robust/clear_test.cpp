#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>

#include "tests/robust/stage.h"
#include "tests/robust/worker_interposer.h"

// Calls clearInkValue at every moment of a frame and of a gesture. The next fluid step must remove all ink. Neither the
// rest of the frame nor later events may prevent this.

namespace robust {
namespace {

const struct {
    const char* name;
    std::function<void(Stage&)> play;
} gestures[] = {
    {"a tap, at the last frame before the ink fades", [](Stage& s) { s.draw(46); }},
    {"the fade", [](Stage& s) { s.draw(48); }},
    {"a tap", [](Stage& s) { s.draw(5); }},
    {"a drag",
     [](Stage& s) {
         s.draw(5);
         s.touch(75, s.height - 70, Move);
         s.draw(3);
     }},
};

/// A moment within a frame: call number `nth` of a function, counted from 1.
struct Moment {
    std::string function;
    int nth = 0;
};
const Moment moments[] = {{"between"},         {"glViewport", 1},   {"pthread_join", 1},
                          {"glTexImage2D", 1}, {"glDrawArrays", 1}, {"glDrawArrays", 4},
                          {"glUseProgram", 5}, {"glUniform1f", 13}, {"glDrawElements", 1}};

/// Draws a frame and clears the ink at `moment`.
void drawAndClearIn(Stage& stage, const Moment& moment) {
    const auto& [function, nth] = moment;
    if (function == "pthread_join") {
        whileJoining = [&stage] { stage.clear(); };
    }
    hostkit::glRecorder().inside = [&stage, moment, left = nth](const char* name) mutable {
        left -= moment.function == name;
        if (moment.function == name && left == 0) {
            stage.clear();
        }
    };
    stage.draw();
    hostkit::glRecorder().inside = nullptr;
    if (function == "between") {
        stage.clear();
    }
}

/// Returns a pixel after a gesture and two more frames. In the first of these frames, the ink is cleared at `moment`;
/// if `moment` is null, it is not cleared. The second frame shows all ink that is left. The ink is black, so that even
/// a trace is visible.
Bytes pixelAfter(const std::function<void(Stage&)>& play, const Moment* moment) {
    Stage stage;
    stage.arguments.inkRed = stage.arguments.inkGreen = stage.arguments.inkBlue = 0;
    stage.setUp();
    glScissor(65, 65, 20, 20);
    std::srand(7);
    stage.tap(Down);
    play(stage);
    if (moment) {
        drawAndClearIn(stage, *moment);
        EXPECT_EQ(stage.shownInk(), 0);
    } else {
        stage.draw();
    }
    // This down event makes all remaining ink visible. The event neither adds nor moves ink in the next frame.
    stage.tap(Down);
    return stage.pixelOfFrame(70);
}

TEST(Clear, EmptiesTheInkAtAnyMomentOfAFrame) {
    for (const auto& gesture : gestures) {
        SCOPED_TRACE(gesture.name);
        const Bytes uncleared = pixelAfter(gesture.play, nullptr);
        EXPECT_LT(2 * uncleared[0], background[0])
            << "if the ink is not cleared, it must be so dense that even a sixteenth of it would "
               "be visible";
        for (const Moment& moment : moments) {
            EXPECT_EQ(pixelAfter(gesture.play, &moment), background)
                << moment.function << " " << moment.nth;
        }
    }
}

TEST(Clear, EmptiesTheInkOnlyOnce) {
    Stage stage;
    stage.setUp();
    stage.tap(Down);
    stage.draw(3);
    stage.clear();
    stage.tap(Down);
    stage.draw(11);
    EXPECT_NE(stage.pixelOfFrame(70), background) << "the next press must show new ink";
}

}  // namespace
}  // namespace robust
