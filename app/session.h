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
#include "app/cross_fade.h"
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
#include "hostkit/image.h"
#include "hostkit/water_driver.h"

namespace app {

/// Functions that the front end provides to the session. The session does not catch their exceptions.
struct FrontEnd {
    /// Makes a GL context current that has no objects: a new context, or the old context after its objects were
    /// deleted.
    std::function<void()> renewContext;
    /// Returns the image, scaled and cropped to cover a screen of the given size.
    std::function<hostkit::Image(const hostkit::Image&, Size)> cover;
    /// Draws a frame of the host.
    std::function<void(hostkit::EffectHost&)> draw = [](hostkit::EffectHost& host) { host.draw(); };
    /// Runs after each start of the effect.
    std::function<void(Size screen, bool hasInk)> onStart = [](Size, bool) {};
    /// Runs when a replay has ended. `finished` is false if the replay was stopped before the end of its script.
    std::function<void(bool finished)> onReplayEnd = [](bool) {};
    /// Runs immediately after an event has been recorded.
    std::function<void(const hostkit::ScriptEvent&)> onRecorded = [](const hostkit::ScriptEvent&) {
    };
    /// Runs at the end of a recording and receives the complete script.
    std::function<void(const hostkit::GestureScript&)> onRecordingEnd =
        [](const hostkit::GestureScript&) {};
};

/// The application core that every front end uses. It applies the settings to a host. Actions of the user, of a replay
/// or of attract mode reach that host through the session. It draws into the current GL context. Call all functions on
/// one thread. The library has one global state, so use one session at a time.
class Session {
public:
    /// Creates a session. The effect does not run yet: call `restart` before any other function that needs the effect.
    Session(FrontEnd frontEnd, Clock::time_point now);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Starts the effect on a screen of this size, with idle water and no ink. Ends a recording in progress; a replay
    /// in progress continues. If renewContext throws, the next frame tries again to start the effect.
    void restart(Size screen);
    /// Restarts the effect on a screen of another size and keeps the waves. The ink is lost, because the library has no
    /// function that restores it.
    void resize(Size screen);
    /// Creates the GL objects again after the front end has replaced a lost context. A recording includes this event.
    void regainContext();

    /// Replaces the backgrounds.
    void setBackgrounds(Backgrounds backgrounds);
    /// Shows an image as the first background. The previous first background becomes the second.
    void showBackground(hostkit::Image image);
    /// Replaces the first background gradually, within two seconds of effect time.
    void fadeTo(hostkit::Image image);
    /// Returns an ink that contrasts with the current background (see `inkAgainst`).
    std::array<float, 3> inkAgainstBackground(int variation) const;

    /// Handles user input that is not a touch, for example a key. Stops attract mode and ends the idle state.
    void noteInput(Clock::time_point now);
    /// Puts the finger down at a position in screen pixels, y down.
    void press(Clock::time_point now, double x, double y, float pressure);
    /// Moves the finger. Does nothing if it is not down.
    void move(Clock::time_point now, double x, double y, float pressure);
    /// Lifts the finger and ends the stroke with `action`, which is up or cancel. Does nothing if the finger is not
    /// down.
    void lift(Clock::time_point now, hostkit::TouchAction action, double x, double y);
    /// Returns true between `press` and `lift`, even while the finger is outside the screen.
    bool isPressed() const { return finger.isHeld(); }
    /// Adds an action to the next frame, after the touches that are already waiting.
    void add(const hostkit::ScriptAction& action);
    /// Returns true if actions are waiting for the next frame.
    bool hasActions() const { return !actions.empty() || finger.hasActions(); }

    const AttractMode& attractMode() const { return attract; }
    void turnAttractMode(bool on) { attract.turn(on); }
    void repeatAttractMode() { attract.repeat(); }
    /// Starts attract mode if there was no user input for long enough. The idle time restarts while a finger is down,
    /// while a replay or recording runs, or while the front end is `busy`, for example paused.
    void startAttractModeIfIdle(Clock::time_point now, bool busy);

    /// Returns the frames that are due (see `FrameClock::take`).
    FrameClock::Due takeDueFrames(Clock::time_point now);
    /// Returns the real time until the next frame is due.
    std::chrono::nanoseconds untilNextFrame(Clock::time_point now) const;
    /// Ignores the time until the next call of `takeDueFrames` (see `FrameClock::skip`).
    void skipTime();
    /// Applies the waiting actions, advances the effect by a frame of length `elapsed`, and draws the frame.
    void frame(std::chrono::nanoseconds elapsed);

    /// Returns true if the next frame would look the same as the last frame.
    bool isIdle() const;
    /// Returns true if the next frame applies changed settings or added actions. Touches do not count as actions.
    bool hasPendingChanges() const { return hasChanges() || !actions.empty(); }
    /// Returns true if the next frame restarts the effect, because the ink was turned off or on or because a start has
    /// failed. A restart ends a recording.
    bool willRestart() const { return !host || settings.waterOnly != applied.waterOnly; }
    bool isWaterIdle() const { return host && host->water().idle; }
    bool mayShowInk() const { return !applied.waterOnly && idleWatch.mayShowInk(); }

    /// Restarts the effect in the state in which a replay starts, and starts to record all actions. Frame numbers in
    /// the recording are times in units of 1/60 s, even if fewer frames are drawn. A replay matches the recording
    /// exactly only if each recorded frame lasted 1/60 s.
    void startRecording();
    /// Ends a recording. Does nothing if there is no recording.
    void finishRecording();
    bool isRecording() const { return recording.has_value(); }
    /// Restarts the effect and plays the script.
    void startReplay(hostkit::GestureScript script);
    /// Stops a replay and ends its unfinished stroke. Does nothing if there is no replay.
    void stopReplay();
    bool isReplaying() const { return replay.has_value(); }

    /// Returns the settings that a front end saves for its next start. These are the settings that the user chose, but
    /// with the first background. An ink that a script has set is left out.
    Settings userSettings() const;
    Size screen() const { return screenSize; }
    const hostkit::WaterDriver& water() const { return host->water(); }

    /// Passes the time between two frames in milliseconds to the adaptive quality. Does nothing during recordings and
    /// replays. A recording keeps its detail, because it may become a video. A replay draws every frame, even on a slow
    /// machine.
    void noteInterval(double interval);
    /// Returns the number of mesh vertices along a side at the current quality, divided by the number of water cells.
    float verticesPerCell() const;
    /// State of the adaptive quality.
    Quality quality;
    /// Settings that the user chose. A change takes effect in the next frame.
    Settings settings;

private:
    void noteStroke(Clock::time_point now);
    bool hasChanges() const;
    void advanceFade(std::chrono::nanoseconds elapsed);
    void applyChanges();
    float wantedCellsPerVertex() const;
    void chooseAttractInk();
    std::vector<hostkit::ScriptAction> takeActions();
    void run(std::span<const hostkit::ScriptAction> frameActions, std::chrono::nanoseconds elapsed);
    std::vector<hostkit::ScriptEvent> eventsOf(std::span<const hostkit::ScriptAction> frameActions);
    void record(const hostkit::ScriptAction& action);
    void noteAction(const hostkit::ScriptAction& action);
    void rememberUserInk(const hostkit::InkColor& newInk);
    void restartForGesture();
    void endReplay(bool finished);
    std::uint64_t screenDigest() const;

    FrontEnd frontEnd;
    Backgrounds backgrounds;
    /// Change to `backgrounds.first` in progress.
    std::optional<CrossFade> fade;
    Size screenSize;
    /// True if a host has used the current GL context. The next host then needs a new context.
    bool contextIsUsed = false;
    /// The host. Empty before the first start and after a failed start.
    std::optional<hostkit::EffectHost> host;
    /// Settings that are currently applied to the host.
    Settings applied;
    FrameClock clock;
    IdleWatch idleWatch;
    Rain rain;

    Finger finger;
    AttractMode attract;
    std::vector<hostkit::ScriptAction> actions;
    std::optional<Replay> replay;
    /// Last touch event that a frame has applied. At the end of a replay, it shows whether a stroke is unfinished.
    hostkit::Touch lastTouch{hostkit::TouchAction::up, 0.0, 0.0, 0.0f};
    std::optional<hostkit::GestureScript> recording;

    /// Number of the attract-mode stroke for which `attractInk` was chosen.
    std::optional<int> attractStroke;
    /// Ink colour of the current stroke of attract mode. Empty if the stroke uses the ink colour in the settings. The
    /// session never copies it to `settings.ink`.
    std::optional<std::array<float, 3>> attractInk;
    /// Last ink that an action set. Empty if no action has set one.
    std::optional<std::array<float, 3>> scriptInk;
    /// Ink that the user had chosen before a script replaced it.
    std::array<float, 3> userInk{};
};

}  // namespace app
