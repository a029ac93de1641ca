#pragma once

#include <SDL2/SDL_rect.h>
#include <SDL2/SDL_video.h>

#include <memory>
#include <optional>

#include "app/size.h"

namespace player {

/// Returns true if the environment names an X11 or Wayland display.
bool hasDesktop();

/// Desktop window with an OpenGL ES 2.0 context. The context is current on the constructing thread.
class GlWindow {
public:
    /// Opens the window. If `size` is larger than the display, scales it down. If `shrinks` is true, also leaves room
    /// for a title bar. Throws Failure if there is no desktop or no OpenGL ES 2.0.
    GlWindow(const char* title, app::Size size, bool shrinks);
    ~GlWindow();
    GlWindow(const GlWindow&) = delete;
    GlWindow& operator=(const GlWindow&) = delete;

    /// Destroys the context and its objects and makes a new context current. Throws Failure.
    void renewContext();
    void swap();
    /// Toggles full screen.
    void switchFullScreen();
    /// Returns the window's size in desktop units. Returns nothing while it is maximized or full screen.
    std::optional<app::Size> ownSize() const;
    /// Returns the size of the drawing area in pixels.
    app::Size pixels() const;
    /// Return the pixels per window unit, horizontally and vertically.
    double scaleX() const;
    double scaleY() const;
    /// Returns the display's resolution relative to 96 dpi, as the desktop reports it; at least 1.
    double displayScale() const;

    SDL_Window* handle() const { return window.get(); }
    SDL_GLContext context() const { return gl; }

private:
    struct VideoSystem {
        VideoSystem();
        ~VideoSystem();
    };
    struct Destroy {
        void operator()(SDL_Window* made) const { SDL_DestroyWindow(made); }
    };

    void fillScreenAlone();

    VideoSystem video;
    std::unique_ptr<SDL_Window, Destroy> window;
    SDL_GLContext gl = nullptr;
    /// Bounds of the window before it became full screen on a desktop that has no window manager. Empty in every other
    /// state and on every other desktop.
    std::optional<SDL_Rect> before;
};

}  // namespace player
