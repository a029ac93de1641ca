#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <vector>

#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "tests/kit/kit_memory.h"

namespace {

/// A gesture script with a tap and a fast drag.
constexpr char gesture[] =
    "screen 120 180\n"
    "frames 20\n"
    "1 down 40 60 0.5\n"
    "3 up 40 60 0.5\n"
    "5 down 30 40 0.5\n"
    "6 move 50 60 0.5\n"
    "7 move 70 90 0.5\n"
    "8 move 90 120 0.5\n"
    "9 up 90 120 0.5\n";

/// Creates a scene through the interface for rendering kits and calls some of its functions. The caller must destroy
/// the scene.
SceneMemory* useKit() {
    SceneMemory* scene = makeScene();
    for (const std::size_t slot : {std::size_t{1}, std::size_t{7}, orthographic, perspective}) {
        callSlot(scene, slot);
    }
    callSlot(scene->animationManager, updateAll);
    return scene;
}

std::vector<std::vector<std::uint8_t>> play(bool withScenes) {
    const hostkit::GestureScript script = hostkit::parseGestureScript(gesture, "gesture");
    hostkit::EffectHost host({.width = script.screenWidth, .height = script.screenHeight});
    std::vector<std::vector<std::uint8_t>> frames;
    srandom(1);  // seeds rand too, so that every run has the same sink positions
    for (int frame = 0; frame < script.frames; ++frame) {
        SceneMemory* scene = withScenes ? useKit() : nullptr;
        host.frame(hostkit::eventsOfFrame(script, frame));
        if (scene != nullptr) {
            callSlot(scene, deletingDestructor);
        }
        frames.push_back(host.pixels());
    }
    return frames;
}

}  // namespace

TEST(Frames, DoNotChangeWhenScenesAreCreatedAndDestroyed) {
    play(false);  // this run sets the state from which both compared runs start
    const auto alone = play(false);
    EXPECT_TRUE(alone.front() != alone.back());
    EXPECT_TRUE(play(true) == alone);
    gTextureMap.clear();
}
