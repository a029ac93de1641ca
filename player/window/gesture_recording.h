#pragma once

#include <filesystem>
#include <fstream>

#include "hostkit/gesture_script.h"
#include "player/size.h"

namespace player {

/// A gesture script in the making. Every line reaches the file when it is added: what a crash
/// leaves is a whole script up to its last event.
class GestureRecording {
public:
    /// The file is the recording's own, and empty. Throws Failure when it cannot be written, and
    /// takes it away then.
    GestureRecording(std::filesystem::path file, Size screen);

    void add(const hostkit::ScriptAction& action);
    /// The events added next belong to the next frame.
    void endFrame() { ++script.frames; }
    /// Whether events did not reach the file.
    bool broken() const { return !stream; }
    /// Writes it whole, with its length. Throws Failure.
    void finish();

    const std::filesystem::path& file() const { return path; }
    int frames() const { return script.frames; }

private:
    std::filesystem::path path;
    hostkit::GestureScript script;
    std::ofstream stream;
};

}  // namespace player
