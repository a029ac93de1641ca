#include "player/window/window_state.h"

namespace player {
namespace {

constexpr Size phone{540, 960};
/// A script's larger screen is not the window's: it might exceed the desktop.
constexpr Size largestOfScript{1280, 1000};

Size startSize(const Options& options, const std::optional<Replay>& replay) {
    if (options.sizeGiven) {
        return {options.width, options.height};
    }
    const bool fits = replay && replay->script.screenWidth <= largestOfScript.width &&
                      replay->script.screenHeight <= largestOfScript.height;
    return fits ? Size{replay->script.screenWidth, replay->script.screenHeight} : phone;
}

}  // namespace

WindowState::WindowState(const Options& chosen)
    : options(chosen),
      replay(replayOf(chosen)),
      screen(startSize(chosen, replay)),
      session(screen, startSettings(chosen), loadBackgrounds(chosen)),
      shots(chosen.shots),
      presets(presetsIn(VELMORA_PRESETS)) {
    attract.on = !options.noAttract;
    view.velocity = options.overlays.velocity;
    view.ink = options.overlays.ink;
    if (replay) {
        session.startReplay();
    } else if (!options.record.empty()) {
        session.startRecording(options.record);
    }
    say(notice, "F1 lists the keys, Tab opens the panel");
}

}  // namespace player
