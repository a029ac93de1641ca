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
    /// Opens the window. Scales `size` down to the size of the display, and if `shrinks` is true, to leave room for a
    /// title bar.
    /// Throws Failure without a desktop or without OpenGL ES 2.0.
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
    /// Bounds of the window before full screen without a window manager. Empty outside that mode.
    std::optional<SDL_Rect> before;
};

}  // namespace player
