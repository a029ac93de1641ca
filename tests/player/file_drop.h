#pragma once

#include <X11/Xlib.h>

#include <string>

/// Drops a file on a window with the XDND protocol, as a file manager does. Uses the display that DISPLAY names.
/// Returns false if the window does not accept the file.
bool dropFile(Window target, const std::string& file);
