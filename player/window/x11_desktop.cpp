#include "player/window/x11_desktop.h"

#include <SDL2/SDL_syswm.h>

#include <cstdlib>

namespace player {
namespace {

/// Returns the X11 display of a window, or null on another desktop.
Display* displayOf(SDL_Window* window) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    const bool known = SDL_GetWindowWMInfo(window, &info) == SDL_TRUE;
    return known && info.subsystem == SDL_SYSWM_X11 ? info.info.x11.display : nullptr;
}

}  // namespace

bool hasWindowManager(SDL_Window* window) {
    Display* display = displayOf(window);
    if (display == nullptr) {
        return true;
    }
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* manager = nullptr;
    XGetWindowProperty(display, XDefaultRootWindow(display),
                       XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False), 0, 1, False,
                       AnyPropertyType, &type, &format, &count, &rest, &manager);
    if (manager != nullptr) {
        XFree(manager);
    }
    return count > 0;
}

std::optional<double> fontDpi(SDL_Window* window) {
    Display* display = displayOf(window);
    const char* said = display == nullptr ? nullptr : XGetDefault(display, "Xft", "dpi");
    const double dpi = said == nullptr ? 0.0 : std::strtod(said, nullptr);
    return dpi > 0.0 ? std::optional(dpi) : std::nullopt;
}

}  // namespace player
