#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

#include "solver/solver_step.h"
#include "water/height_field.h"
#include "water/mesh.h"
#include "water/ripple.h"

// Prints one digest of a long run of the mesh, the water and the velocity solver. It is the same
// for every compiler, build type and processor; ends with 1 where it is not.

namespace velmora::test {
namespace {

constexpr std::uint64_t expectedDigest = 0x0ddc63352c94cce2u;

/// FNV-1a, 64 bits, over the bytes of what the run leaves.
class Digest {
public:
    template <class T>
    void add(std::span<const T> values) {
        for (const std::uint8_t byte :
             std::span{reinterpret_cast<const std::uint8_t*>(values.data()), values.size_bytes()}) {
            value_ = (value_ ^ byte) * 0x100000001b3u;
        }
    }
    std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xcbf29ce484222325u;
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

/// Ripples come for a while, then the water runs until it is calm or the run ends.
void runWater(Digest& digest, float damping) {
    constexpr int columns = 60;
    constexpr int rows = 107;
    std::vector<float> velocity(columns * rows), height(columns * rows);
    constexpr int rippleSteps = 200;
    bool calm = false;
    for (int step = 0; step < 3000 && !calm; ++step) {
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

/// The solver's state on a screen whose rows of cells end in a tail.
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
        runSolverStep(state, touch);
        lastX = x;
        lastY = y;
        const auto cells = static_cast<std::size_t>(state.velocity.width * state.velocity.height);
        const std::span<const float> velocity{state.velocity.data, cells * 2};
        digest.add(velocity);
        digest.add<float>({state.pressure.data, cells});
        digest.add<std::uint8_t>({state.packedVelocity, cells * 4});
        digest.add<std::int32_t>({&state.touchMargin, 1});
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

/// A drag that bounces between the screen's edges, `speed` pixels a frame along y.
void drag(Flow& flow, DragMode mode, const TouchPreset& preset, std::int32_t speed) {
    for (std::int32_t frame = 0; frame < 120; ++frame) {
        const std::int32_t x = std::abs(frame * (speed + 3) % 1038 - 519);
        const std::int32_t y = std::abs(frame * speed % 1520 - 760);
        flow.apply(preset, 1.2f);
        flow.state.dragSegment = {flow.lastX, flow.lastY, x, y};
        flow.step(mode, x, y);
    }
}

void runSolver(Digest& digest) {
    std::srand(1);
    Flow flow(digest);
    tap(flow, 260, 400);
    drag(flow, SlowDrag, slowDragPreset, 5);
    drag(flow, MediumDrag, mediumDragPreset, 9);
    drag(flow, FastDrag, fastDragPreset, 31);
    for (int idle = 0; idle < 300; ++idle) {  // the sink keeps the flow going
        flow.step(SlowDrag, 260, 380);
    }
    flow.apply(slowDragPreset, 1.0f);
    for (int idle = 0; idle < 1000; ++idle) {  // near an edge nothing does
        flow.step(SlowDrag, 5, 380);
    }
}

int run() {
    Digest digest;
    const auto show = [&](const char* name) {
        std::printf("%-6s %016llx\n", name, static_cast<unsigned long long>(digest.value()));
    };
    runMesh(digest);
    show("mesh");
    for (const float damping : {0.975f, 0.94f}) {
        runWater(digest, damping);
        show("water");
    }
    runSolver(digest);
    show("solver");
    const bool isExpected = digest.value() == expectedDigest;
    std::puts(isExpected ? "as expected" : "not the digest that every build is to give");
    return isExpected ? 0 : 1;
}

}  // namespace
}  // namespace velmora::test

int main() {
    return velmora::test::run();
}
