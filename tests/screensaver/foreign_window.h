#pragma once

#include <X11/Xlib.h>

#include <string>

#include "tests/desktop_files.h"

/// A window into which the screen saver draws. It belongs to the test's own connection to the X server.
class ForeignWindow {
public:
    ForeignWindow(int x, int y, unsigned width, unsigned height);
    ~ForeignWindow();
    ForeignWindow(const ForeignWindow&) = delete;
    ForeignWindow& operator=(const ForeignWindow&) = delete;

    std::string id() const { return std::to_string(window); }
    void moveAndResize(int x, int y, unsigned width, unsigned height);
    void destroy();
    /// Returns true if the screen saver leaves the input alone: other programs can grab the pointer and the keyboard,
    /// and no program selects their events from the window.
    bool leavesInputAlone() const;

    /// Returns a screenshot of the whole display.
    Pixbuf screenshot() const;

private:
    Display* display;
    Window window;
};
