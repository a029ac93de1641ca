#include "screensaver/saver.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <ratio>
#include <utility>

#include "app/frame_clock.h"
#include "app/quality.h"
#include "app/session.h"
#include "app/size.h"
#include "desktop/failure.h"
#include "desktop/files.h"
#include "desktop/image.h"
#include "desktop/interrupt.h"
#include "hostkit/gesture_script.h"
#include "hostkit/image.h"
#include "screensaver/grab.h"
#include "screensaver/pictures.h"
#include "screensaver/preset_choice.h"
#include "screensaver/saver_window.h"

namespace saver {
namespace {

using namespace std::chrono_literals;

/// Time between two checks for input while the effect is idle.
constexpr auto idleWait = 250ms;
/// Longest time that the program waits at its start for the first picture.
constexpr auto maxFirstWait = 5s;
/// Time between two checks whether the first picture is loaded.
constexpr auto firstWait = 10ms;

/// The screen saver: the effect in its window, and the main loop.
class Saver {
public:
    /// Finds or opens the window and starts the effect. Throws Failure or HostError.
    explicit Saver(const Options& chosenOptions);

    /// Runs until a signal ends the program, or until the window is gone. Throws Failure or HostError.
    void run();

private:
    app::FrontEnd frontEnd();
    void start();
    hostkit::Image firstPicture();
    void turn();
    void changeScene(app::Clock::time_point now);
    void drawDueFrames(app::Clock::time_point now);
    void adaptQuality(std::chrono::nanoseconds drawTime);

    const Options& options;
    PresetChoice preset;
    SaverWindow window;
    Pictures pictures;
    app::Session session;
    /// Time at which the next picture and the next random preset are due.
    app::Clock::time_point nextScene;
};

Saver::Saver(const Options& chosenOptions)
    : options(chosenOptions),
      preset(options.preset),
      window(options.target),
      pictures(options.picture, window.id()),
      session(frontEnd(), app::Clock::now()) {}

app::FrontEnd Saver::frontEnd() {
    app::FrontEnd functions;
    functions.renewContext = [this] { window.renewContext(); };
    functions.cover = [](const hostkit::Image& image, app::Size size) {
        return desktop::covering(image, size.width, size.height);
    };
    return functions;
}

void Saver::start() {
    std::optional<hostkit::GestureScript> script;
    if (!options.script.empty()) {
        script = hostkit::parseGestureScript(desktop::readWhole(options.script, "gesture script"),
                                             options.script.string());
    }
    session.settings = withOptions(preset.next(), options);
    session.setBackgrounds({firstPicture(), desktop::plainImage(1, 1, 0)});
    session.repeatAttractMode();
    session.quality = app::searchingQuality();
    session.restart(window.size());
    if (script) {
        session.startReplay(*std::move(script));
    }
    nextScene = app::Clock::now() + options.duration;
}

/// Returns the first picture. If loading takes too long, returns the plain picture; the first picture then fades in
/// later.
hostkit::Image Saver::firstPicture() {
    pictures.startNext();
    const app::Clock::time_point end = app::Clock::now() + maxFirstWait;
    while (app::Clock::now() < end && !desktop::isInterrupted() && !window.isGone()) {
        if (std::optional<hostkit::Image> picture = pictures.take()) {
            return *std::move(picture);
        }
        window.handleEvents(firstWait);
    }
    return plainPicture();
}

void Saver::run() {
    try {
        start();
        while (!desktop::isInterrupted() && !window.isGone()) {
            turn();
        }
    } catch (const desktop::Failure&) {
        window.handleEvents(0ns);
        if (!window.isGone()) {  // without its window, EGL fails as well
            throw;
        }
    }
}

void Saver::turn() {
    window.handleEvents(session.isIdle() ? idleWait : session.untilNextFrame(app::Clock::now()));
    if (window.isGone()) {
        return;
    }
    if (session.screen() != window.size()) {
        session.resize(window.size());
    }
    const app::Clock::time_point now = app::Clock::now();
    changeScene(now);
    session.startAttractModeIfIdle(now, false);
    drawDueFrames(now);
}

/// Fades to the next picture when it has been loaded. At the time `nextScene`, starts to load another picture. If the
/// presets are random, also changes to another preset.
void Saver::changeScene(app::Clock::time_point now) {
    if (std::optional<hostkit::Image> picture = pictures.take()) {
        session.fadeTo(*std::move(picture));
    }
    if (now < nextScene) {
        return;
    }
    nextScene = now + options.duration;
    pictures.startNext();
    if (preset.isRandom()) {
        session.settings = withOptions(preset.next(), options);
    }
}

/// Draws the frames that are due. While the effect is idle, draws a frame only if the window has lost its content.
void Saver::drawDueFrames(app::Clock::time_point now) {
    app::FrameClock::Due due{window.takeExposure() ? 1 : 0, app::frameTime};
    if (session.isIdle()) {
        session.skipTime();
    } else {
        due = session.takeDueFrames(now);
    }
    if (due.frames == 0) {
        return;
    }
    for (int frame = 0; frame < due.frames; ++frame) {
        session.frame(due.elapsed);
    }
    if (!window.swap()) {
        session.regainContext();
    }
    adaptQuality((app::Clock::now() - now) / due.frames);
}

/// Draws a coarser mesh if the drawing of a frame takes too long.
void Saver::adaptQuality(std::chrono::nanoseconds drawTime) {
    const std::chrono::duration<double, std::milli> interval = std::max(drawTime, app::frameTime);
    session.noteInterval(interval.count());
}

}  // namespace

void run(const Options& options) {
    desktop::handleSignals();
    findGrabProgram();
    Saver saver(options);
    saver.run();
}

}  // namespace saver
