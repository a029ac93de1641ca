#pragma once

#include <atomic>

#include "hostkit/image.h"

namespace saver {

/// Adds the folder of xscreensaver-getimage to PATH. Call this function before other threads start, because it changes
/// the environment.
void findGrabProgram();

/// Returns the picture that xscreensaver-getimage draws for an X11 window. XScreenSaver's settings decide whether this
/// is the desktop or a picture from the user's folder. The call can take many seconds. If `cancelled` becomes true, the
/// call ends early. Throws Failure in this case and on any error. Every thread can call this function, because it opens
/// a separate connection to the display.
hostkit::Image grabPicture(unsigned long window, const std::atomic<bool>& cancelled);

}  // namespace saver
