#include "effect/frame.h"

#include <GLES2/gl2.h>

#include <mutex>
#include <optional>

#include "base/stroke.h"
#include "effect/touch.h"
#include "effect/tuning.h"
#include "gpu/ink_passes.h"
#include "solver/fluid_step.h"
#include "velmora/ink_light.h"

namespace velmora {

namespace {

/// Runs the touch step of one frame and deposits its stroke in `color`. Returns the ink amount to draw. The amount is
/// read under the lock, so a touch event that follows changes only the next frame.
float advanceTouchFrame(EffectState& state, SharedTouch& shared, InkColor color) {
    std::optional<InkStroke> stroke;
    TouchVariables touch;
    float shownInk;
    {
        const std::lock_guard guard(shared.lock);
        stroke = stepTouchPhase(state, shared.variables);
        touch = shared.variables;
        shownInk = state.inkAmount;
    }
    if (stroke) {
        depositInk(state, touch, *stroke, color);
    }
    return shownInk;
}

/// Runs the fluid step and the touch step. Returns the ink amount that the frame shows.
float stepInk(EffectState& state, SharedTouch& shared, InkColor inkColor) {
    const InkColor frameColor{inkChannel(inkColor.r), inkChannel(inkColor.g),
                              inkChannel(inkColor.b)};
    state.inkColorOffset = frameInkColorOffset;
    stepFluid(state, shared);  // uses the settings of the previous frame
    state.backwardStepSize = fullBackwardStep;
    state.timeStep = baseTimeStep;
    state.inkIntensity = frameInkIntensity;
    return advanceTouchFrame(state, shared, frameColor);
}

}  // namespace

void startFrame(const EffectState& state) {
    glViewport(0, 0, state.screenWidth, state.screenHeight);
}

void drawFrame(EffectState& state, SharedTouch& shared, const WaterFrame& frame,
               InkColor inkColor) {
    const float inkAmount = frame.inkEnabled ? stepInk(state, shared, inkColor) : 0.0f;
    drawWater(state, frame, inkAmount);
}

}  // namespace velmora
