#include <gtest/gtest.h>

#include "scene.h"

// What only a library that has just been loaded shows. The tests run in this order, and go together
// as well as one by one: the first neither measures a drag nor makes a quad buffer.

namespace gltest {
namespace {

TEST(FirstUse, AnyCallMayComeBeforeTheSettings) {
    JniEnvironment jni;
    EXPECT_EQ(native::getClearInkValue(jni.env(), nullptr), 0);
    Scene unset(0, 0, false, 64, 64);
    EXPECT_EQ(native::getClearInkValue(unset.env, nullptr), 0);  // water alone sets no ink
    unset.draw();
    native::clearInkValue(unset.env, nullptr);
    EXPECT_EQ(native::getClearInkValue(unset.env, nullptr), 0);
    unset.touch(1, 1, Down);
    EXPECT_EQ(native::getClearInkValue(unset.env, nullptr), 1);
    unset.setting(240, 240, true);
    for (int frame = 0; frame < 3; ++frame) {
        unset.draw();  // with ink, and without any resource
    }
    EXPECT_EQ(unset.load(smoothPicture(0), 1), 0);
    unset.draw();
}

TEST(FirstUse, TheFirstSetUpDeletesNothing) {
    Scene scene(240, 240, true);
    scene.setUp();
    scene.initBuffers();
    scene.initGpu();
    EXPECT_EQ(scene.recorder.count("glDeleteBuffers"), 1);
    EXPECT_EQ(scene.recorder.count("glDeleteTextures") + scene.recorder.count("glDeleteProgram"),
              0);
}

TEST(FirstUse, AFirstDragIsATapUntilItsFirstMeasuredMove) {
    Scene scene(240, 240, true);
    scene.setUp();
    scene.touch(100, 120, Down);
    scene.draw();
    scene.draw();
    scene.touch(106, 120, Move);  // makes it a drag, of a class not yet known
    for (const char* const expected :
         {"-1 radius 8 from 100, 120", "-1 radius 8 from 106, 120", "1 radius 25 from 106, 120"}) {
        auto uniforms = scene.uniformsOfFrame();
        EXPECT_EQ(uniforms["impulse.mode"] + " radius " + uniforms["impulse.Radius"] + " from " +
                      uniforms["impulse.previous"],
                  expected);
        if (uniforms["impulse.previous"] == uniforms["impulse.current"]) {
            scene.touch(109, 120, Move);
        }
    }
}

}  // namespace
}  // namespace gltest
