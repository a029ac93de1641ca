#pragma once

#include <vector>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// The one finger of the effect, whichever pointer moves it. It reports at most one move a frame, as a phone's touch
/// screen does, because the library measures speed between moves. Positions are in pixels of the screen.
class Finger {
public:
    bool isPressed() const { return pressed; }
    void press(double x, double y, float pressure);
    /// Moves a pressed finger. Leaving the screen cancels its stroke.
    void move(double x, double y, float pressure, Size screen);
    /// Ends the stroke of a pressed finger by an up or a cancel.
    void end(hostkit::TouchAction action, double x, double y);

    bool hasActions() const { return !actions.empty(); }
    /// Returns the actions since the last call.
    std::vector<hostkit::ScriptAction> takeActions();
    /// Drops the stroke: the effect starts anew and knows of no finger.
    void reset();

private:
    void add(const hostkit::Touch& touch);

    bool pressed = false;
    std::vector<hostkit::ScriptAction> actions;
};

}  // namespace app
