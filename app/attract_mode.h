#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "app/frame_clock.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// Attract mode draws gentle strokes that show the effect while no user is present. It starts after a few idle seconds
/// and stops at any user input. After three strokes, it waits for user input, so that an unattended device can sleep. A
/// screensaver gets no user input, so it calls `repeat` to draw further strokes.
class AttractMode {
public:
    explicit AttractMode(Clock::time_point now) : lastInput(now) {}

    bool isOn() const { return on; }
    /// Turns attract mode on or off. Does not stop strokes that have started.
    void turn(bool isOn) { on = isOn; }
    /// Makes attract mode repeat: after three strokes and another idle time, it draws the next three strokes. The
    /// stroke numbers continue, so that the new strokes differ from the old strokes in place and ink.
    void repeat() { repeats = true; }

    /// Restarts the idle time because of user input. If `touched` is true, because the user touched the water, this and
    /// all later idle times are longer.
    void noteInput(Clock::time_point now, bool touched);
    /// Restarts the idle time for another reason than user input, for example because a recording runs.
    void postpone(Clock::time_point now);
    bool isRunning() const { return frame >= 0; }
    /// Returns the number of the current stroke, from 0. During the pause after a stroke, this is still the number of
    /// that stroke. Returns nothing if attract mode is not running.
    std::optional<int> stroke() const;
    /// Returns the time until attract mode starts. Returns nothing if attract mode is running, turned off or waiting
    /// for user input.
    std::optional<std::chrono::nanoseconds> untilStart(Clock::time_point now) const;
    /// Starts attract mode if no user input has occurred for the whole idle time (`untilStart` returns 0). If attract
    /// mode repeats and has just drawn three strokes, begins a new idle time instead.
    void startIfIdle(Clock::time_point now);
    /// Returns the touch actions of the next frame. The strokes are slow curves. Ink fades in the pauses between them.
    std::vector<hostkit::ScriptAction> next(Size screen);
    /// Stops attract mode. Returns the touch actions that end an unfinished stroke.
    std::vector<hostkit::ScriptAction> stop();

private:
    bool on = true;
    bool repeats = false;
    /// Number of the frame at which the next three strokes start.
    int firstFrame = 0;
    /// Number of the next frame, or -1 if attract mode is not running.
    int frame = -1;
    bool everTouched = false;
    /// True if the last three strokes are done and no user input has followed.
    bool finished = false;
    Clock::time_point lastInput;
};

}  // namespace app
