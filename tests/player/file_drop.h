#pragma once

#include <X11/Xlib.h>

#include <string>

/// Drops a file on a window as a file manager does, by the XDND protocol on the display of the
/// environment. False when the window does not take it.
bool dropFile(Window target, const std::string& file);
