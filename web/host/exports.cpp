#include <emscripten/emscripten.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/density_overlay.h"
#include "app/effect_probe.h"
#include "app/flow_lines.h"
#include "app/frame_clock.h"
#include "app/presets.h"
#include "app/quality.h"
#include "app/random_settings.h"
#include "app/session.h"
#include "app/settings.h"
#include "app/settings_history.h"
#include "app/size.h"
#include "hostkit/effect_host.h"
#include "hostkit/gesture_script.h"
#include "hostkit/host_error.h"
#include "hostkit/image.h"
#include "hostkit/jni_environment.h"
#include "hostkit/water_driver.h"
#include "paintings/paintings.h"
#include "web/host/gl_objects.h"
#include "web/host/session_exports.h"

// Functions of the application core for the page's scripts. Times are in milliseconds; `now` is performance.now().
// Strings are UTF-8. A returned string is valid until the next call.

// clang-format off
/// Tells the page that the effect has started.
EM_JS(void, reportStart, (), { Module.onStart(); });
/// Tells the page that a replay has ended.
EM_JS(void, reportReplayEnd, (bool finished), { Module.onReplayEnd(!!finished); });
/// Passes the gesture script to the page when a recording has ended.
EM_JS(void, reportRecording, (const char* script), { Module.onRecordingEnd(UTF8ToString(script)); });
// clang-format on

namespace {

/// The string that the last call returned to the page.
std::string result;
/// Script that readScript has parsed.
hostkit::GestureScript script;
/// Preset that setPresetMember fills.
app::Settings preset;
app::SettingsHistory history{app::Settings{}};
/// Result of the last call of paint.
hostkit::Image painted;
std::vector<app::FlowLine> lines;
static_assert(sizeof(app::FlowLine) == 8 * sizeof(float));
app::EffectProbe probe;
/// True if `probe` observes the velocities and the ink of each drawn frame.
bool observes = false;
/// Overlay for the ink density. Empty until it is first drawn in the current GL context.
std::optional<app::DensityOverlay> densityOverlay;
std::vector<std::uint8_t> densityColors;

app::FrontEnd frontEnd() {
    app::FrontEnd functions;
    functions.renewContext = [] {
        probe.forgetInk();
        densityOverlay.reset();
        web::dropGlObjects();
    };
    // The page's script has already scaled the backgrounds to the screen's size, so they stay unchanged.
    functions.cover = [](const hostkit::Image& image, app::Size) { return image; };
    functions.draw = [](hostkit::EffectHost& host) { observes ? probe.draw(host) : host.draw(); };
    functions.onStart = [](app::Size screen, bool hasInk) {
        probe.watch(screen, hasInk);
        reportStart();
    };
    functions.onReplayEnd = reportReplayEnd;
    functions.onRecordingEnd = [](const hostkit::GestureScript& recording) {
        reportRecording(writeGestureScript(recording).c_str());
    };
    return functions;
}

hostkit::Image imageOf(int width, int height, const std::uint8_t* rgba) {
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    return {width, height, {rgba, rgba + bytes}};
}

/// Writes all settings: numbers and switches in the order of app::forEachField, then red, green and blue of the ink.
void writeSettings(const app::Settings& settings, double* numbers) {
    app::forEachField([&](const auto& field) {
        *numbers++ = app::shortestNumber(static_cast<float>(settings.*field.member));
    });
    std::transform(settings.ink.begin(), settings.ink.end(), numbers, app::shortestNumber);
}

/// Writes the settings and returns true. If `settings` is empty, writes nothing and returns false.
bool writeIfAny(const std::optional<app::Settings>& settings, double* numbers) {
    if (settings) {
        writeSettings(*settings, numbers);
    }
    return settings.has_value();
}

}  // namespace

namespace web {
app::Session session(frontEnd(), app::Clock::time_point{});
}

using web::session;

extern "C" {

/// Applies settings from the next frame on. The numbers have the order of writeSettings.
EMSCRIPTEN_KEEPALIVE void setSettings(const double* numbers) {
    web::readSettings(numbers, session.settings);
}

/// Begins a new history with these settings, so that nothing can be undone.
EMSCRIPTEN_KEEPALIVE void beginHistory(const double* numbers) {
    app::Settings settings;
    web::readSettings(numbers, settings);
    history = app::SettingsHistory(settings);
}

/// Adds settings that the user has changed to the history, so that undoSettings can return to the previous ones.
EMSCRIPTEN_KEEPALIVE void noteSettings(double now, const double* numbers) {
    app::Settings settings;
    web::readSettings(numbers, settings);
    history.note(settings, web::moment(now));
}

/// Undoes the last change of the settings and writes the resulting settings. Returns false if there is no change to
/// undo.
EMSCRIPTEN_KEEPALIVE bool undoSettings(double* numbers) {
    return writeIfAny(history.undo(), numbers);
}

/// Redoes the change of the settings that was undone last, and writes the resulting settings. Returns false if there is
/// no such change.
EMSCRIPTEN_KEEPALIVE bool redoSettings(double* numbers) {
    return writeIfAny(history.redo(), numbers);
}

EMSCRIPTEN_KEEPALIVE void getSettings(double* numbers) {
    writeSettings(session.settings, numbers);
}

/// Writes random settings, which are the same for the same seed. Does not change the current settings.
EMSCRIPTEN_KEEPALIVE void randomSettings(unsigned seed, double* numbers) {
    writeSettings(app::randomSettings(seed), numbers);
}

/// Writes red, green and blue of an ink colour that stands out from the current background.
EMSCRIPTEN_KEEPALIVE void inkAgainstBackground(double* ink) {
    const auto color = session.inkAgainstBackground(0);
    std::transform(color.begin(), color.end(), ink, app::shortestNumber);
}

/// Begins to read a preset. The page then calls setPresetMember for each member of the preset, and finally takePreset.
EMSCRIPTEN_KEEPALIVE void beginPreset() {
    preset = {};
}

/// Sets one member of the preset. `kind` is the kind of the value: 1 a boolean, 2 a number, 3 an array of numbers, 0
/// anything else. `text` is the value as JSON, for messages. Returns a message about the fault, or an empty string.
EMSCRIPTEN_KEEPALIVE const char* setPresetMember(const char* name, int kind, const double* numbers,
                                                 int count, const char* text) {
    app::PresetMember member{name, {}, text};
    if (kind == 1) {
        member.value = numbers[0] != 0.0;
    } else if (kind == 2) {
        member.value = numbers[0];
    } else if (kind == 3) {
        member.value = std::vector<double>(numbers, numbers + count);
    }
    try {
        app::setSetting(preset, member);
        result.clear();
    } catch (const hostkit::HostError& error) {
        result = error.what();
    }
    return result.c_str();
}

/// Writes to `numbers` the settings of the preset that beginPreset and setPresetMember have read.
EMSCRIPTEN_KEEPALIVE void takePreset(double* numbers) {
    writeSettings(preset, numbers);
}

EMSCRIPTEN_KEEPALIVE const char* presetName(const char* fileStem) {
    result = app::presetName(fileStem);
    return result.c_str();
}

/// Passes the two backgrounds to the effect as RGBA bytes. Both must have the size of the canvas in pixels.
EMSCRIPTEN_KEEPALIVE void setBackgrounds(int width, int height, const std::uint8_t* first,
                                         const std::uint8_t* second) {
    session.setBackgrounds({imageOf(width, height, first), imageOf(width, height, second)});
}

/// Returns the name of a painting, or an empty string for an index after the last painting.
EMSCRIPTEN_KEEPALIVE const char* paintingName(std::size_t index) {
    return index < paintings::allPaintings.size() ? paintings::allPaintings[index].name : "";
}

/// Paints an image of this size and returns its RGBA bytes. They are valid until the next call of paint.
EMSCRIPTEN_KEEPALIVE const std::uint8_t* paint(std::size_t index, int width, int height) {
    painted = {};  // frees the memory before the next image needs it
    painted = paintings::allPaintings[index].paint(width, height);
    return painted.rgba.data();
}

EMSCRIPTEN_KEEPALIVE bool isAttractModeOn() {
    return session.attractMode().isOn();
}

EMSCRIPTEN_KEEPALIVE double frameTime() {
    return web::inMilliseconds(app::frameTime);
}

EMSCRIPTEN_KEEPALIVE bool isWaterIdle() {
    return session.isWaterIdle();
}

/// Fixes the quality at a level. Level 0 has full detail. If the level is negative, turns adaptive quality on instead.
EMSCRIPTEN_KEEPALIVE void setQuality(int level) {
    session.quality = level < 0 ? app::searchingQuality() : app::fixedQuality(level);
}

EMSCRIPTEN_KEEPALIVE int qualityPhase() {
    return static_cast<int>(session.quality.phase);
}

EMSCRIPTEN_KEEPALIVE int qualityLevel() {
    return session.quality.level;
}

/// Returns the number of mesh vertices along a side, divided by the number of water cells.
EMSCRIPTEN_KEEPALIVE float qualityMesh() {
    return session.verticesPerCell();
}

/// Parses a gesture script for startReplay. Returns an empty string, or a message about the script's fault. If the
/// script is faulty, the previously read script stays available.
EMSCRIPTEN_KEEPALIVE const char* readScript(const char* text, const char* name) {
    try {
        script = hostkit::parseGestureScript(text, name);
        result.clear();
    } catch (const hostkit::HostError& error) {
        result = error.what();
    }
    return result.c_str();
}

EMSCRIPTEN_KEEPALIVE void startReplay() {
    session.startReplay(script);
}

/// Turns the observation of frames on or off. The functions below that read velocities or ink need an observed frame.
EMSCRIPTEN_KEEPALIVE void observe(bool on) {
    observes = on;
}

/// Returns the velocity texture of the last observed frame: RGBA, bottom row first. velocityColumns and velocityRows
/// return its size, which is 0 if no frame was observed.
EMSCRIPTEN_KEEPALIVE const std::uint8_t* velocityBytes() {
    return probe.velocity().bytes.data();
}

EMSCRIPTEN_KEEPALIVE int velocityColumns() {
    return probe.velocity().columns;
}

EMSCRIPTEN_KEEPALIVE int velocityRows() {
    return probe.velocity().rows;
}

/// Returns lines that show the flow of the last observed frame. Each line has eight numbers in the order of
/// app::FlowLine. flowLineCount returns the number of lines.
EMSCRIPTEN_KEEPALIVE const float* flowLines(float width, float height) {
    const app::VelocityField& field = probe.velocity();
    lines = app::flowLines(field.bytes, field.columns, field.rows, width, height);
    return lines.empty() ? nullptr : &lines.front().x;
}

EMSCRIPTEN_KEEPALIVE int flowLineCount() {
    return static_cast<int>(lines.size());
}

/// Returns the ink density of the last observed frame in false colours: RGBA, bottom row first. Returns null if the
/// frame has no ink. densityWidth and densityHeight return the size of the image in pixels.
EMSCRIPTEN_KEEPALIVE const std::uint8_t* densityImage() {
    if (probe.inkTexture() == 0) {
        return nullptr;
    }
    if (!densityOverlay) {
        densityOverlay.emplace();
    }
    densityColors = densityOverlay->colors(probe.inkTexture(), probe.inkTextureSize());
    return densityColors.data();
}

EMSCRIPTEN_KEEPALIVE int densityWidth() {
    return probe.inkTextureSize().width;
}

EMSCRIPTEN_KEEPALIVE int densityHeight() {
    return probe.inkTextureSize().height;
}

/// Returns the heights of all water cells, or their velocities if `velocities` is true. waterCellCount returns the
/// number of cells.
EMSCRIPTEN_KEEPALIVE const float* waterCells(bool velocities) {
    const hostkit::WaterDriver& water = session.water();
    return hostkit::JniEnvironment::elements(velocities ? water.velocity : water.height).data();
}

EMSCRIPTEN_KEEPALIVE int waterCellCount() {
    return static_cast<int>(hostkit::JniEnvironment::elements(session.water().height).size());
}
}
