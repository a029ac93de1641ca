#include <gtest/gtest.h>

#include "tests/robust/refused_memory.h"
#include "tests/robust/stage.h"

// A library that is refused memory draws the water, and recovers at its next set-up.

namespace robust {
namespace {

/// Sets up and draws while the `first`th allocation fails; returns how many were asked for.
int setUpWithout(Stage& stage, int first, RefusedMemory::Extent extent) {
    const RefusedMemory refused(first, extent);
    stage.setting();
    stage.buffers();
    stage.resources();
    EXPECT_EQ(stage.load(1), 0);
    EXPECT_EQ(stage.pixelOfFrame(5), background);
    for (int frame = 0; frame < 4; ++frame) {
        stage.tap(frame == 0 ? Down : Up);
        EXPECT_NE(stage.pixelOfFrame(70), magenta);
    }
    return refused.asked();
}

TEST(Memory, WhereItLacksTheWaterIsDrawn) {
    for (const auto extent : {RefusedMemory::one, RefusedMemory::allFromThere}) {
        int first = 1;
        for (int asked = first; asked >= first; ++first) {
            SCOPED_TRACE("allocation " + std::to_string(first));
            Stage stage;
            asked = setUpWithout(stage, first, extent);
            // With memory again, the next set-up brings the flow.
            stage.resources();
            Uploads uploads;
            stage.tap(Cancel);
            stage.tap(Down);
            for (int frame = 0; frame < 5; ++frame) {
                stage.draw();
            }
            EXPECT_FALSE(uploads.isStill());
        }
        EXPECT_GT(first, 15) << "seven names, seven grids and the packed bytes";
    }
}

TEST(Memory, ASetUpThatFailsAfterOneThatDidNot) {
    for (int first = 1; first <= 15; ++first) {
        SCOPED_TRACE("allocation " + std::to_string(first));
        Stage stage;
        stage.setUp();
        stage.tap(Down);
        stage.draw();
        setUpWithout(stage, first, RefusedMemory::one);
    }
}

}  // namespace
}  // namespace robust
