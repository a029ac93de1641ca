#include "player/window/recording_file.h"

#include <cerrno>
#include <iostream>
#include <system_error>
#include <utility>

#include "desktop/failure.h"
#include "desktop/files.h"

namespace player {

using desktop::Failure;
using desktop::writeWhole;

namespace fs = std::filesystem;

RecordingFile::RecordingFile(fs::path file, app::Size screen) : path(std::move(file)) {
    stream.open(path);
    stream << "screen " << screen.width << ' ' << screen.height << std::endl;
    if (!stream) {
        const std::error_code error(errno, std::generic_category());
        std::error_code ignored;
        fs::remove(path, ignored);
        throw desktop::cannotWrite(path, error);
    }
}

void RecordingFile::add(const hostkit::ScriptEvent& event) {
    stream << hostkit::writeScriptEvent(event) << std::endl;
}

/// Rewrites the file, because the script's length precedes its events. The new file replaces the old one in one step.
/// A complete file thus exists at every moment.
void RecordingFile::finish(const hostkit::GestureScript& script) const {
    writeWhole(path, hostkit::writeGestureScript(script));
}

}  // namespace player
