#pragma once

#include <chrono>
#include <deque>
#include <span>
#include <vector>

#include "player/window/frame_clock.h"
#include "player/window/gestures.h"
#include "player/window/keeping.h"
#include "player/window/session.h"

namespace player {

/// Plays the effect's frames when they are due, with the gestures that came.
class Playback {
public:
    Playback(Session& ofSession, Gestures& movedBy, Keeper& keptBy);

    bool paused() const { return isPaused; }
    void switchPause() { isPaused = !isPaused; }
    /// One frame, paused.
    void step() { isPaused = stepWanted = true; }

    /// Time until a frame is due; long while none becomes due with time.
    std::chrono::nanoseconds untilNext();
    /// Plays them; whether there was one.
    bool playDueFrames();
    /// Plays a script from a fresh start. What is recorded ends there.
    void play(Replay script);
    /// Sets the effect up anew, and returns true, once a window that was resized rests. What is
    /// filmed and recorded ends there.
    bool followSize(Size pixels);

    /// Of the last frames, the newest last.
    std::span<const FrameTimes> times() const { return lastTimes; }
    /// Frames a second, over the last one; 0 where the effect stands still.
    double rate() const;
    /// The newest frame's took that much longer until it was shown.
    void addToGl(std::chrono::nanoseconds time);

private:
    using Clock = FrameClock::Clock;

    bool isActive() const;
    void playFrame(std::chrono::nanoseconds elapsed);
    bool wakeUp();
    bool playWhatTimeAsksFor();

    Session& session;
    Gestures& gestures;
    Keeper& keeper;
    FrameClock clock;
    bool isPaused = false;
    bool stepWanted = false;
    std::vector<FrameTimes> lastTimes;
    /// When the frames of the last second were played, or two that took longer.
    std::deque<Clock::time_point> moments;
    Size lastPixels{};
    Clock::time_point resizedAt{};
};

}  // namespace player
