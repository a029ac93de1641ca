#pragma once

#include <vector>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace app {

/// Plays a gesture script frame by frame.
class Replay {
public:
    Replay(hostkit::GestureScript script, Size screen);

    /// Scales the rest of the script to a new screen size.
    void resize(Size screen);
    /// Returns the actions of the next frame.
    std::vector<hostkit::ScriptAction> next();
    bool isOver() const { return frame >= script.frames; }

private:
    /// Script in pixels of the screen. It is scaled once and not in each frame, so that a long script costs no more
    /// time per frame.
    hostkit::GestureScript script;
    /// Number of the next frame.
    int frame = 0;
};

}  // namespace app
