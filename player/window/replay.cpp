#include "player/window/replay.h"

namespace player {

std::optional<Replay> replayOf(const Options& options) {
    if (!options.scriptGiven) {
        return std::nullopt;
    }
    Replay replay{hostkit::loadGestureScript(options.script)};
    replay.script.frames = options.frames > 0 ? options.frames : replay.script.frames;
    return replay;
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
