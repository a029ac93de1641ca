#pragma once

#include <optional>

struct SDL_Window;

namespace player {

// Properties of an X11 desktop that SDL does not report.

/// Returns true if a window manager is running. Always true on desktops other than X11. A bare X server, for example in
/// a kiosk, has none.
bool hasWindowManager(SDL_Window* window);

/// Returns the user's font resolution in dots per inch (Xft.dpi), or nothing if it is not set.
std::optional<double> fontDpi(SDL_Window* window);

}  // namespace player
