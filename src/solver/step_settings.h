#pragma once

#include <cstdint>

#include "base/stroke.h"

namespace velmora {

/// What one solver step reads of the fields of the same names that a touch or the frame may change
/// while it runs: a copy of one moment. The record's other settings only change while no step runs.
struct StepSettings {
    DragMode dragMode;
    DragSegment dragSegment;                // screen pixels, y down
    std::int32_t touchX, touchY;            // screen pixels, y down
    std::int32_t touchDeltaX, touchDeltaY;  // screen pixels, y down
    std::int32_t touchMargin;               // pixels, as the step before left it
    float timeStep, velocityDissipation;    // see EffectState
    float sourceStrength, sourceRadius;     // see EffectState; after the margin rule
    float inkRadius;                        // screen pixels
    bool isProjected;                       // what the margin rule says
};

}  // namespace velmora
