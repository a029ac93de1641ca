#pragma once

#include <vector>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// The single finger of the effect. Any pointer can move it. It reports at most one move per frame, like the touch
/// screen of a phone, because the library measures speed between moves. Positions are in pixels of the screen, y down.
class Finger {
public:
    /// Returns true while the finger touches the screen.
    bool isPressed() const { return pressed; }
    /// Returns true from the press to the end, also while the finger is outside the screen.
    bool isHeld() const { return held; }
    /// Puts the finger down. Does nothing if it is held.
    void press(double x, double y, float pressure);
    /// Moves the finger if it is held. A move out of the screen ends the stroke, and a move back starts another one.
    void move(double x, double y, float pressure, Size screen);
    /// Releases the finger. Ends the stroke, if there is one, with an up or cancel event.
    void end(hostkit::TouchAction action, double x, double y);

    bool hasActions() const { return !actions.empty(); }
    /// Returns and removes the actions since the last call.
    std::vector<hostkit::ScriptAction> takeActions();
    /// Releases the finger without an event and removes all actions. Call it when the effect restarts.
    void reset();

private:
    void add(const hostkit::Touch& touch);

    bool pressed = false;
    bool held = false;
    std::vector<hostkit::ScriptAction> actions;
};

}  // namespace app
