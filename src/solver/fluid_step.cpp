#include "solver/fluid_step.h"

#include <GLES2/gl2.h>

#include <utility>

#include "gpu/ink_passes.h"
#include "solver/solver_step.h"

namespace velmora {

namespace {

constexpr int advectionPasses = 4;  // a frame

void* solverEntry(void* state) {
    return runSolverStep(*static_cast<EffectState*>(state));
}

void uploadVelocity(const EffectState& state) {
    if (state.packedVelocity == nullptr) {
        return;
    }
    glBindTexture(GL_TEXTURE_2D, state.velocityTarget.texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, state.velocityTarget.width, state.velocityTarget.height,
                 0, GL_RGBA, GL_UNSIGNED_BYTE, state.packedVelocity);
}

void startSolver(EffectState& state, const TouchSnapshot& touch) {
    prepareSolverStep(state, touch);
    if (pthread_create(&state.solverThread, nullptr, solverEntry, &state) != 0) {
        state.solverThread = pthread_t{};
    }
}

}  // namespace

void stepFluid(EffectState& state) {
    const TouchSnapshot touch = snapshotTouch(state);
    joinSolver(state);
    uploadVelocity(state);
    startSolver(state, touch);
    glViewport(0, 0, state.inkWidth, state.inkHeight);
    for (int pass = 0; pass < advectionPasses; ++pass) {
        runAdvectPass(state, state.velocityTarget, state.inkFront, state.inkBack, touch);
        std::swap(state.inkFront, state.inkBack);
    }
}

}  // namespace velmora
