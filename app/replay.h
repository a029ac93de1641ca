#pragma once

#include <vector>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// A gesture script that plays frame by frame.
class Replay {
public:
    Replay(hostkit::GestureScript script, Size screen);

    /// Goes on on a screen of another size.
    void resize(Size screen);
    /// Returns the actions of the next frame.
    std::vector<hostkit::ScriptAction> next();
    bool isOver() const { return frame >= script.frames; }

private:
    /// Scaled to the screen once, so that a frame does not depend on the length of the script.
    hostkit::GestureScript script;
    /// Number of the next frame.
    int frame = 0;
};

}  // namespace app
