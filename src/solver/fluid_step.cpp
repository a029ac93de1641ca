#include "solver/fluid_step.h"

#include <GLES2/gl2.h>

#include <utility>

#include "effect/touch.h"
#include "gpu/ink_passes.h"
#include "solver/solver_step.h"

namespace velmora {

namespace {

constexpr int advectionPasses = 4;  // a frame

void* solverEntry(void* argument) {
    EffectState& state = *static_cast<EffectState*>(argument);
    return runSolverStep(state, state.stepSettings);
}

void uploadVelocity(const EffectState& state) {
    if (state.packedVelocity == nullptr) {
        return;
    }
    glBindTexture(GL_TEXTURE_2D, state.velocityTarget.texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, state.velocityTarget.width, state.velocityTarget.height,
                 0, GL_RGBA, GL_UNSIGNED_BYTE, state.packedVelocity);
}

void startSolver(EffectState& state) {
    if (pthread_create(&state.solverThread, nullptr, solverEntry, &state) != 0) {
        state.solverThread = pthread_t{};
    }
}

/// What a fluid step sees of touches and clears: one moment, taken whole.
struct Moment {
    TouchVariables touch;
    float inkDissipation;
};

/// The worker's copy of that moment too.
Moment takeMoment(EffectState& state, SharedTouch& shared) {
    const std::lock_guard guard(shared.lock);
    state.stepSettings = beginSolverStep(state, shared.variables);
    return {shared.variables, takeInkDissipation(state, shared.variables)};
}

}  // namespace

void stepFluid(EffectState& state, SharedTouch& shared) {
    joinSolver(state);
    uploadVelocity(state);
    const Moment now = takeMoment(state, shared);  // after the wait, so that it misses nothing
    startSolver(state);
    glViewport(0, 0, state.inkWidth, state.inkHeight);
    for (int pass = 0; pass < advectionPasses; ++pass) {
        runAdvectPass(state, now.touch, state.velocityTarget, state.inkFront, state.inkBack,
                      now.inkDissipation);
        std::swap(state.inkFront, state.inkBack);
    }
}

}  // namespace velmora
