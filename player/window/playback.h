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

    /// Returns the time until the next frame is due. While the effect is idle or paused, returns the time between two
    /// checks whether attract mode must start.
    std::chrono::nanoseconds timeToNextFrame();
    /// Plays the frames that are due. Returns true if it has played at least one frame.
    bool playDueFrames();
    /// If there is a recording, finishes it first. Then resets the effect and plays a script. The on-screen indicator
    /// of the replay shows `name`.
    void play(hostkit::GestureScript script, const std::string& name);
    /// Stops the replay if there is one.
    void stopReplay();
    /// Returns the on-screen indicators of a replay and of a pause in progress.
    std::vector<Mark> marks() const;
    /// When a resized window has kept its new size for a short time, restarts the effect in this size. Finishes a
    /// recording in progress first. A film continues in its old size. Returns true if the effect was restarted.
    bool followSize(app::Size pixels);

    /// Returns the times of the last frames, the newest last.
    std::span<const FrameTimes> times() const { return lastTimes; }
    /// Returns the frames per second over the last second; 0 while the effect is idle or paused.
    double rate() const;
    /// Adds `time`, the duration of the presentation, to the GL time of the newest frame.
    void addGlTime(std::chrono::nanoseconds time);

private:
    using Clock = app::Clock;

    bool isActive() const;
    bool needsStillFrame() const;
    std::chrono::nanoseconds stillFrameLength() const;
    void playFrame(std::chrono::nanoseconds elapsed);

    WindowSession& session;
    Keeper& keeper;
    bool isPaused = false;
    bool stepWanted = false;
    std::string replayName;
    Clock::time_point replayStart{};
    /// Time by which the replay has advanced the effect so far. This time does not change during a pause.
    std::chrono::nanoseconds replayTime{};
    std::vector<FrameTimes> lastTimes;
    /// End times of the frames in the last second. The last two end times are kept even if they are older.
    std::deque<Clock::time_point> frameEnds;
    app::Size lastPixels{};
    Clock::time_point resizedAt{};
};

}  // namespace player
