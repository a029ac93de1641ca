#include "effect/effect_state.h"

#include <cstdlib>
#include <utility>

namespace velmora {

namespace {

constexpr std::int32_t pixelsPerCell = 12;

/// `x` strictly between `margin` and `size - margin`, for any ints.
bool isBetweenMargins(std::int32_t x, std::int32_t size, std::int32_t margin) {
    return margin < x && x < std::int64_t{size} - margin;
}

void applyInkSettings(EffectState& state) {
    const bool isLandscape = state.screenWidth > state.screenHeight;
    state.inkWidth = isLandscape ? 1024 : 512;
    state.inkHeight = isLandscape ? 512 : 1024;
    state.velocityGridWidth = state.screenWidth / pixelsPerCell;
    state.velocityGridHeight = state.screenHeight / pixelsPerCell;
    state.gridScale = 2.5f;
    state.inkRadius = 2.0f;
    state.impulseDensity = 200.0f;
    state.jacobiIterations = 20;
    state.timeStep = 0.25f;
    state.gradientScale = 0.2f;
    state.velocityDissipation = 0.9f;
    state.sourceStrength = 50.0f;
    state.sourceRadius = 40.0f;
    state.backwardStepSize = 1.0f;
    state.inkIntensity = 0.2f;
    state.touchMargin = 10;
    const std::lock_guard guard(gTouch.lock);
    state.inkDissipation = 0.96f;
    state.inkAmount = 1.0f;
    state.dragMode = SlowDrag;
}

}  // namespace

EffectState::~EffectState() {
    joinSolver(*this);
    releaseGrid(velocity);
    releaseGrid(velocityScratch);
    releaseGrid(inkDensity);
    releaseGrid(inkDensityScratch);
    releaseGrid(pressure);
    releaseGrid(pressureScratch);
    releaseGrid(divergence);
    std::free(std::exchange(packedVelocity, nullptr));
}

TouchSnapshot snapshotTouch(const EffectState& state) {
    const std::lock_guard guard(gTouch.lock);
    return {gTouch.touchX,      gTouch.touchY,  gTouch.touchDeltaX,
            gTouch.touchDeltaY, state.dragMode, state.inkDissipation};
}

bool isInside(const EffectState& state, std::int32_t touchX, std::int32_t touchY,
              std::int32_t margin) {
    return isBetweenMargins(touchX, state.screenWidth, margin) &&
           isBetweenMargins(touchY, state.screenHeight, margin);
}

void applySettings(EffectState& state, std::int32_t width, std::int32_t height, bool inkEnabled) {
    joinSolver(state);
    state.screenWidth = width;
    state.screenHeight = height;
    gInkEnabled = inkEnabled;
    state.inkColor = {1.0f, 1.0f, 1.0f};
    if (inkEnabled) {
        applyInkSettings(state);
    }
}

void joinSolver(EffectState& state) {
    if (state.solverThread != pthread_t{}) {
        pthread_join(std::exchange(state.solverThread, pthread_t{}), nullptr);
    }
}

}  // namespace velmora
