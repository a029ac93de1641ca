#include <emscripten/emscripten.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "app/ink_choice.h"
#include "app/presets.h"
#include "app/random_settings.h"
#include "hostkit/host_error.h"
#include "velmora/solver_grid.h"
#include "web/host/stage.h"

// What the page's script calls. Texts are UTF-8 and live until the next call.

namespace {

web::Stage stage;
std::string answer;

const char* kindOf(float) {
    return "number";
}
const char* kindOf(int) {
    return "count";
}
const char* kindOf(bool) {
    return "switch";
}

const char* nameOf(app::Group group) {
    switch (group) {
        case app::Group::water:
            return "Water";
        case app::Group::light:
            return "Light";
        case app::Group::ink:
            return "Ink";
    }
    return "";
}

template <class Value>
std::string text(Value value) {
    return app::numberText(static_cast<float>(value));
}

std::string text(const std::array<float, 3>& color) {
    return "[" + text(color[0]) + "," + text(color[1]) + "," + text(color[2]) + "]";
}

/// In the order of setSettings.
void writeSettings(const app::Settings& settings, float* values) {
    app::forEachField(
        [&](const auto& field) { *values++ = static_cast<float>(settings.*field.member); });
    std::copy(settings.ink.begin(), settings.ink.end(), values);
}

}  // namespace

extern "C" {

/// The settings as JSON: the fields, each with name, words, heading, hint, kind, least, most and the
/// value at first, the first ink, and the inks to choose from by their names.
EMSCRIPTEN_KEEPALIVE const char* describeSettings() {
    const app::Settings defaults;
    answer = R"({"fields":[)";
    app::forEachField([&](const auto& field) {
        const auto value = defaults.*field.member;
        answer += answer.back() == '}' ? "," : "";
        answer += R"({"name":")" + std::string(field.name) + R"(","words":")" + field.label +
                  R"(","group":")" + nameOf(field.group) + R"(","hint":")" + field.hint +
                  R"(","kind":")" + kindOf(value) + R"(","least":)" + text(field.min) +
                  R"(,"most":)" + text(field.max) + R"(,"first":)" + text(value) + "}";
    });
    answer += R"(],"ink":)" + text(defaults.ink) + R"(,"palette":{)";
    for (const app::NamedInk& ink : app::inkPalette) {
        answer += answer.back() == ']' ? "," : "";
        answer += "\"" + std::string(ink.name) + "\":" + text(ink.color);
    }
    answer += "}}";
    return answer.c_str();
}

/// Sides of the square of screen pixels that one texel of the velocity covers.
EMSCRIPTEN_KEEPALIVE int pixelsPerCell() {
    return velmora::pixelsPerCell;
}

/// Texels of the ink's textures along the longer or the shorter side of the screen.
EMSCRIPTEN_KEEPALIVE int inkTexels(bool longer) {
    return longer ? velmora::inkLongSide : velmora::inkShortSide;
}

/// Numbers and switches in the order of describeSettings, then the ink's red, green and blue.
EMSCRIPTEN_KEEPALIVE void setSettings(const float* values) {
    app::forEachField([&](const auto& field) {
        auto& member = stage.settings.*field.member;
        member = static_cast<std::remove_reference_t<decltype(member)>>(*values++);
    });
    std::copy_n(values, stage.settings.ink.size(), stage.settings.ink.begin());
}

EMSCRIPTEN_KEEPALIVE void getSettings(float* values) {
    writeSettings(stage.settings, values);
}

/// A look by chance, each seed's its own, written as by getSettings; nothing changes.
EMSCRIPTEN_KEEPALIVE void randomSettings(unsigned seed, float* values) {
    writeSettings(app::randomSettings(seed), values);
}

/// Three numbers, of an ink that stands out from the shown picture.
EMSCRIPTEN_KEEPALIVE void inkOfPicture(float* ink) {
    const auto color = app::inkAgainst(stage.pictures[stage.settings.secondBackground ? 1 : 0]);
    std::copy(color.begin(), color.end(), ink);
}

/// Of the drawn mesh, from the next frame on.
EMSCRIPTEN_KEEPALIVE void setCellsPerVertex(int cells) {
    stage.cellsPerVertex = cells;
}

EMSCRIPTEN_KEEPALIVE void restart(int width, int height) {
    web::restart(stage, width, height);
}

/// Place 0 is the background, 1 the second one.
EMSCRIPTEN_KEEPALIVE void showPicture(int place, int width, int height, const std::uint8_t* rgba) {
    const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    web::showPicture(stage, place, {width, height, {rgba, rgba + bytes}});
}

EMSCRIPTEN_KEEPALIVE void renewContext() {
    web::renewContext(stage);
}

EMSCRIPTEN_KEEPALIVE void touch(int action, double x, double y, float pressure) {
    stage.pending.emplace_back(
        hostkit::Touch{static_cast<hostkit::TouchAction>(action), x, y, pressure});
}

EMSCRIPTEN_KEEPALIVE void clearInk() {
    stage.pending.emplace_back(hostkit::ClearInk{});
}

EMSCRIPTEN_KEEPALIVE void frame(double milliseconds) {
    web::runFrame(stage, std::chrono::nanoseconds(std::llround(milliseconds * 1e6)));
}

EMSCRIPTEN_KEEPALIVE void startRecording() {
    web::startRecording(stage);
}

EMSCRIPTEN_KEEPALIVE const char* finishRecording() {
    answer = web::finishRecording(stage);
    return answer.c_str();
}

/// For startReplay. Empty, or what is wrong with the script; then nothing has changed.
EMSCRIPTEN_KEEPALIVE const char* readScript(const char* script, const char* name) {
    try {
        stage.script = hostkit::parseGestureScript(script, name);
        answer.clear();
    } catch (const hostkit::HostError& error) {
        answer = error.what();
    }
    return answer.c_str();
}

EMSCRIPTEN_KEEPALIVE void startReplay() {
    web::startReplay(stage);
}

EMSCRIPTEN_KEEPALIVE bool isReplaying() {
    return stage.replay.has_value();
}

/// Whether the water stands still, so that only ink and rain could change the picture.
EMSCRIPTEN_KEEPALIVE bool isWaterCalm() {
    return stage.host->water().resting;
}

/// The water's heights, then velocities: columns * rows numbers each.
EMSCRIPTEN_KEEPALIVE const float* waterCells(int velocities) {
    const hostkit::WaterDriver& water = stage.host->water();
    return hostkit::JniEnvironment::elements(velocities ? water.velocity : water.height).data();
}

EMSCRIPTEN_KEEPALIVE int waterCellCount() {
    return static_cast<int>(hostkit::JniEnvironment::elements(stage.host->water().height).size());
}
}
