#pragma once

#include <vector>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// The single finger of the effect. Any pointer can move it. It reports at most one move per frame, like the touch
/// screen of a phone, because the library measures speed between moves. Positions are in pixels of the screen, y down.
class Finger {
public:
    bool isPressed() const { return pressed; }
    /// Puts the finger down. Does nothing if it is already down.
    void press(double x, double y, float pressure);
    /// Moves the finger if it is down. A position outside the screen cancels the stroke.
    void move(double x, double y, float pressure, Size screen);
    /// Ends the stroke with an up or cancel event if the finger is down.
    void end(hostkit::TouchAction action, double x, double y);

    bool hasActions() const { return !actions.empty(); }
    /// Returns and removes the actions since the last call.
    std::vector<hostkit::ScriptAction> takeActions();
    /// Lifts the finger without an event and removes all actions. Call it when the effect restarts.
    void reset();

private:
    void add(const hostkit::Touch& touch);

    bool pressed = false;
    std::vector<hostkit::ScriptAction> actions;
};

}  // namespace app
