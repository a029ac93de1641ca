#pragma once

#include <SDL2/SDL_events.h>

#include <optional>
#include <vector>

#include "hostkit/gesture_script.h"
#include "player/size.h"
#include "player/window/attract.h"
#include "player/window/finger.h"
#include "player/window/replay.h"

namespace player {

/// What moves the effect, the first that is there: a script, the user, nobody's finger; and what
/// keys do to it in any case.
class Gestures {
public:
    /// `attracts`: a finger of nobody's comes to an idle window.
    Gestures(std::optional<Replay> script, bool attracts);

    void feed(const SDL_Event& event, const GlWindow& window, float mousePressure);
    bool pressed() const { return finger.pressed; }
    /// The user did something, not with the finger.
    void userCame() { attract.userCame(false); }
    void switchAttract() { attract.on = !attract.on; }
    bool attracts() const { return attract.on; }
    void comeIfIdle() { attract.comeIfIdle(); }

    /// Comes to the effect with the next frame.
    void add(const hostkit::ScriptAction& action) { actions.push_back(action); }
    /// Whether something of the user's waits for the next frame.
    bool wait() const { return !actions.empty() || !finger.actions.empty(); }
    /// Whether there will be more of them without the user.
    bool goOn() const { return replay || attract.runs(); }
    /// The number of the stroke, from 0, that nobody's finger makes or has made; nothing: it does not come.
    std::optional<int> nobodysStroke() const { return attract.stroke(); }
    /// Those of the next frame. `onlyUser`: nobody's finger leaves.
    std::vector<hostkit::ScriptAction> next(Size screen, bool onlyUser);

    /// From a fresh start of the effect, which knows of no finger.
    void play(Replay script);
    bool replaying() const { return replay.has_value(); }
    /// Whether the script has just been played to its end; then it goes.
    bool endReplay();

private:
    std::optional<Replay> replay;
    Finger finger;
    Attract attract;
    std::vector<hostkit::ScriptAction> actions;
};

}  // namespace player
