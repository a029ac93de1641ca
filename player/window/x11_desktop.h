#pragma once

#include <optional>

struct SDL_Window;

namespace player {

// What SDL does not say of a desktop of X11.

/// Whether someone answers what the window asks of its desktop; of another one than X11's: yes. On
/// a bare X server, as of a kiosk, nobody does.
bool hasWindowManager(SDL_Window* window);

/// The dots per inch for which the user wants letters drawn; nothing where that was not said.
std::optional<double> fontDpi(SDL_Window* window);

}  // namespace player
