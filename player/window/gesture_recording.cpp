#include "player/window/gesture_recording.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "player/failure.h"
#include "player/files.h"

namespace player {

namespace fs = std::filesystem;

GestureRecording::GestureRecording(fs::path file, Size screen) : path(std::move(file)) {
    script = {screen.width, screen.height, 0, {}};
    stream.open(path);
    stream << "screen " << screen.width << ' ' << screen.height << std::endl;
    if (!stream) {
        const std::error_code error(errno, std::generic_category());
        std::error_code ignored;
        fs::remove(path, ignored);
        throw Failure("cannot write the recording, " + error.message(), path.string());
    }
}

void GestureRecording::add(const hostkit::ScriptAction& action) {
    script.events.push_back({script.frames, action});
    stream << hostkit::writeScriptEvent(script.events.back()) << std::endl;
}

void GestureRecording::finish() {
    script.frames = std::max(script.frames, 1);
    // The length stands before the events. A second file takes the first one's place in one move,
    // so that there is a whole one at every moment.
    writeWhole(path, hostkit::writeGestureScript(script));
}

}  // namespace player
