#pragma once

#include <cstdint>
#include <optional>

#include "effect/effect_state.h"

namespace velmora {

/// Handles onTouch: stores a touch event at (x, y) and advances the touch phase. Coordinates are in screen pixels, y
/// down. Any coordinates, action code and pressure are allowed. May be called on any thread.
void handleTouchEvent(EffectState& state, SharedTouch& shared, std::int32_t x, std::int32_t y,
                      std::int32_t action, float pressure);

/// Handles clearInkValue: ends the gesture and makes the next fluid step erase all ink (see takeInkDissipation). May be
/// called on any thread.
void clearInk(EffectState& state, SharedTouch& shared);

/// Returns the factor by which a fluid step multiplies the ink. In the first step after clearInk the factor is 0, even
/// if a touch has changed the setting since then. The caller holds the touch lock.
float takeInkDissipation(const EffectState& state, TouchVariables& touch);

/// Runs the touch step of a frame: applies the preset of the touch phase and advances the frame counters. Returns the
/// stroke that the caller must deposit as ink, if any. The caller holds the touch lock.
std::optional<InkStroke> stepTouchPhase(EffectState& state, TouchVariables& touch);

}  // namespace velmora
