#include "player/window/attract.h"

#include <algorithm>
#include <cmath>

namespace player {
namespace {

using hostkit::ScriptAction;
using hostkit::Touch;
using hostkit::TouchAction;
using namespace std::chrono_literals;

/// At the start a first look is soon not a still; later the user had the finger.
constexpr std::chrono::seconds firstIdleTime = 4s;
constexpr std::chrono::seconds idleTime = 20s;
constexpr int strokeFrames = 110;
constexpr int cycleFrames = 300;
constexpr float pressure = 0.5f;

/// A point of stroke `cycle`, `part` of its way along; each stroke is turned against the last.
Touch point(TouchAction action, int cycle, double part, Size screen) {
    const double turn = 2.4 * cycle;
    const double angle = turn + 3.6 * part;
    const double shortSide = std::min(screen.width, screen.height);
    const double radius = shortSide * (0.18 + 0.14 * std::sin(2.0 * angle + turn));
    return {action, screen.width * (0.5 + 0.12 * std::cos(turn)) + radius * std::cos(angle),
            screen.height * (0.5 + 0.16 * std::sin(turn)) + 1.3 * radius * std::sin(angle),
            pressure};
}

}  // namespace

void Attract::userCame(bool touched) {
    everTouched = everTouched || touched;
    lastInput = Clock::now();
}

void Attract::comeIfIdle() {
    const auto patience = everTouched ? idleTime : firstIdleTime;
    if (on && !runs() && Clock::now() - lastInput > patience) {
        frame = 0;
    }
}

std::vector<ScriptAction> Attract::next(Size screen) {
    const int cycle = frame / cycleFrames;
    const int at = frame++ % cycleFrames;
    if (at > strokeFrames) {
        return {};
    }
    const TouchAction action = at == 0              ? TouchAction::down
                               : at == strokeFrames ? TouchAction::up
                                                    : TouchAction::move;
    return {point(action, cycle, static_cast<double>(at) / strokeFrames, screen)};
}

std::optional<int> Attract::stroke() const {
    return runs() ? std::optional((std::max(frame, 1) - 1) / cycleFrames) : std::nullopt;
}

std::vector<ScriptAction> Attract::leave() {
    const bool down = (frame - 1) % cycleFrames < strokeFrames;
    frame = -1;
    lastInput = Clock::now();
    return down ? std::vector<ScriptAction>{Touch{TouchAction::up, 0.0, 0.0, 0.0f}}
                : std::vector<ScriptAction>{};
}

}  // namespace player
