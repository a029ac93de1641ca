#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <span>
#include <vector>

#include "solver/solver_step.h"
#include "solver/velocity_packing.h"
#include "tests/host/test_host.h"

// Compares the velocities that the library uploads in each frame of a gesture with the results of solver steps. The
// test runs these steps itself. It sets the solver settings that the library must have after each frame.

namespace gltest {
namespace {

using namespace testhost;

constexpr int screenWidth = 540, screenHeight = 960;
constexpr int columns = 45, rows = 80;

struct Touch {
    int x, y;
    TouchCode action;
};

/// A frame of the gesture: its touch events, the movement at the last event, and the settings that the next solver step
/// must use.
struct GestureFrame {
    std::vector<Touch> events;
    int deltaX, deltaY;
    int mode;
    float sourceRadius, velocityDissipation, sourceStrength, inkRadius;
};

constexpr float pressure = 0.5f;  // pressure factor of a slow drag: 0.2 + 0.5^2

const std::vector<GestureFrame> gesture = {
    {{}, 0, 0, 0, 4, 0.9f, 40, 2},  // the touch is at (0, 0), near two edges, so the sink is small
    {{{200, 300, Down}}, 0, 0, -1, 40, 0.98f, 0, 0},
    {{}, 0, 0, -1, 40, 0.98f, 12, 8},
    {{}, 0, 0, -1, 40, 0.98f, 24, 16},
    {{}, 0, 0, -1, 40, 0.98f, 36, 24},
    {{}, 0, 0, -1, 40, 0.98f, 48, 32},
    {{}, 0, 0, -1, 40, 0.98f, 0, 40},
    {{{203, 300, Move}, {204, 301, Move}}, 1, 1, 0, 20, 0.9f, 45 * 0.45f, 40 * 0.45f},
    {{{211, 301, Move}}, 7, 0, 1, 20, 0.94f, 10, 25},
    {{{240, 290, Move}}, 29, -11, 2, 4, 0.96f, 20, 30},
    {{{300, 250, Move}}, 60, -40, 2, 4, 0.96f, 20, 30},
    {{{360, 280, Move}}, 60, 30, 2, 4, 0.96f, 20, 30},
    {{{490, 300, Move}}, 130, 20, 2, 4, 0.96f, 20, 30},  // near an edge, so not projected
    {{{488, 300, Move}}, -2, 0, 0, 20, 0.9f, 45 * 0.45f, 40 * 0.45f},
    {{{488, 300, Move}}, 0, 0, 0, 20, 0.9f, 45 * 0.45f, 40 * 0.45f},
    {{{460, 300, Move}, {460, 300, Up}}, 0, 0, -1, 40, 0.98f, 0, 48},  // ends like a tap
    {{}, 0, 0, -1, 40, 0.98f, 0, 56},
};

/// Returns the velocities that the library uploads during the gesture and in one more frame.
std::vector<Bytes> uploadsOfLibrary() {
    std::vector<Bytes> uploads;
    TestHost host(screenWidth, screenHeight);
    host.setUp();
    host.rasterise(0);
    host.recorder.textureUpload = [&](int, int, std::span<const std::uint8_t> rgba) {
        uploads.emplace_back(rgba.begin(), rgba.end());
    };
    std::srand(1);
    for (const GestureFrame& frame : gesture) {
        for (const Touch& touch : frame.events) {
            host.touch(touch.x, touch.y, touch.action, pressure);
        }
        host.draw();
    }
    host.draw();
    return uploads;
}

/// Creates a flow at rest on grids for the screen's size.
void makeStill(velmora::EffectState& state) {
    velmora::applySettings(state, screenWidth, screenHeight, true);
    for (velmora::FloatGrid* const grid : {&state.velocity, &state.velocityScratch, &state.pressure,
                                           &state.pressureScratch, &state.divergence}) {
        velmora::reallocateGrid(*grid, columns, rows, 2);
        velmora::clearGrid(*grid, 2);
    }
    state.velocityTarget = {0, 0, columns, rows};
    velmora::reallocatePackedVelocity(state.packedVelocity, columns, rows);
}

/// Returns the expected uploads. The first upload is a flow at rest. Each later upload is the result of one frame's
/// step.
std::vector<Bytes> uploadsOfSteps() {
    velmora::EffectState state;
    makeStill(state);
    Bytes still;
    for (int cell = 0; cell < columns * rows; ++cell) {
        still.insert(still.end(), {127, 0, 127, 0});
    }
    std::vector<Bytes> uploads{still};
    std::srand(1);
    Touch touch{};
    for (const GestureFrame& frame : gesture) {
        const Touch before = touch;
        touch = frame.events.empty() ? touch : frame.events.back();
        velmora::TouchVariables variables;
        variables.touchX = touch.x;
        variables.touchY = touch.y;
        variables.touchDeltaX = frame.deltaX;
        variables.touchDeltaY = frame.deltaY;
        state.stepSettings = velmora::beginSolverStep(state, variables);
        velmora::runSolverStep(&state);
        uploads.emplace_back(state.packedVelocity, state.packedVelocity + columns * rows * 4);
        state.dragMode = static_cast<velmora::DragMode>(frame.mode);
        state.sourceRadius = frame.sourceRadius;
        state.velocityDissipation = frame.velocityDissipation;
        state.sourceStrength = frame.sourceStrength;
        state.inkRadius = frame.inkRadius;
        if (frame.mode == velmora::FastDrag) {
            state.dragSegment = {before.x, before.y, touch.x, touch.y};
        }
    }
    return uploads;
}

TEST(Velocity, OfAFrameIsUploadedOneFrameLater) {
    const std::vector<Bytes> found = uploadsOfLibrary();
    const std::vector<Bytes> expected = uploadsOfSteps();
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t frame = 0; frame < found.size(); ++frame) {
        EXPECT_TRUE(found[frame] == expected[frame]) << "frame " << frame;
        // From frame 4 on, the flow must move; otherwise, the comparison would prove nothing.
        EXPECT_EQ(expected[frame] == expected[0], frame < 4) << "frame " << frame;
    }
    EXPECT_EQ(uploadsOfLibrary(), found) << "a repeated gesture must give the same velocities";
}

}  // namespace
}  // namespace gltest
