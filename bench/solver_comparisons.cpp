#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "bench/side_by_side.h"
#include "effect/effect_state.h"
#include "effect/tuning.h"
#include "solver/float_grid.h"
#include "solver/passes.h"
#include "solver/solver_step.h"
#include "solver/velocity_packing.h"
#include "tests/oracle/plain_kernels.h"
#include "velmora/solver_grid.h"

using namespace velmora;

namespace bench {

namespace {

struct ScreenSize {
    std::int32_t width;
    std::int32_t height;
};

std::size_t cellsOf(const FloatGrid& grid) {
    return static_cast<std::size_t>(grid.width) * static_cast<std::size_t>(grid.height);
}

/// Returns velocities for a grid: a vortex around the middle, plus noise. Each component is between -40 and 40 cells
/// per time unit of the solver.
std::vector<float> swirl(const FloatGrid& grid) {
    std::mt19937 random(2);
    std::uniform_real_distribution<float> jitter(-4.0f, 4.0f);
    std::vector<float> cells;
    for (int j = 0; j < grid.height; ++j) {
        for (int i = 0; i < grid.width; ++i) {
            const float x = static_cast<float>(i) / static_cast<float>(grid.width) - 0.5f;
            const float y = static_cast<float>(j) / static_cast<float>(grid.height) - 0.5f;
            cells.push_back(-70.0f * y + jitter(random));
            cells.push_back(70.0f * x + jitter(random));
        }
    }
    return cells;
}

std::vector<float> noise(std::size_t count, float amplitude) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> values(-amplitude, amplitude);
    std::vector<float> cells(count);
    std::generate(cells.begin(), cells.end(), [&] { return values(random); });
    return cells;
}

const TouchPreset& presetOf(DragMode dragMode) {
    return dragMode == FastDrag     ? fastDragPreset
           : dragMode == MediumDrag ? mediumDragPreset
                                    : slowDragPreset;
}

/// The solver state of a screen during a drag far from the screen's edges. The constructor runs a step, which fills in
/// the parameters of the passes.
struct Flow {
    Flow(ScreenSize screen, DragMode dragMode) {
        touch.touchX = screen.width / 2 + 7;
        touch.touchY = screen.height / 2 - 30;
        touch.touchDeltaX = 31;
        touch.touchDeltaY = -22;
        applySettings(state, screen.width, screen.height, true);
        state.dragMode = dragMode;
        const std::int32_t width = state.velocityGridWidth;
        const std::int32_t height = state.velocityGridHeight;
        reallocateGrid(state.velocity, width, height, 2);
        reallocateGrid(state.velocityScratch, width, height, 2);
        for (FloatGrid* grid : {&state.pressure, &state.pressureScratch, &state.divergence}) {
            reallocateGrid(*grid, width, height, 1);
        }
        reallocatePackedVelocity(state.packedVelocity, width, height);
        state.velocityTarget.width = width;
        state.velocityTarget.height = height;
        startVelocity = swirl(state.velocity);
        startScalars = noise(cellsOf(state.pressure), 20.0f);
        restore();
        step();
    }

    void step() {
        state.stepSettings = beginSolverStep(state, touch);
        runSolverStep(&state);
    }

    /// Runs the solver step with the kernels of the reference implementation. Takes two random numbers for the position
    /// of the sink, as the library does.
    void plainStep() {
        const double u1 = std::rand() * 0x1p-31;
        const double u2 = std::rand() * 0x1p-31;
        state.computeDivergencePass.sourcePoint = {
            static_cast<float>(touch.touchX + (0.5 - u1) * sinkJitter),
            static_cast<float>(state.screenHeight - touch.touchY + (0.5 - u2) * sinkJitter)};
        reference::repeatStep(state);
    }

    /// Restores the initial values of all grids and settings, and restarts the random number generator.
    void restore() {
        for (const FloatGrid& grid : {state.velocity, state.velocityScratch}) {
            std::copy(startVelocity.begin(), startVelocity.end(), grid.data);
        }
        for (const FloatGrid& grid : {state.pressure, state.pressureScratch, state.divergence}) {
            std::copy(startScalars.begin(), startScalars.end(), grid.data);
        }
        const TouchPreset& preset = presetOf(state.dragMode);
        state.velocityDissipation = preset.velocityDissipation;
        state.sourceStrength = preset.sourceStrength;
        state.sourceRadius = preset.sourceRadius;
        state.inkRadius = preset.inkRadius;
        state.touchMargin = 10;
        state.dragSegment = {touch.touchX - touch.touchDeltaX * 3,
                             touch.touchY - touch.touchDeltaY * 3, touch.touchX, touch.touchY};
        std::srand(1);
    }

    std::string gridName() const {
        return std::to_string(state.velocity.width) + "x" + std::to_string(state.velocity.height);
    }

    EffectState state;
    TouchVariables touch;
    std::vector<float> startVelocity, startScalars;
};

std::span<std::byte> gridBytes(const FloatGrid& grid, std::size_t floats) {
    return bytesOf(grid.data, cellsOf(grid) * floats);
}

std::span<std::byte> packedBytes(Flow& flow) {
    return bytesOf(flow.state.packedVelocity, cellsOf(flow.state.velocity) * 4);
}

Comparison stepComparison(ScreenSize screen, DragMode dragMode) {
    const auto flow = std::make_shared<Flow>(screen, dragMode);
    return {.kernel = "solver step, drag mode " + std::to_string(dragMode),
            .grid = flow->gridName(),
            .target = 2.75,
            .restore = [flow] { flow->restore(); },
            .reference = [flow] { flow->plainStep(); },
            .candidate = [flow] { flow->step(); },
            .outputs =
                [flow] {
                    const EffectState& state = flow->state;
                    return std::vector{gridBytes(state.velocity, 2), gridBytes(state.pressure, 1),
                                       gridBytes(state.divergence, 1), packedBytes(*flow)};
                }};
}

/// Returns the comparison of a kernel with its reference implementation. Both take `pass` as their argument.
template <class Pass>
Comparison stageComparison(const std::shared_ptr<Flow>& flow, const char* kernel, double target,
                           const Pass& pass, void (*plain)(const Pass&),
                           void (*library)(const Pass&), std::size_t outputFloats) {
    return {
        .kernel = kernel,
        .grid = flow->gridName(),
        .target = target,
        .restore = [flow] { flow->restore(); },
        .reference = [&pass, plain] { plain(pass); },
        .candidate = [&pass, library] { library(pass); },
        .outputs = [&pass,
                    outputFloats] { return std::vector{gridBytes(pass.output, outputFloats)}; }};
}

Comparison jacobiComparison(const std::shared_ptr<Flow>& flow) {
    Jacobi& pass = flow->state.jacobiPass;
    return {.kernel = "twenty Jacobi sweeps",
            .grid = flow->gridName(),
            .target = 1.75,
            .restore = [flow] { flow->restore(); },
            .reference = [&pass] { reference::jacobiKernel(pass, 20); },
            .candidate = [flow, &pass] { jacobiKernel(pass, 20, flow->state.velocityScratch); },
            .outputs = [&pass] { return std::vector{gridBytes(pass.x, 1)}; }};
}

Comparison packingComparison(const std::shared_ptr<Flow>& flow) {
    return {
        .kernel = "packing",
        .grid = flow->gridName(),
        .target = 6.0,
        .restore = [flow] { flow->restore(); },
        .reference =
            [flow] {
                reference::packComponents(
                    flow->state.packedVelocity, flow->state.velocity.data,
                    static_cast<std::ptrdiff_t>(cellsOf(flow->state.velocity) * 2));
            },
        .candidate =
            [flow] { packVelocity(flow->state, flow->state.velocity, flow->state.velocityTarget); },
        .outputs = [flow] { return std::vector{packedBytes(*flow)}; }};
}

void addStages(std::vector<Comparison>& all, ScreenSize screen) {
    const auto slow = std::make_shared<Flow>(screen, SlowDrag);
    const auto fast = std::make_shared<Flow>(screen, FastDrag);
    all.push_back(stageComparison(slow, "advection", 2.5, slow->state.advectVelocityPass,
                                  reference::advectVelocityKernel, velmora::advectVelocityKernel,
                                  2));
    all.push_back(stageComparison(fast, "advection with push", 2.8, fast->state.advectVelocityPass,
                                  reference::advectVelocityKernel, velmora::advectVelocityKernel,
                                  2));
    all.push_back(stageComparison(slow, "divergence", 4.0, slow->state.computeDivergencePass,
                                  reference::computeDivergenceKernel,
                                  velmora::computeDivergenceKernel, 1));
    all.push_back(jacobiComparison(slow));
    all.push_back(stageComparison(slow, "gradient", 3.0, slow->state.subtractGradientPass,
                                  reference::subtractGradientKernel,
                                  velmora::subtractGradientKernel, 2));
    all.push_back(stageComparison(fast, "stroke impulse", 0.0, fast->state.addVelocityPass,
                                  reference::addVelocityKernel, velmora::addVelocityKernel, 2));
    all.push_back(packingComparison(slow));
}

}  // namespace

std::vector<Comparison> growthComparisons(int width, int height) {
    const ScreenSize screen{width * pixelsPerCell, height * pixelsPerCell};
    return {moveComparison(width, height), stepComparison(screen, SlowDrag),
            packingComparison(std::make_shared<Flow>(screen, SlowDrag))};
}

std::vector<Comparison> solverComparisons() {
    constexpr ScreenSize screens[] = {{1080, 1920}, {1440, 2560}};
    std::vector<Comparison> all;
    for (const ScreenSize screen : screens) {
        for (const DragMode dragMode : {SlowDrag, MediumDrag, FastDrag}) {
            all.push_back(stepComparison(screen, dragMode));
        }
    }
    for (const ScreenSize screen : screens) {
        addStages(all, screen);
    }
    return all;
}

}  // namespace bench
