#include "player/window/playing.h"

#include <utility>

#include "player/frame_time.h"

namespace player {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t graphFrames = 120;
/// A window that is being resized rests for this long before the effect is set up anew.
constexpr auto resizeRest = 150ms;

}  // namespace

Playback::Playback(Session& ofSession, Gestures& movedBy, Keeper& keptBy)
    : session(ofSession), gestures(movedBy), keeper(keptBy) {}

bool Playback::isActive() const {
    return !isPaused && (gestures.goOn() || !session.calm());
}

std::chrono::nanoseconds Playback::untilNext() {
    const auto now = Clock::now();
    if (stepWanted) {
        return 0ns;
    }
    if (isActive()) {
        return clock.untilNext(now, session.settings.timeScale);
    }
    clock.skip(now);
    moments.clear();
    return 250ms;
}

void Playback::playFrame(std::chrono::nanoseconds elapsed) {
    const auto actions = gestures.next(session.size(), session.recording().has_value());
    session.inkOfNobody(gestures.nobodysStroke());
    session.frame(actions, elapsed);
    keeper.watchRecording();
    lastTimes.push_back(session.times());
    if (lastTimes.size() > graphFrames) {
        lastTimes.erase(lastTimes.begin());
    }
    moments.push_back(Clock::now());
    while (moments.size() > 2 && moments.back() - moments.front() > 1s) {
        moments.pop_front();
    }
    if (gestures.endReplay()) {
        keeper.tellDigest();
    }
}

/// What comes while the effect stands still is shown in a frame at once.
bool Playback::wakeUp() {
    const bool wakes = session.calm() && gestures.wait();
    if (wakes) {
        playFrame(frameTime);
        clock.skip(Clock::now());
    }
    return wakes;
}

bool Playback::playWhatTimeAsksFor() {
    const bool exact = gestures.replaying() || session.recording();
    const auto [frames, elapsed] = clock.take(Clock::now(), session.settings.timeScale, exact);
    for (int one = 0; one < frames; ++one) {
        playFrame(elapsed);
    }
    return frames > 0;
}

bool Playback::playDueFrames() {
    if (std::exchange(stepWanted, false)) {
        playFrame(frameTime);
        return true;
    }
    if (isPaused) {
        return false;
    }
    if (!gestures.replaying() && !session.recording()) {
        gestures.comeIfIdle();
    }
    const bool woke = wakeUp();
    return (isActive() && playWhatTimeAsksFor()) || woke;
}

void Playback::play(Replay script) {
    keeper.finishRecording();
    session.startReplay();
    isPaused = false;
    gestures.play(std::move(script));
}

bool Playback::followSize(Size pixels) {
    if (pixels != std::exchange(lastPixels, pixels)) {
        resizedAt = Clock::now();
    }
    if (session.size() == pixels || Clock::now() - resizedAt < resizeRest) {
        return false;
    }
    keeper.finish();
    session.restart();
    return true;
}

double Playback::rate() const {
    if (moments.size() < 2) {
        return 0.0;
    }
    const std::chrono::duration<double> span = moments.back() - moments.front();
    return static_cast<double>(moments.size() - 1) / span.count();
}

void Playback::addToGl(std::chrono::nanoseconds time) {
    lastTimes.back().gl += std::chrono::duration<float, std::milli>(time).count();
}

}  // namespace player
