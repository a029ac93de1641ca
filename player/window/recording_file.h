#pragma once

#include <filesystem>
#include <fstream>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace player {

/// The file of a recording in progress. Every event reaches the file at once: after a crash it holds a whole script up
/// to the last event.
class RecordingFile {
public:
    /// Takes an empty file. Throws Failure if it cannot be written, and removes it then.
    RecordingFile(std::filesystem::path file, app::Size screen);

    void add(const hostkit::ScriptEvent& event);
    /// Returns whether events did not reach the file.
    bool hasFailed() const { return !stream; }
    /// Writes the whole script, with its length. Throws Failure.
    void finish(const hostkit::GestureScript& script) const;

    const std::filesystem::path& file() const { return path; }

private:
    std::filesystem::path path;
    std::ofstream stream;
};

}  // namespace player
