#include "player/script.h"

#include <algorithm>
#include <string>
#include <variant>

#include "desktop/failure.h"
#include "desktop/files.h"

namespace player {

using desktop::readWhole;
using desktop::warn;

hostkit::GestureScript loadScript(const std::filesystem::path& file) {
    hostkit::GestureScript script =
        hostkit::parseGestureScript(readWhole(file, "gesture script"), file.string());
    const auto late = std::ranges::count_if(
        script.events, [&](const auto& event) { return event.frame >= script.frames; });
    if (script.events.empty()) {
        warn("the gesture script has no event", file.string());
    } else if (late > 0) {
        warn(std::to_string(late) +
                 (late == 1 ? " event of the gesture script comes after its last frame, "
                            : " events of the gesture script come after its last frame, ") +
                 std::to_string(script.frames - 1),
             file.string());
    }
    return script;
}

hostkit::GestureScript loadScript(const Options& options) {
    hostkit::GestureScript script = loadScript(options.script);
    script.frames = options.frames > 0 ? options.frames : script.frames;
    return script;
}

void scalePressures(hostkit::GestureScript& script, float factor) {
    for (hostkit::ScriptEvent& event : script.events) {
        if (auto* touch = std::get_if<hostkit::Touch>(&event.action)) {
            touch->pressure = std::min(1.0f, touch->pressure * factor);
        }
    }
}

}  // namespace player
