#pragma once

#include "effect/effect_state.h"

namespace velmora {

enum TouchAction : std::int32_t { ActionDown = 0, ActionUp = 1, ActionMove = 2, ActionCancel = 3 };

/// The body of onTouch: records an event at (x, y), screen pixels, y down, and moves the touch
/// phase on. Any ints, any action code, any pressure. Any thread.
void handleTouchEvent(EffectState& state, std::int32_t x, std::int32_t y, std::int32_t action,
                      float pressure);

/// The body of clearInkValue: removes the ink at once and ends the gesture. Any thread.
void clearInk(EffectState& state);

/// The touch step of one ink frame: applies the preset of the touch phase, deposits at most one
/// stroke in `color` and moves the frame counters on. Returns the ink amount that this frame shows:
/// an event that comes after the step reaches the next frame, not half of this one. Render thread.
float advanceTouchFrame(EffectState& state, InkColor color);

}  // namespace velmora
