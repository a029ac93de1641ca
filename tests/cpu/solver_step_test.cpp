#include "solver/solver_step.h"

#include <cstdlib>

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

/// One step, put together from the operators.
struct Oracle {
    explicit Oracle(const EffectState& before, const TouchSnapshot& now)
        : state(before), touch(now) {}

    void run() {
        if (touch.dragMode == 2 && isInside(margin)) {
            addStroke();
        }
        advect();
        if (marginRule()) {
            project();
        }
    }

    bool isInside(int m) const {
        return m < touch.touchX && touch.touchX < state.screenWidth - m && m < touch.touchY &&
               touch.touchY < state.screenHeight - m;
    }
    Float2 flipped(int x, int y) const {
        return {static_cast<float>(x), static_cast<float>(state.screenHeight - y)};
    }
    FloatGrid grid(std::vector<float>& values) const { return {values.data(), width, height}; }

    /// Every cell of `pass`, the parameters that follow from the sizes added.
    template <class Pass>
    std::vector<float> cellsOf(Pass& pass) const {
        pass.texelSize = {1.0f / static_cast<float>(width), 1.0f / static_cast<float>(height)};
        if constexpr (requires { pass.cellToScreen; }) {
            pass.cellToScreen = {
                static_cast<float>(state.screenWidth) / static_cast<float>(width),
                static_cast<float>(state.screenHeight) / static_cast<float>(height)};
        }
        return evaluateCells(pass, width, height);
    }
    template <class Pass>
    void changeVelocity(Pass& pass) {
        pass.velocity = grid(velocity);
        velocity = cellsOf(pass);
        ++swaps;
    }

    void addStroke() {
        const DragSegment& segment = state.dragSegment;
        AddVelocity pass;
        pass.previous = flipped(segment.fromX, segment.fromY);
        pass.current = flipped(segment.toX, segment.toY);
        const float dx = pass.current.x - pass.previous.x;
        const float dy = pass.current.y - pass.previous.y;
        pass.length = dx == 0.0f && dy == 0.0f ? 1.0f : std::sqrt(dx * dx + dy * dy);
        pass.normal = {dx / pass.length, dy / pass.length};
        pass.radius = state.inkRadius;
        changeVelocity(pass);
    }

    void advect() {
        AdvectVelocity pass;
        pass.source = grid(velocity);
        pass.timeStep = state.timeStep;
        pass.dissipation = state.velocityDissipation;
        pass.touchPoint = flipped(touch.touchX, touch.touchY);
        pass.touchDelta = {static_cast<float>(touch.touchDeltaX),
                           static_cast<float>(-touch.touchDeltaY)};
        pass.dragMode = touch.dragMode;
        changeVelocity(pass);
    }

    /// Whether the step goes on to the projection.
    bool marginRule() {
        margin = 60;
        if (isInside(60) || touch.dragMode < 0 || touch.dragMode > 1) {
            return isInside(60);
        }
        const bool isSlow = touch.dragMode == 0;
        margin = isSlow ? 12 : 10;
        if (isSlow || !isInside(margin)) {
            sourceRadius = isSlow ? 4.0f : 2.0f;
            sourceStrength = isSlow ? 40.0f : 2.0f;
        }
        return isInside(margin);
    }

    void project() {
        const double u1 = std::rand() / 2147483648.0;
        const double u2 = std::rand() / 2147483648.0;
        ComputeDivergence divergence;
        divergence.velocity = grid(velocity);
        divergence.halfInverseCellSize = 0.5f / state.gridScale;
        divergence.sourceStrength = sourceStrength;
        divergence.sourceRadius = sourceRadius;
        divergence.sourcePoint = {
            static_cast<float>(touch.touchX + (0.5 - u1) * 10),
            static_cast<float>(state.screenHeight - touch.touchY + (0.5 - u2) * 10)};
        std::vector<float> b = cellsOf(divergence);
        pressure.assign(b.size(), 0.0f);
        for (int iteration = 0; iteration < state.jacobiIterations; ++iteration) {
            relax(b);
        }
        SubtractGradient gradient;
        gradient.pressure = grid(pressure);
        gradient.gradientScale = state.gradientScale;
        changeVelocity(gradient);
    }

    void relax(std::vector<float>& b) {
        Jacobi jacobi;
        jacobi.x = grid(pressure);
        jacobi.b = grid(b);
        jacobi.alpha = -(state.gridScale * state.gridScale);
        jacobi.rbeta = 0.25f;
        std::vector<float> next = cellsOf(jacobi);
        for (int cell = 0; cell < width * height; ++cell) {
            const int i = cell % width;
            const int j = cell / width;
            if (i == 0 || i == width - 1 || j == 0 || j == height - 1) {
                next[static_cast<std::size_t>(cell)] = 0.0f;
            }
        }
        pressure = std::move(next);
    }

    const EffectState& state;
    TouchSnapshot touch;
    int width = state.velocity.width, height = state.velocity.height;
    std::vector<float> velocity = contents(state.velocity, 2);
    std::vector<float> pressure = contents(state.pressure, 1);
    int margin = state.touchMargin;
    float sourceRadius = state.sourceRadius, sourceStrength = state.sourceStrength;
    int swaps = 0;  // of the two velocity grids
};

struct Step {
    Step(int dragMode, int touchX, int touchY) : touch{touchX, touchY, 14, -6, dragMode, 0.99f} {
        applySettings(state, screenWidth, screenHeight, true);
        makeGrids(state, state.velocityGridWidth, state.velocityGridHeight);
        state.dragSegment = {touchX - 60, touchY + 35, touchX, touchY};
        state.inkRadius = 30.0f;
    }

    /// Runs the step and compares all that it leaves behind.
    void runAndCompare() {
        SCOPED_TRACE(testing::Message()
                     << "mode " << touch.dragMode << " at " << touch.touchX << ", " << touch.touchY
                     << ", margin " << state.touchMargin << ", grid " << state.velocity.width
                     << " x " << state.velocity.height);
        const float* before = state.velocity.data;
        Oracle oracle(state, touch);
        std::srand(7);
        oracle.run();
        std::srand(7);
        prepareSolverStep(state, touch);
        EXPECT_EQ(state.touchMargin, oracle.margin);
        EXPECT_EQ(state.sourceRadius, oracle.sourceRadius);
        EXPECT_EQ(state.sourceStrength, oracle.sourceStrength);
        disturbSettings();
        runSolverStep(state);
        EXPECT_TRUE(areSame(contents(state.velocity, 2), oracle.velocity));
        EXPECT_TRUE(areSame(contents(state.pressure, 1), oracle.pressure));
        EXPECT_EQ(state.velocity.data == before, oracle.swaps % 2 == 0);
        std::vector<std::uint8_t> packed(oracle.velocity.size() * 2);
        packCells(packed.data(), oracle.velocity.data(), std::ssize(packed) / 4);
        EXPECT_TRUE(std::equal(packed.begin(), packed.end(), state.packedVelocity));
    }

    /// What the rest of a frame changes while the worker runs must not reach it.
    void disturbSettings() {
        state.dragSegment = {};
        state.screenWidth = state.screenHeight = 1;
        state.gridScale = state.timeStep = state.gradientScale = state.velocityDissipation = 77.0f;
        state.sourceStrength = state.sourceRadius = state.inkRadius = 77.0f;
        state.jacobiIterations = 3;
        state.dragMode = 1;
        gTouch.touchX = gTouch.touchY = 5;
    }

    EffectState state;
    TouchSnapshot touch;
};

TEST(SolverStep, EveryModeAtEveryDistanceFromEveryEdge) {
    for (const int mode : {-1, 0, 1, 2}) {
        for (const int distance : {-40, 0, 10, 11, 12, 13, 59, 60, 61, 100}) {
            Step(mode, distance, 110).runAndCompare();
            Step(mode, screenWidth - distance, 110).runAndCompare();
            Step(mode, 150, distance).runAndCompare();
            Step(mode, 150, screenHeight - distance).runAndCompare();
        }
    }
}

TEST(SolverStep, StrokesFollowTheMarginThatTheLastStepLeft) {
    for (const int margin : {10, 12, 29, 30, 60}) {
        Step step(2, 30, 110);
        step.state.touchMargin = margin;
        step.runAndCompare();
    }
}

TEST(SolverStep, IterationsSettingsAndOddSizes) {
    for (const int iterations : {-3, 0, 1, 2, 25}) {
        Step step(0, 150, 110);
        step.state.jacobiIterations = iterations;
        step.runAndCompare();
    }
    for (int cell = 0; cell < 9 * 9; ++cell) {
        Step step(1, 150, 110);
        step.state.gridScale = 1.5f;
        step.state.timeStep = 0.4f;
        step.state.gradientScale = 0.3f;
        makeGrids(step.state, 1 + cell % 9, 1 + cell / 9);
        step.runAndCompare();
    }
}

TEST(SolverStep, SubnormalsCountAsZeroDuringTheStepOnly) {
    Step step(-1, 5, 5);
    std::fill_n(step.state.velocity.data, 25 * 19 * 2, 1e-39f);
    step.state.velocity.data[0] = 1e-36f;
    prepareSolverStep(step.state, step.touch);
    runSolverStep(step.state);
    EXPECT_GT(step.state.velocity.data[0], 0.0f);
    EXPECT_EQ(step.state.velocity.data[100], 0.0f);
    volatile float tiny = 1e-39f;
    EXPECT_NE(tiny * 0.5f, 0.0f);
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
