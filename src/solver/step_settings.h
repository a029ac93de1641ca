#pragma once

#include <cstdint>

#include "base/stroke.h"

namespace velmora {

/// Settings of one solver step. They are copies of those fields of EffectState and TouchVariables that can change while
/// the step runs. All other settings change only between steps.
struct StepSettings {
    DragMode dragMode;
    DragSegment dragSegment;                // screen pixels, y down
    std::int32_t touchX, touchY;            // screen pixels, y down
    std::int32_t touchDeltaX, touchDeltaY;  // screen pixels, y down
    std::int32_t touchMargin;               // pixels, as the previous step left it
    float timeStep, velocityDissipation;    // see EffectState
    float sourceStrength, sourceRadius;     // see EffectState, after the margin rule
    float inkRadius;                        // screen pixels
    bool isProjected;                       // result of the margin rule
};

}  // namespace velmora
