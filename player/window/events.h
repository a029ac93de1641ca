#pragma once

#include <chrono>

#include "player/window/gestures.h"
#include "player/window/gl_window.h"
#include "player/window/requests.h"

namespace player {

/// Sleeps until an event comes, or for that time.
void waitForEvent(std::chrono::nanoseconds time);

/// Hands the desktop's events to the panel, and what the panel leaves to gestures and requests.
/// Whether there was any.
bool takeEvents(const GlWindow& window, float mousePressure, Gestures& gestures,
                Requests& requests);

}  // namespace player
