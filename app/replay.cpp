#include "app/replay.h"

#include <utility>

namespace app {

Replay::Replay(hostkit::GestureScript original, Size screen)
    : script(hostkit::scaledToScreen(std::move(original), screen.width, screen.height)) {}

void Replay::resize(Size screen) {
    script = hostkit::scaledToScreen(std::move(script), screen.width, screen.height);
}

std::vector<hostkit::ScriptAction> Replay::next() {
    std::vector<hostkit::ScriptAction> actions;
    for (const hostkit::ScriptEvent& event : hostkit::eventsOfFrame(script, frame)) {
        actions.push_back(event.action);
    }
    ++frame;
    return actions;
}

}  // namespace app
