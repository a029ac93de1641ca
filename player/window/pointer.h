#pragma once

#include <SDL2/SDL_events.h>
#include <SDL2/SDL_touch.h>

namespace app {
class Session;
}

namespace player {

class GlWindow;

/// The mouse or the first finger on a touch screen, which moves the finger of the session.
struct Pointer {
    bool isMouse = true;
    SDL_FingerID id = 0;
};

/// Hands a pointer event to the session, and passes over other events. A pointer that leaves the window while it is
/// pressed cancels its stroke. The settings' pressure stands in for a device that measures none.
void feed(Pointer& pointer, const SDL_Event& event, const GlWindow& window, app::Session& session);

}  // namespace player
