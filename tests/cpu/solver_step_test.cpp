#include "solver/solver_step.h"

#include <cstdlib>
#include <functional>

#include "bench/reference.h"
#include "solver/velocity_packing.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

constexpr int screenWidth = 301;  // pixels; a grid of 25 x 19 cells, so that rows end in a tail
constexpr int screenHeight = 230;

void makeGrids(EffectState& state, int width, int height) {
    std::mt19937 random(17);
    const auto make = [&](FloatGrid& grid, int floats, float limit) {
        reallocateGrid(grid, width, height, floats);
        fillRandomly({grid.data, static_cast<std::size_t>(width * height * floats)}, {limit},
                     random);
    };
    make(state.velocity, 2, 20.0f);
    make(state.velocityScratch, 2, 20.0f);
    make(state.pressure, 1, 9.0f);
    make(state.pressureScratch, 1, 9.0f);
    make(state.divergence, 1, 9.0f);
    state.velocityTarget = {1, 1, width, height};
}

/// A drag in mid-stroke on random grids.
void makeDrag(EffectState& state, const TouchSnapshot& touch) {
    applySettings(state, screenWidth, screenHeight, true);
    makeGrids(state, state.velocityGridWidth, state.velocityGridHeight);
    state.dragSegment = {touch.touchX - 60, touch.touchY + 35, touch.touchX, touch.touchY};
    state.inkRadius = 30.0f;
}

/// What the rest of a frame changes while the worker runs must not reach it.
void disturbSettings(EffectState& state) {
    state.dragSegment = {};
    state.screenWidth = state.screenHeight = 1;
    state.gridScale = state.timeStep = state.gradientScale = state.velocityDissipation = 77.0f;
    state.sourceStrength = state.sourceRadius = state.inkRadius = 77.0f;
    state.jacobiIterations = 3;
    state.dragMode = 1;
    gTouch.touchX = gTouch.touchY = 5;
}

using Change = std::function<void(EffectState&)>;

/// Runs a step of a drag that `change` has altered beside the plain code's; compares all that the
/// two leave behind.
void compareStep(
    int mode, int touchX, int touchY, const Change& change = [](EffectState&) {}) {
    const TouchSnapshot touch{touchX, touchY, 14, -6, mode, 0.99f};
    EffectState state, plain;
    for (EffectState* const each : {&state, &plain}) {
        makeDrag(*each, touch);
        change(*each);
    }
    SCOPED_TRACE(testing::Message() << "mode " << mode << " at " << touchX << ", " << touchY
                                    << ", margin " << plain.touchMargin << ", grid "
                                    << plain.velocity.width << " x " << plain.velocity.height);
    const float* const before[] = {state.velocity.data, plain.velocity.data};
    const std::ptrdiff_t cells = std::ptrdiff_t{plain.velocity.width} * plain.velocity.height;
    reallocatePackedVelocity(plain.packedVelocity, plain.velocity.width, plain.velocity.height);
    std::srand(7);
    reference::runSolverStep(plain, touch);
    std::srand(7);
    prepareSolverStep(state, touch);
    EXPECT_EQ(state.touchMargin, plain.touchMargin);
    EXPECT_EQ(state.sourceRadius, plain.sourceRadius);
    EXPECT_EQ(state.sourceStrength, plain.sourceStrength);
    disturbSettings(state);
    runSolverStep(state);
    EXPECT_TRUE(areSame(contents(state.velocity, 2), contents(plain.velocity, 2)));
    EXPECT_TRUE(areSame(contents(state.pressure, 1), contents(plain.pressure, 1)));
    EXPECT_EQ(state.velocity.data == before[0], plain.velocity.data == before[1]);
    EXPECT_TRUE(
        std::equal(plain.packedVelocity, plain.packedVelocity + cells * 4, state.packedVelocity));
}

TEST(SolverStep, EveryModeAtEveryDistanceFromEveryEdge) {
    for (const int mode : {-1, 0, 1, 2}) {
        for (const int distance : {-40, 0, 10, 11, 12, 13, 59, 60, 61, 100}) {
            compareStep(mode, distance, 110);
            compareStep(mode, screenWidth - distance, 110);
            compareStep(mode, 150, distance);
            compareStep(mode, 150, screenHeight - distance);
        }
    }
}

TEST(SolverStep, MarginsIterationsSettingsAndOddSizes) {
    for (const int margin : {10, 12, 29, 30, 60}) {  // as the step before left it
        compareStep(2, 30, 110, [=](EffectState& state) { state.touchMargin = margin; });
    }
    for (const int iterations : {-3, 0, 1, 2, 25}) {
        compareStep(0, 150, 110, [=](EffectState& state) { state.jacobiIterations = iterations; });
    }
    for (int cell = 0; cell < 9 * 9; ++cell) {
        compareStep(1, 150, 110, [=](EffectState& state) {
            state.gridScale = 1.5f;
            state.timeStep = 0.4f;
            state.gradientScale = 0.3f;
            makeGrids(state, 1 + cell % 9, 1 + cell / 9);
        });
    }
}

/// A step far from the touch, on one flow in the lower half of the screen and one in the upper.
void expectAfterStep(const Float2& lower, const Float2& upper, float expected) {
    EffectState state;
    const TouchSnapshot touch{5, 5, 0, 0, TapMode, 0.99f};
    makeDrag(state, touch);
    const std::ptrdiff_t cells = std::ptrdiff_t{state.velocity.width} * state.velocity.height;
    for (std::ptrdiff_t cell = 0; cell < cells; ++cell) {
        const Float2& flow = cell < cells / 2 ? lower : upper;
        state.velocity.data[cell * 2] = flow.x;
        state.velocity.data[cell * 2 + 1] = flow.y;
    }
    prepareSolverStep(state, touch);
    runSolverStep(state);
    for (const float carried : contents(state.velocity, 2)) {
        ASSERT_FLOAT_EQ(carried, expected) << lower.x << ", " << upper.y;
    }
}

TEST(SolverStep, SubnormalAndWildFlowsComeToRest) {
    const std::pair<float, float> cases[] = {
        {1e-39f, 0.0f},  {1e-30f, 0.9e-30f}, {1.1e6f, 0.99e6f}, {-1.1e6f, -0.99e6f}, {1.2e6f, 0.0f},
        {-1.2e6f, 0.0f}, {infinity, 0.0f},   {-infinity, 0.0f}, {nan, 0.0f}};
    for (const auto& [speed, expected] : cases) {
        expectAfterStep({speed, speed}, {speed, speed}, expected);
    }
    expectAfterStep({0.0f, 0.5f}, {0.0f, -1e30f}, 0.0f);
    volatile float tiny = 1e-39f;
    EXPECT_NE(tiny * 0.5f, 0.0f) << "the mode is left as it was found";
}

TEST(SolverStep, TinyAbsentAndHostileGridsAreSurvived) {
    for (const int mode : {-1, 0, 1, 2}) {
        for (int size = -1; size < 16; ++size) {
            EffectState state;
            applySettings(state, screenWidth, screenHeight, true);
            if (size >= 0) {
                makeGrids(state, size % 4, size / 4);
            }
            for (const int touch : {110, most, least}) {
                state.dragSegment = {most, least, touch, touch};
                prepareSolverStep(state, {touch, touch, most, least, mode, 0.99f});
                EXPECT_EQ(runSolverStep(state), nullptr);
            }
        }
    }
}

}  // namespace
}  // namespace velmora::test
