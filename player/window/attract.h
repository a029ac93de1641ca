#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "hostkit/gesture_script.h"
#include "player/size.h"

namespace player {

/// A gentle finger of nobody's that comes when the window has been idle for a while, and goes when
/// the user comes: a first look is never a still.
class Attract {
public:
    using Clock = std::chrono::steady_clock;

    bool on = true;

    /// The user did something; `touched`: with the finger.
    void userCame(bool touched);
    bool runs() const { return frame >= 0; }
    /// The number of the stroke, from 0, or of the one before a rest; nothing while it does not run.
    std::optional<int> stroke() const;
    /// Comes where it is time.
    void comeIfIdle();
    /// What it does in its next frame: strokes along slow curves, with rests in which the ink
    /// fades.
    std::vector<hostkit::ScriptAction> next(Size screen);
    /// Goes; the actions lift it.
    std::vector<hostkit::ScriptAction> leave();

private:
    int frame = -1;
    bool everTouched = false;
    Clock::time_point lastInput = Clock::now();
};

}  // namespace player
