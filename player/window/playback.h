#pragma once

#include <chrono>
#include <deque>
#include <span>
#include <string>
#include <vector>

#include "app/frame_clock.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"
#include "player/window/keeper.h"
#include "player/window/marks.h"
#include "player/window/window_session.h"

namespace player {

/// Plays the effect's frames at their due times.
class Playback {
public:
    Playback(WindowSession& ofSession, Keeper& keptBy);

    bool paused() const { return isPaused; }
    void switchPause() { isPaused = !isPaused; }
    /// Pauses and requests one frame.
    void step() { isPaused = stepWanted = true; }

    /// Returns the time until the next frame is due. While idle or paused, returns the interval of the checks for
    /// attract mode.
    std::chrono::nanoseconds timeToNextFrame();
    /// Plays the due frames. Returns true if there was one.
    bool playDueFrames();
    /// Resets the effect and plays a script. Finishes the recording, if any. The mark of the replay shows the name.
    void play(hostkit::GestureScript script, const std::string& name);
    /// Stops the replay. Does nothing without a replay.
    void stopReplay();
    /// Returns the marks of the replay and of the pause in progress.
    std::vector<Mark> marks() const;
    /// Restarts the effect once a resized window keeps its new size. Finishes the recording then. A film continues in
    /// its old size. Returns true after a restart.
    bool followSize(app::Size pixels);

    /// Returns the times of the last frames, the newest last.
    std::span<const FrameTimes> times() const { return lastTimes; }
    /// Returns the frames per second over the last second; 0 while the effect is idle or paused.
    double rate() const;
    /// Adds the time of presentation to the GL time of the newest frame.
    void addGlTime(std::chrono::nanoseconds time);

private:
    using Clock = app::Clock;

    bool isActive() const;
    void playFrame(std::chrono::nanoseconds elapsed);

    WindowSession& session;
    Keeper& keeper;
    bool isPaused = false;
    bool stepWanted = false;
    std::string replayName;
    /// Effect time of the replay so far. It stands still during a pause.
    std::chrono::nanoseconds replayTime{};
    std::vector<FrameTimes> lastTimes;
    /// Times at which the frames of the last second ended; at least the last two frames.
    std::deque<Clock::time_point> frameEnds;
    app::Size lastPixels{};
    Clock::time_point resizedAt{};
};

}  // namespace player
