#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "app/frame_clock.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// Attract mode: gentle strokes that show the effect when no user is present. It starts after some idle seconds, ends
/// when the user returns, and rests after three strokes, so that a device nobody watches can sleep.
class AttractMode {
public:
    explicit AttractMode(Clock::time_point now) : lastInput(now) {}

    bool isOn() const { return on; }
    void turn(bool isOn) { on = isOn; }

    /// Notes input of the user; `touched`: by touching the water, after which attract mode waits longer.
    void noteInput(Clock::time_point now, bool touched);
    /// Notes that something else holds attract mode back: the idle time begins anew.
    void postpone(Clock::time_point now);
    bool isRunning() const { return frame >= 0; }
    /// Returns the number of the current stroke, or of the last stroke during the pause after it. Counts from 0; empty
    /// while attract mode does not run.
    std::optional<int> stroke() const;
    /// Returns the time until attract mode starts by itself; empty: it runs already, is off, or rests.
    std::optional<std::chrono::nanoseconds> untilStart(Clock::time_point now) const;
    /// Starts attract mode if its time has come.
    void startIfIdle(Clock::time_point now);
    /// Returns the actions of the next frame: strokes along slow curves, with pauses in which the ink fades.
    std::vector<hostkit::ScriptAction> next(Size screen);
    /// Stops; the actions end a stroke that has begun.
    std::vector<hostkit::ScriptAction> stop();

private:
    bool on = true;
    /// Of the next frame; -1: attract mode does not run.
    int frame = -1;
    bool everTouched = false;
    /// Three strokes brought no user.
    bool rests = false;
    Clock::time_point lastInput;
};

}  // namespace app
