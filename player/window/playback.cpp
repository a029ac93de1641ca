#include "player/window/playback.h"

#include <cstddef>
#include <optional>
#include <ratio>
#include <utility>

#include "app/frame_clock.h"
#include "app/labels.h"
#include "app/text.h"
#include "player/window/keys.h"

namespace player {
namespace {

using namespace std::chrono_literals;

/// Number of frames in the graph of frame times.
constexpr std::size_t graphFrames = 120;

}  // namespace

Playback::Playback(WindowSession& ofSession, Keeper& keptBy) : session(ofSession), keeper(keptBy) {}

bool Playback::isActive() const {
    return !isPaused && !session.core.isIdle();
}

/// Returns true if the window is paused and its picture misses a change.
bool Playback::needsStillFrame() const {
    return isPaused && session.needsFrame();
}

/// Returns the length of a frame that shows a change during a pause. In this frame, the water does not move. The ink
/// moves by one frame, because the library moves the ink in every drawn frame. A recording and a replay count frames,
/// so they get a frame of normal length.
std::chrono::nanoseconds Playback::stillFrameLength() const {
    const bool countsFrames = session.core.isRecording() || session.core.isReplaying();
    return countsFrames ? app::frameTime : 0ns;
}

std::chrono::nanoseconds Playback::timeToNextFrame() {
    if (stepWanted || needsStillFrame()) {
        return 0ns;
    }
    if (isActive()) {
        return session.core.untilNextFrame(Clock::now());
    }
    session.core.skipTime();
    frameEnds.clear();
    return 250ms;
}

void Playback::playFrame(std::chrono::nanoseconds elapsed) {
    if (session.core.willRestart()) {
        keeper.finishRecordingForRestart(app::sharedText("inkEndedRecording"));
    }
    const bool wasReplaying = session.core.isReplaying();
    replayTime += elapsed;
    session.frame(elapsed);
    keeper.watchRecording();
    lastTimes.push_back(session.times());
    if (lastTimes.size() > graphFrames) {
        lastTimes.erase(lastTimes.begin());
    }
    frameEnds.push_back(Clock::now());
    while (frameEnds.size() > 2 && frameEnds.back() - frameEnds.front() > 1s) {
        frameEnds.pop_front();
    }
    if (wasReplaying && !session.core.isReplaying()) {
        keeper.noteReplayEnd();
    }
}

bool Playback::playDueFrames() {
    session.core.startAttractModeIfIdle(Clock::now(), isPaused);
    if (std::exchange(stepWanted, false)) {
        playFrame(app::frameTime);
        return true;
    }
    if (needsStillFrame()) {
        playFrame(stillFrameLength());
        return true;
    }
    if (!isActive()) {
        return false;
    }
    const auto [frames, elapsed] = session.core.takeDueFrames(Clock::now());
    for (int one = 0; one < frames; ++one) {
        playFrame(elapsed);
    }
    return frames > 0;
}

void Playback::play(hostkit::GestureScript script, const std::string& name) {
    keeper.finishRecording();
    session.core.startReplay(std::move(script));
    replayName = app::shortened(name);
    replayStart = Clock::now();
    replayTime = 0ns;
    isPaused = false;
}

void Playback::stopReplay() {
    session.core.stopReplay();
    session.core.noteInput(Clock::now());  // draws the frame that lifts the finger of the gesture
}

std::vector<Mark> Playback::marks() const {
    std::vector<Mark> marks;
    if (session.core.isReplaying()) {
        marks.push_back({MarkSymbol::play, app::sharedText("playing") + replayName,
                         std::chrono::duration_cast<std::chrono::seconds>(replayTime), replayStart,
                         Command::stopReplay, app::sharedText("stopGesture")});
    }
    if (isPaused) {
        marks.push_back({MarkSymbol::pause, app::sharedText("paused"), std::nullopt, std::nullopt,
                         Command::pause, app::sharedText("resume")});
    }
    return marks;
}

bool Playback::followSize(app::Size pixels) {
    if (pixels != std::exchange(lastPixels, pixels)) {
        resizedAt = Clock::now();
    }
    if (session.size() == pixels || Clock::now() - resizedAt < app::resizeDelay) {
        return false;
    }
    keeper.finishRecordingForRestart(app::sharedText("resizeEndedRecording"));
    session.resize();
    return true;
}

double Playback::rate() const {
    if (frameEnds.size() < 2) {
        return 0.0;
    }
    const std::chrono::duration<double> span = frameEnds.back() - frameEnds.front();
    return static_cast<double>(frameEnds.size() - 1) / span.count();
}

void Playback::addGlTime(std::chrono::nanoseconds time) {
    lastTimes.back().gl += std::chrono::duration<float, std::milli>(time).count();
}

}  // namespace player
