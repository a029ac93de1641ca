#pragma once

#include <optional>
#include <vector>

#include "hostkit/gesture_script.h"
#include "player/options.h"
#include "player/size.h"

namespace player {

/// A script that is played in the window.
struct Replay {
    hostkit::GestureScript script;
    /// The next one to play.
    int frame = 0;
};

/// Of the script that the command line names, if it does. Throws HostError.
std::optional<Replay> replayOf(const Options& options);

/// The actions of the next frame, on a screen of that size.
std::vector<hostkit::ScriptAction> nextActions(Replay& replay, Size screen);

bool isOver(const Replay& replay);

}  // namespace player
