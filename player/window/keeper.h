#pragma once

#include <chrono>
#include <filesystem>
#include <vector>

#include "player/options.h"
#include "player/window/shots.h"
#include "player/window/toast.h"
#include "player/window/window_session.h"

namespace player {

/// Something that is being made, and for how long by now.
struct Mark {
    const char* word;
    std::chrono::seconds time;
};

/// What a session leaves behind: screenshots, a film, a recording of gestures, presets. Says in the
/// window what it left. What writes a file throws Failure.
class Keeper {
public:
    Keeper(WindowSession& ofSession, Toast& withToast, const Options& options);

    /// From now on, or no longer.
    void switchFilm();
    bool filming() const { return shots.filming(); }
    /// From now on the film shows what the session shows; nothing where no film is being made.
    void addToFilm();
    /// Completes it; nothing where none is being made.
    void finishFilm();

    void switchRecording();
    /// The file is the recording's own, and empty.
    void startRecording(const std::filesystem::path& file);
    void finishRecording();
    /// Ends the one whose file cannot be written any longer.
    void watchRecording();
    /// The file of the one that was completed last; empty: none was.
    const std::filesystem::path& lastRecording() const { return recorded; }

    /// Completes film and recording. What fails is told.
    void finish();

    void requestScreenshot() { shotWanted = true; }
    bool wantsScreenshot() const { return shotWanted; }
    /// The one that was asked for, of what the screen shows.
    void takeScreenshot();

    std::filesystem::path savePreset();
    /// Of the preset that was saved last, where it has none yet: what the screen shows.
    void addThumbnail();

    std::vector<Mark> marks() const;
    /// Prints the names of all files that were left.
    void printFiles() const;
    /// Prints the velocity's digest where the command line asks for it.
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
