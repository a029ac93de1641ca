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

/// Functions that the front end provides. The session does not catch their exceptions.
struct FrontEnd {
    /// Makes a GL context without objects current: a new context, or the old one after deleting its objects.
    std::function<void()> renewContext;
    /// Returns an image scaled and cropped to cover the screen.
    std::function<hostkit::Image(const hostkit::Image&, Size)> cover;
    /// Draws a frame of the host.
    std::function<void(hostkit::EffectHost&)> draw = [](hostkit::EffectHost& host) { host.draw(); };
    /// Called after each start of the effect.
    std::function<void(Size screen, bool hasInk)> onStart = [](Size, bool) {};
    /// Called when a replay has ended. `finished` is false if it was stopped before the end of its script.
    std::function<void(bool finished)> onReplayEnd = [](bool) {};
    /// Called for each event that is recorded, at once.
    std::function<void(const hostkit::ScriptEvent&)> onRecorded = [](const hostkit::ScriptEvent&) {
    };
    /// Called with the complete recording when it ends.
    std::function<void(const hostkit::GestureScript&)> onRecordingEnd =
        [](const hostkit::GestureScript&) {};
};

/// The application around the effect. It applies the settings to a host and feeds the host with actions of the user, of
/// a replay or of attract mode. It draws into the current GL context. Call all functions on one thread. The library has
/// one global state, so use one session at a time.
class Session {
public:
    /// Creates a session without a running effect. Call `restart` before any other function that needs the effect.
    Session(FrontEnd frontEnd, Clock::time_point now);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Starts the effect with idle water and no ink on a screen of this size. Ends a recording and continues a replay.
    /// If renewContext throws, the next frame tries again.
    void restart(Size screen);
    /// Starts the effect on a screen of another size and keeps the waves. The ink is lost, because only touches can add
    /// ink to the library.
    void resize(Size screen);
    /// Creates the GL objects anew after the front end has replaced a lost context. Records the loss.
    void regainContext();

    /// Replaces the backgrounds.
    void setBackgrounds(Backgrounds backgrounds);
    /// Makes the image the first background, and the previous first background the second.
    void showBackground(hostkit::Image image);
    /// Replaces the first background by a cross-fade of two seconds of effect time.
    void fadeTo(hostkit::Image image);
    /// Returns an ink that contrasts with the current background. See `inkAgainst`.
    std::array<float, 3> inkAgainstBackground(int variation) const;

    /// Notes input other than a touch, such as a key. Stops attract mode and ends the idle state.
    void noteInput(Clock::time_point now);
    /// Puts the finger down at a position in pixels of the screen, y down.
    void press(Clock::time_point now, double x, double y, float pressure);
    /// Moves the finger if it is down.
    void move(Clock::time_point now, double x, double y, float pressure);
    /// Ends the stroke with an up or cancel event if the finger is down.
    void lift(Clock::time_point now, hostkit::TouchAction action, double x, double y);
    /// Returns true from `press` to `lift`, also while the finger is outside the screen.
    bool isPressed() const { return finger.isHeld(); }
    /// Adds an action to the next frame, after the touches so far.
    void add(const hostkit::ScriptAction& action);
    /// Returns true if there are actions for the next frame.
    bool hasActions() const { return !actions.empty() || finger.hasActions(); }

    const AttractMode& attractMode() const { return attract; }
    void turnAttractMode(bool on) { attract.turn(on); }
    void repeatAttractMode() { attract.repeat(); }
    /// Starts attract mode if the user has been idle for long enough. A finger on the screen, a replay, a recording and
    /// a `busy` front end, for example one that is paused, restart the idle time.
    void startAttractModeIfIdle(Clock::time_point now, bool busy);

    /// Returns the frames that are due. See `FrameClock::take`.
    FrameClock::Due takeDueFrames(Clock::time_point now);
    /// Returns the real time until the next frame is due.
    std::chrono::nanoseconds untilNextFrame(Clock::time_point now) const;
    /// Ignores the time up to the next call of `takeDueFrames`. See `FrameClock::skip`.
    void skipTime();
    /// Applies the actions, advances the effect by one frame of `elapsed`, and draws it.
    void frame(std::chrono::nanoseconds elapsed);

    /// Returns true if the next frame would look the same.
    bool isIdle() const;
    bool isWaterIdle() const { return host && host->water().idle; }
    bool mayShowInk() const { return !applied.waterOnly && idleWatch.mayShowInk(); }

    /// Restarts the effect in the state in which a replay starts, and records all actions. Their frame numbers are
    /// times in 1/60 s, however many frames are drawn. A replay is exact if each frame lasted 1/60 s.
    void startRecording();
    /// Ends a recording. Does nothing without a recording.
    void finishRecording();
    bool isRecording() const { return recording.has_value(); }
    /// Restarts the effect and plays the script.
    void startReplay(hostkit::GestureScript script);
    /// Stops a replay and lifts its finger. Does nothing without a replay.
    void stopReplay();
    bool isReplaying() const { return replay.has_value(); }

    /// Returns the settings that the user chose, without the ink of a script and with the first background.
    Settings userSettings() const;
    Size screen() const { return screenSize; }
    const hostkit::WaterDriver& water() const { return host->water(); }

    /// Passes the time between two frames in milliseconds to the adaptive quality. Does nothing during recordings, so
    /// that a film of them keeps its detail, and during replays, which draw every frame even on a slow machine.
    void noteInterval(double interval);
    /// State of the adaptive quality.
    Quality quality;
    /// Settings of the user. A change takes effect with the next frame.
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
    /// A host was made in the GL context, so that the next host needs another context.
    bool contextIsUsed = false;
    /// Empty before the first start, and after a start that failed.
    std::optional<hostkit::EffectHost> host;
    /// Settings that are applied to the host.
    Settings applied;
    FrameClock clock;
    IdleWatch idleWatch;
    Rain rain;

    Finger finger;
    AttractMode attract;
    std::vector<hostkit::ScriptAction> actions;
    std::optional<Replay> replay;
    /// Last touch of the frames so far.
    hostkit::Touch lastTouch{hostkit::TouchAction::up, 0.0, 0.0, 0.0f};
    std::optional<hostkit::GestureScript> recording;

    /// Stroke of attract mode for which `attractInk` was chosen.
    std::optional<int> attractStroke;
    /// Ink of that stroke. Empty if the stroke has the ink of the settings. Does not change `settings.ink`.
    std::optional<std::array<float, 3>> attractInk;
    /// Last ink that an action set. Empty if there was none.
    std::optional<std::array<float, 3>> scriptInk;
    /// Ink that the user chose before a script replaced it.
    std::array<float, 3> userInk{};
};

}  // namespace app
