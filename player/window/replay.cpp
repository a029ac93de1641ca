#include "player/window/replay.h"

#include "player/script.h"

namespace player {

std::optional<Replay> replayOf(const Options& options) {
    if (!options.scriptGiven) {
        return std::nullopt;
    }
    return Replay{loadScript(options)};
}

std::vector<hostkit::ScriptAction> nextActions(Replay& replay, Size screen) {
    const hostkit::GestureScript script =
        hostkit::scaledToScreen(replay.script, screen.width, screen.height);
    std::vector<hostkit::ScriptAction> actions;
    for (const hostkit::ScriptEvent& event : hostkit::eventsOfFrame(script, replay.frame)) {
        actions.push_back(event.action);
    }
    ++replay.frame;
    return actions;
}

bool isOver(const Replay& replay) {
    return replay.frame >= replay.script.frames;
}

}  // namespace player
