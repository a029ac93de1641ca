#pragma once

#include "player/window/window_state.h"

namespace player {

/// Runs a command that leaves a file behind: a screenshot, a film, a recording, a preset; passes
/// over others. Throws Failure, as all of these do.
void keep(WindowState& window, Command command);

/// The screenshot that was asked for, of what the screen shows.
void takeScreenshot(WindowState& window);
/// Ends the film that is being made; nothing where none is.
void finishFilm(WindowState& window);
/// Ends the recording of gestures; nothing where none is running.
void finishRecording(WindowState& window);
/// Prints the names of all files that the window left.
void tellFiles(const WindowState& window);

/// Prints the velocity's digest where the command line asks for it.
void tellDigest(const WindowState& window);

}  // namespace player
