#include "solver/solver_step.h"

#include <cstdlib>
#include <functional>

#include "simd/flush_subnormals.h"
#include "solver/velocity_packing.h"
#include "test_memory.h"
#include "tests/oracle/plain_kernels.h"

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

TouchVariables touchAt(int x, int y, int deltaX, int deltaY) {
    TouchVariables touch;
    touch.touchX = x;
    touch.touchY = y;
    touch.touchDeltaX = deltaX;
    touch.touchDeltaY = deltaY;
    return touch;
}

/// A drag in mid-stroke on random grids.
void makeDrag(EffectState& state, DragMode mode, const TouchVariables& touch) {
    applySettings(state, screenWidth, screenHeight, true);
    state.dragMode = mode;
    makeGrids(state, state.velocityGridWidth, state.velocityGridHeight);
    state.dragSegment = {touch.touchX - 60, touch.touchY + 35, touch.touchX, touch.touchY};
    state.inkRadius = 30.0f;
}

/// What the rest of a frame changes while the worker runs must not reach it.
void disturbSettings(EffectState& state) {
    state.dragSegment = {};
    state.timeStep = state.velocityDissipation = 77.0f;
    state.sourceStrength = state.sourceRadius = state.inkRadius = 77.0f;
    state.touchMargin = 77;
    state.dragMode = MediumDrag;
}

using Change = std::function<void(EffectState&)>;

/// Runs a step of a drag that `change` has altered beside the plain code's, whole or in its two
/// halves with a disturbance between; compares all that they leave behind.
void compareStep(
    DragMode mode, int touchX, int touchY, const Change& change = [](EffectState&) {}) {
    const TouchVariables touch = touchAt(touchX, touchY, 14, -6);
    EffectState state, whole, plain;
    for (EffectState* const each : {&state, &whole, &plain}) {
        makeDrag(*each, mode, touch);
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
    const StepSettings settings = beginSolverStep(state, touch);
    EXPECT_EQ(state.touchMargin, plain.touchMargin);
    EXPECT_EQ(state.sourceRadius, plain.sourceRadius);
    EXPECT_EQ(state.sourceStrength, plain.sourceStrength);
    disturbSettings(state);
    runSolverStep(state, settings);
    std::srand(7);
    EXPECT_EQ(runSolverStep(whole, touch), nullptr);
    EXPECT_EQ(whole.touchMargin, plain.touchMargin);
    EXPECT_EQ(state.velocity.data == before[0], plain.velocity.data == before[1]);
    for (const EffectState* const each : {&state, &whole}) {
        EXPECT_TRUE(areSame(contents(each->velocity, 2), contents(plain.velocity, 2)));
        EXPECT_TRUE(areSame(contents(each->pressure, 1), contents(plain.pressure, 1)));
        EXPECT_TRUE(std::equal(plain.packedVelocity, plain.packedVelocity + cells * 4,
                               each->packedVelocity));
    }
}

TEST(SolverStep, EveryModeAtEveryDistanceFromEveryEdge) {
    for (const DragMode mode : {TapMode, SlowDrag, MediumDrag, FastDrag}) {
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
        compareStep(FastDrag, 30, 110, [=](EffectState& state) { state.touchMargin = margin; });
    }
    for (const int iterations : {-3, 0, 1, 2, 25}) {
        compareStep(SlowDrag, 150, 110,
                    [=](EffectState& state) { state.jacobiIterations = iterations; });
    }
    for (int cell = 0; cell < 9 * 9; ++cell) {
        compareStep(MediumDrag, 150, 110, [=](EffectState& state) {
            state.gridScale = 1.5f;
            state.timeStep = 0.4f;
            state.gradientScale = 0.3f;
            makeGrids(state, 1 + cell % 9, 1 + cell / 9);
        });
    }
}

/// The flow after a step far from the touch on a flow of one speed, but in one cell.
std::vector<float> afterStep(float speed, std::size_t cell, float speedOfCell) {
    EffectState state;
    const TouchVariables touch = touchAt(5, 5, 0, 0);
    makeDrag(state, TapMode, touch);
    std::fill_n(state.velocity.data, contents(state.velocity, 2).size(), speed);
    std::fill_n(state.velocity.data + cell * 2, 2, speedOfCell);
    runSolverStep(state, touch);
    const auto flow = contents(state.velocity, 2);
    return {flow.begin(), flow.end()};
}

TEST(SolverStep, OnlyWhatIsNotFiniteStartsFromRest) {
    const std::pair<float, float> cases[] = {{1e-39f, FlushSubnormals::flushes() ? 0.0f : 0.9e-39f},
                                             {1e-30f, 0.9e-30f},
                                             {1.1e6f, 0.99e6f},
                                             {-1e30f, -0.9e30f},
                                             {3e38f, 2.7e38f},
                                             {infinity, 0.0f},
                                             {-infinity, 0.0f},
                                             {nan, 0.0f}};
    for (const auto& [speed, expected] : cases) {
        for (const float carried : afterStep(speed, 0, speed)) {
            ASSERT_FLOAT_EQ(carried, expected) << speed;
        }
        const std::size_t cells = afterStep(speed, 0, speed).size() / 2;
        for (std::size_t cell = 0; cell < cells; ++cell) {
            const std::vector<float> beside = afterStep(0.5f, cell, speed);
            EXPECT_FLOAT_EQ(cell < cells / 2 ? beside.back() : beside.front(), 0.45f) << speed;
            EXPECT_TRUE(
                std::all_of(beside.begin(), beside.end(), [](float v) { return std::isfinite(v); }))
                << speed << " in cell " << cell;
        }
    }
    volatile float tiny = 1e-39f;
    EXPECT_NE(tiny * 0.5f, 0.0f) << "the mode is left as it was found";
}

TEST(SolverStep, TinyAbsentAndHostileGridsAreSurvived) {
    for (const DragMode mode : {TapMode, SlowDrag, MediumDrag, FastDrag}) {
        for (int size = -1; size < 16; ++size) {
            EffectState state;
            applySettings(state, screenWidth, screenHeight, true);
            if (size >= 0) {
                makeGrids(state, size % 4, size / 4);
            }
            for (const int touch : {110, most, least}) {
                state.dragSegment = {most, least, touch, touch};
                state.dragMode = mode;
                EXPECT_EQ(runSolverStep(state, touchAt(touch, touch, most, least)), nullptr);
            }
        }
    }
}

}  // namespace
}  // namespace velmora::test
