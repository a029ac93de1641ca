#include "solver/solver_step.h"

#include <cmath>
#include <cstdlib>
#include <utility>

#include "simd/float4.h"
#include "simd/flush_subnormals.h"
#include "solver/velocity_packing.h"

namespace velmora {

namespace {

constexpr std::int32_t projectionMargin = 60;  // pixels
constexpr double jitterSize = 10.0;            // pixels, across

/// Ten times what the longest strokes drive, in pixels.
constexpr float fastestFlow = 1e6f;

/// One step's settings and touch, y down, as they stood when it was prepared.
struct SolverInput {
    DragSegment dragSegment;
    TouchSnapshot touch;
    std::int32_t screenWidth, screenHeight;
    std::int32_t jacobiIterations;
    float gridScale, timeStep, gradientScale, velocityDissipation;
    float sourceStrength, sourceRadius, inkRadius;
    bool isInsideStrokeMargin;
    bool isProjected;
};

// Written while no worker runs, read by the worker.
SolverInput input;

/// Returns whether the step goes on to the projection.
bool applyMarginRule(EffectState& state, const TouchSnapshot& touch) {
    const auto isTouchInside = [&](std::int32_t margin) {
        return isInside(state, touch.touchX, touch.touchY, margin);
    };
    state.touchMargin = projectionMargin;
    if (isTouchInside(projectionMargin)) {
        return true;
    }
    if (touch.dragMode == SlowDrag) {
        state.touchMargin = 12;
        state.sourceRadius = 4.0f;
        state.sourceStrength = 40.0f;
        return isTouchInside(state.touchMargin);
    }
    if (touch.dragMode == MediumDrag) {
        state.touchMargin = 10;
        if (isTouchInside(state.touchMargin)) {
            return true;
        }
        state.sourceRadius = 2.0f;
        state.sourceStrength = 2.0f;
    }
    return false;
}

float flipped(float y) {
    return static_cast<float>(input.screenHeight) - y;
}

Float2 touchPoint() {
    return {static_cast<float>(input.touch.touchX),
            static_cast<float>(std::int64_t{input.screenHeight} - input.touch.touchY)};
}

Float2 texelSizeOf(const FloatGrid& grid) {
    return {1.0f / static_cast<float>(grid.width), 1.0f / static_cast<float>(grid.height)};
}

Float2 cellToScreenOf(const FloatGrid& grid) {
    return {static_cast<float>(input.screenWidth) / static_cast<float>(grid.width),
            static_cast<float>(input.screenHeight) / static_cast<float>(grid.height)};
}

/// Pushes velocity out of a stroke's segment, screen pixels, y down, unless the touch lies near an
/// edge.
void addVelocityKernel(EffectState& state, float previousX, float previousY, float currentX,
                       float currentY) {
    if (!input.isInsideStrokeMargin) {
        return;
    }
    AddVelocity& pass = state.addVelocityPass;
    pass.output = state.velocityScratch;
    pass.velocity = state.velocity;
    pass.cellToScreen = cellToScreenOf(state.velocity);
    pass.texelSize = texelSizeOf(state.velocity);
    pass.current = {currentX, flipped(currentY)};
    pass.previous = {previousX, flipped(previousY)};
    const Float2 along{pass.current.x - pass.previous.x, pass.current.y - pass.previous.y};
    const float length = std::sqrt(along.x * along.x + along.y * along.y);
    pass.length = length == 0.0f ? 1.0f : length;
    pass.normal = {along.x / pass.length, along.y / pass.length};
    pass.radius = input.inkRadius;
    runAddVelocity(pass);
    std::swap(state.velocity, state.velocityScratch);
}

void addStroke(EffectState& state) {
    const DragSegment& segment = input.dragSegment;
    addVelocityKernel(state, static_cast<float>(segment.fromX), static_cast<float>(segment.fromY),
                      static_cast<float>(segment.toX), static_cast<float>(segment.toY));
}

void advect(EffectState& state) {
    AdvectVelocity& pass = state.advectVelocityPass;
    pass.output = state.velocityScratch;
    pass.velocity = state.velocity;
    pass.source = state.velocity;
    pass.texelSize = texelSizeOf(state.velocity);
    pass.cellToScreen = cellToScreenOf(state.velocity);
    pass.timeStep = input.timeStep;
    pass.dissipation = input.velocityDissipation;
    pass.touchPoint = touchPoint();
    pass.touchDelta = {static_cast<float>(input.touch.touchDeltaX),
                       -static_cast<float>(input.touch.touchDeltaY)};
    pass.dragMode = input.touch.dragMode;
    advectVelocityKernel(pass);
    std::swap(state.velocity, state.velocityScratch);
}

/// The touch, up to 5 pixels off on each axis: a sink that never moves would freeze the flow around
/// it.
Float2 jitteredSink() {
    const double u1 = std::rand() * 0x1p-31;
    const double u2 = std::rand() * 0x1p-31;
    const double x = input.touch.touchX;
    const double y = static_cast<double>(std::int64_t{input.screenHeight} - input.touch.touchY);
    return {static_cast<float>(x + (0.5 - u1) * jitterSize),
            static_cast<float>(y + (0.5 - u2) * jitterSize)};
}

void computeDivergence(EffectState& state) {
    ComputeDivergence& pass = state.computeDivergencePass;
    pass.output = state.divergence;
    pass.velocity = state.velocity;
    pass.cellToScreen = cellToScreenOf(state.velocity);
    pass.texelSize = texelSizeOf(state.velocity);
    pass.halfInverseCellSize = 0.5f / input.gridScale;
    pass.sourceStrength = input.sourceStrength;
    pass.sourceRadius = input.sourceRadius;
    pass.sourcePoint = jitteredSink();
    computeDivergenceKernel(pass);
}

void solvePressure(EffectState& state) {
    clearGrid(state.pressure, 1);
    Jacobi& pass = state.jacobiPass;
    pass.output = state.pressureScratch;
    pass.x = state.pressure;
    pass.b = state.divergence;
    pass.alpha = -(input.gridScale * input.gridScale);
    pass.rbeta = 0.25f;
    pass.texelSize = texelSizeOf(state.pressure);
    jacobiSweeps(pass, input.jacobiIterations, state.velocityScratch);
    state.pressure = pass.x;
    state.pressureScratch = pass.output;
}

void project(EffectState& state) {
    SubtractGradient& pass = state.subtractGradientPass;
    pass.output = state.velocityScratch;
    pass.velocity = state.velocity;
    pass.pressure = state.pressure;
    pass.texelSize = texelSizeOf(state.velocity);
    pass.gradientScale = input.gradientScale;
    subtractGradientKernel(pass);
    std::swap(state.velocity, state.velocityScratch);
}

/// Whether a component is NaN or beyond every real flow.
bool isWild(const FloatGrid& velocity) {
    bool found = false;
    forGroups(0, std::ptrdiff_t{velocity.width} * velocity.height * 2,
              [&]<class Floats>(std::ptrdiff_t i) {
                  const Floats v = load<Floats>(velocity.data + i);
                  const auto isTame = (v < Floats(fastestFlow)) & (v > Floats(-fastestFlow));
                  found = found || any(select(isTame, Floats(0.0f), Floats(1.0f)) > Floats(0.0f));
              });
    return found;
}

/// Strokes from far outside the screen, or with wild pressures, leave infinities and NaN, which
/// would go round in the flow for ever: it starts again from rest.
void stillWildFlow(const FloatGrid& velocity) {
    if (isWild(velocity)) {
        clearGrid(velocity, 2);
    }
}

}  // namespace

void prepareSolverStep(EffectState& state, const TouchSnapshot& touch) {
    input.dragSegment = state.dragSegment;
    input.touch = touch;
    input.screenWidth = state.screenWidth;
    input.screenHeight = state.screenHeight;
    input.isInsideStrokeMargin = isInside(state, touch.touchX, touch.touchY, state.touchMargin);
    input.isProjected = applyMarginRule(state, touch);
    input.jacobiIterations = state.jacobiIterations;
    input.gridScale = state.gridScale;
    input.timeStep = state.timeStep;
    input.gradientScale = state.gradientScale;
    input.velocityDissipation = state.velocityDissipation;
    input.sourceStrength = state.sourceStrength;
    input.sourceRadius = state.sourceRadius;
    input.inkRadius = state.inkRadius;
}

void* runSolverStep(EffectState& state) {
    const FlushSubnormals flush;
    if (input.touch.dragMode == FastDrag) {
        addStroke(state);
    }
    advect(state);
    if (input.isProjected) {
        computeDivergence(state);
        solvePressure(state);
        project(state);
    }
    stillWildFlow(state.velocity);
    packVelocity(state, state.velocity, state.velocityTarget);
    return nullptr;
}

}  // namespace velmora
