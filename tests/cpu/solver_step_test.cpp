#include "solver/solver_step.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include "simd/flush_subnormals.h"
#include "solver/velocity_packing.h"
#include "test_memory.h"

namespace velmora::test {
namespace {

constexpr int columns = 25, rows = 19;  // not a multiple of four
constexpr DragMode allModes[] = {TapMode, SlowDrag, MediumDrag, FastDrag};

/// A solver whose initial settings let a step change nothing: the flow is at rest, there is no sink and no projection,
/// and the touch is in the middle of the screen.
struct Solver {
    explicit Solver(int width = columns, int height = rows) {
        applySettings(state, 12 * width, 12 * height, true);
        for (FloatGrid* const grid : {&state.velocity, &state.velocityScratch}) {
            reallocateGrid(*grid, width, height, 2);
            clearGrid(*grid, 2);
        }
        for (FloatGrid* const grid : {&state.pressure, &state.pressureScratch, &state.divergence}) {
            reallocateGrid(*grid, width, height, 1);
            clearGrid(*grid, 1);
        }
        state.velocityTarget = {1, 1, width, height};
        state.dragMode = TapMode;
        state.velocityDissipation = 1.0f;
        state.sourceStrength = 0.0f;
        state.inkRadius = 30.0f;
        TouchVariables touch;
        touch.touchX = 6 * width;
        touch.touchY = 6 * height;
        settings = beginSolverStep(state, touch);
        settings.isProjected = false;
    }
    /// Overwrites the settings in `state`, then runs a step. The step must read only the copy of the settings in
    /// `stepSettings`.
    void step() {
        state.dragSegment = {};
        state.timeStep = state.velocityDissipation = 77.0f;
        state.sourceStrength = state.sourceRadius = state.inkRadius = 77.0f;
        state.touchMargin = 77;
        state.dragMode = MediumDrag;
        EXPECT_EQ(runSolverStep(&state), nullptr);
    }
    /// Fills every grid with random values. Each call gives the same values.
    void randomise() {
        std::mt19937 random(17);
        const std::size_t cells = contents(state.pressure, 1).size();
        const auto fill = [&](const FloatGrid& grid, std::size_t floats) {
            fillRandomly({grid.data, cells * floats}, {20.0f}, random);
        };
        fill(state.velocity, 2);
        std::copy_n(state.velocity.data, cells * 2, state.velocityScratch.data);
        for (const FloatGrid& grid : {state.pressure, state.pressureScratch, state.divergence}) {
            fill(grid, 1);
        }
    }
    Float2 velocityAt(int i, int j) const {
        const float* const cell = state.velocity.data + (i + j * state.velocity.width) * 2;
        return {cell[0], cell[1]};
    }
    std::vector<float> flow() const { return contents(state.velocity, 2); }
    std::vector<std::uint8_t> packed() const {
        return {state.packedVelocity, state.packedVelocity + flow().size() * 2};
    }

    EffectState state;
    StepSettings& settings = state.stepSettings;
};

TEST(SolverStep, MarginRuleByModeAndDistanceFromEveryEdge) {
    constexpr float radius = 7.0f, strength = 8.0f;  // radius and strength of the preset
    const struct {
        DragMode mode;
        int distance;
        bool isProjected;
        int margin;
        float radius, strength;
    } cases[] = {
        {TapMode, 60, false, 60, radius, strength},
        {TapMode, 61, true, 60, radius, strength},
        {SlowDrag, -40, false, 12, 4, 40},
        {SlowDrag, 12, false, 12, 4, 40},
        {SlowDrag, 13, true, 12, 4, 40},
        {SlowDrag, 60, true, 12, 4, 40},
        {SlowDrag, 61, true, 60, radius, strength},
        {MediumDrag, -40, false, 10, 2, 2},
        {MediumDrag, 10, false, 10, 2, 2},
        {MediumDrag, 11, true, 10, radius, strength},
        {MediumDrag, 60, true, 10, radius, strength},
        {MediumDrag, 61, true, 60, radius, strength},
        {FastDrag, 60, false, 60, radius, strength},
        {FastDrag, 61, true, 60, radius, strength},
    };
    constexpr int width = 301, height = 230, marginBefore = 33;
    for (const auto& c : cases) {
        for (const auto& [x, y] : {std::pair{c.distance, 110},
                                   {width - c.distance, 110},
                                   {150, c.distance},
                                   {150, height - c.distance}}) {
            SCOPED_TRACE(testing::Message() << "mode " << c.mode << " at " << x << ", " << y);
            EffectState state;
            applySettings(state, width, height, true);
            state.dragMode = c.mode;
            state.touchMargin = marginBefore;
            state.sourceRadius = radius;
            state.sourceStrength = strength;
            TouchVariables touch;
            touch.touchX = x;
            touch.touchY = y;
            const StepSettings settings = beginSolverStep(state, touch);
            EXPECT_EQ(settings.isProjected, c.isProjected);
            EXPECT_EQ(settings.touchMargin, marginBefore);
            EXPECT_EQ(state.touchMargin, c.margin);
            EXPECT_EQ((std::pair{state.sourceRadius, state.sourceStrength}),
                      (std::pair{c.radius, c.strength}));
            EXPECT_EQ((std::pair{settings.sourceRadius, settings.sourceStrength}),
                      (std::pair{c.radius, c.strength}));
        }
    }
}

TEST(SolverStep, AFlowAtRestStaysAtRest) {
    for (const DragMode mode : allModes) {
        Solver solver;
        solver.settings.dragMode = mode;
        solver.settings.isProjected = true;
        solver.settings.dragSegment = {150, 114, 150, 114};
        solver.step();
        const auto flow = solver.flow();
        EXPECT_EQ(std::count(flow.begin(), flow.end(), 0.0f), std::ssize(flow));
        const auto packed = solver.packed();
        for (std::size_t at = 0; at < packed.size(); ++at) {
            ASSERT_EQ(packed[at], at % 2 == 0 ? 127 : 0);
        }
    }
}

/// Flow and drag at the start of a solver step. Positions are in screen pixels, with y up.
struct Scene {
    int width, height;
    std::vector<float> flow;
    Float2 touch, delta, from, to;
};

Scene withAxesSwapped(const Scene& scene) {
    const auto swapped = [](Float2 p) { return Float2{p.y, p.x}; };
    Scene result{scene.height,         scene.width,         scene.flow,       swapped(scene.touch),
                 swapped(scene.delta), swapped(scene.from), swapped(scene.to)};
    for (int cell = 0; cell < scene.width * scene.height; ++cell) {
        const int i = cell % scene.width, j = cell / scene.width;
        const auto from = scene.flow.begin() + cell * 2;
        const auto to = result.flow.begin() + (j + i * scene.height) * 2;
        to[0] = from[1];
        to[1] = from[0];
    }
    return result;
}

/// Returns the scene mirrored in x. The step measures the distance to the touch from the lower left corner of each
/// cell. The touch is therefore mirrored at the midpoint between the first and the last of these corners. The stroke is
/// mirrored at the middle of the screen.
Scene mirroredInX(const Scene& scene) {
    Scene result = scene;
    const auto corners = static_cast<float>(12 * (scene.width - 1));
    result.touch.x = corners - scene.touch.x;
    result.delta.x = -scene.delta.x;
    result.from.x = corners + 12.0f - scene.from.x;
    result.to.x = corners + 12.0f - scene.to.x;
    for (int cell = 0; cell < scene.width * scene.height; ++cell) {
        const int mirrored = cell - cell % scene.width + (scene.width - 1 - cell % scene.width);
        result.flow[static_cast<std::size_t>(mirrored * 2)] =
            -scene.flow[static_cast<std::size_t>(cell * 2)];
        result.flow[static_cast<std::size_t>(mirrored * 2 + 1)] =
            scene.flow[static_cast<std::size_t>(cell * 2 + 1)];
    }
    return result;
}

Scene afterStep(Scene scene, DragMode mode) {
    Solver solver(scene.width, scene.height);
    StepSettings& settings = solver.settings;
    const auto whole = [](float value) { return static_cast<std::int32_t>(value); };
    const std::int32_t top = 12 * scene.height;
    settings.dragMode = mode;
    settings.isProjected = true;
    settings.touchX = whole(scene.touch.x);
    settings.touchY = top - whole(scene.touch.y);
    settings.touchDeltaX = whole(scene.delta.x);
    settings.touchDeltaY = -whole(scene.delta.y);
    settings.dragSegment = {whole(scene.from.x), top - whole(scene.from.y), whole(scene.to.x),
                            top - whole(scene.to.y)};
    std::copy(scene.flow.begin(), scene.flow.end(), solver.state.velocity.data);
    solver.step();
    scene.flow = solver.flow();
    return scene;
}

TEST(SolverStep, MirroredInputGivesAMirroredResult) {
    Solver random;
    random.randomise();
    const Scene scene{columns,        rows,           random.flow(),   {140.0f, 105.0f},
                      {14.0f, -6.0f}, {71.0f, 62.0f}, {141.0f, 103.0f}};
    for (const DragMode mode : allModes) {
        for (Scene (*const symmetry)(const Scene&) : {mirroredInX, withAxesSwapped}) {
            const std::vector<float> expected = symmetry(afterStep(scene, mode)).flow;
            const std::vector<float> found = afterStep(symmetry(scene), mode).flow;
            for (std::size_t at = 0; at < found.size(); ++at) {
                ASSERT_NEAR(found[at], expected[at], 1e-3f) << "mode " << mode << ", " << at;
            }
        }
    }
}

/// Returns the largest divergence in the interior of the grid. Cells near the border are left out: the pressure is 0 at
/// the border, so some divergence remains there.
float largestDivergence(const Solver& solver) {
    float largest = 0.0f;
    for (int j = 4; j < rows - 4; ++j) {
        for (int i = 4; i < columns - 4; ++i) {
            largest = std::max(
                largest, std::abs(solver.velocityAt(i + 1, j).x - solver.velocityAt(i - 1, j).x +
                                  solver.velocityAt(i, j + 1).y - solver.velocityAt(i, j - 1).y));
        }
    }
    return largest;
}

/// Runs a step on a flow that converges and diverges. If `isProjected` is false, the step does not change the flow.
void projectWaves(Solver& solver, bool isProjected) {
    for (int cell = 0; cell < columns * rows; ++cell) {
        const int column = cell % columns, row = cell / columns;
        const auto i = static_cast<float>(column), j = static_cast<float>(row);
        solver.state.velocity.data[cell * 2] = std::sin(0.5f * i) * std::cos(0.4f * j);
        solver.state.velocity.data[cell * 2 + 1] = std::sin(0.6f * j + 0.3f * i);
    }
    solver.settings.timeStep = 0.0f;
    solver.settings.isProjected = isProjected;
    solver.step();
}

TEST(SolverStep, ProjectionLowersTheDivergence) {
    Solver advected, once, projected, converged;
    once.state.jacobiIterations = 1;
    converged.state.jacobiIterations = 400;
    projectWaves(advected, false);
    projectWaves(once, true);
    projectWaves(projected, true);
    projectWaves(converged, true);
    EXPECT_NE(once.flow(), advected.flow())
        << "the projection must use the pressure from its only Jacobi iteration";
    EXPECT_LT(largestDivergence(projected), 0.3f * largestDivergence(advected));
    EXPECT_LT(largestDivergence(converged), 0.1f * largestDivergence(advected));
}

TEST(SolverStep, TheSinkJittersAroundTheTouch) {
    Solver solver;
    solver.settings.isProjected = true;
    solver.settings.touchY = 80;
    Float2 lowest{infinity, infinity}, highest{-infinity, -infinity};
    for (int step = 0; step < 300; ++step) {
        solver.step();
        const Float2 sink = solver.state.computeDivergencePass.sourcePoint;
        lowest = {std::min(lowest.x, sink.x), std::min(lowest.y, sink.y)};
        highest = {std::max(highest.x, sink.x), std::max(highest.y, sink.y)};
    }
    constexpr float y = 12 * rows - 80;
    EXPECT_TRUE(lowest.x >= 145.0f && lowest.x < 145.2f && highest.x <= 155.0f &&
                highest.x > 154.8f);
    EXPECT_TRUE(lowest.y >= y - 5 && lowest.y < y - 4.8f && highest.y <= y + 5 &&
                highest.y > y + 4.8f);
}

TEST(SolverStep, AFlowIsAdvectedByVelocityTimesTimeStep) {
    Solver solver;
    for (int cell = 0; cell < columns * rows; ++cell) {
        solver.state.velocity.data[cell * 2] = 8.0f;
    }
    solver.state.velocity.data[(10 + 9 * columns) * 2 + 1] = 1.0f;
    solver.settings.timeStep = 0.5f;
    solver.settings.velocityDissipation = 0.75f;
    solver.step();
    EXPECT_EQ(solver.velocityAt(20, 9).x, 6.0f);
    EXPECT_EQ(solver.velocityAt(10, 9).y, 0.0f);
    EXPECT_GT(solver.velocityAt(14, 9).y, 0.3f);
}

/// Runs a step with a stroke from left to right. Returns the velocity along x of a cell beside the stroke.
float speedBesideStroke(DragMode mode, int marginBefore) {
    Solver solver;
    solver.settings.dragMode = mode;
    solver.settings.dragSegment = {30, 80, 250, 80};
    solver.settings.touchX = 30;
    solver.settings.touchMargin = marginBefore;
    solver.settings.timeStep = 0.0f;
    solver.step();
    return solver.velocityAt(10, 13).x;
}

TEST(SolverStep, OnlyAFastDragInsideThePreviousMarginPushes) {
    for (const int margin : {10, 29}) {
        EXPECT_GT(speedBesideStroke(FastDrag, margin), 100.0f) << margin;
    }
    for (const int margin : {30, 60}) {
        EXPECT_EQ(speedBesideStroke(FastDrag, margin), 0.0f) << margin;
    }
    for (const DragMode mode : {TapMode, SlowDrag, MediumDrag}) {
        EXPECT_EQ(speedBesideStroke(mode, 10), 0.0f) << mode;
    }
}

/// Runs a step on a flow whose speed is the same in all cells except one. Returns the new flow.
std::vector<float> afterStep(float speed, std::size_t cell, float speedOfCell) {
    Solver solver;
    solver.settings.velocityDissipation = 0.9f;
    std::fill_n(solver.state.velocity.data, columns * rows * 2, speed);
    std::fill_n(solver.state.velocity.data + cell * 2, 2, speedOfCell);
    solver.step();
    return solver.flow();
}

TEST(SolverStep, OnlyNonFiniteVelocitiesBecomeZero) {
    const std::pair<float, float> cases[] = {{1e-39f, FlushSubnormals::flushes() ? 0.0f : 0.9e-39f},
                                             {1e-30f, 0.9e-30f},
                                             {1.1e6f, 0.99e6f},
                                             {-1e30f, -0.9e30f},
                                             {3e38f, 2.7e38f},
                                             {infinity, 0.0f},
                                             {-infinity, 0.0f},
                                             {nan, 0.0f}};
    for (const auto& [speed, expected] : cases) {
        for (const float advected : afterStep(speed, 0, speed)) {
            ASSERT_FLOAT_EQ(advected, expected) << speed;
        }
        constexpr std::size_t cells = columns * rows;
        for (std::size_t cell = 0; cell < cells; ++cell) {
            const std::vector<float> beside = afterStep(0.5f, cell, speed);
            EXPECT_FLOAT_EQ(cell < cells / 2 ? beside.back() : beside.front(), 0.45f) << speed;
            EXPECT_TRUE(
                std::all_of(beside.begin(), beside.end(), [](float v) { return std::isfinite(v); }))
                << speed << " in cell " << cell;
        }
    }
}

TEST(SolverStep, RestoresTheSubnormalMode) {
    Solver().step();
    volatile float tiny = 1e-39f;
    EXPECT_NE(tiny * 0.5f, 0.0f);
}

TEST(SolverStep, TinyMissingAndNonFiniteGridsDoNotCrash) {
    for (const DragMode mode : allModes) {
        for (int size = -1; size < 16; ++size) {
            std::optional<Solver> solver;
            size < 0 ? solver.emplace(-1, -1) : solver.emplace(size % 4, size / 4);
            solver->randomise();
            for (const int place : {110, most, least}) {
                TouchVariables touch;
                touch.touchX = touch.touchY = place;
                touch.touchDeltaX = most;
                touch.touchDeltaY = least;
                solver->state.dragSegment = {most, least, place, place};
                solver->state.dragMode = mode;
                for (const bool isProjected : {false, true}) {
                    solver->settings = beginSolverStep(solver->state, touch);
                    solver->settings.isProjected |= isProjected;
                    solver->step();
                }
            }
        }
    }
}

}  // namespace
}  // namespace velmora::test
