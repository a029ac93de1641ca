#pragma once

#include <filesystem>
#include <fstream>

#include "app/size.h"
#include "hostkit/gesture_script.h"

namespace player {

/// File of a recording in progress. Writes each event immediately: after a crash the file is a valid script up to the
/// last event.
class RecordingFile {
public:
    /// Opens an empty file and writes the screen size to it. If writing fails, removes the file and throws Failure.
    RecordingFile(std::filesystem::path file, app::Size screen);

    /// Appends an event.
    void add(const hostkit::ScriptEvent& event);
    /// Returns true if a write has failed.
    bool hasFailed() const { return !stream; }
    /// Replaces the contents by the complete script, which includes its length. Throws Failure.
    void finish(const hostkit::GestureScript& script) const;

    const std::filesystem::path& file() const { return path; }

private:
    std::filesystem::path path;
    std::ofstream stream;
};

}  // namespace player
