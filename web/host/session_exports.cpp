#include "web/host/session_exports.h"

#include <emscripten/emscripten.h>

#include <algorithm>
#include <cmath>

#include "hostkit/gesture_script.h"

// Exported functions that call the session (app/session.h). The page and the custom element both use them. Times are in
// milliseconds; `now` is performance.now().

namespace web {
namespace {

app::FrameClock::Due due{};

std::chrono::nanoseconds duration(double milliseconds) {
    return std::chrono::nanoseconds(std::llround(milliseconds * 1e6));
}

}  // namespace

app::Clock::time_point moment(double milliseconds) {
    return app::Clock::time_point(duration(milliseconds));
}

double inMilliseconds(std::chrono::nanoseconds time) {
    return static_cast<double>(time.count()) / 1e6;
}

void readSettings(const double* numbers, app::Settings& settings) {
    // The order of app::forEachField.
    static constexpr auto numberMembers = app::membersOf(app::numberFields);
    static constexpr auto countMembers = app::membersOf(app::countFields);
    static constexpr auto switchMembers = app::membersOf(app::switchFields);
    for (const auto member : numberMembers) {
        settings.*member = static_cast<float>(*numbers++);
    }
    for (const auto member : countMembers) {
        settings.*member = static_cast<int>(*numbers++);
    }
    for (const auto member : switchMembers) {
        settings.*member = *numbers++ != 0.0;
    }
    std::transform(numbers, numbers + 3, settings.ink.begin(),
                   [](double part) { return static_cast<float>(part); });
}

extern "C" {

/// Starts the effect at this canvas size in pixels. Keeps the waves of a running effect.
EMSCRIPTEN_KEEPALIVE void resize(int width, int height) {
    session.resize({width, height});
}

EMSCRIPTEN_KEEPALIVE void regainContext() {
    session.regainContext();
}

EMSCRIPTEN_KEEPALIVE void noteInput(double now) {
    session.noteInput(moment(now));
}

EMSCRIPTEN_KEEPALIVE void press(double now, double x, double y, float pressure) {
    session.press(moment(now), x, y, pressure);
}

EMSCRIPTEN_KEEPALIVE void moveFinger(double now, double x, double y, float pressure) {
    session.move(moment(now), x, y, pressure);
}

EMSCRIPTEN_KEEPALIVE void lift(double now, bool isCancel, double x, double y) {
    session.lift(moment(now), isCancel ? hostkit::TouchAction::cancel : hostkit::TouchAction::up, x,
                 y);
}

EMSCRIPTEN_KEEPALIVE void clearInk() {
    session.add(hostkit::ClearInk{});
}

EMSCRIPTEN_KEEPALIVE void turnAttractMode(bool on) {
    session.turnAttractMode(on);
}

EMSCRIPTEN_KEEPALIVE bool isAttractModeRunning() {
    return session.attractMode().isRunning();
}

/// Returns the milliseconds until attract mode starts, or a negative value if attract mode will not start by itself.
EMSCRIPTEN_KEEPALIVE double attractModeDelay(double now) {
    const auto delay = session.attractMode().untilStart(moment(now));
    return delay ? inMilliseconds(*delay) : -1.0;
}

EMSCRIPTEN_KEEPALIVE void startAttractModeIfIdle(double now, bool busy) {
    session.startAttractModeIfIdle(moment(now), busy);
}

/// Returns the number of frames that are due. dueTime returns the duration of each of these frames.
EMSCRIPTEN_KEEPALIVE int takeDueFrames(double now) {
    due = session.takeDueFrames(moment(now));
    return due.frames;
}

EMSCRIPTEN_KEEPALIVE double dueTime() {
    return inMilliseconds(due.elapsed);
}

EMSCRIPTEN_KEEPALIVE void skipTime() {
    session.skipTime();
}

EMSCRIPTEN_KEEPALIVE void frame(double elapsed) {
    session.frame(duration(elapsed));
}

EMSCRIPTEN_KEEPALIVE bool isIdle() {
    return session.isIdle();
}

EMSCRIPTEN_KEEPALIVE bool mayShowInk() {
    return session.mayShowInk();
}

/// Passes the interval between two frames, in milliseconds, to adaptive quality.
EMSCRIPTEN_KEEPALIVE void noteInterval(double interval) {
    session.noteInterval(interval);
}

/// Returns the ratio of rendered pixels to screen pixels along a side, at most 1.
EMSCRIPTEN_KEEPALIVE double qualityPixels() {
    return pixelsOf(session.quality);
}

EMSCRIPTEN_KEEPALIVE void startRecording() {
    session.startRecording();
}

EMSCRIPTEN_KEEPALIVE void finishRecording() {
    session.finishRecording();
}

EMSCRIPTEN_KEEPALIVE bool isRecording() {
    return session.isRecording();
}

EMSCRIPTEN_KEEPALIVE void stopReplay() {
    session.stopReplay();
}

EMSCRIPTEN_KEEPALIVE bool isReplaying() {
    return session.isReplaying();
}
}

}  // namespace web
