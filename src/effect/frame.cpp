#include "effect/frame.h"

#include <GLES2/gl2.h>

#include "effect/touch_frame.h"
#include "solver/fluid_step.h"

namespace velmora {

namespace {

/// Lighter by a little, so that no channel of the ink is quite black.
float lightened(float channel) {
    return static_cast<float>(static_cast<double>(channel) + 0.05);
}

/// Returns the ink amount that the frame shows.
float stepInk(EffectState& state, SharedTouch& shared, InkColor inkColor) {
    const InkColor frameColor{lightened(inkColor.r), lightened(inkColor.g), lightened(inkColor.b)};
    state.inkColorOffset = 0.001f;
    stepFluid(state, shared);  // with the settings that the previous frame left
    state.backwardStepSize = fullBackwardStep;
    state.timeStep = baseTimeStep;
    state.inkIntensity = 0.02f;
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
