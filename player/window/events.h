#pragma once

#include <chrono>

#include "app/session.h"
#include "player/window/gl_window.h"
#include "player/window/pointer.h"
#include "player/window/requests.h"

namespace player {

/// Waits for an event, at most for the given time.
void waitForEvent(std::chrono::nanoseconds time);

/// Passes the desktop's events to the panel, and the others to the session and the requests. Returns true if there was
/// an event.
bool handleEvents(const GlWindow& window, Pointer& pointer, app::Session& session,
                  Requests& requests);

}  // namespace player
