#include "solver/fluid_step.h"

#include <GLES2/gl2.h>
#include <pthread.h>

#include <mutex>
#include <utility>

#include "effect/touch.h"
#include "effect/tuning.h"
#include "gpu/ink_passes.h"
#include "solver/solver_step.h"

namespace velmora {

namespace {

void uploadVelocity(const EffectState& state) {
    if (state.packedVelocity == nullptr) {
        return;
    }
    glBindTexture(GL_TEXTURE_2D, state.velocityTarget.texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, state.velocityTarget.width, state.velocityTarget.height,
                 0, GL_RGBA, GL_UNSIGNED_BYTE, state.packedVelocity);
}

void startSolver(EffectState& state) {
    if (pthread_create(&state.solverThread, nullptr, runSolverStep, &state) != 0) {
        state.solverThread = pthread_t{};
    }
}

/// Copies the current touch and settings into state.stepSettings, for the worker and the ink passes of this frame.
/// Returns the factor by which the ink passes multiply the ink.
float beginFluidStep(EffectState& state, SharedTouch& shared) {
    const std::lock_guard guard(shared.lock);
    state.stepSettings = beginSolverStep(state, shared.variables);
    return takeInkDissipation(state, shared.variables);
}

}  // namespace

void stepFluid(EffectState& state, SharedTouch& shared) {
    joinSolver(state);
    uploadVelocity(state);
    // Read the touch after the wait, so that this step uses events that arrived during the wait.
    const float dissipation = beginFluidStep(state, shared);
    startSolver(state);
    glViewport(0, 0, state.inkWidth, state.inkHeight);
    for (int pass = 0; pass < inkAdvectionPasses; ++pass) {
        runAdvectPass(state, state.velocityTarget, state.inkFront, state.inkBack, dissipation);
        std::swap(state.inkFront, state.inkBack);
    }
}

}  // namespace velmora
