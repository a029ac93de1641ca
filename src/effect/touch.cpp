#include "effect/touch.h"

#include <cmath>
#include <cstdint>
#include <mutex>
#include <utility>

#include "base/saturate.h"

namespace velmora {

namespace {

std::int32_t difference(std::int32_t a, std::int32_t b) {
    return saturatedInt(std::int64_t{a} - b);
}

/// Stores the movement since the previous event and returns its length in pixels.
float measureMovement(TouchVariables& touch, std::int32_t x, std::int32_t y) {
    touch.touchDeltaX = difference(x, touch.lastEventX);
    touch.touchDeltaY = difference(y, touch.lastEventY);
    // The sum of the squares can reach 2^63, which only an unsigned 64-bit number holds.
    const auto square = [](std::int64_t d) { return static_cast<std::uint64_t>(d * d); };
    return std::sqrt(static_cast<float>(square(touch.touchDeltaX) + square(touch.touchDeltaY)));
}

void startStroke(TouchVariables& touch, std::int32_t x, std::int32_t y) {
    touch.strokeLastX = x;
    touch.strokeLastY = y;
}

void handleWhilePressed(TouchVariables& touch, std::int32_t x, std::int32_t y,
                        std::int32_t action) {
    if (action == ActionDown) {
        touch.pressFrames = 1;
        startStroke(touch, x, y);
    } else if (action == ActionMove) {
        const float distance = measureMovement(touch, x, y);
        if (touch.pressFrames >= holdFrames || distance > slowDragSpeed) {
            touch.touchPhase = Dragging;
            touch.dragFrames = 0;
        }
    }
}

void handleWhileDragging(TouchVariables& touch, std::int32_t x, std::int32_t y,
                         std::int32_t action) {
    const float distance = measureMovement(touch, x, y);
    touch.dragSpeedClass = distance > fastDragSpeed   ? FastDrag
                           : distance > slowDragSpeed ? MediumDrag
                                                      : SlowDrag;
    if (action == ActionUp) {
        const bool isShort = touch.pressFrames < holdFrames && touch.dragFrames <= shortDragFrames;
        touch.touchPhase = Pressed;
        if (!isShort) {
            // This value exceeds holdFrames and tapInkFrames, so the press ends at the next frame, which adds no ink.
            touch.pressFrames = 2 * tapInkFrames;
        }
    }
}

void endGesture(EffectState& state, TouchVariables& touch) {
    state.inkAmount = 0.0f;
    touch.touchPhase = Idle;
    touch.pressFrames = 0;
}

TouchPreset tapPresetAt(std::int32_t frame) {
    TouchPreset preset = tapPreset;
    preset.sourceStrength =
        frame < tapSourceFrames ? tapPreset.sourceStrength * static_cast<float>(frame) : 0.0f;
    preset.inkRadius = tapPreset.inkRadius * static_cast<float>(frame);
    return preset;
}

TouchPreset slowDragPresetAt(float pressureFactor) {
    TouchPreset preset = slowDragPreset;
    preset.sourceStrength *= pressureFactor;
    preset.inkRadius *= pressureFactor;
    return preset;
}

InkStroke strokeTo(const TouchVariables& touch, DragMode mode, Float2 previous) {
    return {mode, previous, {static_cast<float>(touch.touchX), static_cast<float>(touch.touchY)}};
}

/// Increments a frame counter. Stops at the largest int, because a touch phase can last for more frames than an int can
/// count.
void countFrame(std::int32_t& frames) {
    frames = saturatedInt(std::int64_t{frames} + 1);
}

std::optional<InkStroke> stepPressed(EffectState& state, TouchVariables& touch) {
    const std::int32_t frame = touch.pressFrames;
    std::optional<InkStroke> stroke;
    state.dragMode = TapMode;
    applyPreset(state, tapPresetAt(frame));
    if (frame < tapInkFrames) {
        const Float2 previous{static_cast<float>(std::int64_t{touch.touchX} - touch.touchDeltaX),
                              static_cast<float>(std::int64_t{touch.touchY} - touch.touchDeltaY)};
        stroke = strokeTo(touch, TapMode, previous);
        state.backwardStepSize = static_cast<float>(frame) * tapBackwardStep;
    }
    countFrame(touch.pressFrames);
    if (touch.pressFrames > holdFrames && touch.lastTouchAction != ActionMove) {
        touch.touchPhase = Idle;
        touch.pressFrames = 0;
        touch.idleFrames = 0;
    }
    return stroke;
}

InkStroke stepDragging(EffectState& state, TouchVariables& touch) {
    switch (touch.dragSpeedClass) {
        case FastDrag:
            state.dragSegment = {touch.strokeLastX, touch.strokeLastY, touch.touchX, touch.touchY};
            applyPreset(state, fastDragPreset);
            break;
        case MediumDrag:
            applyPreset(state, mediumDragPreset);
            break;
        case SlowDrag:
            applyPreset(state, slowDragPresetAt(touch.pressureFactor));
            break;
        case TapMode:
            break;
    }
    if (touch.dragSpeedClass != TapMode) {
        state.dragMode = touch.dragSpeedClass;
    }
    const Float2 previous{static_cast<float>(touch.strokeLastX),
                          static_cast<float>(touch.strokeLastY)};
    const InkStroke stroke = strokeTo(touch, state.dragMode, previous);
    startStroke(touch, touch.touchX, touch.touchY);
    countFrame(touch.dragFrames);
    return stroke;
}

void stepIdle(EffectState& state, TouchVariables& touch) {
    countFrame(touch.idleFrames);
    if (touch.idleFrames >= idleFadeFrames) {
        state.inkDissipation = idleInkDissipation;
    }
}

/// Returns the factor by which the pressure scales a slow drag. The factor is 0 if `pressure` is not positive.
float pressureFactorOf(float pressure) {
    const double p = static_cast<double>(pressure);
    return pressure > 0.0f ? static_cast<float>(static_cast<double>(minPressureFactor) + p * p)
                           : 0.0f;
}

}  // namespace

void handleTouchEvent(EffectState& state, SharedTouch& shared, std::int32_t x, std::int32_t y,
                      std::int32_t action, float pressure) {
    const std::lock_guard guard(shared.lock);
    TouchVariables& touch = shared.variables;
    touch.pressureFactor = pressureFactorOf(pressure);
    touch.touchX = x;
    touch.touchY = y;
    state.inkAmount = 1.0f;
    touch.lastTouchAction = action;
    if (touch.touchPhase == Pressed) {
        handleWhilePressed(touch, x, y, action);
    } else if (touch.touchPhase == Dragging) {
        handleWhileDragging(touch, x, y, action);
    } else if (action == ActionDown) {
        touch.touchPhase = Pressed;
        startStroke(touch, x, y);
    }
    if (action == ActionCancel) {
        endGesture(state, touch);
    }
    touch.lastEventX = x;
    touch.lastEventY = y;
}

void clearInk(EffectState& state, SharedTouch& shared) {
    const std::lock_guard guard(shared.lock);
    state.dragMode = SlowDrag;
    state.inkDissipation = 0.0f;
    shared.variables.isInkCleared = true;
    endGesture(state, shared.variables);
}

float takeInkDissipation(const EffectState& state, TouchVariables& touch) {
    return std::exchange(touch.isInkCleared, false) ? 0.0f : float{state.inkDissipation};
}

std::optional<InkStroke> stepTouchPhase(EffectState& state, TouchVariables& touch) {
    std::optional<InkStroke> stroke;
    if (touch.touchPhase == Pressed) {
        stroke = stepPressed(state, touch);
    } else if (touch.touchPhase == Dragging) {
        stroke = stepDragging(state, touch);
    }
    if (touch.touchPhase == Idle) {  // checked last, because the press may have ended above
        stepIdle(state, touch);
    }
    return stroke;
}

}  // namespace velmora
