#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "tests/robust/stage.h"
#include "tests/robust/worker_interposer.h"

// clearInkValue at every moment of a frame and of a gesture: the next fluid step empties the ink,
// whatever the rest of the frame and the next events write.

namespace robust {
namespace {

const struct {
    const char* name;
    std::function<void(Stage&)> play;
} gestures[] = {
    {"the frame before the fade", [](Stage& s) { s.draw(46); }},
    {"the fade", [](Stage& s) { s.draw(48); }},
    {"a tap", [](Stage& s) { s.draw(5); }},
    {"a drag",
     [](Stage& s) {
         s.draw(5);
         s.touch(75, s.height - 70, Move);
         s.draw(3);
     }},
};

/// A call of a frame, by its number among those of the function.
struct Moment {
    std::string function;
    int nth = 0;
};
const Moment moments[] = {{"between"},         {"glViewport", 1},   {"pthread_join", 1},
                          {"glTexImage2D", 1}, {"glDrawArrays", 1}, {"glDrawArrays", 4},
                          {"glUseProgram", 5}, {"glUniform1f", 13}, {"glDrawElements", 1}};

/// Draws a frame, and clears in that call of it.
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

/// The pixel of the gesture two frames after it, the second of which shows all ink again. In black,
/// the faintest ink is seen. Cleared in a call of the first one, or never.
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
    stage.tap(
        Down);  // shows all ink, lays none in its first frame, and keeps the flow from moving it
    return stage.pixelOfFrame(70);
}

TEST(Clear, EmptiesTheInkWheneverItComes) {
    for (const auto& gesture : gestures) {
        SCOPED_TRACE(gesture.name);
        const Bytes uncleared = pixelAfter(gesture.play, nullptr);
        EXPECT_LT(2 * uncleared[0], background[0]) << "a sixteenth of the ink would be seen";
        for (const Moment& moment : moments) {
            EXPECT_EQ(pixelAfter(gesture.play, &moment), background)
                << moment.function << " " << moment.nth;
        }
    }
}

TEST(Clear, EmptiesOnce) {
    Stage stage;
    stage.setUp();
    stage.tap(Down);
    stage.draw(3);
    stage.clear();
    stage.tap(Down);
    stage.draw(11);
    EXPECT_NE(stage.pixelOfFrame(70), background)
        << "the next press lays no more ink in this frame";
}

}  // namespace
}  // namespace robust
