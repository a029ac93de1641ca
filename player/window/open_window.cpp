#include "player/window/open_window.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <iterator>
#include <system_error>
#include <utility>
#include <vector>

#include "app/backgrounds.h"
#include "app/settings.h"
#include "app/size.h"
#include "desktop/failure.h"
#include "desktop/files.h"
#include "desktop/image.h"
#include "desktop/interrupt.h"
#include "hostkit/gesture_script.h"
#include "hostkit/image.h"
#include "player/inputs.h"
#include "player/script.h"
#include "player/window/marks.h"

namespace player {

using desktop::createFile;
using desktop::Failure;
using desktop::isInterrupted;

namespace {

using namespace std::chrono_literals;

/// Default size of the window, in desktop units: the shape of a phone.
constexpr app::Size phone{540, 960};
/// Maximum screen size that the window takes over from a script. A larger window might exceed the desktop.
constexpr app::Size largestOfScript{1280, 1000};

/// Returns a size with the aspect ratio of the background, but at most 2.5 to 1. Its longer side equals the longer side
/// of `usual`.
app::Size shapeOf(const hostkit::Image& image, app::Size usual) {
    constexpr double longest = 2.5;
    const double aspect =
        std::clamp(static_cast<double>(image.width) / image.height, 1.0 / longest, longest);
    const double side = std::max(usual.width, usual.height);
    return {static_cast<int>(std::lround(side * std::min(1.0, aspect))),
            static_cast<int>(std::lround(side / std::max(1.0, aspect)))};
}

app::Size startSize(const Options& options, const std::optional<hostkit::GestureScript>& script,
                    const hostkit::Image& image, const Remembered& remembered) {
    if (options.sizeGiven) {
        return {options.width, options.height};
    }
    const bool fits = script && script->screenWidth <= largestOfScript.width &&
                      script->screenHeight <= largestOfScript.height;
    if (fits) {
        return {script->screenWidth, script->screenHeight};
    }
    const app::Size usual = remembered.window.value_or(phone);
    return options.image.empty() ? usual : shapeOf(image, usual);
}

/// Returns the script of the command line. Returns nothing if --script is not given.
std::optional<hostkit::GestureScript> scriptOf(const Options& options) {
    return options.scriptGiven ? std::optional(loadScript(options)) : std::nullopt;
}

/// Returns the settings `given` by the command line or, if it names no preset, the settings of the last window. A run
/// with a script, a recording or a digest must be repeatable, so it ignores the last window.
app::Settings initialSettings(const Options& options, const app::Settings& given,
                              const Remembered& remembered) {
    app::Settings settings = given;
    const bool repeatable = options.scriptGiven || !options.record.empty() || options.digest;
    if (options.preset.empty() && !repeatable && remembered.settings) {
        settings = *remembered.settings;
        settings.waterOnly = settings.waterOnly || options.waterOnly;
    }
    return settings;
}

/// Returns the folder of a file, or an empty path for an empty path.
std::filesystem::path folderOf(const std::filesystem::path& file) {
    std::error_code ignored;
    return file.empty() ? file : std::filesystem::absolute(file, ignored).parent_path();
}

}  // namespace

OpenWindow::OpenWindow(const Options& options)
    : OpenWindow(options, loadBackgrounds(options), scriptOf(options), settingsOf(options),
                 options.fresh ? Remembered{} : recall()) {}

OpenWindow::OpenWindow(const Options& options, app::Backgrounds backgrounds,
                       const std::optional<hostkit::GestureScript>& script,
                       const app::Settings& given, const Remembered& remembered)
    : screen(startSize(options, script, backgrounds.first, remembered), !options.sizeGiven,
             options.fontScale),
      session(screen, initialSettings(options, given, remembered), std::move(backgrounds)),
      keeper(session, toast, options),
      playback(session, keeper),
      presetList(options.shots, options.preset, given),
      fileBrowser(folderOf(options.image)),
      history(session.core.settings),
      display(screen, session, keeper, toast),
      initialUserSettings(session.core.userSettings()),
      initialSize(screen.window().ownSize()),
      shotsFolder(options.shots),
      remembers(!options.fresh),
      waterOnlyGiven(options.waterOnly) {
    view.velocity = options.overlays.velocity;
    view.ink = options.overlays.ink;
    session.core.turnAttractMode(!options.noAttract);
    if (script) {
        playback.play(*script, options.script.stem().string());
    } else if (!options.record.empty()) {
        if (!createFile(options.record)) {
            throw Failure("the recording would overwrite a file; choose another name",
                          options.record.string());
        }
        keeper.startRecording(options.record);
    }
    showToast(toast, "Drag to stir the water. Tab opens the settings, F1 lists the keys.");
}

void OpenWindow::run() {
    try {
        while (!leaving && !isInterrupted()) {
            turn();
        }
    } catch (...) {
        keeper.finish();  // completes the film and the recording before the program ends
        throw;
    }
    keeper.finish();
    keeper.printFiles();
    if (remembers) {
        rememberChanges();
    }
}

/// Saves the settings and the size for the next window if the user changed them. Does not save --water-only.
void OpenWindow::rememberChanges() {
    Remembered last;
    const app::Settings choice = session.core.userSettings();
    if (choice != initialUserSettings) {
        last.settings = choice;
        last.settings->waterOnly = choice.waterOnly && !waterOnlyGiven;
    }
    const std::optional<app::Size> size = screen.window().ownSize();
    if (size != initialSize) {
        last.window = size;
    }
    remember(last);
}

void OpenWindow::turn() {
    const auto wait = playback.timeToNextFrame();
    waitForEvent(display.needsRedraw() ? std::min<std::chrono::nanoseconds>(wait, 10ms) : wait);
    if (takeEvents()) {
        display.requestRedraws();
    }
    runCommands();
    if (playback.followSize(screen.window().pixels())) {
        display.requestRedraws();
    }
    presentFrame(playback.playDueFrames());
    if (!session.core.isReplaying()) {  // the inks of a script are not changes of the user
        history.note(session.core.settings, app::Clock::now());
    }
}

/// Handles the waiting events. While a new pop-up awaits the focus, leaves them for later, so that it gets all keys.
/// Returns true if a redraw is needed.
bool OpenWindow::takeEvents() {
    return dialog.awaitsFocus() || fileBrowser.awaitsFocus() ||
           handleEvents(screen.window(), pointer, session.core, requests,
                        dialog.isOpen() || fileBrowser.isOpen());
}

/// Returns the on-screen indicators of all activities in progress, from top to bottom.
std::vector<Mark> OpenWindow::marks() const {
    std::vector<Mark> all = keeper.marks();
    std::ranges::move(playback.marks(), std::back_inserter(all));
    return all;
}

void OpenWindow::presentFrame(bool drawn) {
    view.paused = playback.paused();
    view.attract = session.core.attractMode().isOn();
    view.filming = keeper.filming();
    view.recording = session.recording() != nullptr;
    const auto start = std::chrono::steady_clock::now();
    display.present({view, presetList, screen.thumbnails(), playback.times(), playback.rate(),
                     session.core.settings, requests, shotsFolder, dialog, fileBrowser, marks()},
                    drawn);
    if (drawn) {
        playback.addGlTime(std::chrono::steady_clock::now() - start);
    }
}

}  // namespace player
