#include "player/window/gesture_recording.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "player/failure.h"

namespace player {

namespace fs = std::filesystem;

GestureRecording::GestureRecording(fs::path file, Size screen) : path(std::move(file)) {
    script = {screen.width, screen.height, 0, {}};
    stream.open(path);
    stream << "screen " << screen.width << ' ' << screen.height << std::endl;
    if (!stream) {
        throw Failure("cannot write the recording", path.string());
    }
}

void GestureRecording::add(const hostkit::ScriptAction& action) {
    script.events.push_back({script.frames, action});
    stream << hostkit::writeScriptEvent(script.events.back()) << std::endl;
    if (!stream) {
        throw Failure("cannot write the recording", path.string());
    }
}

void GestureRecording::finish() {
    script.frames = std::max(script.frames, 1);
    // The length stands before the events. A second file takes the first one's place in one move,
    // so that there is a whole one at every moment.
    const fs::path whole = path.string() + ".whole";
    std::ofstream out(whole);
    out << hostkit::writeGestureScript(script);
    std::error_code error;
    if (out.flush()) {
        out.close();
        fs::rename(whole, path, error);
    }
    if (!out || error) {
        throw Failure("cannot write the recording's length", path.string());
    }
}

}  // namespace player
