#include "player/window/gestures.h"

#include <utility>

namespace player {
namespace {

using hostkit::ScriptAction;

void append(std::vector<ScriptAction>& actions, const std::vector<ScriptAction>& more) {
    actions.insert(actions.end(), more.begin(), more.end());
}

}  // namespace

Gestures::Gestures(std::optional<Replay> script, bool attracts) : replay(std::move(script)) {
    attract.on = attracts;
}

void Gestures::feed(const SDL_Event& event, const GlWindow& window, float mousePressure) {
    player::feed(finger, event, window, mousePressure);
    if (finger.pressed) {
        attract.userCame(true);
    }
}

std::vector<ScriptAction> Gestures::next(Size screen, bool onlyUser) {
    std::vector<ScriptAction> next = std::exchange(actions, {});
    const std::vector<ScriptAction> touches = takeActions(finger);
    if (replay) {
        append(next, nextActions(*replay, screen));
        return next;
    }
    if (attract.runs()) {
        const bool goes = !touches.empty() || !attract.on || onlyUser;
        append(next, goes ? attract.leave() : attract.next(screen));
    }
    append(next, touches);
    return next;
}

void Gestures::play(Replay script) {
    attract.leave();
    replay = std::move(script);
}

bool Gestures::endReplay() {
    if (!replay || !isOver(*replay)) {
        return false;
    }
    replay.reset();
    attract.userCame(false);
    return true;
}

}  // namespace player
