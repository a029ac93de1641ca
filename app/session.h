#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "app/attract_mode.h"
#include "app/backgrounds.h"
#include "app/finger.h"
#include "app/frame_clock.h"
#include "app/idle_watch.h"
#include "app/quality.h"
#include "app/rain.h"
#include "app/replay.h"
#include "app/settings.h"
#include "app/size.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/picture.h"
#include "hostkit/water_driver.h"

namespace app {

/// Platform functions of a front end. An exception of one of them passes through the session to its caller.
struct FrontEnd {
    /// Replaces the GL context, or empties it, and makes it current.
    std::function<void()> renewContext;
    /// Returns a picture scaled to cover the screen.
    std::function<hostkit::Picture(const hostkit::Picture&, Size)> cover;
    /// Draws the host's frame.
    std::function<void(hostkit::EffectHost&)> draw = [](hostkit::EffectHost& host) { host.draw(); };
    /// Called once the effect has started anew, with or without ink.
    std::function<void(Size screen, bool hasInk)> onStart = [](Size, bool) {};
    /// Called for each event of a recording, as it happens.
    std::function<void(const hostkit::ScriptEvent&)> onRecorded = [](const hostkit::ScriptEvent&) {
    };
    /// Called with the whole recording at its end.
    std::function<void(const hostkit::GestureScript&)> onRecordingEnd =
        [](const hostkit::GestureScript&) {};
};

/// The application around the effect: a host with the settings applied, moved by a script, the user or attract mode.
/// It draws in the current GL context. The library has one state, so use one session at a time.
class Session {
public:
    /// Call `restart` before anything that needs the effect.
    Session(FrontEnd frontEnd, Clock::time_point now);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Starts the effect anew on a screen of that size: calm water, no ink. Ends a recording; a replay goes on.
    /// If renewContext throws, the next frame tries again.
    void restart(Size screen);
    /// Sets up in the GL context of now what a lost context held. A recording holds that too.
    void regainContext();

    /// Shows other backgrounds.
    void setBackgrounds(Backgrounds backgrounds);
    /// Makes the picture the background, and the former background the second background.
    void showPicture(hostkit::Picture picture);
    /// Returns an ink for the background that is shown, as `inkAgainst` does.
    std::array<float, 3> inkAgainstBackground(int variation) const;

    /// Notes input other than touches, such as a key: attract mode stops, and a frame shows the effect of the input.
    void noteInput(Clock::time_point now);
    void press(Clock::time_point now, double x, double y, float pressure);
    void move(Clock::time_point now, double x, double y, float pressure);
    void lift(Clock::time_point now, hostkit::TouchAction action, double x, double y);
    bool isPressed() const { return finger.isPressed(); }
    /// Adds an action to the next frame, after the touches up to now.
    void add(const hostkit::ScriptAction& action);
    /// Returns whether actions wait for the next frame.
    bool hasActions() const { return !actions.empty() || finger.hasActions(); }

    const AttractMode& attractMode() const { return attract; }
    void turnAttractMode(bool on) { attract.turn(on); }
    /// Starts attract mode if the user has been idle for long enough. A gesture, a replay, a recording and a front end
    /// that is `busy`, for example paused, hold it back.
    void startAttractModeIfIdle(Clock::time_point now, bool busy);

    /// Returns the frames that are due.
    FrameClock::Due takeDueFrames(Clock::time_point now);
    std::chrono::nanoseconds untilNextFrame(Clock::time_point now) const;
    /// Drops the time until the next call of takeDueFrames, as FrameClock::skip does.
    void skipTime();
    /// Runs one frame of the effect, with the actions that wait, and draws it.
    void frame(std::chrono::nanoseconds elapsed);

    /// Returns whether further frames would show the same.
    bool isIdle() const;
    bool isWaterIdle() const { return host && host->water().resting; }
    bool mayShowInk() const { return !applied.waterOnly && idleWatch.mayShowInk(); }

    /// Starts the effect anew and records what happens from there. A replay finds the same start.
    void startRecording();
    /// Ends a recording, if there is one.
    void finishRecording();
    bool isRecording() const { return recording.has_value(); }
    /// Starts the effect anew and plays the script.
    void startReplay(hostkit::GestureScript script);
    bool isReplaying() const { return replay.has_value(); }

    /// Returns the settings as the user left them: without the ink that a script chose since, and with the first
    /// background.
    Settings userSettings() const;
    Size screen() const { return screenSize; }
    const hostkit::WaterDriver& water() const { return host->water(); }

    /// Passes the milliseconds between two frames to the adaptive quality. Recordings and replays do not count: they
    /// draw every frame, however long it takes.
    void noteInterval(double interval);
    /// Adaptive quality of the drawn mesh.
    Quality quality;
    /// Applied with the next frame.
    Settings settings;

private:
    void noteStroke(Clock::time_point now);
    bool hasChanges() const;
    void applyChanges();
    int cellsPerVertexWanted() const { return cellsPerVertex(quality, settings.meshDetail); }
    void chooseAttractInk();
    std::vector<hostkit::ScriptAction> takeActions();
    void run(std::span<const hostkit::ScriptAction> frameActions, std::chrono::nanoseconds elapsed);
    std::vector<hostkit::ScriptEvent> eventsOf(std::span<const hostkit::ScriptAction> frameActions);
    void record(const hostkit::ScriptAction& action);
    void noteAction(const hostkit::ScriptAction& action);
    void rememberUserInk(const hostkit::InkColor& script);
    void restartForGesture();
    std::uint64_t screenDigest() const;

    FrontEnd frontEnd;
    Backgrounds backgrounds;
    Size screenSize;
    /// A host was made in the GL context, so that the next host needs another context.
    bool contextIsUsed = false;
    /// Empty before the first start, and after a start that failed.
    std::optional<hostkit::EffectHost> host;
    /// The settings that the host has.
    Settings applied;
    FrameClock clock;
    IdleWatch idleWatch;
    Rain rain;

    Finger finger;
    AttractMode attract;
    std::vector<hostkit::ScriptAction> actions;
    std::optional<Replay> replay;
    std::optional<hostkit::GestureScript> recording;

    /// Stroke of attract mode that the attract ink belongs to.
    std::optional<int> attractStroke;
    /// Ink of that stroke; empty: the ink of the settings. The settings keep the user's ink.
    std::optional<std::array<float, 3>> attractInk;
    std::optional<std::array<float, 3>> scriptInk;
    /// Ink of the settings before a script replaced it.
    std::array<float, 3> userInk{};
};

}  // namespace app
