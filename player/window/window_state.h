#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "player/options.h"
#include "player/preset.h"
#include "player/window/attract.h"
#include "player/window/finger.h"
#include "player/window/frame_clock.h"
#include "player/window/notice.h"
#include "player/window/panel.h"
#include "player/window/replay.h"
#include "player/window/screen.h"
#include "player/window/session.h"
#include "player/window/shots.h"

namespace player {

/// ImGui answers an event in the frame after it, and fades.
constexpr int redrawsAfterEvent = 3;

/// The open window. A turn of its loop takes events, runs commands, plays the frames that are due
/// and presents the picture; each of these is a file that works on this record.
struct WindowState {
    /// Opens the window. Throws Failure or HostError.
    explicit WindowState(const Options& chosen);
    WindowState(const Options& chosen, Backgrounds backgrounds);

    Options options;

    // What moves the effect, the first that is there: a script, the user, nobody's finger.
    std::optional<Replay> replay;
    Finger finger;
    Attract attract;

    // What is shown and kept.
    Screen screen;
    Session session;
    Shots shots;
    View view;
    Notice notice;
    std::vector<NamedPreset> presets;
    std::size_t nextPreset = 0;
    /// Of the last frames, the newest last.
    std::vector<FrameTimes> times;
    FrameClock clock;
    /// When film and recording began, where one is being made.
    FrameClock::Clock::time_point filmStart{};
    FrameClock::Clock::time_point recordingStart{};
    FrameClock::Clock::time_point presented{};

    // What was asked for and waits for its place in the turn.
    std::vector<Command> commands;
    /// Empty: none.
    std::filesystem::path chosenPreset;
    std::vector<hostkit::ScriptAction> actions;
    FrameClock::Clock::time_point resizedAt{};
    bool stepWanted = false;
    bool shotWanted = false;
    bool leaving = false;
    /// Turns that draw the window even where the effect stands still.
    int redraws = redrawsAfterEvent;
    /// The effect drew a frame in this turn.
    bool drawn = false;
};

}  // namespace player
