#pragma once

#include <chrono>

#include "app/session.h"
#include "player/window/gl_window.h"
#include "player/window/pointer.h"
#include "player/window/requests.h"

namespace player {

/// Sleeps until an event arrives, at most for that time.
void waitForEvent(std::chrono::nanoseconds time);

/// Hands the desktop's events to the panel, and the events that are not the panel's to session and requests. Returns
/// whether there was an event.
bool handleEvents(const GlWindow& window, Pointer& pointer, app::Session& session,
                  Requests& requests);

}  // namespace player
