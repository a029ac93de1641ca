#include "player/window/window_player.h"

#include "player/interrupt.h"
#include "player/window/commands.h"
#include "player/window/events.h"
#include "player/window/keeping.h"
#include "player/window/playing.h"
#include "player/window/presenting.h"
#include "player/window/window_state.h"

namespace player {
namespace {

void turn(WindowState& window) {
    waitForWork(window);
    takeEvents(window);
    runCommands(window);
    followSize(window);
    playDueFrames(window);
    present(window);
}

}  // namespace

bool wantsWindow(const Options& options) {
    return !options.headless && !options.outGiven && hasDesktop();
}

void runWindow(const Options& options) {
    takeSignals();
    WindowState window(options);
    try {
        while (!window.leaving && !isInterrupted()) {
            turn(window);
        }
    } catch (...) {
        attempt(window.notice, [&] { finishFilm(window); });  // else it would be lost
        throw;
    }
    attempt(window.notice, [&] { finishFilm(window); });
    attempt(window.notice, [&] { finishRecording(window); });
    tellFiles(window);
}

}  // namespace player
