#include "player/window/window_player.h"

#include <initializer_list>
#include <string>
#include <utility>

#include "desktop/failure.h"
#include "desktop/interrupt.h"
#include "player/window/gl_window.h"
#include "player/window/open_window.h"

namespace player {

using desktop::Failure;
using desktop::handleSignals;

bool wantsWindow(const Options& options) {
    return !options.headless && !options.outGiven && hasDesktop();
}

void runWindow(const Options& options) {
    handleSignals();
    if (options.scriptGiven && !options.record.empty()) {
        throw Failure(
            "--script and --record exclude each other in a window; leave one of them out");
    }
    for (const auto& [name, isGiven] : {std::pair{"--frames", options.frames > 0},
                                        {"--seconds", options.seconds > 0.0},
                                        {"--fps", options.framesPerSecond > 0}}) {
        if (isGiven) {
            desktop::warn(std::string(name) + " has no effect in a window; add --headless");
        }
    }
    OpenWindow window(options);
    window.run();
    if (desktop::isInterrupted()) {
        throw Failure("interrupted; films and recordings in progress are complete");
    }
}

}  // namespace player
