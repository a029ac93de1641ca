#include "solver/solver_step.h"

#include <cstdlib>
#include <cstring>

#include "test_memory.h"

namespace velmora::test {
namespace {

constexpr int screenWidth = 301;  // pixels; a grid of 25 x 19 cells, so that rows end in a tail
constexpr int screenHeight = 230;

void makeGrids(EffectState& state, int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    for (FloatGrid* grid : {&state.velocity, &state.velocityScratch}) {
        reallocateGrid(*grid, width, height, 2);
    }
    for (FloatGrid* grid : {&state.pressure, &state.pressureScratch, &state.divergence}) {
        reallocateGrid(*grid, width, height, 1);
    }
    const auto cells = static_cast<std::size_t>(width * height);
    fillRandomly({state.velocity.data, cells * 2}, {20.0f}, random);
    for (const FloatGrid& grid : {state.pressure, state.pressureScratch, state.divergence}) {
        fillRandomly({grid.data, cells}, {9.0f}, random);
    }
    state.velocityTarget = {1, 1, width, height};
}

std::vector<float> contents(const FloatGrid& grid, int floats) {
    return {grid.data, grid.data + grid.width * grid.height * floats};
}

// ---- One step, put together from the operators.

struct Expected {
    std::vector<float> velocity, pressure;
    int touchMargin;
    float sourceRadius, sourceStrength;
    int swaps;  // of the two velocity grids
};

/// Every cell of `pass` for an output of the size of `grid`.
template <class Pass>
std::vector<float> everyCell(const Pass& pass, const FloatGrid& grid, std::size_t floats) {
    std::vector<float> result;
    for (int j = 0; j < grid.height; ++j) {
        for (int i = 0; i < grid.width; ++i) {
            float cell[2];
            pass.evaluate({static_cast<float>(i) + 0.5f, static_cast<float>(j) + 0.5f}, cell);
            result.insert(result.end(), cell, cell + floats);
        }
    }
    return result;
}

class Oracle {
public:
    Oracle(const EffectState& state, const TouchSnapshot& touch)
        : state_(state),
          touch_(touch),
          height_(state.screenHeight),
          gw_(state.velocity.width),
          gh_(state.velocity.height),
          result_{contents(state.velocity, 2), contents(state.pressure, 1), state.touchMargin,
                  state.sourceRadius,          state.sourceStrength,        0} {}

    Expected run() {
        if (touch_.dragMode == 2 && isInside(result_.touchMargin)) {
            strokeImpulse();
        }
        advect();
        if (marginRule()) {
            project();
        }
        return result_;
    }

private:
    bool isInside(int m) const {
        return m < touch_.touchX && touch_.touchX < state_.screenWidth - m && m < touch_.touchY &&
               touch_.touchY < height_ - m;
    }

    FloatGrid grid(std::vector<float>& values) const { return {values.data(), gw_, gh_}; }

    template <class Pass>
    void fill(Pass& pass) const {
        const auto width = static_cast<float>(gw_);
        const auto height = static_cast<float>(gh_);
        pass.texelSize = {1.0f / width, 1.0f / height};
        if constexpr (requires { pass.cellToScreen; }) {
            pass.cellToScreen = {static_cast<float>(state_.screenWidth) / width,
                                 static_cast<float>(height_) / height};
        }
    }

    void writeVelocity(const VectorPass& pass) {
        result_.velocity = everyCell(pass, {nullptr, gw_, gh_}, 2);
        ++result_.swaps;
    }

    void strokeImpulse() {
        const DragSegment& segment = state_.dragSegment;
        AddVelocity pass;
        fill(pass);
        pass.velocity = grid(result_.velocity);
        pass.previous = {static_cast<float>(segment.fromX),
                         static_cast<float>(height_ - segment.fromY)};
        pass.current = {static_cast<float>(segment.toX), static_cast<float>(height_ - segment.toY)};
        const float dx = pass.current.x - pass.previous.x;
        const float dy = pass.current.y - pass.previous.y;
        pass.length = std::sqrt(dx * dx + dy * dy);
        if (pass.length == 0.0f) {
            pass.length = 1.0f;
        }
        pass.normal = {dx / pass.length, dy / pass.length};
        pass.radius = state_.inkRadius;
        writeVelocity(pass);
    }

    void advect() {
        AdvectVelocity pass;
        fill(pass);
        pass.velocity = pass.source = grid(result_.velocity);
        pass.timeStep = state_.timeStep;
        pass.dissipation = state_.velocityDissipation;
        pass.touchPoint = {static_cast<float>(touch_.touchX),
                           static_cast<float>(height_ - touch_.touchY)};
        pass.touchDelta = {static_cast<float>(touch_.touchDeltaX),
                           static_cast<float>(-touch_.touchDeltaY)};
        pass.dragMode = touch_.dragMode;
        writeVelocity(pass);
    }

    bool marginRule() {
        result_.touchMargin = 60;
        if (isInside(60)) {
            return true;
        }
        switch (touch_.dragMode) {
            case 0:
                result_.touchMargin = 12;
                result_.sourceRadius = 4.0f;
                result_.sourceStrength = 40.0f;
                return isInside(12);
            case 1:
                result_.touchMargin = 10;
                if (!isInside(10)) {
                    result_.sourceRadius = result_.sourceStrength = 2.0f;
                }
                return isInside(10);
            default:
                return false;
        }
    }

    void project() {
        const double u1 = std::rand() / 2147483648.0;
        const double u2 = std::rand() / 2147483648.0;
        ComputeDivergence divergence;
        fill(divergence);
        divergence.velocity = grid(result_.velocity);
        divergence.halfInverseCellSize = 0.5f / state_.gridScale;
        divergence.sourceStrength = result_.sourceStrength;
        divergence.sourceRadius = result_.sourceRadius;
        divergence.sourcePoint = {static_cast<float>(touch_.touchX + (0.5 - u1) * 10),
                                  static_cast<float>(height_ - touch_.touchY + (0.5 - u2) * 10)};
        std::vector<float> b = everyCell(divergence, {nullptr, gw_, gh_}, 1);
        result_.pressure.assign(b.size(), 0.0f);
        for (int iteration = 0; iteration < state_.jacobiIterations; ++iteration) {
            relax(b);
        }
        SubtractGradient gradient;
        fill(gradient);
        gradient.velocity = grid(result_.velocity);
        gradient.pressure = grid(result_.pressure);
        gradient.gradientScale = state_.gradientScale;
        writeVelocity(gradient);
    }

    void relax(std::vector<float>& b) {
        Jacobi jacobi;
        fill(jacobi);
        jacobi.x = grid(result_.pressure);
        jacobi.b = grid(b);
        jacobi.alpha = -(state_.gridScale * state_.gridScale);
        jacobi.rbeta = 0.25f;
        std::vector<float> next = everyCell(jacobi, {nullptr, gw_, gh_}, 1);
        for (int cell = 0; cell < gw_ * gh_; ++cell) {
            const int i = cell % gw_;
            const int j = cell / gw_;
            if (i == 0 || i == gw_ - 1 || j == 0 || j == gh_ - 1) {
                next[static_cast<std::size_t>(cell)] = 0.0f;
            }
        }
        result_.pressure = std::move(next);
    }

    const EffectState& state_;
    TouchSnapshot touch_;
    int height_, gw_, gh_;
    Expected result_;
};

// ----

struct Step {
    Step(int dragMode, int touchX, int touchY) : touch{touchX, touchY, 14, -6, dragMode, 0.99f} {
        applySettings(state, screenWidth, screenHeight, true);
        makeGrids(state, state.velocityGridWidth, state.velocityGridHeight, 17);
        state.dragSegment = {touchX - 60, touchY + 35, touchX, touchY};
        state.inkRadius = 30.0f;
    }

    /// Runs the step and compares all that it leaves behind.
    void runAndCompare() {
        const float* before = state.velocity.data;
        std::srand(7);
        const Expected expected = Oracle(state, touch).run();
        std::srand(7);
        prepareSolverStep(state, touch);
        disturbSettings();
        runSolverStep(state);
        EXPECT_TRUE(areSame(contents(state.velocity, 2), expected.velocity));
        EXPECT_TRUE(areSame(contents(state.pressure, 1), expected.pressure));
        EXPECT_EQ(state.velocity.data == before, expected.swaps % 2 == 0);
        EXPECT_EQ(state.touchMargin, expected.touchMargin);
        EXPECT_EQ(sourceRadius, expected.sourceRadius);
        EXPECT_EQ(sourceStrength, expected.sourceStrength);
        for (std::size_t i = 0; i < expected.velocity.size(); ++i) {
            const double shown =
                state.packedVelocity[2 * i] + state.packedVelocity[2 * i + 1] / 255.0;
            const float v = std::clamp(expected.velocity[i], -127.0f, 127.0f);
            ASSERT_NEAR(shown - 127.0, v, 1.0 / 255.0 + 1e-4);
        }
    }

    /// What the rest of a frame changes while the worker runs must not reach it.
    void disturbSettings() {
        sourceRadius = state.sourceRadius;
        sourceStrength = state.sourceStrength;
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
    float sourceRadius = 0.0f, sourceStrength = 0.0f;  // as the step's preparation left them
};

TEST(SolverStep, EveryModeAtEveryDistanceFromEveryEdge) {
    for (const int mode : {-1, 0, 1, 2}) {
        for (const int distance : {-40, 0, 10, 11, 12, 13, 59, 60, 61, 100}) {
            struct Place {
                int x, y;
            };
            for (const Place place : {Place{distance, 110},
                                      {screenWidth - distance, 110},
                                      {150, distance},
                                      {150, screenHeight - distance}}) {
                SCOPED_TRACE(testing::Message()
                             << "mode " << mode << " at " << place.x << ", " << place.y);
                Step step(mode, place.x, place.y);
                step.runAndCompare();
            }
        }
    }
}

TEST(SolverStep, StrokesFollowTheMarginThatTheLastStepLeft) {
    for (const int margin : {10, 12, 29, 30, 60}) {
        SCOPED_TRACE(testing::Message() << "margin " << margin);
        Step step(2, 30, 110);
        step.state.touchMargin = margin;
        step.runAndCompare();
    }
    Step still(2, 150, 110);
    still.state.dragSegment = {150, 110, 150, 110};
    still.runAndCompare();
}

TEST(SolverStep, IterationsSettingsAndOddSizes) {
    for (const int iterations : {-3, 0, 1, 2, 25}) {
        Step step(0, 150, 110);
        step.state.jacobiIterations = iterations;
        step.runAndCompare();
    }
    for (int width = 1; width <= 7; ++width) {
        for (int height = 1; height <= 3; ++height) {
            SCOPED_TRACE(testing::Message() << width << " x " << height);
            Step step(1, 150, 110);
            step.state.gridScale = 1.5f;
            step.state.timeStep = 0.4f;
            step.state.gradientScale = 0.3f;
            makeGrids(step.state, width, height, 3);
            step.runAndCompare();
        }
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
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    for (const int mode : {-1, 0, 1, 2}) {
        for (int size = -1; size < 16; ++size) {
            EffectState state;
            applySettings(state, screenWidth, screenHeight, true);
            if (size >= 0) {
                makeGrids(state, size % 4, size / 4, 5);
            }
            for (const int touch : {110, most, least}) {
                state.dragSegment = {most, least, touch, touch};
                prepareSolverStep(state, {touch, touch, most, least, mode, 0.99f});
                EXPECT_EQ(runSolverStep(state), nullptr);
            }
        }
        Step step(mode, 150, 110);
        std::mt19937 random(6);
        for (int i = 0; i < 20; ++i) {
            fillRandomly({step.state.velocity.data, 25 * 19 * 2}, {1e4f, true}, random);
            prepareSolverStep(step.state, step.touch);
            runSolverStep(step.state);
        }
    }
}

}  // namespace
}  // namespace velmora::test
