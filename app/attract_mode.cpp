#include "app/attract_mode.h"

#include <algorithm>
#include <cmath>

namespace app {
namespace {

using hostkit::ScriptAction;
using hostkit::Touch;
using hostkit::TouchAction;
using namespace std::chrono_literals;

/// Idle time before attract mode starts for the first time. It is short, so that a new user soon sees the effect move.
constexpr std::chrono::seconds firstIdleTime = 4s;
/// Idle time before attract mode starts after the user has touched the water.
constexpr std::chrono::seconds idleTime = 20s;
/// Duration of a stroke in frames.
constexpr int strokeFrames = 110;
/// Duration of a cycle in frames: a stroke and the pause after it.
constexpr int cycleFrames = 300;
/// Number of strokes after which attract mode ends.
constexpr int cycles = 3;
/// Pressure of the strokes, 0 to 1.
constexpr float pressure = 0.5f;

/// Returns the touch event at a point of the stroke with number `cycle`. `progress` runs from 0 at the start of the
/// stroke to 1 at its end. Each stroke is rotated relative to the stroke before it.
Touch touchAt(TouchAction action, int cycle, double progress, Size screen) {
    const double turn = 2.4 * cycle;
    const double angle = turn + 3.6 * progress;
    const double shortSide = std::min(screen.width, screen.height);
    const double radius = shortSide * (0.18 + 0.14 * std::sin(2.0 * angle + turn));
    return {action, screen.width * (0.5 + 0.12 * std::cos(turn)) + radius * std::cos(angle),
            screen.height * (0.5 + 0.16 * std::sin(turn)) + 1.3 * radius * std::sin(angle),
            pressure};
}

}  // namespace

void AttractMode::noteInput(Clock::time_point now, bool touched) {
    everTouched = everTouched || touched;
    finished = false;
    lastInput = now;
}

void AttractMode::postpone(Clock::time_point now) {
    lastInput = now;
}

std::optional<std::chrono::nanoseconds> AttractMode::untilStart(Clock::time_point now) const {
    if (!on || finished || isRunning()) {
        return std::nullopt;
    }
    const Clock::time_point start = lastInput + (everTouched ? idleTime : firstIdleTime);
    return std::max<std::chrono::nanoseconds>(start - now, 0ns);
}

void AttractMode::startIfIdle(Clock::time_point now) {
    if (finished && repeats) {
        noteInput(now, true);  // starts the longer idle time
    }
    if (untilStart(now) == 0ns) {
        frame = firstFrame;
    }
}

std::vector<ScriptAction> AttractMode::next(Size screen) {
    if (frame >= firstFrame + cycles * cycleFrames) {
        firstFrame = repeats ? frame : 0;
        frame = -1;
        finished = true;
        return {};
    }
    const int cycle = frame / cycleFrames;
    const int cycleFrame = frame++ % cycleFrames;
    if (cycleFrame > strokeFrames) {
        return {};
    }
    const TouchAction action = cycleFrame == 0              ? TouchAction::down
                               : cycleFrame == strokeFrames ? TouchAction::up
                                                            : TouchAction::move;
    return {touchAt(action, cycle, static_cast<double>(cycleFrame) / strokeFrames, screen)};
}

std::optional<int> AttractMode::stroke() const {
    return isRunning() ? std::optional((std::max(frame, 1) - 1) / cycleFrames) : std::nullopt;
}

std::vector<ScriptAction> AttractMode::stop() {
    const bool isDown = frame > 0 && (frame - 1) % cycleFrames < strokeFrames;
    frame = -1;
    return isDown ? std::vector<ScriptAction>{Touch{TouchAction::up, 0.0, 0.0, 0.0f}}
                  : std::vector<ScriptAction>{};
}

}  // namespace app
