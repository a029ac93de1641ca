#include "effect/effect_state.h"

#include <cstdlib>
#include <utility>

#include "velmora/solver_grid.h"

namespace velmora {

namespace {

/// Returns true if x is more than `margin` away from both 0 and `size`. Exact for any ints.
bool isBetweenMargins(std::int32_t x, std::int32_t size, std::int32_t margin) {
    return margin < x && x < std::int64_t{size} - margin;
}

void applyInkSettings(EffectState& state) {
    const bool isLandscape = state.screenWidth > state.screenHeight;
    state.inkWidth = isLandscape ? inkLongSide : inkShortSide;
    state.inkHeight = isLandscape ? inkShortSide : inkLongSide;
    state.velocityGridWidth = state.screenWidth / pixelsPerCell;
    state.velocityGridHeight = state.screenHeight / pixelsPerCell;
    applyPreset(state, initialPreset);
    state.gridScale = cellSide;
    state.jacobiIterations = pressureIterations;
    state.timeStep = baseTimeStep;
    state.gradientScale = pressureGradientScale;
    state.backwardStepSize = fullBackwardStep;
    state.inkIntensity = initialInkIntensity;
    state.touchMargin = initialTouchMargin;
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

bool isInside(const EffectState& state, std::int32_t touchX, std::int32_t touchY,
              std::int32_t margin) {
    return isBetweenMargins(touchX, state.screenWidth, margin) &&
           isBetweenMargins(touchY, state.screenHeight, margin);
}

void applySettings(EffectState& state, std::int32_t width, std::int32_t height, bool withInk) {
    joinSolver(state);
    state.screenWidth = width;
    state.screenHeight = height;
    state.inkColor = {1.0f, 1.0f, 1.0f};
    if (withInk) {
        applyInkSettings(state);
    }
}

void applyPreset(EffectState& state, const TouchPreset& preset) {
    state.sourceRadius = preset.sourceRadius;
    state.impulseDensity = preset.impulseDensity;
    state.velocityDissipation = preset.velocityDissipation;
    state.inkDissipation = preset.inkDissipation;
    state.sourceStrength = preset.sourceStrength;
    state.inkRadius = preset.inkRadius;
}

void joinSolver(EffectState& state) {
    if (state.solverThread != pthread_t{}) {
        pthread_join(std::exchange(state.solverThread, pthread_t{}), nullptr);
    }
}

}  // namespace velmora
