#include "app/session.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <utility>
#include <variant>

#include "app/ink_choice.h"
#include "hostkit/digest.h"
#include "hostkit/jni_environment.h"
#include "hostkit/screen.h"

namespace app {
namespace {

using hostkit::InkColor;
using hostkit::ScriptAction;
using hostkit::ScriptEvent;
using hostkit::Touch;
using hostkit::TouchAction;

/// Appends actions one by one, because `insert` would add a kilobyte to the module for browsers.
void append(std::vector<ScriptAction>& actions, std::span<const ScriptAction> more) {
    for (const ScriptAction& action : more) {
        actions.push_back(action);
    }
}

/// Returns the duration of a recorded frame in units of 1/60 s, rounded to a whole number of at least 1.
int framesIn(std::chrono::nanoseconds elapsed) {
    return std::max(1, static_cast<int>((elapsed + frameTime / 2) / frameTime));
}

}  // namespace

Session::Session(FrontEnd platformFunctions, Clock::time_point now)
    : frontEnd(std::move(platformFunctions)), attract(now) {}

void Session::restart(Size screen) {
    finishRecording();
    fade.reset();
    screenSize = screen;
    if (contextIsUsed) {
        host.reset();
        frontEnd.renewContext();
    }
    contextIsUsed = true;
    hostkit::EffectHostOptions options = hostOptions(settings, screen.width, screen.height);
    options.background = frontEnd.cover(backgrounds.first, screen);
    options.secondBackground = frontEnd.cover(backgrounds.second, screen);
    options.renewContext = frontEnd.renewContext;
    options.water.cellsPerVertex = wantedCellsPerVertex();
    host.emplace(std::move(options));
    applied = settings;
    rain = {};
    attract.stop();
    finger.reset();
    attractStroke.reset();
    attractInk.reset();
    idleWatch.start();
    if (replay) {
        replay->resize(screen);
    }
    frontEnd.onStart(screen, !settings.waterOnly);
}

void Session::resize(Size screen) {
    hostkit::JniEnvironment arrays;
    std::optional<hostkit::WaterDriver> waves;
    if (host) {
        waves =
            hostkit::makeWater(arrays, screenSize.width, screenSize.height, host->water().settings);
        hostkit::resampleWaves(host->water(), *waves);
    }
    restart(screen);
    if (waves) {
        hostkit::resampleWaves(*waves, host->water());
    }
}

void Session::regainContext() {
    if (!host) {
        return;
    }
    record(hostkit::LoseContext{});
    host->loseContext();
    idleWatch.start();
}

void Session::setBackgrounds(Backgrounds images) {
    backgrounds = std::move(images);
    fade.reset();
    if (host) {
        host->setBackgrounds(frontEnd.cover(backgrounds.first, screenSize),
                             frontEnd.cover(backgrounds.second, screenSize));
        idleWatch.noteChange();
    }
}

void Session::showBackground(hostkit::Image image) {
    setBackgrounds({std::move(image), std::move(backgrounds.first)});
}

void Session::fadeTo(hostkit::Image image) {
    if (image.rgba == backgrounds.first.rgba) {
        return;
    }
    hostkit::Image shown = fade ? fade->blend() : frontEnd.cover(backgrounds.first, screenSize);
    backgrounds.first = std::move(image);
    fade.emplace(std::move(shown), frontEnd.cover(backgrounds.first, screenSize));
}

void Session::advanceFade(std::chrono::nanoseconds elapsed) {
    if (fade && fade->advance(elapsed)) {
        host->setBackground(fade->blend());
        idleWatch.noteChange();
        if (fade->isOver()) {
            fade.reset();
        }
    }
}

std::array<float, 3> Session::inkAgainstBackground(int variation) const {
    return inkAgainst(settings.secondBackground ? backgrounds.second : backgrounds.first,
                      variation);
}

void Session::noteInput(Clock::time_point now) {
    attract.noteInput(now, false);
    append(actions, attract.stop());
    idleWatch.noteChange();
}

void Session::press(Clock::time_point now, double x, double y, float pressure) {
    attract.noteInput(now, true);
    append(actions, attract.stop());
    finger.press(x, y, pressure);
}

void Session::move(Clock::time_point now, double x, double y, float pressure) {
    noteStroke(now);
    finger.move(x, y, pressure, screenSize);
}

void Session::lift(Clock::time_point now, hostkit::TouchAction action, double x, double y) {
    noteStroke(now);
    finger.end(action, x, y);
}

/// Restarts the idle time of attract mode if the finger is down. A pointer that only hovers does not count as input.
void Session::noteStroke(Clock::time_point now) {
    if (finger.isHeld()) {
        attract.noteInput(now, true);
    }
}

void Session::add(const ScriptAction& action) {
    append(actions, finger.takeActions());
    actions.push_back(action);
}

void Session::startAttractModeIfIdle(Clock::time_point now, bool busy) {
    if (busy || replay || recording || finger.isHeld()) {
        attract.postpone(now);
    }
    attract.startIfIdle(now);
}

FrameClock::Due Session::takeDueFrames(Clock::time_point now) {
    const FrameLength length = replay      ? FrameLength::exact
                               : recording ? FrameLength::whole
                                           : FrameLength::real;
    return clock.take(now, settings.timeScale, length);
}

std::chrono::nanoseconds Session::untilNextFrame(Clock::time_point now) const {
    return clock.untilNext(now, settings.timeScale);
}

void Session::skipTime() {
    clock.skip();
    quality = afterGap(quality);
}

void Session::frame(std::chrono::nanoseconds elapsed) {
    const std::vector<ScriptAction> frameActions = takeActions();
    chooseAttractInk();
    run(frameActions, elapsed);
    if (replay && replay->isOver()) {
        endReplay(true);
    }
}

/// Returns the actions of the next frame. Touches during a replay are ignored. Actions of attract mode come before
/// touches.
std::vector<ScriptAction> Session::takeActions() {
    std::vector<ScriptAction> result = std::exchange(actions, {});
    const std::vector<ScriptAction> touches = finger.takeActions();
    if (replay) {
        append(result, replay->next());
        return result;
    }
    if (attract.isRunning()) {
        append(result, attract.isOn() ? attract.next(screenSize) : attract.stop());
    }
    append(result, touches);
    return result;
}

/// Chooses another ink for each attract-mode stroke except the first.
void Session::chooseAttractInk() {
    const std::optional<int> stroke = attract.stroke();
    if (stroke == attractStroke) {
        return;
    }
    attractStroke = stroke;
    attractInk.reset();
    if (stroke && *stroke > 0) {
        attractInk = inkAgainstBackground(*stroke - 1);
    }
}

void Session::run(std::span<const ScriptAction> frameActions, std::chrono::nanoseconds elapsed) {
    if (!frameActions.empty() || hasChanges()) {
        idleWatch.noteChange();
    }
    applyChanges();
    advanceFade(elapsed);
    const std::vector<ScriptEvent> events = eventsOf(frameActions);
    if (recording) {
        recording->frames += framesIn(elapsed);
    }
    dropRain(rain, *host, settings, elapsed);
    host->step(events, elapsed);
    frontEnd.draw(*host);
    idleWatch.noteFrame(host->water().idle, [this] { return screenDigest(); });
}

bool Session::hasChanges() const {
    return !host || !(settings == applied) ||
           wantedCellsPerVertex() != host->water().settings.cellsPerVertex;
}

float Session::wantedCellsPerVertex() const {
    return cellsPerVertex(quality, settings.meshDetail,
                          std::min(screenSize.width, screenSize.height));
}

float Session::verticesPerCell() const {
    return 1.0f / wantedCellsPerVertex();
}

void Session::applyChanges() {
    if (settings.ink != applied.ink) {
        attractInk.reset();
    }
    if (willRestart()) {
        if (settings.waterOnly != applied.waterOnly && quality.phase != QualityPhase::fixed) {
            quality = searchingQuality();  // the ink takes most of the frame time
        }
        restart(screenSize);
    }
    applySettings(settings, wantedCellsPerVertex(), *host);
    applied = settings;
}

std::vector<ScriptEvent> Session::eventsOf(std::span<const ScriptAction> frameActions) {
    Settings current = settings;
    current.ink = attractInk.value_or(settings.ink);
    std::vector<ScriptAction> all = inkAndBackgroundChanges(current, host->effectSettings());
    append(all, frameActions);
    std::vector<ScriptEvent> events;
    for (const ScriptAction& action : all) {
        record(action);
        events.push_back({0, action});
    }
    for (const ScriptAction& action : frameActions) {
        noteAction(action);
    }
    applied = settings;
    return events;
}

void Session::record(const ScriptAction& action) {
    if (recording) {
        recording->events.push_back({recording->frames, action});
        frontEnd.onRecorded(recording->events.back());
    }
}

void Session::noteAction(const ScriptAction& action) {
    if (const auto* touch = std::get_if<Touch>(&action)) {
        lastTouch = *touch;
        idleWatch.noteTouch();
        quality = afterTouch(quality);
    } else if (std::holds_alternative<hostkit::ClearInk>(action)) {
        idleWatch.start();
    } else if (const auto* ink = std::get_if<InkColor>(&action)) {
        rememberUserInk(*ink);
    }
    applyAction(settings, action);
}

/// Saves the ink that the user chose, before a script replaces it in the settings.
void Session::rememberUserInk(const InkColor& newInk) {
    if (settings.ink != scriptInk) {
        userInk = settings.ink;
    }
    scriptInk = {newInk.red, newInk.green, newInk.blue};
}

Settings Session::userSettings() const {
    Settings result = settings;
    if (result.ink == scriptInk) {
        result.ink = userInk;
    }
    result.secondBackground = false;
    return result;
}

bool Session::isIdle() const {
    return idleWatch.isIdle() && !hasChanges() && !hasActions() && !finger.isPressed() &&
           !attract.isRunning() && !replay && !recording && !fade && settings.rain <= 0.0f &&
           quality.phase != QualityPhase::searching;
}

void Session::noteInterval(double interval) {
    if (!replay && !recording) {
        quality = next(quality, interval);
    }
}

void Session::startRecording() {
    endReplay(false);
    restartForGesture();
    recording = {screenSize.width, screenSize.height, 0, {}};
    // The recording starts with these actions, so that a replay starts from the same state as the recording.
    run(gestureResetActions(settings), frameTime);
}

void Session::finishRecording() {
    if (recording) {
        hostkit::GestureScript script = *std::exchange(recording, std::nullopt);
        script.frames = std::max(script.frames, 1);
        frontEnd.onRecordingEnd(script);
    }
}

void Session::startReplay(hostkit::GestureScript script) {
    endReplay(false);
    restartForGesture();
    replay.emplace(std::move(script), screenSize);
}

void Session::stopReplay() {
    if (replay &&
        (lastTouch.action == TouchAction::down || lastTouch.action == TouchAction::move)) {
        add(Touch{TouchAction::up, lastTouch.x, lastTouch.y, 0.0f});
    }
    endReplay(false);
}

void Session::endReplay(bool finished) {
    if (replay) {
        replay.reset();
        frontEnd.onReplayEnd(finished);
    }
}

/// Restarts the effect for a recording or a replay. Seeds rand(), so that the solver gets the same random numbers in
/// each replay. The effect does not advance by the time that the restart takes.
void Session::restartForGesture() {
    actions.clear();
    restart(screenSize);
    skipTime();
    std::srand(1);
}

/// Returns a digest of the screen. Leaves out the alpha channel, because it is not visible.
std::uint64_t Session::screenDigest() const {
    std::vector<std::uint8_t> pixels = hostkit::readScreen(screenSize.width, screenSize.height);
    for (std::size_t at = 3; at < pixels.size(); at += 4) {
        pixels[at] = 0;
    }
    hostkit::Digest digest;
    addBytes(digest, std::as_bytes(std::span(pixels)));
    return digest.state;
}

}  // namespace app
