#include "effect/touch.h"

#include <initializer_list>
#include <utility>

#include "test_memory.h"

namespace velmora::test {
namespace {

// This test sets the counters directly, because a host would need more than a year of frames to reach these values.
TEST(Touch, IdleFramesCountToTheEndOfAnInt) {
    EffectState state;
    TouchVariables touch;
    for (const auto& [before, after] : {std::pair{0, 1}, {35, 36}, {1000, 1001}, {most, most}}) {
        touch.idleFrames = before;
        EXPECT_FALSE(stepTouchPhase(state, touch));
        EXPECT_EQ(touch.idleFrames, after);
    }
    EXPECT_EQ(state.inkDissipation, idleInkDissipation);
}

// This test reads the counter pressFrames from the state. A host cannot check this counter: after the up event, a press
// of 12 frames looks the same as a press of 20 frames.
TEST(Touch, AnUpEndsALongDrag) {
    const std::pair<int, int> cases[] = {{11, 11}, {12, 20}, {13, 20}};
    for (const auto& [before, after] : cases) {
        EffectState state;
        SharedTouch shared;
        shared.variables.touchPhase = Dragging;
        shared.variables.pressFrames = before;
        handleTouchEvent(state, shared, 0, 0, ActionUp, 1.0f);
        EXPECT_EQ(shared.variables.touchPhase, Pressed);
        EXPECT_EQ(shared.variables.pressFrames, after);
    }
}

}  // namespace
}  // namespace velmora::test
