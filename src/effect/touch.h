#pragma once

#include <cstdint>
#include <optional>

#include "effect/effect_state.h"

namespace velmora {

/// The body of onTouch: records an event at (x, y), screen pixels, y down, and moves the touch
/// phase on. Any ints, any action code, any pressure. Any thread.
void handleTouchEvent(EffectState& state, SharedTouch& shared, std::int32_t x, std::int32_t y,
                      std::int32_t action, float pressure);

/// The body of clearInkValue: the next fluid step multiplies all ink by 0 (see takeInkDissipation),
/// and the gesture ends. Any thread.
void clearInk(EffectState& state, SharedTouch& shared);

/// The dissipation of a fluid step. The whole rule of a clear stands here: the first step after it
/// takes 0, whatever was written to the setting in between. Under the touch lock.
float takeInkDissipation(const EffectState& state, TouchVariables& touch);

/// The touch step of one ink frame without its deposit: applies the preset of the touch phase and
/// moves the frame counters on. Returns the frame's stroke, if it has one. Under the touch lock.
std::optional<InkStroke> stepTouchPhase(EffectState& state, TouchVariables& touch);

}  // namespace velmora
