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

/// Each with the number of the call in the frame.
const struct {
    const char* function;
    int nth;
} moments[] = {{"between", 0},      {"glViewport", 1},   {"pthread_join", 1},
               {"glTexImage2D", 1}, {"glDrawArrays", 1}, {"glDrawArrays", 4},
               {"glUseProgram", 5}, {"glUniform1f", 13}, {"glDrawElements", 1}};

/// Draws a frame, and clears in that call of it.
void drawAndClearIn(Stage& stage, const std::string& function, int nth) {
    if (function == "pthread_join") {
        whileJoining = [&stage] { stage.clear(); };
    }
    hostkit::glRecorder().inside = [&stage, function, nth](const char* name) mutable {
        nth -= function == name;
        if (function == name && nth == 0) {
            stage.clear();
        }
    };
    stage.draw();
    hostkit::glRecorder().inside = nullptr;
    if (function == "between") {
        stage.clear();
    }
}

TEST(Clear, EmptiesTheInkWheneverItComes) {
    for (const auto& gesture : gestures) {
        for (const auto& moment : moments) {
            SCOPED_TRACE(std::string(gesture.name) + ", " + moment.function + " " +
                         std::to_string(moment.nth));
            Stage stage;
            stage.setUp();
            glScissor(65, 65, 20, 20);
            std::srand(7);
            stage.tap(Down);
            gesture.play(stage);
            EXPECT_NE(stage.pixelOfFrame(75), background) << "there is ink to be cleared";
            drawAndClearIn(stage, moment.function, moment.nth);
            EXPECT_EQ(stage.shownInk(), 0);
            // A press elsewhere: all ink is shown again.
            stage.touch(300, 300, Down);
            EXPECT_EQ(stage.pixelOfFrame(75), background);
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
    stage.draw(5);
    EXPECT_NE(stage.pixelOfFrame(75), background) << "the ink of the next press stays";
}

}  // namespace
}  // namespace robust
