#include <gtest/gtest.h>
#include <jni.h>

#include <cmath>
#include <functional>
#include <limits>

#include "tests/robust/stage.h"

// Plays strokes that make velocities infinite or NaN. The library must still draw every frame. After the next tap, the
// flow must come to rest, and new strokes must move it again.

namespace robust {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();

struct Flow {
    Flow() {
        stage.setUp();
        stage.rasterise(1);
    }
    void touch(int x, int y, jint action, float pressure = 1) {
        stage.touch(x, y, action, pressure);
        stage.draw();
    }
    Stage stage{160, 160};
    Uploads uploads;
};

void slowDrag(Flow& flow, float pressure) {
    flow.touch(75, 80, Down);
    flow.touch(80, 80, Move);
    for (int move = 0; move < 12; ++move) {
        flow.touch(80 + move % 2, 80, Move, pressure);
    }
}

/// Plays moves that alternate between a point on the screen and points with the smallest or largest coordinates.
void farJumps(Flow& flow) {
    flow.touch(75, 80, Down);
    for (int move = 0; move < 40; ++move) {
        flow.touch(move % 2 ? least : 80, move % 2 ? most : 80, Move, infinity);
        flow.touch(80, 80, Move);
    }
}

void wideFastStroke(Flow& flow) {
    slowDrag(flow, infinity);
    for (int move = 0; move < 20; ++move) {
        flow.touch(move % 2 ? 70 : 100, move % 4 ? 90 : 75, Move);
    }
}

const struct {
    const char* name;
    std::function<void(Flow&)> strokes;
} cases[] = {
    {"velocities whose squares overflow a float", [](Flow& f) { slowDrag(f, 1e10f); }},
    {"infinite pressure", [](Flow& f) { slowDrag(f, infinity); }},
    {"NaN pressure", [](Flow& f) { slowDrag(f, std::nanf("")); }},
    {"jumps between the screen and far points", farJumps},
    {"a fast stroke of infinite width", wideFastStroke},
};

TEST(Numbers, TheFlowRecoversAfterTheInkIsCleared) {
    for (const auto& [name, strokes] : cases) {
        SCOPED_TRACE(name);
        Flow flow;
        strokes(flow);
        flow.stage.clear();
        const auto tapAndDraw = [&flow](int frames) {
            flow.touch(80, 80, Down);
            flow.touch(80, 80, Up);
            flow.stage.draw(frames);
        };
        // This tap replaces the solver settings of the last stroke by those of a tap. In 5000 frames, even the largest
        // float decays to almost zero.
        tapAndDraw(5000);
        EXPECT_LT(flow.uploads.strongest, 1) << "the flow must come to rest";
        tapAndDraw(4);
        EXPECT_GT(flow.uploads.strongest, 1) << "a stroke must move the flow again";
        EXPECT_LT(flow.uploads.strongest, 127);
    }
}

TEST(Numbers, AStrongFlowSaturatesAndDecays) {
    Flow flow;
    flow.touch(75, 80, Down);
    flow.touch(80, 80, Move);
    int saturated = 0;
    for (int move = 0; move < 40; ++move) {
        flow.touch(80 + move % 2, 80, Move, 200);
        saturated += flow.uploads.strongest == 127;
    }
    EXPECT_GE(saturated, 37)
        << "at least 37 of 40 frames must reach the speed limit; the first frames are slower";
    flow.touch(80, 80, Up);
    flow.stage.draw(4);
    EXPECT_EQ(flow.uploads.strongest, 127);
    flow.stage.draw(900);
    EXPECT_LT(flow.uploads.strongest, 1);
}

}  // namespace
}  // namespace robust
