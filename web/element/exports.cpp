#include <emscripten/emscripten.h>
#include <jni.h>
#include <standin_bitmap.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "app/frame_clock.h"
#include "app/quality.h"
#include "app/session.h"
#include "app/settings.h"
#include "app/size.h"
#include "hostkit/gesture_script.h"
#include "hostkit/image.h"
#include "hostkit/native.h"
#include "web/element/event_numbers.h"

// Functions of the application core for the custom element. Times are in milliseconds; `now` is performance.now().
// The module has no text and no image: both would double its size. The element's script uploads the image of the
// background itself, and a second module reads and writes gesture scripts.

extern "C" {
// Functions of the element's script.

/// Deletes all GL objects of the context.
void renewContext();
/// Calls bindBackground and uploads the background. Called after each start of the effect.
void loadBackground();
}

namespace {

/// Recording that ended last, as numbers. Empty after takeRecording.
std::vector<double> endedRecording;
/// Result of takeRecording.
std::vector<double> takenRecording;
app::FrameClock::Due due{};

/// Returns an image of one black pixel.
hostkit::Image onePixel() {
    return {1, 1, {0, 0, 0, 255}};
}

app::FrontEnd frontEnd() {
    app::FrontEnd functions;
    functions.renewContext = renewContext;
    // The session keeps a small copy of the background to choose inks. The library gets the image from the script.
    functions.cover = [](const hostkit::Image&, app::Size) { return onePixel(); };
    functions.onStart = [](app::Size, bool) { loadBackground(); };
    functions.onRecordingEnd = [](const hostkit::GestureScript& recording) {
        endedRecording = web::numbersOf(recording);
    };
    return functions;
}

app::Session session(frontEnd(), app::Clock::time_point{});

std::chrono::nanoseconds duration(double milliseconds) {
    return std::chrono::nanoseconds(std::llround(milliseconds * 1e6));
}

app::Clock::time_point moment(double milliseconds) {
    return app::Clock::time_point(duration(milliseconds));
}

double milliseconds(std::chrono::nanoseconds time) {
    return static_cast<double>(time.count()) / 1e6;
}

/// Returns true if the element can replay the action. It has one background, and the browser owns its context.
bool isReplayable(const hostkit::ScriptEvent& event) {
    return !std::holds_alternative<hostkit::SecondBackground>(event.action) &&
           !std::holds_alternative<hostkit::LoseContext>(event.action);
}

}  // namespace

extern "C" {

/// Sets the settings from the next frame on: numbers and switches in the order of the table, then red, green and blue
/// of the ink.
EMSCRIPTEN_KEEPALIVE void setSettings(const double* numbers) {
    app::forEachField([&](const auto& field) {
        auto& member = session.settings.*field.member;
        member = static_cast<std::remove_reference_t<decltype(member)>>(*numbers++);
    });
    std::transform(numbers, numbers + 3, session.settings.ink.begin(),
                   [](double part) { return static_cast<float>(part); });
}

/// Writes red, green and blue of the ink. A replay changes the ink.
EMSCRIPTEN_KEEPALIVE void getInk(double* ink) {
    std::copy(session.settings.ink.begin(), session.settings.ink.end(), ink);
}

EMSCRIPTEN_KEEPALIVE void restart(int width, int height) {
    session.restart({width, height});
}

/// Starts the effect on a screen of another size and keeps the waves.
EMSCRIPTEN_KEEPALIVE void resize(int width, int height) {
    session.resize({width, height});
}

/// Creates the texture of the background and leaves it bound, so that the script can upload the image.
EMSCRIPTEN_KEEPALIVE void bindBackground() {
    constexpr int backgroundSlot = 1;
    hostkit::Image pixel = onePixel();
    StandInBitmap bitmap{};
    bitmap.info = {1, 1, 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0};
    bitmap.pixels = pixel.rgba.data();
    hostkit::native::LoadTextures(nullptr, nullptr, reinterpret_cast<jobject>(&bitmap),
                                  backgroundSlot);
}

/// Passes a small copy of the background as RGBA bytes, from which attract mode chooses its inks.
EMSCRIPTEN_KEEPALIVE void setBackground(int width, int height, const std::uint8_t* rgba) {
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    const hostkit::Image copy{width, height, {rgba, rgba + bytes}};
    session.setBackgrounds({copy, copy});
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

/// Returns the milliseconds until attract mode is due, or a negative value if it will not start by itself.
EMSCRIPTEN_KEEPALIVE double attractModeDelay(double now) {
    const auto delay = session.attractMode().untilStart(moment(now));
    return delay ? milliseconds(*delay) : -1.0;
}

EMSCRIPTEN_KEEPALIVE void startAttractModeIfIdle(double now, bool busy) {
    session.startAttractModeIfIdle(moment(now), busy);
}

/// Returns the number of frames that are due. dueTime returns the duration of each.
EMSCRIPTEN_KEEPALIVE int takeDueFrames(double now) {
    due = session.takeDueFrames(moment(now));
    return due.frames;
}

EMSCRIPTEN_KEEPALIVE double dueTime() {
    return milliseconds(due.elapsed);
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

/// Passes the milliseconds between two frames to adaptive quality.
EMSCRIPTEN_KEEPALIVE void noteInterval(double interval) {
    session.noteInterval(interval);
}

/// Turns adaptive quality on, or fixes the quality at all detail.
EMSCRIPTEN_KEEPALIVE void setQuality(bool adaptive) {
    session.quality = adaptive ? app::searchingQuality() : app::fixedQuality(0);
}

EMSCRIPTEN_KEEPALIVE bool isSearchingQuality() {
    return session.quality.phase == app::QualityPhase::searching;
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

/// Returns the numbers of the recording that ended last. recordingLength returns their count, 0 if there is none.
EMSCRIPTEN_KEEPALIVE const double* takeRecording() {
    takenRecording = std::exchange(endedRecording, {});
    return takenRecording.data();
}

EMSCRIPTEN_KEEPALIVE int recordingLength() {
    return static_cast<int>(takenRecording.size());
}

/// Restarts the effect and replays the script of these numbers.
EMSCRIPTEN_KEEPALIVE void startReplay(const double* numbers, std::size_t count) {
    hostkit::GestureScript script = web::scriptOf({numbers, count});
    std::erase_if(script.events, [](const auto& event) { return !isReplayable(event); });
    session.startReplay(std::move(script));
}

EMSCRIPTEN_KEEPALIVE void stopReplay() {
    session.stopReplay();
}

EMSCRIPTEN_KEEPALIVE bool isReplaying() {
    return session.isReplaying();
}
}
