#include "effect/touch.h"

#include "test_memory.h"

namespace velmora::test {
namespace {

// What no host sees within a test's time.
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

}  // namespace
}  // namespace velmora::test
