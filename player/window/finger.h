#pragma once

#include <SDL2/SDL_events.h>

#include <optional>
#include <vector>

#include "hostkit/gesture_script.h"
#include "player/window/gl_window.h"

namespace player {

/// The mouse or the first finger on a touch screen as the effect's finger. It gives at most one
/// move a frame, as a phone's touch screen does: speeds are measured between moves.
struct Finger {
    bool pressed = false;
    bool isMouse = true;
    SDL_FingerID id = 0;
    std::vector<hostkit::ScriptAction> actions;
};

/// Takes a pointer event in; others are passed over. `mousePressure` stands in where the device
/// measures none. Leaving the window while pressed is a cancel.
void feed(Finger& finger, const SDL_Event& event, const GlWindow& window, float mousePressure);

/// What happened since the last call.
std::vector<hostkit::ScriptAction> takeActions(Finger& finger);

}  // namespace player
