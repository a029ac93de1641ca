#pragma once

#include <atomic>

#include "hostkit/image.h"

namespace saver {

/// Adds the folder of xscreensaver-getimage to PATH. Changes the environment, so call it before other threads start.
void findGrabProgram();

/// Returns the picture that xscreensaver-getimage chooses for an X11 window: by XScreenSaver's settings, the desktop or
/// a picture of the user's folder. Waits for that program, which may take seconds. Returns early with Failure if
/// `cancelled` becomes true. Opens its own connection to the display, so any thread can call it. Throws Failure.
hostkit::Image grabPicture(unsigned long window, const std::atomic<bool>& cancelled);

}  // namespace saver
