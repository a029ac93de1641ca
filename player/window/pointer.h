#pragma once

#include <SDL2/SDL_events.h>
#include <SDL2/SDL_touch.h>

namespace app {
class Session;
}

namespace player {

class GlWindow;

/// Device that controls the session's single touch: the mouse, or the first finger on a touch screen.
struct Pointer {
    bool isMouse = true;
    SDL_FingerID id = 0;
};

/// Passes a pointer event to the session and ignores other events. If a pressed pointer leaves the window, its stroke
/// ends. The mouse has the pressure that is set in the settings.
void feed(Pointer& pointer, const SDL_Event& event, const GlWindow& window, app::Session& session);

}  // namespace player
