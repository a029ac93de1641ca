#include "effect/touch_frame.h"

#include "effect/touch.h"
#include "gpu/ink_passes.h"

namespace velmora {

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
        depositInk(state, touch, stroke->mode, stroke->previous.x, stroke->previous.y,
                   stroke->current.x, stroke->current.y, color.r, color.g, color.b);
    }
    return shownInk;
}

}  // namespace velmora
