#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "app/frame_clock.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// Attract mode: gentle strokes that show the effect when no user is present. It starts after a few idle seconds and
/// stops at any user input. After three strokes it waits for user input, so that an unattended device can sleep. A
/// screen saver gets no input and lets it repeat.
class AttractMode {
public:
    explicit AttractMode(Clock::time_point now) : lastInput(now) {}

    bool isOn() const { return on; }
    /// Turns attract mode on or off. It does not stop strokes that already run.
    void turn(bool isOn) { on = isOn; }
    /// Makes attract mode continue after each three strokes and an idle time. The strokes keep counting, so that they
    /// have new places and inks.
    void repeat() { repeats = true; }

    /// Restarts the idle time at user input. `touched` is true if the user touched the water. From then on, attract
    /// mode waits longer.
    void noteInput(Clock::time_point now, bool touched);
    /// Restarts the idle time without user input, for example while a recording runs.
    void postpone(Clock::time_point now);
    bool isRunning() const { return frame >= 0; }
    /// Returns the number of the current stroke, from 0. The pause after a stroke counts as part of it. Empty if
    /// attract mode does not run.
    std::optional<int> stroke() const;
    /// Returns the time until attract mode starts. Empty if it is running, is off, or waits for user input.
    std::optional<std::chrono::nanoseconds> untilStart(Clock::time_point now) const;
    /// Starts attract mode if the idle time is over.
    void startIfIdle(Clock::time_point now);
    /// Returns the actions of the next frame. The strokes follow slow curves, with pauses in which the ink fades.
    std::vector<hostkit::ScriptAction> next(Size screen);
    /// Stops attract mode. Returns the actions that end an unfinished stroke.
    std::vector<hostkit::ScriptAction> stop();

private:
    bool on = true;
    bool repeats = false;
    /// Number of the frame with which the next strokes start.
    int firstFrame = 0;
    /// Number of the next frame; -1 if attract mode does not run.
    int frame = -1;
    bool everTouched = false;
    /// True after three strokes without user input.
    bool finished = false;
    Clock::time_point lastInput;
};

}  // namespace app
