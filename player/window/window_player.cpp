#include "player/window/window_player.h"

#include "desktop/interrupt.h"
#include "player/window/gl_window.h"
#include "player/window/open_window.h"

namespace player {

using desktop::handleSignals;

bool wantsWindow(const Options& options) {
    return !options.headless && !options.outGiven && hasDesktop();
}

void runWindow(const Options& options) {
    handleSignals();
    OpenWindow window(options);
    window.run();
}

}  // namespace player
