#include "player/window/playing.h"

#include <chrono>
#include <utility>

#include "player/frame_time.h"
#include "player/window/keeping.h"

namespace player {
namespace {

using namespace std::chrono_literals;
using hostkit::ScriptAction;
using Clock = FrameClock::Clock;

constexpr std::size_t graphFrames = 120;
/// A window that is being resized rests for this long before the effect is set up anew.
constexpr auto resizeRest = 150ms;

void append(std::vector<ScriptAction>& actions, const std::vector<ScriptAction>& more) {
    actions.insert(actions.end(), more.begin(), more.end());
}

/// From the script, else from the user, else from nobody's finger; from keys in any case.
std::vector<ScriptAction> nextActions(WindowState& window) {
    std::vector<ScriptAction> next = std::exchange(window.actions, {});
    const std::vector<ScriptAction> touches = takeActions(window.finger);
    if (window.replay) {
        append(next, nextActions(*window.replay, window.session.size()));
        return next;
    }
    if (window.attract.runs()) {
        const bool goes = !touches.empty() || !window.attract.on || window.session.recording();
        append(next, goes ? window.attract.leave() : window.attract.next(window.session.size()));
    }
    append(next, touches);
    return next;
}

void endReplay(WindowState& window) {
    tellDigest(window);
    window.replay.reset();
    window.attract.userCame(false);
}

void playFrame(WindowState& window, std::chrono::nanoseconds elapsed) {
    window.session.frame(nextActions(window), elapsed);
    window.drawn = true;
    window.times.push_back(window.session.times());
    if (window.times.size() > graphFrames) {
        window.times.erase(window.times.begin());
    }
    if (window.replay && isOver(*window.replay)) {
        endReplay(window);
    }
}

/// What comes while the effect stands still is shown in a frame at once.
void wakeUp(WindowState& window) {
    const bool something = !window.actions.empty() || !window.finger.actions.empty();
    if (window.session.calm() && something) {
        playFrame(window, frameTime);
        window.clock.skip(Clock::now());
    }
}

void playWhatTimeAsksFor(WindowState& window) {
    const bool exact = window.replay || window.session.recording();
    const auto [frames, elapsed] =
        window.clock.take(Clock::now(), window.session.settings.timeScale, exact);
    for (int one = 0; one < frames; ++one) {
        playFrame(window, elapsed);
    }
}

}  // namespace

bool isActive(const WindowState& window) {
    return !window.view.paused &&
           (window.replay || window.attract.runs() || !window.session.calm());
}

void followSize(WindowState& window) {
    if (window.session.size() == window.screen.window().pixels() ||
        Clock::now() - window.resizedAt < resizeRest) {
        return;
    }
    attempt(window.notice, [&] { finishFilm(window); });
    attempt(window.notice, [&] { finishRecording(window); });
    window.session.restart();
    window.redraws = redrawsAfterEvent;
}

void startReplay(WindowState& window, Replay replay) {
    finishRecording(window);
    window.session.startReplay();
    window.replay = std::move(replay);
}

void playDueFrames(WindowState& window) {
    window.drawn = false;
    if (std::exchange(window.stepWanted, false)) {
        playFrame(window, frameTime);
    } else if (!window.view.paused) {
        if (!window.replay && !window.session.recording()) {
            window.attract.comeIfIdle();
        }
        wakeUp(window);
        if (isActive(window)) {
            playWhatTimeAsksFor(window);
        }
    }
}

}  // namespace player
