#pragma once

#include <EGL/egl.h>
#include <X11/Xlib.h>

#include <chrono>

#include "app/size.h"
#include "screensaver/options.h"

namespace saver {

/// An X11 window with an OpenGL ES 2.0 context, which is current on the thread that constructs the object. If the
/// window belongs to another program, this class only selects events about its size and visibility. It does not grab
/// input or change the window.
class SaverWindow {
public:
    /// Finds or opens the window that the target describes. Throws Failure.
    explicit SaverWindow(const Target& target);
    ~SaverWindow();
    SaverWindow(const SaverWindow&) = delete;
    SaverWindow& operator=(const SaverWindow&) = delete;

    /// Replaces the surface and the context, for example after a context loss. Throws Failure.
    void renewContext();
    /// Presents the frame. Returns false if the context is lost.
    bool swap();
    /// Waits for an event or a signal, at most for `maxWait`, and handles all events.
    void handleEvents(std::chrono::nanoseconds maxWait);

    /// Returns the size of the window in pixels, at least 1 x 1.
    app::Size size() const { return pixels; }
    /// Returns true if the window no longer exists or the user has closed it.
    bool isGone() const;
    /// Returns true if the window has lost its content since the last call.
    bool takeExposure();

    Window id() const { return window; }

private:
    void useWindow(Window given);
    void openWindow();
    EGLConfig configOf(VisualID visual) const;
    void dropContext();
    void handle(const XEvent& event);

    /// Connection to the X server. A thread ends the program when this connection closes, so the connection stays open
    /// until the process ends.
    Display* display;
    EGLDisplay egl = EGL_NO_DISPLAY;
    EGLConfig config = nullptr;
    EGLSurface surface = EGL_NO_SURFACE;
    EGLContext context = EGL_NO_CONTEXT;
    Window window = 0;
    Atom closing = 0;
    app::Size pixels{1, 1};
    bool exposed = false;
    bool closed = false;
};

}  // namespace saver
