#pragma once

struct SDL_Window;

namespace player {

/// Whether someone answers what the window asks of its desktop. On a bare X server, as of a kiosk,
/// nobody does.
bool hasWindowManager(SDL_Window* window);

}  // namespace player
