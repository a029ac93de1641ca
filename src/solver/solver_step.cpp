#include "solver/solver_step.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "base/screen.h"
#include "simd/float4.h"
#include "simd/flush_subnormals.h"
#include "solver/velocity_packing.h"

namespace velmora {

namespace {

void setSink(EffectState& state, const EdgeSink& sink) {
    state.sourceRadius = sink.radius;
    state.sourceStrength = sink.strength;
}

/// Adapts the step to a touch near an edge of the screen (margin rule). Sets touchMargin and, near an edge, the sink.
/// Returns true if the step must project the velocity.
bool applyMarginRule(EffectState& state, const TouchVariables& touch, DragMode dragMode) {
    const auto isTouchInside = [&](std::int32_t margin) {
        return isInside(state, touch.touchX, touch.touchY, margin);
    };
    state.touchMargin = projectionMargin;
    if (isTouchInside(projectionMargin)) {
        return true;
    }
    if (dragMode == SlowDrag) {
        state.touchMargin = slowDragMargin;
        setSink(state, slowDragSink);
        return isTouchInside(slowDragMargin);
    }
    if (dragMode == MediumDrag) {
        state.touchMargin = mediumDragMargin;
        if (isTouchInside(mediumDragMargin)) {
            return true;
        }
        setSink(state, mediumDragSink);
    }
    return false;
}

Float2 texelSizeOf(const FloatGrid& grid) {
    return {1.0f / static_cast<float>(grid.width), 1.0f / static_cast<float>(grid.height)};
}

Float2 cellToScreenOf(const EffectState& state, const FloatGrid& grid) {
    return {static_cast<float>(state.screenWidth) / static_cast<float>(grid.width),
            static_cast<float>(state.screenHeight) / static_cast<float>(grid.height)};
}

void advect(EffectState& state, const StepSettings& settings) {
    AdvectVelocity& pass = state.advectVelocityPass;
    pass.output = state.velocityScratch;
    pass.velocity = state.velocity;
    pass.source = state.velocity;
    pass.texelSize = texelSizeOf(state.velocity);
    pass.cellToScreen = cellToScreenOf(state, state.velocity);
    pass.timeStep = settings.timeStep;
    pass.dissipation = settings.velocityDissipation;
    pass.touchPoint = {static_cast<float>(settings.touchX),
                       static_cast<float>(flippedY(state.screenHeight, settings.touchY))};
    pass.touchDelta = {static_cast<float>(settings.touchDeltaX),
                       -static_cast<float>(settings.touchDeltaY)};
    pass.dragMode = settings.dragMode;
    advectVelocityKernel(pass);
    std::swap(state.velocity, state.velocityScratch);
}

/// Returns a random position for the sink, within 5 pixels of the touch on each axis. If the sink never moved, the flow
/// around it would become static.
Float2 jitteredSink(const EffectState& state, const StepSettings& settings) {
    const double u1 = std::rand() * 0x1p-31;
    const double u2 = std::rand() * 0x1p-31;
    const double x = settings.touchX;
    const auto y = static_cast<double>(flippedY(state.screenHeight, settings.touchY));
    return {static_cast<float>(x + (0.5 - u1) * sinkJitter),
            static_cast<float>(y + (0.5 - u2) * sinkJitter)};
}

void computeDivergence(EffectState& state, const StepSettings& settings) {
    ComputeDivergence& pass = state.computeDivergencePass;
    pass.output = state.divergence;
    pass.velocity = state.velocity;
    pass.cellToScreen = cellToScreenOf(state, state.velocity);
    pass.texelSize = texelSizeOf(state.velocity);
    pass.halfInverseCellSize = 0.5f / state.gridScale;
    pass.sourceStrength = settings.sourceStrength;
    pass.sourceRadius = settings.sourceRadius;
    pass.sourcePoint = jitteredSink(state, settings);
    computeDivergenceKernel(pass);
}

void solvePressure(EffectState& state) {
    Jacobi& pass = state.jacobiPass;
    pass.output = state.pressureScratch;
    pass.x = state.pressure;
    pass.b = state.divergence;
    pass.alpha = -(state.gridScale * state.gridScale);
    pass.rbeta = 0.25f;
    pass.texelSize = texelSizeOf(state.pressure);
    jacobiKernel(pass, state.jacobiIterations, state.velocityScratch);
    state.pressure = pass.x;
    state.pressureScratch = pass.output;
}

void project(EffectState& state) {
    SubtractGradient& pass = state.subtractGradientPass;
    pass.output = state.velocityScratch;
    pass.velocity = state.velocity;
    pass.pressure = state.pressure;
    pass.texelSize = texelSizeOf(state.velocity);
    pass.gradientScale = state.gradientScale;
    subtractGradientKernel(pass);
    std::swap(state.velocity, state.velocityScratch);
}

/// Returns true if all numbers are finite. x - x is 0 for finite x and NaN for the rest, and a sum with a NaN is NaN.
/// Four independent sums let the processor overlap the additions.
bool areFinite(const float* numbers, std::ptrdiff_t count) {
    Float4 sums[4] = {0.0f, 0.0f, 0.0f, 0.0f};
    const std::ptrdiff_t whole = count / 16 * 16;
    for (std::ptrdiff_t i = 0; i < whole; i += 16) {
        for (std::ptrdiff_t k = 0; k < 4; ++k) {
            const Float4 value = load<Float4>(numbers + i + 4 * k);
            sums[k] = sums[k] + (value - value);
        }
    }
    float lanes[4];
    store(lanes, (sums[0] + sums[1]) + (sums[2] + sums[3]));
    float sum = lanes[0] + lanes[1] + lanes[2] + lanes[3];
    for (std::ptrdiff_t i = whole; i < count; ++i) {
        sum += numbers[i] - numbers[i];
    }
    return sum == 0.0f;
}

/// Sets every component that is infinite or NaN to 0, because advection would keep and spread it. Extreme touch
/// pressures and strokes far outside the screen can produce such values. Large finite values decay by themselves.
void zeroNonFinite(const FloatGrid& velocity) {
    float* const components = velocity.data;
    const std::ptrdiff_t count = std::ptrdiff_t{velocity.width} * velocity.height * 2;
    if (areFinite(components, count)) {
        return;
    }
    std::replace_if(
        components, components + count, [](float value) { return !std::isfinite(value); }, 0.0f);
}

}  // namespace

StepSettings beginSolverStep(EffectState& state, const TouchVariables& touch) {
    const DragMode dragMode = state.dragMode;
    const std::int32_t marginBefore = state.touchMargin;
    const bool isProjected = applyMarginRule(state, touch, dragMode);
    return {.dragMode = dragMode,
            .dragSegment = state.dragSegment,
            .touchX = touch.touchX,
            .touchY = touch.touchY,
            .touchDeltaX = touch.touchDeltaX,
            .touchDeltaY = touch.touchDeltaY,
            .touchMargin = marginBefore,
            .timeStep = state.timeStep,
            .velocityDissipation = state.velocityDissipation,
            .sourceStrength = state.sourceStrength,
            .sourceRadius = state.sourceRadius,
            .inkRadius = state.inkRadius,
            .isProjected = isProjected};
}

void addVelocityKernel(EffectState& state, const StepSettings& settings) {
    if (!isInside(state, settings.touchX, settings.touchY, settings.touchMargin)) {
        return;
    }
    const DragSegment& segment = settings.dragSegment;
    const auto screenPoint = [&](std::int32_t x, std::int32_t y) {
        return Float2{static_cast<float>(x), flippedY(state.screenHeight, static_cast<float>(y))};
    };
    AddVelocity& pass = state.addVelocityPass;
    pass.output = state.velocityScratch;
    pass.velocity = state.velocity;
    pass.cellToScreen = cellToScreenOf(state, state.velocity);
    pass.texelSize = texelSizeOf(state.velocity);
    pass.current = screenPoint(segment.toX, segment.toY);
    pass.previous = screenPoint(segment.fromX, segment.fromY);
    const StrokeLine line = lineOf(pass.previous, pass.current);
    pass.normal = line.normal;
    pass.length = line.length;
    pass.radius = settings.inkRadius;
    addVelocityKernel(pass);
    std::swap(state.velocity, state.velocityScratch);
}

void* runSolverStep(void* effectState) {
    EffectState& state = *static_cast<EffectState*>(effectState);
    const StepSettings& settings = state.stepSettings;
    const FlushSubnormals flush;
    if (settings.dragMode == FastDrag) {
        addVelocityKernel(state, settings);
    }
    advect(state, settings);
    if (settings.isProjected) {
        computeDivergence(state, settings);
        solvePressure(state);
        project(state);
    }
    zeroNonFinite(state.velocity);
    packVelocity(state, state.velocity, state.velocityTarget);
    return nullptr;
}

}  // namespace velmora
