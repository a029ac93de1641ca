#pragma once

#include <SDL2/SDL_rect.h>
#include <SDL2/SDL_video.h>

#include <memory>
#include <optional>

#include "app/size.h"

namespace player {

/// Whether the environment names a display of X11 or Wayland.
bool hasDesktop();

/// A window of the desktop with an OpenGL ES 2.0 context, which is current on the thread that made
/// it.
class GlWindow {
public:
    /// `shrinks`: where the display is smaller, so is the window, in the same shape. Throws Failure
    /// without a desktop or without that GL.
    GlWindow(const char* title, app::Size size, bool shrinks);
    ~GlWindow();
    GlWindow(const GlWindow&) = delete;
    GlWindow& operator=(const GlWindow&) = delete;

    /// Destroys the context with everything in it and makes a new one, current. Throws Failure.
    void renewContext();
    void swap();
    /// The whole screen, or the window again.
    void switchFullScreen();
    /// In units of the desktop; nothing while that rules the size, as on the whole screen.
    std::optional<app::Size> ownSize() const;
    /// In pixels, of which a window of a dense screen has more than units of its own.
    app::Size pixels() const;
    /// Pixels per unit of the window, across and down.
    double scaleX() const;
    double scaleY() const;
    /// Pixels to one of a plain display's, by what the desktop says of the display; at least 1.
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
    /// Where the window was before it filled the screen on its own; nothing: it does not.
    std::optional<SDL_Rect> before;
};

}  // namespace player
