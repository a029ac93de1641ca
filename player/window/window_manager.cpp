#include "player/window/window_manager.h"

#include <SDL2/SDL_syswm.h>

namespace player {

bool hasWindowManager(SDL_Window* window) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (SDL_GetWindowWMInfo(window, &info) == SDL_FALSE || info.subsystem != SDL_SYSWM_X11) {
        return true;
    }
    Display* display = info.info.x11.display;
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

}  // namespace player
