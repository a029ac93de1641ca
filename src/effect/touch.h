#pragma once

#include <cstdint>
#include <optional>

#include "effect/effect_state.h"

namespace velmora {

/// Handles onTouch: stores an event at (x, y), screen pixels, y down, and advances the touch phase. Accepts any
/// coordinates, action code and pressure. May be called on any thread.
void handleTouchEvent(EffectState& state, SharedTouch& shared, std::int32_t x, std::int32_t y,
                      std::int32_t action, float pressure);

/// Handles clearInkValue: ends the gesture and makes the next fluid step multiply all ink by 0 (see
/// takeInkDissipation). May be called on any thread.
void clearInk(EffectState& state, SharedTouch& shared);

/// Returns the ink dissipation of a fluid step. The first step after clearInk gets 0, even if a touch has changed the
/// setting in the meantime. The caller holds the touch lock.
float takeInkDissipation(const EffectState& state, TouchVariables& touch);

/// Runs the touch step of a frame: applies the preset of the touch phase and advances the frame counters. Returns
/// the stroke whose ink the caller deposits, if the frame has one. The caller holds the touch lock.
std::optional<InkStroke> stepTouchPhase(EffectState& state, TouchVariables& touch);

}  // namespace velmora
