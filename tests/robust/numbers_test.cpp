#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "tests/robust/stage.h"

// Strokes that drive the velocity to infinity and to NaN. Every frame is drawn, and with the next
// tap the flow comes to rest and can be pushed again.

namespace robust {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();

/// A stage whose uploaded velocities are decoded.
struct Flow {
    Flow() {
        stage.setUp();
        glScissor(0, 0, 1, 1);
        hostkit::glRecorder().textureUpload = [this](int width, int height, auto bytes) {
            if (width == 13 && height == 13) {
                strongest = strongestOf(bytes);
            }
        };
    }
    static double strongestOf(std::span<const std::uint8_t> bytes) {
        double strongest = 0;
        for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
            strongest = std::max(strongest, std::abs(bytes[at] + bytes[at + 1] / 255.0 - 127));
        }
        return strongest;
    }
    void touch(int x, int y, jint action, float pressure = 1) {
        stage.touch(x, y, action, pressure);
        stage.draw();
    }
    void frames(int count) {
        for (int frame = 0; frame < count; ++frame) {
            stage.draw();
        }
    }
    Stage stage{160, 160};
    double strongest = 0;  // the largest component of the last upload, at most 127
};

void slowDrag(Flow& flow, float pressure) {
    flow.touch(75, 80, Down);
    flow.touch(80, 80, Move);
    for (int move = 0; move < 12; ++move) {
        flow.touch(80 + move % 2, 80, Move, pressure);
    }
}

/// Alternates between a point of the screen and one as far off as ints reach.
void farJumps(Flow& flow, int x, int y) {
    flow.touch(75, 80, Down);
    for (int move = 0; move < 40; ++move) {
        flow.touch(move % 2 ? x : 80, move % 2 ? y : 80, Move, infinity);
        flow.touch(80, 80, Move);
    }
}

const struct {
    const char* name;
    std::function<void(Flow&)> strokes;
} cases[] = {
    {"velocities beyond the square root of what floats hold", [](Flow& f) { slowDrag(f, 1e10f); }},
    {"infinite pressure", [](Flow& f) { slowDrag(f, infinity); }},
    {"NaN for pressure", [](Flow& f) { slowDrag(f, std::nanf("")); }},
    {"far jumps both ways", [](Flow& f) { farJumps(f, least, most); }},
    {"a fast stroke of infinite width",
     [](Flow& f) {
         slowDrag(f, infinity);
         for (int move = 0; move < 20; ++move) {
             f.touch(move % 2 ? 70 : 100, move % 4 ? 90 : 75, Move);
         }
     }},
};

TEST(Numbers, TheFlowRecoversAfterTheInkIsCleared) {
    for (const auto& [name, strokes] : cases) {
        SCOPED_TRACE(name);
        Flow flow;
        strokes(flow);
        flow.stage.clear();
        // The settings of the last stroke stay until the next one.
        for (const int frames : {900, 4}) {
            flow.touch(80, 80, Down);
            flow.touch(80, 80, Up);
            flow.frames(frames);
            if (frames > 20) {
                EXPECT_LT(flow.strongest, 1) << "the flow comes to rest";
            }
        }
        EXPECT_GT(flow.strongest, 1) << "and can be pushed again";
        EXPECT_LT(flow.strongest, 127);
    }
}

TEST(Numbers, FramesAreDrawnWhateverTheyAreGiven) {
    Stage stage;
    stage.setUp();
    const auto numbers = {infinity, -infinity, std::nanf(""), 0.0f, -1e38f, 1e-45f};
    for (const float number : numbers) {
        for (float& value : hostkit::JniEnvironment::elements(stage.heights)) {
            value = number;
        }
        stage.native().onDrawFrame(stage.env, nullptr, stage.positions, stage.heights,
                                   stage.indices, 12, 12, 6, stage.matrix, most, least, 0, -1,
                                   number, number, number, number, number, number, number, number,
                                   number, number, false);
    }
    std::ranges::fill(hostkit::JniEnvironment::elements(stage.heights), 0.0f);
    EXPECT_EQ(stage.pixelOfFrame(20), background);
}

}  // namespace
}  // namespace robust
