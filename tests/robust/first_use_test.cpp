#include <GLES2/gl2.h>
#include <gtest/gtest.h>

#include "tests/robust/stage.h"

// Tests calls to a freshly loaded library in an unusual order.

namespace robust {
namespace {

TEST(FirstUse, EveryCallIsSafeBeforeOnInitSetting) {
    Stage stage;
    EXPECT_EQ(stage.shownInk(), 0);
    stage.draw();
    stage.clear();
    EXPECT_EQ(stage.shownInk(), 0);
    stage.initGpu();
    EXPECT_EQ(hostkit::glRecorder().alive[hostkit::GlKind::program].size(), 1u)
        << "while ink is not enabled, initGpu must create only the water program";
    stage.tap(Down);
    EXPECT_EQ(stage.shownInk(), 1);
    stage.setting();
    stage.draw(3);  // ink is enabled, but its resources do not exist yet
    EXPECT_EQ(stage.load(background, 1), 0);
    stage.draw();
}

TEST(FirstUse, AFirstDragIsATapUntilItsFirstMeasuredMove) {
    Stage stage;
    stage.setUp();
    EXPECT_EQ(stage.uniformsOfFrame()["advect.center"], "0, 1024");
    stage.touch(100, 120, Down);
    stage.draw(2);
    stage.touch(106, 120, Move);  // starts a drag whose speed is not measured yet
    for (const char* const expected :
         {"mode -1, radius 8, from 100, 904", "mode -1, radius 8, from 106, 904",
          "mode 1, radius 25, from 106, 904"}) {
        auto uniforms = stage.uniformsOfFrame();
        EXPECT_EQ("mode " + uniforms["impulse.mode"] + ", radius " + uniforms["impulse.Radius"] +
                      ", from " + uniforms["impulse.previous"],
                  expected);
        if (uniforms["impulse.previous"] == uniforms["impulse.current"]) {
            stage.touch(109, 120, Move);
        }
    }
}

}  // namespace
}  // namespace robust
