#pragma once

#include <chrono>

#include "app/session.h"
#include "player/window/gl_window.h"
#include "player/window/pointer.h"
#include "player/window/requests.h"

namespace player {

/// Waits for an event, at most for the given time.
void waitForEvent(std::chrono::nanoseconds time);

/// Handles the waiting events: adds the user's commands and files to `requests`, and passes the events to ImGui. Passes
/// pointer events outside the panel to the session. If `popupHasKeys` is true, only Esc and Enter are commands. Stops
/// after a command, because the command may open a pop-up, and the later keys then belong to this pop-up. Returns true
/// if there was an event.
bool handleEvents(const GlWindow& window, Pointer& pointer, app::Session& session,
                  Requests& requests, bool popupHasKeys);

}  // namespace player
