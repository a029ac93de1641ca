#pragma once

#include <cstdint>
#include <optional>

#include "effect/effect_state.h"

namespace velmora {

/// Handles onTouch: stores an event at (x, y), screen pixels, y down, and advances the touch phase. Accepts any ints,
/// any action code and any pressure. Any thread.
void handleTouchEvent(EffectState& state, SharedTouch& shared, std::int32_t x, std::int32_t y,
                      std::int32_t action, float pressure);

/// Handles clearInkValue: the next fluid step multiplies all ink by 0 (see takeInkDissipation), and the gesture ends.
/// Any thread.
void clearInk(EffectState& state, SharedTouch& shared);

/// Returns the ink dissipation of a fluid step. The first step after a clear gets 0, whatever has been written to the
/// setting since. Requires the touch lock.
float takeInkDissipation(const EffectState& state, TouchVariables& touch);

/// Runs the touch step of one ink frame, without its deposit: applies the preset of the touch phase and advances the
/// frame counters. Returns the frame's stroke, if it has one. Requires the touch lock.
std::optional<InkStroke> stepTouchPhase(EffectState& state, TouchVariables& touch);

}  // namespace velmora
