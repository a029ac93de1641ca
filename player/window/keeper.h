#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include "player/options.h"
#include "player/window/marks.h"
#include "player/window/shots.h"
#include "player/window/toast.h"
#include "player/window/window_session.h"

namespace player {

/// Saves a session's output: screenshots, films, recordings and presets. Shows a toast for each file.
/// Members that write a file throw Failure.
class Keeper {
public:
    Keeper(WindowSession& ofSession, Toast& withToast, const Options& options);

    /// Starts a film or finishes the current film.
    void switchFilm();
    bool filming() const { return shots.filming(); }
    /// Adds the effect's current frame to the film. Does nothing if there is no film.
    void addToFilm();
    /// Finishes the film. Does nothing if there is no film.
    void finishFilm();

    /// Starts a recording in a new file or finishes the current recording.
    void switchRecording();
    /// Starts a recording in `file`, which must be empty.
    void startRecording(const std::filesystem::path& file);
    void finishRecording();
    /// Finishes the current recording before a restart of the effect. The toast begins with `reason`, a sentence and a
    /// space. Does nothing if there is no recording. Shows errors as toasts.
    void finishRecordingForRestart(const char* reason);
    /// Finishes the recording if a write to its file has failed.
    void watchRecording();
    /// Returns the file of the last finished recording, or an empty path.
    const std::filesystem::path& lastRecording() const { return recorded; }

    /// Finishes the current film and the current recording. Shows errors as toasts.
    void finish();

    void requestScreenshot() { shotWanted = true; }
    bool wantsScreenshot() const { return shotWanted; }
    /// Saves the requested screenshot of the screen.
    void takeScreenshot();

    /// Saves the settings in a new preset and returns its file.
    std::filesystem::path savePreset(const std::string& name);
    /// Returns an unused name for a new preset.
    std::string newPresetName() const { return shots.newPresetName(); }
    /// Renames a preset of the user and returns its new file.
    std::filesystem::path renamePreset(const std::filesystem::path& preset,
                                       const std::string& name);
    /// Deletes a preset of the user.
    void deletePreset(const std::filesystem::path& preset);
    /// Saves the frame on the screen as the thumbnail of the preset that was saved last. Does nothing if this preset
    /// already has a thumbnail.
    void addThumbnail();

    /// Returns the on-screen indicators of the current film and of the current recording.
    std::vector<Mark> marks() const;
    /// Shows a toast after the end of a replay. If --digest is given, also prints the digest of the replay.
    void noteReplayEnd();
    /// Prints the names of all saved files.
    void printFiles() const;
    /// Prints the digest of the velocity if --digest is given.
    void printDigest() const;

private:
    using Clock = std::chrono::steady_clock;

    WindowSession& session;
    Toast& toast;
    Shots shots;
    std::filesystem::path presetWithoutThumbnail;
    std::filesystem::path recorded;
    bool digestWanted;
    bool shotWanted = false;
    Clock::time_point filmStart{};
    Clock::time_point recordingStart{};
};

}  // namespace player
