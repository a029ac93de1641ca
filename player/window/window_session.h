#pragma once

#include <chrono>
#include <filesystem>
#include <optional>

#include "app/backgrounds.h"
#include "app/effect_probe.h"
#include "app/session.h"
#include "app/settings.h"
#include "app/size.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/image.h"
#include "player/window/recording_file.h"

namespace player {

class Screen;

/// Times of one frame in ms: water steps, wait for the solver's worker thread, GL.
struct FrameTimes {
    float water;
    float solverWait;
    float gl;
};

/// The application's session in the window, with the probe for the overlays and the file of the current recording.
class WindowSession {
public:
    /// Starts the effect. All members that use GL or files throw Failure or HostError.
    WindowSession(Screen& onScreen, const app::Settings& settings, app::Backgrounds backgrounds);
    WindowSession(const WindowSession&) = delete;
    WindowSession& operator=(const WindowSession&) = delete;

    app::Session core;

    /// Restarts the effect in the window's current size and keeps the waves.
    void resize();
    /// Shows an image as the first background (see `app::Session::showBackground`).
    void showBackground(hostkit::Image image);
    /// Runs and draws one frame of the effect.
    void frame(std::chrono::nanoseconds elapsed);
    /// Returns true if a paused window must draw a frame. The last frame may have been lost with its GL context, or a
    /// background, a setting or an action may have changed since then.
    bool needsFrame() const { return isOutdated || core.hasPendingChanges(); }

    /// Resets the effect and starts a recording to `file`, which must be empty.
    void startRecording(const std::filesystem::path& file);
    /// Returns the file of the recording in progress, or null.
    const RecordingFile* recording() const { return recordingFile ? &*recordingFile : nullptr; }

    const app::EffectProbe& effectProbe() const { return probe; }
    const FrameTimes& times() const { return lastTimes; }
    app::Size size() const { return core.screen(); }
    /// Returns the frame on the screen. The result contains overlays and panel only if they are already drawn.
    hostkit::Image screenshot() const;

private:
    app::FrontEnd frontEnd();
    void draw(hostkit::EffectHost& host);

    Screen& screen;
    app::EffectProbe probe;
    std::optional<RecordingFile> recordingFile;
    FrameTimes lastTimes{};
    /// True if the GL context or a background was replaced after the last frame.
    bool isOutdated = true;
    std::chrono::steady_clock::time_point frameStart;
};

}  // namespace player
