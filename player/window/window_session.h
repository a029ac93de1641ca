#pragma once

#include <chrono>
#include <filesystem>
#include <optional>

#include "app/backgrounds.h"
#include "app/session.h"
#include "app/settings.h"
#include "app/size.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/instruments/effect_probe.h"
#include "hostkit/picture.h"
#include "player/window/recording_file.h"

namespace player {

class Screen;

/// Milliseconds of one frame: the water's steps, the wait for the solver's worker, GL.
struct FrameTimes {
    float water;
    float solverWait;
    float gl;
};

/// The session in the window, with the probe for its overlays and the file of its recording.
class WindowSession {
public:
    /// Throws Failure or HostError, as all members do that use GL or files.
    WindowSession(Screen& onScreen, const app::Settings& settings, app::Backgrounds backgrounds);
    WindowSession(const WindowSession&) = delete;
    WindowSession& operator=(const WindowSession&) = delete;

    app::Session core;

    /// Starts the effect anew in the window's size.
    void restart();
    /// Runs and draws one frame of the effect.
    void frame(std::chrono::nanoseconds elapsed);

    /// Records into an empty file, from a fresh start.
    void startRecording(const std::filesystem::path& file);
    /// Returns the file of the recording in progress; null: there is none.
    const RecordingFile* recording() const { return recordingFile ? &*recordingFile : nullptr; }

    const hostkit::EffectProbe& effectProbe() const { return probe; }
    const FrameTimes& times() const { return lastTimes; }
    app::Size size() const { return core.screen(); }
    /// Returns a screenshot, without overlays.
    hostkit::Picture screenshot() const;

private:
    app::FrontEnd frontEnd();
    void draw(hostkit::EffectHost& host);

    Screen& screen;
    hostkit::EffectProbe probe;
    std::optional<RecordingFile> recordingFile;
    FrameTimes lastTimes{};
    std::chrono::steady_clock::time_point frameStart;
};

}  // namespace player
