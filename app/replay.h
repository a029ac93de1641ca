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
    /// Script, scaled to screen pixels. It is scaled only once, because scaling a long script in every frame would cost
    /// time.
    hostkit::GestureScript script;
    /// Number of the next frame.
    int frame = 0;
};

}  // namespace app
