#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/robust/refused_memory.h"
#include "tests/robust/stage.h"

// Tests the library when memory runs out. It must still draw the water, and its next set-up must create the missing
// parts.

namespace robust {
namespace {

/// Makes the set-up calls and draws while allocations fail. `extent` determines whether only allocation number `first`
/// fails, or this one and all later ones. Returns the number of allocations that the library requested.
int setUpWithout(Stage& stage, int first, RefusedMemory::Extent extent) {
    const RefusedMemory refused(first, extent);
    stage.setUp();
    EXPECT_EQ(stage.pixelOfFrame(5), background);
    for (int frame = 0; frame < 4; ++frame) {
        stage.tap(frame == 0 ? Down : Up);
        EXPECT_NE(stage.pixelOfFrame(70), magenta);
    }
    return refused.asked();
}

TEST(Memory, IfItRunsOutTheWaterIsStillDrawn) {
    for (const auto extent : {RefusedMemory::Extent::one, RefusedMemory::Extent::allFromThere}) {
        int first = 1;
        for (int asked = first; asked >= first; ++first) {
            SCOPED_TRACE("allocation " + std::to_string(first));
            Stage stage;
            asked = setUpWithout(stage, first, extent);
            // Memory is available again, so this set-up must create the flow.
            stage.initGpu();
            Uploads uploads;
            stage.tap(Cancel);
            stage.tap(Down);
            stage.draw(5);
            EXPECT_FALSE(uploads.isStill());
        }
        EXPECT_GT(first, 15);
    }
}

TEST(Memory, SetUpsAndTheUnloadFreeAllBlocks) {
    Stage stage;
    for (int time = 0; time < 3; ++time) {
        stage.setUp();
        stage.initGpu();
        EXPECT_EQ(blocksHeld(), 15) << "the library must hold 15 blocks of memory: seven pass "
                                       "names, seven grids and the packed velocity";
    }
    stage.loaded.unload();
    EXPECT_EQ(blocksHeld(), 0);
}

TEST(Memory, ASecondSetUpMayFailAtAnyAllocation) {
    for (int first = 1; first <= 15; ++first) {
        SCOPED_TRACE("allocation " + std::to_string(first));
        Stage stage;
        stage.setUp();
        stage.tap(Down);
        stage.draw();
        setUpWithout(stage, first, RefusedMemory::Extent::one);
    }
}

TEST(Memory, IfAnImageCannotBeCopiedTheOldTextureStays) {
    Stage stage;
    stage.setUp();
    std::vector<std::uint8_t> pixels(2 * 8, 77);
    StandInBitmap padded{{1, 2, 8, ANDROID_BITMAP_FORMAT_RGBA_8888, 0}, pixels.data()};
    {
        const RefusedMemory refused(1, RefusedMemory::Extent::one);
        padded.unlockResult = -1;
        EXPECT_EQ(stage.load(padded, 1), -3)
            << "LoadTextures must return the first error, not the error of unlockPixels";
        padded.unlockResult = 0;
    }
    EXPECT_EQ(padded.lockCount, 0);
    EXPECT_EQ(stage.pixelOfFrame(5), background);
    EXPECT_EQ(stage.load(padded, 1), 0);
    EXPECT_NE(stage.pixelOfFrame(5), background);
}

TEST(Memory, OnlyTheFirstTwoFramesAllocate) {
    Stage stage(1080, 1920);
    stage.setUp();
    stage.tap(Down);
    stage.draw(2);
    const RefusedMemory counted(0, RefusedMemory::Extent::one);
    for (int frame = 0; frame < 9; ++frame) {
        stage.touch(70 + 12 * frame, stage.height - 70, Move);
        stage.draw();
    }
    EXPECT_EQ(counted.asked(), 0);
}

}  // namespace
}  // namespace robust
