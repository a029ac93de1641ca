#include <emscripten/emscripten.h>
#include <jni.h>
#include <standin_bitmap.h>

#include <cstddef>
#include <cstdint>
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
#include "web/host/session_exports.h"

// Functions of the application core for the custom element. Times are in milliseconds; `now` is performance.now(). The
// module does not process text or image files, because that code would double its size. The element's script uploads
// the image of the background itself, and a second module reads and writes gesture scripts.

extern "C" {
// Functions of the element's script.

/// Deletes all GL objects of the canvas's context.
void renewContext();
/// Calls bindBackground, then uploads the background into the bound texture. Called after each start of the effect.
void loadBackground();
}

namespace {

/// Recording that ended last, as numbers (see event_numbers.h). Empty after a call of takeRecording.
std::vector<double> endedRecording;
/// Result of the last call of takeRecording.
std::vector<double> takenRecording;

/// Returns an image of one black pixel.
hostkit::Image onePixel() {
    return {1, 1, {0, 0, 0, 255}};
}

app::FrontEnd frontEnd() {
    return {
        .renewContext = renewContext,
        // The session has only a small copy of the background, from which it chooses ink colours. This copy is too
        // small to be shown, so the library gets one black pixel. The element's script then uploads the real image.
        .cover = [](const hostkit::Image&, app::Size) { return onePixel(); },
        .onStart = [](app::Size, bool) { loadBackground(); },
        .onRecordingEnd =
            [](const hostkit::GestureScript& recording) {
                endedRecording = web::numbersOf(recording);
            },
    };
}

/// Returns true if the element can replay the action. The element has no second background, and cannot lose its GL
/// context on request.
bool isReplayable(const hostkit::ScriptEvent& event) {
    return !std::holds_alternative<hostkit::SecondBackground>(event.action) &&
           !std::holds_alternative<hostkit::LoseContext>(event.action);
}

}  // namespace

namespace web {
app::Session session(frontEnd(), app::Clock::time_point{});
}

using web::session;

extern "C" {

/// Sets the settings from the next frame on: numbers and switches in the order of app::forEachField, then red, green
/// and blue of the ink.
EMSCRIPTEN_KEEPALIVE void setSettings(const double* numbers) {
    web::readSettings(numbers, session.settings);
}

EMSCRIPTEN_KEEPALIVE void restart(int width, int height) {
    session.restart({width, height});
}

/// Creates the texture of the background and leaves the texture bound, so that the element's script can upload the
/// image.
EMSCRIPTEN_KEEPALIVE void bindBackground() {
    constexpr int backgroundSlot = 1;
    hostkit::Image pixel = onePixel();
    StandInBitmap bitmap{};
    bitmap.info = {1, 1, 4, ANDROID_BITMAP_FORMAT_RGBA_8888, 0};
    bitmap.pixels = pixel.rgba.data();
    hostkit::native::LoadTextures(nullptr, nullptr, reinterpret_cast<jobject>(&bitmap),
                                  backgroundSlot);
}

/// Passes a small copy of the background as RGBA bytes. Attract mode chooses its ink colours from this copy.
EMSCRIPTEN_KEEPALIVE void setBackground(int width, int height, const std::uint8_t* rgba) {
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    const hostkit::Image copy{width, height, {rgba, rgba + bytes}};
    session.setBackgrounds({copy, copy});
}

/// Turns adaptive quality on, or fixes the quality at full detail.
EMSCRIPTEN_KEEPALIVE void setQuality(bool adaptive) {
    session.quality = adaptive ? app::searchingQuality() : app::fixedQuality(0);
}

EMSCRIPTEN_KEEPALIVE bool isSearchingQuality() {
    return session.quality.phase == app::QualityPhase::searching;
}

/// Returns the recording that ended last, as numbers (see event_numbers.h). recordingLength returns how many numbers
/// there are; it is 0 if there is no recording.
EMSCRIPTEN_KEEPALIVE const double* takeRecording() {
    takenRecording = std::exchange(endedRecording, {});
    return takenRecording.data();
}

EMSCRIPTEN_KEEPALIVE int recordingLength() {
    return static_cast<int>(takenRecording.size());
}

/// Restarts the effect and replays the gesture script that the numbers encode.
EMSCRIPTEN_KEEPALIVE void startReplay(const double* numbers, std::size_t count) {
    hostkit::GestureScript script = web::scriptOf({numbers, count});
    std::erase_if(script.events, [](const auto& event) { return !isReplayable(event); });
    session.startReplay(std::move(script));
}
}
