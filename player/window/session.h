#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

#include "hostkit/effect_host.h"
#include "hostkit/instruments/effect_probe.h"
#include "player/picture.h"
#include "player/rain.h"
#include "player/settings.h"
#include "player/window/gesture_recording.h"

namespace player {

class Screen;

/// Milliseconds of one frame: the water's steps, waiting for the solver's worker, GL.
struct FrameTimes {
    float water;
    float solverWait;
    float gl;
};

/// The effect in the window: a host with the settings applied, what of it can be looked at, and the
/// recording.
class Session {
public:
    /// Throws Failure or HostError, as all members do that touch GL or files.
    Session(Screen& onScreen, const Settings& settings, Backgrounds backgrounds);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// From the start: calm water, no ink, a new GL context, the window's size. Ends a recording.
    void restart();
    /// One frame of the effect; draws it.
    void frame(std::span<const hostkit::ScriptAction> actions, std::chrono::nanoseconds elapsed);
    /// An ink for the picture that is shown, as inkAgainst gives it.
    std::array<float, 3> inkAgainstPicture(int variation) const;
    /// Nobody's finger lays its strokes, by their numbers from 0, in inks of its own until the user
    /// chooses one; nothing: it does not come. The settings keep the user's.
    void inkOfNobody(std::optional<int> stroke);
    /// The picture becomes the background, and the one before the second background.
    void showPicture(hostkit::Picture picture);

    /// Restarts, and writes down from there what happens. What the replay finds is the same.
    void startRecording(const std::filesystem::path& file);
    void finishRecording();
    const std::optional<GestureRecording>& recording() const { return record; }
    /// Restarts for a gesture that is to be the same each time.
    void startReplay();

    /// Whether another frame would show the same.
    bool calm() const;
    /// What was seen since the last start.
    const hostkit::EffectProbe& seen() const { return probe; }
    const FrameTimes& times() const { return lastTimes; }
    Size size() const { return screenSize; }
    /// The settings as the user left them: but for the ink that a script chose since, and which
    /// background is shown.
    Settings usersChoice() const;
    hostkit::Picture shown() const;

    /// Applied with the next frame.
    Settings settings;

private:
    void applyChanges();
    std::vector<hostkit::ScriptEvent> eventsOf(std::span<const hostkit::ScriptAction> actions);
    void rememberInkOfUser(const hostkit::InkColor& script);
    void watchForCalm(bool disturbed);

    Screen& screen;
    Backgrounds pictures;
    Settings applied;
    Size screenSize{};
    hostkit::EffectProbe probe;
    std::optional<hostkit::EffectHost> host;
    std::optional<GestureRecording> record;

    FrameTimes lastTimes{};

    Rain rain;
    std::optional<int> nobodysStroke;
    std::optional<std::array<float, 3>> nobodysInk;
    std::optional<std::array<float, 3>> inkOfScript;
    /// Before the script's, while that is the one of the settings.
    std::array<float, 3> inkOfUser{};
    /// Whether a finger came since the ink was last all gone.
    bool touched = false;
    int quietFrames = 0;
    std::uint64_t quietPicture = 0;
    bool pictureStands = false;
};

}  // namespace player
