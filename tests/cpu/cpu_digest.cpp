#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <random>
#include <span>
#include <type_traits>
#include <vector>

#include "effect/tuning.h"
#include "hostkit/digest.h"
#include "simd/flush_subnormals.h"
#include "solver/solver_step.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

// Prints the digests of two long runs of mesh, water and velocity solver. Exits with 1 if a digest differs from its
// expected value. The lively run contains no subnormal numbers, so all compilers, build types and processors give the
// same digest. The dying run decays until its numbers are subnormal. It has one digest for processors that flush
// subnormals to zero, and another digest for all other processors.

namespace velmora::test {
namespace {

constexpr std::uint64_t livelyDigest = 0x9d205f7b2f15ca37u;
constexpr std::uint64_t dyingDigest =
    FlushSubnormals::flushes() ? 0x0ddc63352c94cce2u : 0xd8e0c93be9037304u;

/// Minimum magnitude of all nonzero numbers in the lively run. Products of such numbers are far from subnormal.
constexpr float livelyLeast = 1e-20f;

/// Digest of the bytes of all results of a run.
class Digest {
public:
    template <class T>
    void add(std::span<const T> values) {
        if constexpr (std::is_same_v<T, float>) {
            for (const float value : values) {
                least_ = value == 0.0f ? least_ : std::min(least_, std::abs(value));
            }
        }
        addBytes(bytes_, std::as_bytes(values));
    }
    std::uint64_t value() const { return bytes_.state; }
    /// Returns the smallest magnitude of all nonzero numbers in the digest.
    float least() const { return least_; }

private:
    float least_ = std::numeric_limits<float>::infinity();
    hostkit::Digest bytes_;
};

void runMesh(Digest& digest) {
    for (const MeshShape& shape : {MeshShape{24, 42, 61, 108}, {16, 9, 5, 3}, {3, 7, 3, 21845}}) {
        std::vector<float> positions(static_cast<std::size_t>(shape.columns * shape.rows) * 3);
        std::vector<std::uint16_t> indices(
            static_cast<std::size_t>((shape.columns - 1) * (shape.rows - 1)) * 6);
        writeMeshPositions(positions.data(), shape.columns * shape.rows, shape);
        writeMeshIndices(indices.data(), shape);
        digest.add<float>(positions);
        digest.add<std::uint16_t>(indices);
    }
}

/// Fills `values` with random numbers from -4 to 4 whose magnitude is at least 6e-5.
void fill(std::span<float> values) {
    std::mt19937 random(1);
    for (float& value : values) {
        value = static_cast<float>(random() % 65536 * 2 + 1) / 16384.0f - 4.0f;
    }
}

/// Runs water steps and raises ripples during the first `rippleSteps` steps. If `startsWild` is true, the water starts
/// from random numbers, and the run ends after these steps. Otherwise the water starts flat, and the run ends when the
/// water is calm, or after 3000 steps.
void runWater(Digest& digest, float damping, int rippleSteps, bool startsWild) {
    constexpr int columns = 60;
    constexpr int rows = 107;
    std::vector<float> velocity(columns * rows), height(columns * rows);
    if (startsWild) {
        fill(velocity);
        fill(height);
    }
    bool calm = false;
    for (int step = 0; step < (startsWild ? rippleSteps : 3000) && !calm; ++step) {
        if (step < rippleSteps && step % 5 == 0) {
            const auto x = static_cast<float>(step * 37 % 1100 - 550);
            const auto y = static_cast<float>(step * 83 % 1940 - 970);
            addRipple(height.data(),
                      {1080, 1920, columns, rows, x, y, step % 2 == 0 ? 1.5f : -0.7f});
        }
        calm = stepHeightField({velocity.data(), height.data(), columns},
                               {1, 1, columns - 1, rows - 1}, {damping, 0.3f, step >= rippleSteps});
        calm = calm && step >= rippleSteps;
        digest.add<float>(velocity);
        digest.add<float>(height);
    }
}

/// A solver for a screen whose grid has 43 cells per row. Kernels process four cells at a time, so single cells remain
/// at the end of each row.
struct Flow {
    Flow(Digest& digestOfRun) : digest(digestOfRun) {
        applySettings(state, 519, 760, true);
        const int width = state.velocityGridWidth;
        const int height = state.velocityGridHeight;
        state.velocityTarget = {0, 0, width, height};
        for (FloatGrid* grid : {&state.velocity, &state.velocityScratch}) {
            reallocateGrid(*grid, width, height, 2);
            clearGrid(*grid, 2);
        }
        for (FloatGrid* grid : {&state.pressure, &state.pressureScratch, &state.divergence}) {
            reallocateGrid(*grid, width, height, 1);
            clearGrid(*grid, 1);
        }
    }

    void apply(const TouchPreset& preset, float strength) {
        state.sourceRadius = preset.sourceRadius;
        state.velocityDissipation = preset.velocityDissipation;
        state.sourceStrength = preset.sourceStrength * strength;
        state.inkRadius = preset.inkRadius;
    }

    void step(DragMode mode, std::int32_t x, std::int32_t y) {
        TouchVariables touch;
        touch.touchX = x;
        touch.touchY = y;
        touch.touchDeltaX = x - lastX;
        touch.touchDeltaY = y - lastY;
        state.dragMode = mode;
        state.stepSettings = beginSolverStep(state, touch);
        runSolverStep(&state);
        lastX = x;
        lastY = y;
        digest.add<float>({state.velocity.data, cells() * 2});
        digest.add<float>({state.pressure.data, cells()});
        digest.add<std::uint8_t>({state.packedVelocity, cells() * 4});
        digest.add<std::int32_t>({&state.touchMargin, 1});
    }

    std::size_t cells() const {
        return static_cast<std::size_t>(state.velocity.width * state.velocity.height);
    }

    Digest& digest;
    EffectState state;
    std::int32_t lastX = 0, lastY = 0;
};

void tap(Flow& flow, std::int32_t x, std::int32_t y) {
    flow.lastX = x;
    flow.lastY = y;
    for (int frame = 0; frame < 13; ++frame) {
        flow.step(TapMode, x, y);
        flow.apply(tapPreset, frame < tapSourceFrames ? static_cast<float>(frame) : 0.0f);
    }
}

/// Drags the touch back and forth between the screen's edges, at `speed` pixels per frame along y.
void drag(Flow& flow, DragMode mode, const TouchPreset& preset, std::int32_t speed) {
    for (std::int32_t frame = 0; frame < 120; ++frame) {
        const std::int32_t x = std::abs(frame * (speed + 3) % 1038 - 519);
        const std::int32_t y = std::abs(frame * speed % 1520 - 760);
        flow.apply(preset, 1.2f);
        flow.state.dragSegment = {flow.lastX, flow.lastY, x, y};
        flow.step(mode, x, y);
    }
}

void tapAndDrag(Flow& flow) {
    tap(flow, 260, 400);
    drag(flow, SlowDrag, slowDragPreset, 5);
    drag(flow, MediumDrag, mediumDragPreset, 9);
    drag(flow, FastDrag, fastDragPreset, 31);
    for (int idle = 0; idle < 300; ++idle) {  // far from the edges, the sink keeps the flow moving
        flow.step(SlowDrag, 260, 380);
    }
}

void runLivelySolver(Digest& digest) {
    std::srand(1);
    Flow flow(digest);
    fill({flow.state.velocity.data, flow.cells() * 2});
    tapAndDrag(flow);
}

void runDyingSolver(Digest& digest) {
    std::srand(1);
    Flow flow(digest);
    tapAndDrag(flow);
    flow.apply(slowDragPreset, 1.0f);
    for (int idle = 0; idle < 1000; ++idle) {  // near an edge there is no sink, so the flow decays
        flow.step(SlowDrag, 5, 380);
    }
}

void show(const char* run, const char* part, const Digest& digest) {
    std::printf("%-6s %-6s %016llx, smallest number except 0 %g\n", run, part,
                static_cast<unsigned long long>(digest.value()),
                static_cast<double>(digest.least()));
}

Digest runLively() {
    Digest digest;
    runMesh(digest);
    for (const float damping : {0.975f, 0.94f}) {
        runWater(digest, damping, 600, true);
        show("lively", "water", digest);
    }
    runLivelySolver(digest);
    show("lively", "solver", digest);
    return digest;
}

Digest runDying() {
    Digest digest;
    runMesh(digest);
    show("dying", "mesh", digest);
    for (const float damping : {0.975f, 0.94f}) {
        runWater(digest, damping, 200, false);
        show("dying", "water", digest);
    }
    runDyingSolver(digest);
    show("dying", "solver", digest);
    return digest;
}

bool isExpected(const char* run, const Digest& digest, std::uint64_t expected) {
    const bool same = digest.value() == expected;
    std::printf("%s run: digest %016llx, expected %016llx\n", run,
                static_cast<unsigned long long>(digest.value()),
                static_cast<unsigned long long>(expected));
    return same;
}

int run() {
    const Digest lively = runLively();
    const Digest dying = runDying();
    const bool stayedLively = lively.least() >= livelyLeast;
    if (!stayedLively) {
        std::puts("the lively run decayed too far: all its numbers must be above 1e-20");
    }
    const bool sameLively = isExpected("lively", lively, livelyDigest);
    const bool sameDying = isExpected("dying", dying, dyingDigest);
    return stayedLively && sameLively && sameDying ? 0 : 1;
}

}  // namespace
}  // namespace velmora::test

int main() {
    return velmora::test::run();
}
