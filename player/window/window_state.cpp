#include "player/window/window_state.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "player/failure.h"
#include "player/files.h"

namespace player {
namespace {

constexpr Size phone{540, 960};
/// A script's larger screen is not the window's: it might exceed the desktop.
constexpr Size largestOfScript{1280, 1000};

/// As long as the phone's window, in the picture's shape but no strip.
Size shapeOf(const hostkit::Picture& picture) {
    constexpr double longest = 2.5;
    const double aspect =
        std::clamp(static_cast<double>(picture.width) / picture.height, 1.0 / longest, longest);
    const double side = phone.height;
    return {static_cast<int>(std::lround(side * std::min(1.0, aspect))),
            static_cast<int>(std::lround(side / std::max(1.0, aspect)))};
}

Size startSize(const Options& options, const std::optional<Replay>& replay,
               const hostkit::Picture& picture) {
    if (options.sizeGiven) {
        return {options.width, options.height};
    }
    const bool fits = replay && replay->script.screenWidth <= largestOfScript.width &&
                      replay->script.screenHeight <= largestOfScript.height;
    if (fits) {
        return {replay->script.screenWidth, replay->script.screenHeight};
    }
    return options.picture.empty() ? phone : shapeOf(picture);
}

}  // namespace

WindowState::WindowState(const Options& chosen) : WindowState(chosen, loadBackgrounds(chosen)) {}

WindowState::WindowState(const Options& chosen, Backgrounds backgrounds)
    : options(chosen),
      replay(replayOf(chosen)),
      screen(startSize(chosen, replay, backgrounds.first), !chosen.sizeGiven),
      session(screen, startSettings(chosen), std::move(backgrounds)),
      shots(chosen.shots, chosen.format),
      presets(presetsIn(VELMORA_PRESETS)) {
    const std::vector<NamedPreset> saved = presetsIn(chosen.shots);
    presets.insert(presets.end(), saved.begin(), saved.end());
    attract.on = !options.noAttract;
    view.velocity = options.overlays.velocity;
    view.ink = options.overlays.ink;
    if (replay) {
        session.startReplay();
    } else if (!options.record.empty()) {
        if (!takeName(options.record)) {
            throw Failure("the recording would overwrite this file", options.record.string());
        }
        session.startRecording(options.record);
        recordingStart = FrameClock::Clock::now();
    }
    say(notice, "F1 lists the keys, Tab opens the panel");
}

}  // namespace player
