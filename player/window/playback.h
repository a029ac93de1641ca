#pragma once

#include <chrono>
#include <deque>
#include <span>
#include <vector>

#include "app/frame_clock.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"
#include "player/window/keeper.h"
#include "player/window/window_session.h"

namespace player {

/// Plays the effect's frames when they are due.
class Playback {
public:
    Playback(WindowSession& ofSession, Keeper& keptBy);

    bool paused() const { return isPaused; }
    void switchPause() { isPaused = !isPaused; }
    /// One frame, paused.
    void step() { isPaused = stepWanted = true; }

    /// Returns the time until a frame is due; a long time while the effect rests.
    std::chrono::nanoseconds timeToNextFrame();
    /// Plays the frames that are due; returns whether there was one.
    bool playDueFrames();
    /// Plays a script from a fresh start. Ends a recording.
    void play(hostkit::GestureScript script);
    /// Starts the effect anew, and returns true, once a window that was resized keeps its size. Ends film and
    /// recording.
    bool followSize(app::Size pixels);

    /// Of the last frames, the newest last.
    std::span<const FrameTimes> times() const { return lastTimes; }
    /// Frames a second, over the last one; 0 where the effect stands still.
    double rate() const;
    /// The newest frame's took that much longer until it was shown.
    void addGlTime(std::chrono::nanoseconds time);

private:
    using Clock = app::Clock;

    bool isActive() const;
    void playFrame(std::chrono::nanoseconds elapsed);

    WindowSession& session;
    Keeper& keeper;
    bool isPaused = false;
    bool stepWanted = false;
    std::vector<FrameTimes> lastTimes;
    /// When the frames of the last second were played, or two that took longer.
    std::deque<Clock::time_point> frameEnds;
    app::Size lastPixels{};
    Clock::time_point resizedAt{};
};

}  // namespace player
