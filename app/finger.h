#pragma once

#include <vector>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// The single finger that touches the effect. Any pointer can move it. It reports at most one move per frame, like a
/// phone's touch screen, because the library measures speed as the distance between moves. Positions are in screen
/// pixels, y down.
class Finger {
public:
    /// Returns true while the finger touches the screen.
    bool isPressed() const { return pressed; }
    /// Returns true between `press` and `end`, even while the finger is outside the screen.
    bool isHeld() const { return held; }
    /// Puts the finger down on the screen. Does nothing if it is already held.
    void press(double x, double y, float pressure);
    /// Moves the finger if it is held. Leaving the screen ends the stroke; returning to the screen starts another
    /// stroke.
    void move(double x, double y, float pressure, Size screen);
    /// Releases the finger. An unfinished stroke ends with `action`, which is up or cancel.
    void end(hostkit::TouchAction action, double x, double y);

    bool hasActions() const { return !actions.empty(); }
    /// Returns the actions since the last call and removes them.
    std::vector<hostkit::ScriptAction> takeActions();
    /// Releases the finger, adds no up or cancel event, and removes all waiting actions. Call it when the effect
    /// restarts.
    void reset();

private:
    void add(const hostkit::Touch& touch);

    bool pressed = false;
    bool held = false;
    std::vector<hostkit::ScriptAction> actions;
};

}  // namespace app
